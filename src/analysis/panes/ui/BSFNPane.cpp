#include "analysis/panes/ui/BSFNPane.h"

namespace carvelot {

namespace {

constexpr CColumnSpec kColumns[] = {
    {"Business Function", 200},
    {"Calls", 70},
    {"Total Time", 100},
    {"Shortest", 100},
    {"Longest", 100},
    {"Average", 100},
};

} // namespace

CBSFNPane::CBSFNPane() : CDockablePane(tr("BSFN Calls"), QStringLiteral("BSFNPane"), {100, 100}) {
    AddCaption();
    m_pList = new CListCtrl(kColumns, windowTitle(), Client());
    m_pList->Model().SetRightAligned(1);
    m_pList->Model().SetRightAligned(2);
    m_pList->Model().SetRightAligned(3);
    m_pList->Model().SetRightAligned(4);
    m_pList->Model().SetRightAligned(5);
}

void CBSFNPane::ClearList() { m_pList->Fill(nullptr); }

void CBSFNPane::OnSize(int nWidth, int nHeight) { LayOutBelowCaption(m_pList, nWidth, nHeight); }

} // namespace carvelot
