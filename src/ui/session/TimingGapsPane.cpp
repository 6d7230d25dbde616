#include "ui/session/TimingGapsPane.h"

#include "lists/GapExport.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/kit/WaitCursor.h"

#include <QMenu>

namespace carvelot {

CTimingGapsPane::CTimingGapsPane() : CRecordListPane(tr("Timing Gaps"), QStringLiteral("TimingGapsPane")) {
    AddList();
    m_pList->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_pList, &QWidget::customContextMenuRequested, this, &CTimingGapsPane::OnContextMenu);
}

void CTimingGapsPane::OnContextMenu(const QPoint& point) {
    if (m_pList->SelectedRow() < 0) {
        return;
    }
    QMenu menu;
    connect(menu.addAction(tr("Export")), &QAction::triggered, this, &CTimingGapsPane::OnExport);
    UserInterface().RunMenu(menu, m_pList->viewport()->mapToGlobal(point));
}

void CTimingGapsPane::OnExport() {
    const auto path = UserInterface().AskSaveFile(
        {EFiles::Exports, tr("Save As"), QStringLiteral("csv"), QStringLiteral("TimingGaps"),
         QStringLiteral("CSV Format (*.csv)|*.csv|Text Format (*.txt)|*.txt||")});
    if (!path) {
        return;
    }
    const auto format = GapExportFormatOf(ToUtf8(*path));
    if (!format) {
        UserInterface().ShowMessage(QStringLiteral("Invalid file type"));
        return;
    }
    if (m_rows.Session() == nullptr) {
        return; // the rows went while the questions were up
    }
    int error = 0;
    bool written = false;
    {
        const CWaitCursor wait;
        std::vector<GapRow> shown;
        shown.reserve(m_rows.m_listRows.size());
        for (int row = 0; row < m_pList->Model().rowCount(); ++row) {
            shown.push_back(m_rows.m_listRows[SourceRow(row)]);
        }
        written = WriteGapExport(ToUtf8(*path), ExportGaps(*m_rows.Session(), shown, *format), error);
        // The text form trims the time stamps of the rows themselves.
        for (std::size_t row = 0; written && row < shown.size(); ++row) {
            m_rows.m_listRows[SourceRow(static_cast<int>(row))] = shown[row];
        }
    }
    if (!written) {
        UserInterface().ShowMessage(tr("Failed to write %1. Error: %2").arg(*path, QString::number(error)));
    }
}

} // namespace carvelot
