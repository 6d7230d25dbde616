#include "ui/explore/ListMenu.h"

#include "explore/lists/ListExport.h"
#include "ui/explore/KeptWidths.h"
#include "ui/kit/PathText.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/kit/WaitCursor.h"

#include <QMenu>

namespace carvelot {

namespace {

// The list as it is shown: its columns that are not hidden, its rows in their order.
ShownList ShownOf(const CListCtrl& list, const CListModel& model, const CListSource& source) {
    ShownList shown{source, {}, {}};
    for (int column = 0; column < model.columnCount(); ++column) {
        if (!list.isColumnHidden(column)) {
            const QVariant title = model.headerData(column, Qt::Horizontal, Qt::DisplayRole);
            shown.columns.push_back({ToUtf8(title.toString()), column});
        }
    }
    shown.rows.reserve(static_cast<std::size_t>(model.rowCount()));
    for (int row = 0; row < model.rowCount(); ++row) {
        shown.rows.push_back(model.SourceRow(row));
    }
    return shown;
}

} // namespace

CListMenu::CListMenu(CListCtrl& list, const QString& name) : QObject(&list), m_list(list), m_strName(name) {
    list.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&list, &QWidget::customContextMenuRequested, this, &CListMenu::ShowMenu);
    new CKeptWidths(list, ToUtf8(name) + "Widths");
}

void CListMenu::ShowMenu(const QPoint& point) {
    const int row = m_list.SelectedRow();
    QMenu menu;
    if (m_fnAddEntries) {
        m_fnAddEntries(menu, row);
    }
    if (!menu.isEmpty()) {
        menu.addSeparator();
    }
    QAction* const copy = menu.addAction(tr("Copy"));
    copy->setEnabled(row >= 0);
    connect(copy, &QAction::triggered, this, [this] { CopySelectedRows(m_list); });
    QAction* const exportAll = menu.addAction(tr("Export..."));
    exportAll->setEnabled(m_list.Model().Source() != nullptr);
    connect(exportAll, &QAction::triggered, this, &CListMenu::Export);
    // By the keyboard the menu comes up at the row that it is for.
    const QRect shown = row >= 0 ? m_list.visualRect(m_list.Model().index(row, 0)) : QRect();
    const bool isAtRow = shown.isNull() || (point.y() >= shown.top() && point.y() <= shown.bottom());
    UserInterface().RunMenu(menu, m_list.viewport()->mapToGlobal(isAtRow ? point : shown.bottomLeft()));
}

void CListMenu::Export() {
    const auto path =
        UserInterface().AskSaveFile({EFiles::Exports, tr("Save As"), QStringLiteral("csv"), m_strName,
                                     QStringLiteral("CSV Format (*.csv)|*.csv|Text Format (*.txt)|*.txt||")});
    if (!path) {
        return;
    }
    const auto format = ListExportFormatOf(ToUtf8(*path));
    if (!format) {
        UserInterface().ShowMessage(QStringLiteral("Invalid file type"));
        return;
    }
    const CListSource* const source = m_list.Model().Source();
    if (source == nullptr) {
        return; // the rows went while the question was up
    }
    int error = 0;
    bool written = false;
    {
        const CWaitCursor wait;
        written = WriteListExport(PathOf(*path), *format, ShownOf(m_list, m_list.Model(), *source), error);
    }
    if (!written) {
        UserInterface().ShowMessage(tr("Failed to write %1. Error: %2").arg(*path, QString::number(error)));
    }
}

} // namespace carvelot
