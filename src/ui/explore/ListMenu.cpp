#include "ui/explore/ListMenu.h"

#include "explore/lists/ListExport.h"
#include "settings/AppSettings.h"
#include "ui/kit/PathText.h"
#include "ui/kit/StoredLayout.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/kit/WaitCursor.h"

#include <QEvent>
#include <QHeaderView>
#include <QMenu>

#include <utility>

namespace carvelot {

namespace {

constexpr int kLeastWidth = 16;
constexpr int kMostWidth = 10000; // a stored width beyond any screen is none

// Where the widths of a list are stored.
std::string WidthsSetting(const QString& name) { return ToUtf8(name) + "Widths"; }

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
    ReadWidths();
    connect(list.header(), &QHeaderView::sectionResized, this, [this] { m_bResized = true; });
    list.header()->viewport()->installEventFilter(this);
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

void CListMenu::ReadWidths() {
    const std::vector<int> widths = ReadCommands(GetWorkspaceString(WidthsSetting(m_strName), ""));
    const int columns = m_list.Model().columnCount();
    if (widths.size() != static_cast<std::size_t>(columns)) {
        return; // none yet, or those of another table
    }
    for (int column = 0; column < columns; ++column) {
        const int width = widths[static_cast<std::size_t>(column)];
        if (width >= kLeastWidth && width <= kMostWidth) {
            m_list.SetColumnWidth(column, width);
        }
    }
}

void CListMenu::KeepWidths() const {
    std::vector<int> widths;
    for (int column = 0; column < m_list.Model().columnCount(); ++column) {
        widths.push_back(m_list.columnWidth(column));
    }
    WriteWorkspaceString(WidthsSetting(m_strName), WriteCommands(widths));
}

bool CListMenu::eventFilter(QObject* object, QEvent* event) {
    // What the user wished is the width at the end of a drag.
    if (event->type() == QEvent::MouseButtonRelease && std::exchange(m_bResized, false)) {
        KeepWidths();
    }
    return QObject::eventFilter(object, event);
}

} // namespace carvelot
