#include "ui/session/ErrorPane.h"

#include "ui/kit/Text.h"

namespace carvelot {

CErrorPane::CErrorPane() : CDockablePane(tr("Errors/Warnings"), QStringLiteral("ErrorPane"), {100, 100}) {
    AddCaption();
    m_pList = new CListCtrl(ColumnsOf<ErrorRow>(), windowTitle(), Client());
    m_pList->m_fnOpenRow = [this](int nRow) {
        // The way to the record can refill this list: what the row refers to is taken first.
        const CSessionReference session = m_session;
        session.ShowDetail(m_rows.m_listRows[m_pList->Model().SourceRow(nRow)].m_pRecord);
    };
}

void CErrorPane::FillList(CSessionDocument& document, const std::vector<RecordIndex>& listErrors) {
    ShowRows(document, MakeErrorRows(listErrors));
}

void CErrorPane::FillList(CSessionDocument& document, const CHeadList<RecordIndex>& listErrors) {
    ShowRows(document, MakeErrorRows(listErrors));
}

void CErrorPane::ShowRows(CSessionDocument& document, std::vector<ErrorRow> listRows) {
    ClearList();
    m_pList->Model().SetColumnTitle(0, ToQString(ProcessOrUserTitle(document.Session().m_nLogFormat)));
    m_session = CSessionReference(document);
    m_rows.Show(document.Session(), std::move(listRows));
    m_pList->Fill(&m_rows);
}

void CErrorPane::ClearList() {
    m_pList->Fill(nullptr);
    m_session = {};
    m_rows.Clear();
}

void CErrorPane::LetGo(const CCarvelotDoc& session) {
    if (m_rows.Session() == &session)
        ClearList();
}

void CErrorPane::OnSize(int nWidth, int nHeight) { LayOutBelowCaption(m_pList, nWidth, nHeight); }

} // namespace carvelot
