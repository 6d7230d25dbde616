#include "views/ui/ChildFrame.h"

#include "shell/ui/MainFrame.h"
#include "views/ui/SessionDocument.h"

#include <QVBoxLayout>

namespace carvelot {

namespace {

QTreeView* Tree(const QString& strAccessibleName) {
    auto* pTree = new QTreeView;
    pTree->setAccessibleName(strAccessibleName);
    pTree->setHeaderHidden(true);
    pTree->setUniformRowHeights(true);
    pTree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    pTree->setFrameShape(QFrame::StyledPanel);
    return pTree;
}

} // namespace

CChildFrame::CChildFrame(CSessionDocument& document)
    : CMDIChildWnd(document), m_document(document), m_wndSplitter(new QSplitter(Qt::Horizontal)),
      m_pThreadTree(Tree(tr("Processes and threads"))), m_pDetailTree(Tree(tr("Calls"))) {
    m_wndSplitter->setChildrenCollapsible(false);
    m_wndSplitter->addWidget(m_pThreadTree);
    m_wndSplitter->addWidget(m_pDetailTree);
    // The thread tree keeps its 200 pixels when the window grows; the rest is the detail tree's.
    m_wndSplitter->setStretchFactor(0, 0);
    m_wndSplitter->setStretchFactor(1, 1);
    m_wndSplitter->setSizes({200, 1000});
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_wndSplitter);
}

void CChildFrame::OnClose() {
    CMainFrame* pMain = MainFrame();
    if (pMain == nullptr)
        return;
    if (pMain->m_wndFindPane.m_pSearched == GetActiveDocument())
        pMain->m_wndFindPane.ClearList();
    pMain->ClearPanes();
}

} // namespace carvelot
