#include "ui/kit/AutoHideBars.h"

#include "ui/kit/AutoHide.h"
#include "ui/kit/DockablePane.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/MainWindow.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QToolBar>

namespace carvelot {

namespace {

constexpr int kLeastTab = 24;
constexpr int kHoverDelay = 400; // milliseconds

struct CEdge {
    Qt::DockWidgetArea m_nArea;
    Qt::ToolBarArea m_nBar;
};
constexpr CEdge kEdges[] = {{Qt::LeftDockWidgetArea, Qt::LeftToolBarArea},
                            {Qt::RightDockWidgetArea, Qt::RightToolBarArea},
                            {Qt::TopDockWidgetArea, Qt::TopToolBarArea},
                            {Qt::BottomDockWidgetArea, Qt::BottomToolBarArea}};

} // namespace

bool IsUpright(Qt::DockWidgetArea nEdge) {
    return nEdge == Qt::LeftDockWidgetArea || nEdge == Qt::RightDockWidgetArea;
}

CAutoHideTab::CAutoHideTab(CAutoHide& owner, CDockablePane& pane, bool bUpright)
    : m_owner(owner), m_pane(pane), m_bUpright(bUpright) {
    setText(pane.windowTitle());
    setObjectName(QStringLiteral("AutoHideTab"));
    setAccessibleName(pane.windowTitle());
    setAccessibleDescription(CAutoHide::tr("Shows the pane until the focus goes elsewhere"));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setToolTip(pane.windowTitle());
    setSizePolicy(bUpright ? QSizePolicy::Fixed : QSizePolicy::Maximum,
                  bUpright ? QSizePolicy::Maximum : QSizePolicy::Fixed);
    m_hover.setSingleShot(true);
    m_hover.setInterval(kHoverDelay);
    connect(&m_hover, &QTimer::timeout, this, [this] {
        if (m_owner.PaneOut() != &m_pane)
            m_owner.SlideOut(m_pane, false);
    });
    connect(this, &QAbstractButton::clicked, this, [this] {
        m_hover.stop();
        m_owner.SlideOut(m_pane, true);
    });
}

QSize CAutoHideTab::sizeHint() const {
    const QSize size(fontMetrics().horizontalAdvance(text()) + 16, fontMetrics().height() + 6);
    return m_bUpright ? size.transposed() : size;
}

QSize CAutoHideTab::minimumSizeHint() const {
    const QSize size(kLeastTab, fontMetrics().height() + 6);
    return m_bUpright ? size.transposed() : size;
}

void CAutoHideTab::enterEvent(QEnterEvent* pEvent) {
    m_hover.start();
    QAbstractButton::enterEvent(pEvent);
}

void CAutoHideTab::leaveEvent(QEvent* pEvent) {
    m_hover.stop();
    QAbstractButton::leaveEvent(pEvent);
}

void CAutoHideTab::keyPressEvent(QKeyEvent* pEvent) {
    if (pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(pEvent);
}

void CAutoHideTab::paintEvent(QPaintEvent*) {
    const CLook& look = CurrentLook();
    const bool bOut = m_owner.PaneOut() == &m_pane;
    QPainter painter(this);
    if (m_bUpright) {
        painter.translate(width(), 0);
        painter.rotate(90);
    }
    const QRect rect(QPoint(0, 0), m_bUpright ? size().transposed() : size());
    const CGradient& fill = bOut ? look.m_activeTab : underMouse() ? look.m_hot : look.m_tab;
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, fill.m_from);
    gradient.setColorAt(1, fill.m_to);
    painter.fillRect(rect, gradient);
    painter.setPen(look.m_border);
    painter.drawRect(rect.adjusted(0, 0, -1, -1));
    painter.setPen(bOut ? look.m_activeTabText : look.m_tabText);
    const QRect label = rect.adjusted(4, 0, -4, 0);
    painter.drawText(label, Qt::AlignCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, label.width()));
    if (hasFocus()) {
        painter.setPen(QPen(bOut ? look.m_activeTabText : look.m_tabText, 1, Qt::DotLine));
        painter.drawRect(rect.adjusted(3, 3, -4, -4));
    }
}

