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
    if (m_pList->SelectedRow() < 0)
        return;
    QMenu menu;
    connect(menu.addAction(tr("Export")), &QAction::triggered, this, &CTimingGapsPane::OnExport);
    UserInterface().RunMenu(menu, m_pList->viewport()->mapToGlobal(point));
}

void CTimingGapsPane::OnExport() {
    const auto strPath = UserInterface().AskSaveFile(
        {EFiles::Exports, tr("Save As"), QStringLiteral("csv"), QStringLiteral("TimingGaps"),
         QStringLiteral("CSV Format (*.csv)|*.csv|Text Format (*.txt)|*.txt||")});
    if (!strPath)
        return;
    const auto nFormat = GapExportFormatOf(ToUtf8(*strPath));
    if (!nFormat) {
        UserInterface().ShowMessage(QStringLiteral("Invalid file type"));
        return;
    }
    if (m_rows.Session() == nullptr)
        return; // the rows went while the questions were up
    int nError = 0;
    bool bWritten = false;
    {
        const CWaitCursor wait;
        std::vector<GapRow> listShown;
        listShown.reserve(m_rows.m_listRows.size());
        for (int nRow = 0; nRow < m_pList->Model().rowCount(); ++nRow)
            listShown.push_back(m_rows.m_listRows[SourceRow(nRow)]);
        bWritten =
            WriteGapExport(ToUtf8(*strPath), ExportGaps(*m_rows.Session(), listShown, *nFormat), nError);
        // The text form trims the time stamps of the rows themselves.
        for (std::size_t nRow = 0; bWritten && nRow < listShown.size(); ++nRow)
            m_rows.m_listRows[SourceRow(static_cast<int>(nRow))] = listShown[nRow];
    }
    if (!bWritten)
        UserInterface().ShowMessage(
            tr("Failed to write %1. Error: %2").arg(*strPath, QString::number(nError)));
}

} // namespace carvelot
