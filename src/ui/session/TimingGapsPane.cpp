#include "ui/session/TimingGapsPane.h"

#include "lists/GapExport.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/kit/WaitCursor.h"

#include <QMenu>

namespace carvelot {

CTimingGapsPane::CTimingGapsPane()
    : CDockablePane(tr("Timing Gaps"), QStringLiteral("TimingGapsPane"), {100, 100}) {
    m_pList = new CListCtrl(ColumnsOf<GapRow>(), windowTitle(), Client());
    m_pList->Model().SetRightAligned(2);
    m_pList->m_fnOpenRow = [this](int nRow) {
        // The way to the record can refill this list: what the row refers to is taken first.
        const CSessionReference session = m_session;
        session.ShowDetail(m_rows.m_listRows[m_pList->Model().SourceRow(nRow)].m_pRecord);
    };
    m_pList->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_pList, &QWidget::customContextMenuRequested, this, &CTimingGapsPane::OnContextMenu);
}

void CTimingGapsPane::FillList(CSessionDocument& document) {
    ShowRows(document, MakeGapRows(document.Session()));
}

void CTimingGapsPane::ShowRows(CSessionDocument& document, std::vector<GapRow> listRows) {
    ClearList();
    m_pList->Model().SetColumnTitle(0, ToQString(ProcessOrUserTitle(document.Session().m_nLogFormat)));
    m_session = CSessionReference(document);
    m_rows.Show(document.Session(), std::move(listRows));
    m_pList->Fill(&m_rows);
}

void CTimingGapsPane::ClearList() {
    m_pList->Fill(nullptr);
    m_session = {};
    m_rows.Clear();
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
            listShown.push_back(m_rows.m_listRows[m_pList->Model().SourceRow(nRow)]);
        bWritten =
            WriteGapExport(ToUtf8(*strPath), ExportGaps(*m_rows.Session(), listShown, *nFormat), nError);
        // The text form trims the time stamps of the rows themselves.
        for (std::size_t nRow = 0; bWritten && nRow < listShown.size(); ++nRow)
            m_rows.m_listRows[m_pList->Model().SourceRow(static_cast<int>(nRow))] = listShown[nRow];
    }
    if (!bWritten)
        UserInterface().ShowMessage(
            tr("Failed to write %1. Error: %2").arg(*strPath, QString::number(nError)));
}

void CTimingGapsPane::LetGo(const CCarvelotDoc& session) {
    if (m_rows.Session() == &session)
        ClearList();
}

void CTimingGapsPane::OnSize(int nWidth, int nHeight) { m_pList->setGeometry(0, 0, nWidth, nHeight); }

} // namespace carvelot