CAutoHideBars::CAutoHideBars(CAutoHide& owner, CMainWindow& frame) : m_owner(owner), m_frame(frame) {
    for (const CEdge& edge : kEdges) {
        auto* pStrip = new QToolBar(&frame);
        pStrip->setObjectName(QStringLiteral("AutoHide-") + QLatin1String(EdgeName(edge.m_nArea)));
        pStrip->setWindowTitle(CAutoHide::tr("Auto Hide"));
        pStrip->setAccessibleName(CAutoHide::tr("Panes folded away"));
        pStrip->setMovable(false);
        pStrip->setFloatable(false);
        pStrip->setAllowedAreas(edge.m_nBar);
        m_mapStrips[edge.m_nArea] = pStrip;
    }
    Show({});
}

CAutoHideBars::~CAutoHideBars() {
    for (const auto& [edge, strip] : m_mapStrips) {
        delete strip;
    }
}

// Toolbars that the user made or moved meanwhile stand in the last rows: the strips come behind them.
void CAutoHideBars::Place() {
    for (const CEdge& edge : kEdges) {
        QToolBar* pStrip = m_mapStrips.at(edge.m_nArea);
        const bool bHidden = pStrip->isHidden();
        m_frame.removeToolBar(pStrip);
        m_frame.addToolBarBreak(edge.m_nBar);
        m_frame.addToolBar(edge.m_nBar, pStrip);
        pStrip->setHidden(bHidden);
    }
}

void CAutoHideBars::Show(const std::vector<CFoldedGroup>& groups) {
    Place();
    for (const auto& [nEdge, pStrip] : m_mapStrips) {
        if (QWidget* pOld = pStrip->findChild<QWidget*>(QStringLiteral("Tabs"))) {
            pOld->setObjectName(QString());
            pOld->hide(); // a tab may be in the middle of its click
            pOld->deleteLater();
        }
        pStrip->clear();
        pStrip->setFocusProxy(nullptr);
        bool bAny = false;
        auto* pHost = new QWidget;
        pHost->setObjectName(QStringLiteral("Tabs"));
        auto* pLayout =
            new QBoxLayout(IsUpright(nEdge) ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, pHost);
        pLayout->setContentsMargins(0, 0, 0, 0);
        pLayout->setSpacing(1);
        for (const CFoldedGroup& group : groups) {
            if (group.m_nEdge != nEdge)
                continue;
            if (bAny)
                pLayout->addSpacing(10);
            for (CDockablePane* pPane : group.m_listPanes) {
                auto* pTab = new CAutoHideTab(m_owner, *pPane, IsUpright(nEdge));
                pLayout->addWidget(pTab);
                if (!bAny)
                    pStrip->setFocusProxy(pTab);
                bAny = true;
            }
        }
        pLayout->addStretch();
        pStrip->addWidget(pHost);
        pStrip->setVisible(bAny);
    }
}

QList<QWidget*> CAutoHideBars::Strips() const {
    QList<QWidget*> listStrips;
    for (const auto& [nEdge, pStrip] : m_mapStrips) {
        if (pStrip->isVisible())
            listStrips << pStrip;
    }
    return listStrips;
}

CAutoHideTab* CAutoHideBars::Tab(const CDockablePane& pane) const {
    for (const auto& [nEdge, pStrip] : m_mapStrips) {
        for (auto* pButton : pStrip->findChildren<QAbstractButton*>(QStringLiteral("AutoHideTab"))) {
            auto* pTab = dynamic_cast<CAutoHideTab*>(pButton);
            if (pTab != nullptr && pTab->isVisibleTo(pStrip) && &pTab->Pane() == &pane)
                return pTab;
        }
    }
    return nullptr;
}

} // namespace carvelot
