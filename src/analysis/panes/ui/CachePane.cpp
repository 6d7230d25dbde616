#include "analysis/panes/ui/CachePane.h"

#include "resources/ui/Icons.h"
#include "shell/ui/UserInterface.h"

namespace carvelot {

CCachePane::CCachePane() : CDockablePane(tr("Cache Details"), QStringLiteral("CachePane"), {100, 100}) {
    AddCaption();
    if (!LoadImageStrip("cacheicons", m_listImages))
        UserInterface().ShowMessage(QStringLiteral("Failed to load cacheicons bmp"));
    m_pTree = new QTreeView(Client());
    m_pTree->setAccessibleName(windowTitle());
    m_pTree->setHeaderHidden(true);
    m_pTree->setUniformRowHeights(true);
    m_pTree->setIconSize(kStripImageSize);
    m_pTree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pTree->setExpandsOnDoubleClick(false);
}

void CCachePane::ClearTree() { m_pTree->setModel(nullptr); }

void CCachePane::OnSize(int nWidth, int nHeight) { LayOutBelowCaption(m_pTree, nWidth, nHeight); }

} // namespace carvelot
