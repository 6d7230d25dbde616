#include "ui/session/SQLPane.h"

namespace carvelot {

CSQLPane::CSQLPane() : CDockablePane(tr("SQL Table Access"), QStringLiteral("SQLPane"), {100, 100}) {
    AddCaption();
    m_pList = new CListCtrl(ColumnsOf<TableRow>(), windowTitle(), Client());
    m_pList->Model().SetRightAligned(1);
    m_pList->Model().SetRightAligned(2);
    m_pList->Model().SetRightAligned(3);
    m_pList->Model().SetRightAligned(4);
}

void CSQLPane::FillList(const CSQLAnalysis& analysis) {
    ClearList();
    m_rows.m_listRows = MakeTableRows(analysis);
    m_pList->Fill(&m_rows);
}

void CSQLPane::ClearList() {
    m_pList->Fill(nullptr);
    m_rows.Clear();
}

void CSQLPane::OnSize(int nWidth, int nHeight) { LayOutBelowCaption(m_pList, nWidth, nHeight); }

} // namespace carvelot
