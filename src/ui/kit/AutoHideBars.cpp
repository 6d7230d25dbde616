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

bool IsUpright(Qt::DockWidgetArea edge) {
    return edge == Qt::LeftDockWidgetArea || edge == Qt::RightDockWidgetArea;
}

CAutoHideTab::CAutoHideTab(CAutoHide& owner, CDockablePane& pane, bool upright)
    : m_owner(owner), m_pane(pane), m_bUpright(upright) {
    setText(pane.windowTitle());
    setObjectName(QStringLiteral("AutoHideTab"));
    setAccessibleName(pane.windowTitle());
    setAccessibleDescription(CAutoHide::tr("Shows the pane until the focus goes elsewhere"));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setToolTip(pane.windowTitle());
    setSizePolicy(upright ? QSizePolicy::Fixed : QSizePolicy::Maximum,
                  upright ? QSizePolicy::Maximum : QSizePolicy::Fixed);
    m_hover.setSingleShot(true);
    m_hover.setInterval(kHoverDelay);
    connect(&m_hover, &QTimer::timeout, this, [this] {
        if (m_owner.PaneOut() != &m_pane) {
            m_owner.SlideOut(m_pane, false);
        }
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

void CAutoHideTab::enterEvent(QEnterEvent* event) {
    m_hover.start();
    QAbstractButton::enterEvent(event);
}

void CAutoHideTab::leaveEvent(QEvent* event) {
    m_hover.stop();
    QAbstractButton::leaveEvent(event);
}

void CAutoHideTab::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void CAutoHideTab::paintEvent(QPaintEvent*) {
    const CLook& look = CurrentLook();
    const bool out = m_owner.PaneOut() == &m_pane;
    QPainter painter(this);
    if (m_bUpright) {
        painter.translate(width(), 0);
        painter.rotate(90);
    }
    const QRect rect(QPoint(0, 0), m_bUpright ? size().transposed() : size());
    const CGradient& fill = out ? look.m_activeTab : underMouse() ? look.m_hot : look.m_tab;
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, fill.m_from);
    gradient.setColorAt(1, fill.m_to);
    painter.fillRect(rect, gradient);
    painter.setPen(look.m_border);
    painter.drawRect(rect.adjusted(0, 0, -1, -1));
    painter.setPen(out ? look.m_activeTabText : look.m_tabText);
    const QRect label = rect.adjusted(4, 0, -4, 0);
    painter.drawText(label, Qt::AlignCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, label.width()));
    if (hasFocus()) {
        painter.setPen(QPen(out ? look.m_activeTabText : look.m_tabText, 1, Qt::DotLine));
        painter.drawRect(rect.adjusted(3, 3, -4, -4));
    }
}

CAutoHideBars::CAutoHideBars(CAutoHide& owner, CMainWindow& frame) : m_owner(owner), m_frame(frame) {
    for (const CEdge& edge : kEdges) {
        auto* strip = new QToolBar(&frame);
        strip->setObjectName(QStringLiteral("AutoHide-") + QLatin1String(EdgeName(edge.m_nArea)));
        strip->setWindowTitle(CAutoHide::tr("Auto Hide"));
        strip->setAccessibleName(CAutoHide::tr("Panes folded away"));
        strip->setMovable(false);
        strip->setFloatable(false);
        strip->setAllowedAreas(edge.m_nBar);
        m_mapStrips[edge.m_nArea] = strip;
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
        QToolBar* strip = m_mapStrips.at(edge.m_nArea);
        const bool hidden = strip->isHidden();
        m_frame.removeToolBar(strip);
        m_frame.addToolBarBreak(edge.m_nBar);
        m_frame.addToolBar(edge.m_nBar, strip);
        strip->setHidden(hidden);
    }
}

void CAutoHideBars::Show(const std::vector<CFoldedGroup>& groups) {
    Place();
    for (const auto& [edge, strip] : m_mapStrips) {
        if (QWidget* old = strip->findChild<QWidget*>(QStringLiteral("Tabs"))) {
            old->setObjectName(QString());
            old->hide(); // a tab may be in the middle of its click
        }
        // The action that holds the tabs stays behind in the toolbar that lets it go, and takes them along.
        const QList<QAction*> held = strip->actions();
        strip->clear();
        for (QAction* const action : held) {
            action->deleteLater();
        }
        strip->setFocusProxy(nullptr);
        bool any = false;
        auto* host = new QWidget;
        host->setObjectName(QStringLiteral("Tabs"));
        auto* layout =
            new QBoxLayout(IsUpright(edge) ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, host);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(1);
        for (const CFoldedGroup& group : groups) {
            if (group.m_nEdge != edge) {
                continue;
            }
            if (any) {
                layout->addSpacing(10);
            }
            for (CDockablePane* pane : group.m_listPanes) {
                auto* tab = new CAutoHideTab(m_owner, *pane, IsUpright(edge));
                layout->addWidget(tab);
                if (!any) {
                    strip->setFocusProxy(tab);
                }
                any = true;
            }
        }
        layout->addStretch();
        strip->addWidget(host);
        strip->setVisible(any);
    }
}

QList<QWidget*> CAutoHideBars::Strips() const {
    QList<QWidget*> strips;
    for (const auto& [edge, strip] : m_mapStrips) {
        if (strip->isVisible()) {
            strips << strip;
        }
    }
    return strips;
}

CAutoHideTab* CAutoHideBars::Tab(const CDockablePane& pane) const {
    for (const auto& [edge, strip] : m_mapStrips) {
        for (auto* button : strip->findChildren<QAbstractButton*>(QStringLiteral("AutoHideTab"))) {
            auto* tab = dynamic_cast<CAutoHideTab*>(button);
            if (tab != nullptr && tab->isVisibleTo(strip) && &tab->Pane() == &pane) {
                return tab;
            }
        }
    }
    return nullptr;
}

} // namespace carvelot
