#include "analysis/panes/ui/LongTasksPane.h"

namespace carvelot {

namespace {

constexpr CColumnSpec kColumns[] = {
    {"Process/Thread", 100},
    {"Task Type", 70},
    {"Duration", 100},
    {"Message", 600},
};

} // namespace

CLongTasksPane::CLongTasksPane() : CDockablePane(tr("Long Tasks"), QStringLiteral("LongTasksPane"), {100, 100}) {
    AddCaption();
    m_pList = new CListCtrl(kColumns, windowTitle(), Client());
    m_pList->Model().SetRightAligned(2);
}

void CLongTasksPane::ClearList() { m_pList->Fill(nullptr); }

void CLongTasksPane::OnSize(int nWidth, int nHeight) { LayOutBelowCaption(m_pList, nWidth, nHeight); }

} // namespace carvelot
