#include "analysis/panes/ui/TimingGapsPane.h"

namespace carvelot {

namespace {

constexpr CColumnSpec kColumns[] = {
    {"Process/Thread", 100},
    {"Time Stamp", 120},
    {"Gap Duration", 100},
    {"Message", 600},
};

} // namespace

CTimingGapsPane::CTimingGapsPane() : CDockablePane(tr("Timing Gaps"), QStringLiteral("TimingGapsPane"), {100, 100}) {
    m_pList = new CListCtrl(kColumns, windowTitle(), Client());
    m_pList->Model().SetRightAligned(2);
}

void CTimingGapsPane::ClearList() { m_pList->Fill(nullptr); }

void CTimingGapsPane::OnSize(int nWidth, int nHeight) { m_pList->setGeometry(0, 0, nWidth, nHeight); }

} // namespace carvelot
