#include "ui/cachebrowser/CacheFrame.h"

#include "ui/cachebrowser/CacheDocument.h"
#include "ui/kit/ListCtrl.h"

#include <QSplitter>
#include <QVBoxLayout>

namespace carvelot {

CCacheFrame::CCacheFrame(CCacheDocument& document)
    : CMDIChildWnd(document), m_pDSView(new CCacheDSView(document.Cache())),
      m_pDataView(new CCacheDataView(document.Cache())) {
    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(m_pDSView);
    splitter->addWidget(m_pDataView);
    // The form keeps its 250 pixels when the window grows; the rest is the rows'.
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({250, 1000});
    splitter->setMinimumHeight(100);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);
}

QList<QWidget*> CCacheFrame::WindowPanes() const { return {&m_pDSView->List(), m_pDataView}; }

} // namespace carvelot
