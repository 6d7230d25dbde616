#include "ui/kit/AutoHide.h"

#include "ui/kit/DockablePane.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/TabbedClientArea.h"

#include <QAbstractButton>
#include <QApplication>
#include <QBoxLayout>
#include <QFrame>
#include <QKeyEvent>
#include <QLayout>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStatusBar>
#include <QStyleOptionFocusRect>
#include <QTabBar>
#include <QToolBar>

#include <algorithm>

namespace carvelot {

namespace {

constexpr int kGrip = 5; // pixels at the slide's inner side that change its size
constexpr int kLeastTab = 24;
constexpr int kHoverDelay = 400;
constexpr int kWatchPeriod = 250;
constexpr int kWatchesAway = 3;

struct CEdge {
    Qt::DockWidgetArea m_nArea;
    Qt::ToolBarArea m_nBar;
};
constexpr CEdge kEdges[] = {{Qt::LeftDockWidgetArea, Qt::LeftToolBarArea},
                            {Qt::RightDockWidgetArea, Qt::RightToolBarArea},
                            {Qt::TopDockWidgetArea, Qt::TopToolBarArea},
                            {Qt::BottomDockWidgetArea, Qt::BottomToolBarArea}};

bool IsUpright(Qt::DockWidgetArea nEdge) {
    return nEdge == Qt::LeftDockWidgetArea || nEdge == Qt::RightDockWidgetArea;
}

constexpr auto kDocked =
    QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable;

} // namespace

// A folded pane's tab.
class CAutoHideTab : public QAbstractButton {
public:
    CAutoHideTab(CAutoHide& owner, CDockablePane& pane, bool bUpright)
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
    QSize sizeHint() const override {
        const QSize size(fontMetrics().horizontalAdvance(text()) + 16, fontMetrics().height() + 6);
        return m_bUpright ? size.transposed() : size;
    }
    // Tabs that find no room share it.
    QSize minimumSizeHint() const override {
        const QSize size(kLeastTab, fontMetrics().height() + 6);
        return m_bUpright ? size.transposed() : size;
    }
    const CDockablePane& Pane() const { return m_pane; }

protected:
    void enterEvent(QEnterEvent* pEvent) override {
        m_hover.start();
        QAbstractButton::enterEvent(pEvent);
    }
    void leaveEvent(QEvent* pEvent) override {
        m_hover.stop();
        QAbstractButton::leaveEvent(pEvent);
    }
    void keyPressEvent(QKeyEvent* pEvent) override {
        if (pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter)
            click();
        else
            QAbstractButton::keyPressEvent(pEvent);
    }
    void paintEvent(QPaintEvent*) override {
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

private:
    CAutoHide& m_owner;
    CDockablePane& m_pane;
    bool m_bUpright;
    QTimer m_hover;
};

// What a folded pane slides out in.
class CAutoHideSlide : public QFrame {
public:
    CAutoHideSlide(CAutoHide& owner, QWidget* pParent) : QFrame(pParent), m_owner(owner) {
        setObjectName(QStringLiteral("AutoHideSlide"));
        setAutoFillBackground(true);
        setFrameStyle(QFrame::Box | QFrame::Plain);
        setMouseTracking(true);
        hide();
    }
    void SetPane(QWidget* pPane, Qt::DockWidgetArea nEdge) {
        m_pPane = pPane;
        m_nEdge = nEdge;
        setCursor(IsUpright(nEdge) ? Qt::SplitHCursor : Qt::SplitVCursor);
        if (pPane != nullptr)
            pPane->setCursor(Qt::ArrowCursor);
    }
    // Lays the pane out beside the grip.
    void Arrange() {
        if (m_pPane == nullptr)
            return;
        QRect rect = contentsRect();
        switch (m_nEdge) {
        case Qt::LeftDockWidgetArea:
            rect.adjust(0, 0, -kGrip, 0);
            break;
        case Qt::RightDockWidgetArea:
            rect.adjust(kGrip, 0, 0, 0);
            break;
        case Qt::TopDockWidgetArea:
            rect.adjust(0, 0, 0, -kGrip);
            break;
        default:
            rect.adjust(0, kGrip, 0, 0);
        }
        m_pPane->setGeometry(rect);
    }
    std::function<void(int)> m_fnThickness; // asks for another size

protected:
    void resizeEvent(QResizeEvent*) override { Arrange(); }
    void mouseMoveEvent(QMouseEvent* pEvent) override {
        if ((pEvent->buttons() & Qt::LeftButton) == 0)
            return;
        const QPoint point = pEvent->position().toPoint();
        const int nThickness = m_nEdge == Qt::LeftDockWidgetArea    ? point.x()
                               : m_nEdge == Qt::RightDockWidgetArea ? width() - point.x()
                               : m_nEdge == Qt::TopDockWidgetArea   ? point.y()
                                                                    : height() - point.y();
        m_fnThickness(nThickness);
    }
    void keyPressEvent(QKeyEvent* pEvent) override {
        if (pEvent->key() != Qt::Key_Escape)
            return QFrame::keyPressEvent(pEvent);
        const CDockablePane* pPane = m_owner.PaneOut();
        m_owner.SlideIn();
        if (pPane != nullptr && m_owner.Tab(*pPane) != nullptr)
            m_owner.Tab(*pPane)->setFocus(Qt::OtherFocusReason);
    }

private:
    CAutoHide& m_owner;
    QWidget* m_pPane = nullptr;
    Qt::DockWidgetArea m_nEdge = Qt::BottomDockWidgetArea;
};

CAutoHide::CAutoHide(CMainWindow& frame)
    : m_frame(frame), m_pStore(new QWidget(&frame)), m_pSlide(new CAutoHideSlide(*this, &frame)) {
    m_pStore->hide();
    for (const CEdge& edge : kEdges) {
        auto* pStrip = new QToolBar(&frame);
        pStrip->setObjectName(QStringLiteral("AutoHide-") + QLatin1String(EdgeName(edge.m_nArea)));
        pStrip->setWindowTitle(tr("Auto Hide"));
        pStrip->setAccessibleName(tr("Panes folded away"));
        pStrip->setMovable(false);
        pStrip->setFloatable(false);
        pStrip->setAllowedAreas(edge.m_nBar);
        m_mapStrips[edge.m_nArea] = pStrip;
    }
    UpdateStrips();
    m_pSlide->m_fnThickness = [this](int nThickness) {
        if (CGroup* pGroup = m_pOut != nullptr ? GroupOf(*m_pOut) : nullptr) {
            pGroup->m_nThickness = std::max(StoredFold::kLeast, nThickness);
            Place();
        }
    };
    for (CDockablePane* pPane : frame.Panes()) {
        pPane->installEventFilter(this);
        pPane->m_fnPin = [this, pPane] { Toggle(*pPane); };
    }
    frame.installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, &CAutoHide::OnFocusChanged);
    m_watch.setInterval(kWatchPeriod);
    connect(&m_watch, &QTimer::timeout, this, &CAutoHide::OnWatch);
}

CAutoHide::~CAutoHide() {
    m_frame.removeEventFilter(this);
    for (CDockablePane* pPane : m_frame.Panes()) {
        pPane->removeEventFilter(this);
        pPane->m_fnPin = nullptr;
        if (IsFolded(*pPane))
            pPane->setParent(nullptr);
    }
    delete m_pSlide;
    delete m_pStore;
    for (const auto& [nEdge, pStrip] : m_mapStrips)
        delete pStrip;
}

const CAutoHide::CGroup* CAutoHide::GroupOf(const CDockablePane& pane) const {
    for (const CGroup& group : m_listGroups) {
        if (std::ranges::find(group.m_listPanes, &pane) != group.m_listPanes.end())
            return &group;
    }
    return nullptr;
}

CAutoHide::CGroup* CAutoHide::GroupOf(const CDockablePane& pane) {
    return const_cast<CGroup*>(std::as_const(*this).GroupOf(pane));
}

bool CAutoHide::IsFolded(const CDockablePane& pane) const { return GroupOf(pane) != nullptr; }

QList<CDockablePane*> CAutoHide::TabsOf(CDockablePane& pane) const {
    const QList<QDockWidget*> listOthers = m_frame.tabifiedDockWidgets(&pane);
    QList<CDockablePane*> listPanes;
    for (CDockablePane* pPane : m_frame.Panes()) {
        if (pPane == &pane || (listOthers.contains(pPane) && !pPane->isHidden()))
            listPanes << pPane;
    }
    // In the order of their tabs, which the user may have changed.
    for (const QTabBar* pBar : m_frame.findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
        const auto fnPlace = [pBar](const CDockablePane* pPane) {
            for (int n = 0; n < pBar->count(); ++n) {
                if (pBar->tabText(n) == pPane->windowTitle())
                    return n;
            }
            return -1;
        };
        if (pBar->isVisible() && fnPlace(&pane) >= 0)
            std::ranges::stable_sort(listPanes, {}, fnPlace);
    }
    return listPanes;
}

void CAutoHide::Fold(CDockablePane& pane) {
    const Qt::DockWidgetArea nEdge = m_frame.dockWidgetArea(&pane);
    if (IsFolded(pane) || pane.isFloating() || pane.isHidden() || nEdge == Qt::NoDockWidgetArea)
        return;
    FoldGroup({nEdge, IsUpright(nEdge) ? pane.width() : pane.height(), TabsOf(pane)});
}

void CAutoHide::FoldGroup(CGroup group) {
    const QScopedValueRollback moving(m_bMoving, true);
    const QWidget* pFocus = QApplication::focusWidget();
    const bool bFocus =
        std::ranges::any_of(group.m_listPanes, [&](const auto* p) { return p->isAncestorOf(pFocus); });
    for (CDockablePane* pPane : group.m_listPanes) {
        m_frame.removeDockWidget(pPane);
        pPane->setFeatures(QDockWidget::DockWidgetClosable);
        pPane->setParent(m_pStore);
        pPane->show(); // its store is not: only what the user closed counts as hidden
        pPane->SetPinned(false);
    }
    m_listGroups.push_back(std::move(group));
    UpdateStrips();
    if (bFocus)
        m_frame.ClientArea().setFocus(Qt::OtherFocusReason);
}

void CAutoHide::Dock(const CGroup& group, CDockablePane& front) {
    const QScopedValueRollback moving(m_bMoving, true);
    CDockablePane* pBefore = nullptr;
    for (CDockablePane* pPane : group.m_listPanes) {
        pPane->setParent(&m_frame);
        pPane->setFeatures(kDocked);
        pPane->unsetCursor();
        pPane->SetPinned(true);
        m_frame.addDockWidget(group.m_nEdge, pPane);
        if (pBefore != nullptr)
            m_frame.tabifyDockWidget(pBefore, pPane);
        pBefore = pPane;
        pPane->show();
    }
    if (m_frame.isVisible())
        m_frame.layout()->activate();
    if (group.m_nThickness > 0) {
        // The toolkit counts the tabs below a pane as part of it.
        int nTabs = 0;
        const bool bUpright = IsUpright(group.m_nEdge);
        for (const QTabBar* pBar : m_frame.findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (!bUpright && group.m_listPanes.size() > 1 && !pBar->isHidden())
                nTabs = std::max(nTabs, pBar->sizeHint().height());
        }
        m_frame.resizeDocks({&front}, {group.m_nThickness + nTabs}, bUpright ? Qt::Horizontal : Qt::Vertical);
    }
    front.raise();
}

void CAutoHide::Pin(CDockablePane& pane) {
    SlideIn();
    for (std::size_t n = 0; n < m_listGroups.size(); ++n) {
        if (!m_listGroups[n].m_listPanes.contains(&pane))
            continue;
        const CGroup group = m_listGroups[n];
        m_listGroups.erase(m_listGroups.begin() + static_cast<std::ptrdiff_t>(n));
        UpdateStrips();
        Dock(group, pane);
        pane.MainControl()->setFocus(Qt::OtherFocusReason);
        return;
    }
}

void CAutoHide::PinAll() {
    while (!m_listGroups.empty())
        Pin(*m_listGroups.back().m_listPanes.back());
}

void CAutoHide::OnClosed(CDockablePane* pPane) {
    CGroup* pGroup = GroupOf(*pPane);
    if (pGroup == nullptr)
        return;
    if (m_pOut == pPane)
        SlideIn();
    const CGroup alone{pGroup->m_nEdge, 0, {pPane}};
    pGroup->m_listPanes.removeOne(pPane);
    std::erase_if(m_listGroups, [](const CGroup& group) { return group.m_listPanes.isEmpty(); });
    UpdateStrips();
    Dock(alone, *pPane);
    pPane->hide();
}

// Toolbars that the user made or moved meanwhile stand in the last rows: the strips come behind them.
void CAutoHide::PlaceStrips() {
    for (const CEdge& edge : kEdges) {
        QToolBar* pStrip = m_mapStrips.at(edge.m_nArea);
        const bool bHidden = pStrip->isHidden();
        m_frame.removeToolBar(pStrip);
        m_frame.addToolBarBreak(edge.m_nBar);
        m_frame.addToolBar(edge.m_nBar, pStrip);
        pStrip->setHidden(bHidden);
    }
}

void CAutoHide::UpdateStrips() {
    PlaceStrips();
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
        for (const CGroup& group : m_listGroups) {
            if (group.m_nEdge != nEdge)
                continue;
            if (bAny)
                pLayout->addSpacing(10);
            for (CDockablePane* pPane : group.m_listPanes) {
                auto* pTab = new CAutoHideTab(*this, *pPane, IsUpright(nEdge));
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

// What the menu, the bars and the strips leave of the window. The panes themselves are no measure: the
// toolkit parks those behind tabs outside the window.
QRect CAutoHide::Room() const {
    QRect room = m_frame.contentsRect();
    room.setTop(m_frame.menuBar()->geometry().bottom() + 1);
    if (!m_frame.statusBar()->isHidden())
        room.setBottom(m_frame.statusBar()->geometry().top() - 1);
    for (const QToolBar* pBar : m_frame.findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (pBar->isHidden() || pBar->isFloating())
            continue;
        const QRect bar = pBar->geometry();
        switch (m_frame.toolBarArea(pBar)) {
        case Qt::LeftToolBarArea:
            room.setLeft(std::max(room.left(), bar.right() + 1));
            break;
        case Qt::RightToolBarArea:
            room.setRight(std::min(room.right(), bar.left() - 1));
            break;
        case Qt::TopToolBarArea:
            room.setTop(std::max(room.top(), bar.bottom() + 1));
            break;
        case Qt::BottomToolBarArea:
            room.setBottom(std::min(room.bottom(), bar.top() - 1));
            break;
        default:
            break;
        }
    }
    return room;
}

void CAutoHide::Place() {
    const CGroup* pGroup = m_pOut != nullptr ? GroupOf(*m_pOut) : nullptr;
    if (pGroup == nullptr)
        return;
    const QRect room = Room();
    QRect rect = room;
    const int nWidth = std::min(std::max(StoredFold::kLeast, pGroup->m_nThickness), room.width() * 9 / 10);
    const int nHeight = std::min(std::max(StoredFold::kLeast, pGroup->m_nThickness), room.height() * 9 / 10);
    switch (pGroup->m_nEdge) {
    case Qt::LeftDockWidgetArea:
        rect.setWidth(nWidth);
        break;
    case Qt::RightDockWidgetArea:
        rect.setLeft(room.right() - nWidth + 1);
        break;
    case Qt::TopDockWidgetArea:
        rect.setHeight(nHeight);
        break;
    default:
        rect.setTop(room.bottom() - nHeight + 1);
    }
    m_pSlide->setGeometry(rect);
    m_pSlide->Arrange();
}

void CAutoHide::SlideOut(CDockablePane& pane, bool bFocus) {
    const CGroup* pGroup = GroupOf(pane);
    if (pGroup == nullptr)
        return;
    if (m_pOut != &pane) {
        SlideIn();
        const QScopedValueRollback moving(m_bMoving, true);
        m_pOut = &pane;
        pane.setParent(m_pSlide);
        m_pSlide->SetPane(&pane, pGroup->m_nEdge);
        pane.show();
        Place();
        m_pSlide->show();
        m_pSlide->raise();
        if (CAutoHideTab* pTab = Tab(pane))
            pTab->update();
    }
    m_nAway = 0;
    m_watch.start();
    if (bFocus)
        pane.MainControl()->setFocus(Qt::OtherFocusReason);
}

void CAutoHide::SlideIn() {
    if (m_pOut == nullptr)
        return;
    const QScopedValueRollback moving(m_bMoving, true);
    m_watch.stop();
    CDockablePane* pPane = m_pOut;
    m_pOut = nullptr; // first: hiding moves the focus
    const QWidget* pFocus = QApplication::focusWidget();
    if (pFocus != nullptr && m_pSlide->isAncestorOf(pFocus))
        m_frame.ClientArea().setFocus(Qt::OtherFocusReason);
    m_pSlide->hide();
    m_pSlide->SetPane(nullptr, Qt::BottomDockWidgetArea);
    const bool bClosed = pPane->isHidden();
    pPane->setParent(m_pStore);
    pPane->setVisible(!bClosed);
    if (CAutoHideTab* pTab = Tab(*pPane))
        pTab->update();
}

void CAutoHide::OnFocusChanged(QWidget* pOld, QWidget* pNow) {
    // Another program in front takes the focus from all: that is no reason.
    if (m_pOut == nullptr || pNow == nullptr || m_bMoving || m_pSlide->isAncestorOf(pNow))
        return;
    const auto* pTab = dynamic_cast<const CAutoHideTab*>(pNow);
    if (pTab != nullptr && &pTab->Pane() == m_pOut)
        return;
    if (pOld != nullptr && !m_pSlide->isAncestorOf(pOld) && m_pSlide->underMouse())
        return;
    SlideIn();
}

void CAutoHide::OnWatch() {
    const QWidget* pFocus = QApplication::focusWidget();
    const CAutoHideTab* pTab = m_pOut != nullptr ? Tab(*m_pOut) : nullptr;
    const bool bStay = (pFocus != nullptr && m_pSlide->isAncestorOf(pFocus)) || m_pSlide->underMouse() ||
                       (pTab != nullptr && (pTab->underMouse() || pTab->hasFocus())) ||
                       QApplication::activePopupWidget() != nullptr ||
                       QApplication::mouseButtons() != Qt::NoButton;
    m_nAway = bStay ? 0 : m_nAway + 1;
    if (m_nAway >= kWatchesAway)
        SlideIn();
}

QList<QWidget*> CAutoHide::Strips() const {
    QList<QWidget*> listStrips;
    for (const auto& [nEdge, pStrip] : m_mapStrips) {
        if (pStrip->isVisible())
            listStrips << pStrip;
    }
    return listStrips;
}

CAutoHideTab* CAutoHide::Tab(const CDockablePane& pane) const {
    for (const auto& [nEdge, pStrip] : m_mapStrips) {
        for (auto* pButton : pStrip->findChildren<QAbstractButton*>(QStringLiteral("AutoHideTab"))) {
            auto* pTab = dynamic_cast<CAutoHideTab*>(pButton);
            if (pTab != nullptr && pTab->isVisibleTo(pStrip) && &pTab->Pane() == &pane)
                return pTab;
        }
    }
    return nullptr;
}

std::vector<StoredFold> CAutoHide::Folds() const {
    std::vector<StoredFold> folds;
    for (const CGroup& group : m_listGroups) {
        StoredFold& fold = folds.emplace_back(StoredFold{group.m_nEdge, group.m_nThickness, {}});
        for (const CDockablePane* pPane : group.m_listPanes) {
            fold.m_listPanes.push_back(pPane->objectName());
        }
    }
    return folds;
}

void CAutoHide::Restore(const std::vector<StoredFold>& folds) {
    for (const StoredFold& fold : folds) {
        CGroup group{fold.m_nEdge, fold.m_nThickness, {}};
        for (const QString& name : fold.m_listPanes) {
            for (CDockablePane* pPane : m_frame.Panes()) {
                if (pPane->objectName() == name && !IsFolded(*pPane)) {
                    pPane->setFloating(false);
                    group.m_listPanes << pPane;
                }
            }
        }
        if (!group.m_listPanes.isEmpty()) {
            FoldGroup(group);
        }
    }
}

bool CAutoHide::eventFilter(QObject* pObject, QEvent* pEvent) {
    if (pObject == &m_frame &&
        (pEvent->type() == QEvent::Resize || pEvent->type() == QEvent::LayoutRequest)) {
        // After the frame has laid itself out.
        if (m_pOut != nullptr)
            QMetaObject::invokeMethod(this, &CAutoHide::Place, Qt::QueuedConnection);
    } else if (pEvent->type() == QEvent::HideToParent && !m_bMoving) {
        auto* pPane = qobject_cast<CDockablePane*>(pObject);
        if (pPane != nullptr && IsFolded(*pPane))
            QMetaObject::invokeMethod(
                this, [this, pPane] { OnClosed(pPane); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(pObject, pEvent);
}

} // namespace carvelot
