#include "ui/cachebrowser/CacheFrame.h"

#include "ui/cachebrowser/CacheDocument.h"
#include "ui/kit/ListCtrl.h"

#include <QSplitter>
#include <QVBoxLayout>

namespace carvelot {

CCacheFrame::CCacheFrame(CCacheDocument& document)
    : CMDIChildWnd(document), m_pDSView(new CCacheDSView(document.Cache())),
      m_pDataView(new CCacheDataView(document.Cache())) {
    auto* pSplitter = new QSplitter(Qt::Horizontal);
    pSplitter->setChildrenCollapsible(false);
    pSplitter->addWidget(m_pDSView);
    pSplitter->addWidget(m_pDataView);
    // The form keeps its 250 pixels when the window grows; the rest is the rows'.
    pSplitter->setStretchFactor(0, 0);
    pSplitter->setStretchFactor(1, 1);
    pSplitter->setSizes({250, 1000});
    pSplitter->setMinimumHeight(100);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(pSplitter);
}

QList<QWidget*> CCacheFrame::WindowPanes() const { return {&m_pDSView->List(), m_pDataView}; }

} // namespace carvelot
