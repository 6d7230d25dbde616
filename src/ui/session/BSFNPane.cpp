#include "ui/session/BSFNPane.h"

namespace carvelot {

CBSFNPane::CBSFNPane() : CDockablePane(tr("BSFN Calls"), QStringLiteral("BSFNPane"), {100, 100}) {
    AddCaption();
    m_pList = new CListCtrl(ColumnsOf<BSFNRow>(), windowTitle(), Client());
    m_pList->Model().SetRightAligned(1);
    m_pList->Model().SetRightAligned(2);
    m_pList->Model().SetRightAligned(3);
    m_pList->Model().SetRightAligned(4);
    m_pList->Model().SetRightAligned(5);
}

void CBSFNPane::FillList(const CBSFNAnalysis& analysis) {
    ClearList();
    m_rows.m_listRows = MakeBSFNRows(analysis);
    m_pList->Fill(&m_rows);
}

void CBSFNPane::ClearList() {
    m_pList->Fill(nullptr);
    m_rows.Clear();
}

void CBSFNPane::OnSize(int nWidth, int nHeight) { LayOutBelowCaption(m_pList, nWidth, nHeight); }

} // namespace carvelot
