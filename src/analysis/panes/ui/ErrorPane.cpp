#include "analysis/panes/ui/ErrorPane.h"

namespace carvelot {

namespace {

constexpr CColumnSpec kColumns[] = {
    {"Process/Thread", 100},
    {"Error Type", 70},
    {"Message", 600},
};

} // namespace

CErrorPane::CErrorPane() : CDockablePane(tr("Errors/Warnings"), QStringLiteral("ErrorPane"), {100, 100}) {
    AddCaption();
    m_pList = new CListCtrl(kColumns, windowTitle(), Client());
}

void CErrorPane::ClearList() { m_pList->Fill(nullptr); }

void CErrorPane::OnSize(int nWidth, int nHeight) { LayOutBelowCaption(m_pList, nWidth, nHeight); }

} // namespace carvelot
