#include "analysis/panes/ui/SQLPane.h"

namespace carvelot {

namespace {

constexpr CColumnSpec kColumns[] = {
    {"Table", 200},
    {"Selects", 70},
    {"Inserts", 70},
    {"Updates", 70},
    {"Deletes", 70},
};

} // namespace

CSQLPane::CSQLPane() : CDockablePane(tr("SQL Table Access"), QStringLiteral("SQLPane"), {100, 100}) {
    AddCaption();
    m_pList = new CListCtrl(kColumns, windowTitle(), Client());
    m_pList->Model().SetRightAligned(1);
    m_pList->Model().SetRightAligned(2);
    m_pList->Model().SetRightAligned(3);
    m_pList->Model().SetRightAligned(4);
}

void CSQLPane::ClearList() { m_pList->Fill(nullptr); }

void CSQLPane::OnSize(int nWidth, int nHeight) { LayOutBelowCaption(m_pList, nWidth, nHeight); }

} // namespace carvelot
