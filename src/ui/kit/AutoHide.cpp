#include "ui/kit/AutoHide.h"

#include "ui/kit/AutoHideSlide.h"
#include "ui/kit/DockablePane.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/TabbedClientArea.h"

#include <QApplication>
#include <QLayout>
#include <QScopedValueRollback>
#include <QTabBar>

#include <algorithm>

namespace carvelot {

namespace {

constexpr int kWatchPeriod = 250;
constexpr int kWatchesAway = 3;

constexpr auto kDocked =
    QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable;

} // namespace

CAutoHide::CAutoHide(CMainWindow& frame)
    : m_frame(frame), m_pStore(new QWidget(&frame)), m_pSlide(new CAutoHideSlide(*this, frame)),
      m_bars(*this, frame) {
    m_pStore->hide();
    m_pSlide->m_fnThickness = [this](int nThickness) {
        if (CFoldedGroup* pGroup = m_pOut != nullptr ? GroupOf(*m_pOut) : nullptr) {
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
}

const CFoldedGroup* CAutoHide::GroupOf(const CDockablePane& pane) const {
    for (const CFoldedGroup& group : m_listGroups) {
        if (std::ranges::find(group.m_listPanes, &pane) != group.m_listPanes.end())
            return &group;
    }
    return nullptr;
}

CFoldedGroup* CAutoHide::GroupOf(const CDockablePane& pane) {
    return const_cast<CFoldedGroup*>(std::as_const(*this).GroupOf(pane));
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

void CAutoHide::FoldGroup(CFoldedGroup group) {
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
    m_bars.Show(m_listGroups);
    if (bFocus)
        m_frame.ClientArea().setFocus(Qt::OtherFocusReason);
}

void CAutoHide::Dock(const CFoldedGroup& group, CDockablePane& front) {
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
        const CFoldedGroup group = m_listGroups[n];
        m_listGroups.erase(m_listGroups.begin() + static_cast<std::ptrdiff_t>(n));
        m_bars.Show(m_listGroups);
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
    CFoldedGroup* pGroup = GroupOf(*pPane);
    if (pGroup == nullptr)
        return;
    if (m_pOut == pPane)
        SlideIn();
    const CFoldedGroup alone{pGroup->m_nEdge, 0, {pPane}};
    pGroup->m_listPanes.removeOne(pPane);
    std::erase_if(m_listGroups, [](const CFoldedGroup& group) { return group.m_listPanes.isEmpty(); });
    m_bars.Show(m_listGroups);
    Dock(alone, *pPane);
    pPane->hide();
}

void CAutoHide::Place() {
    if (const CFoldedGroup* const group = m_pOut != nullptr ? GroupOf(*m_pOut) : nullptr) {
        m_pSlide->Place(group->m_nThickness);
    }
}

void CAutoHide::SlideOut(CDockablePane& pane, bool bFocus) {
    const CFoldedGroup* pGroup = GroupOf(pane);
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

std::vector<StoredFold> CAutoHide::Folds() const {
    std::vector<StoredFold> folds;
    for (const CFoldedGroup& group : m_listGroups) {
        StoredFold& fold = folds.emplace_back(StoredFold{group.m_nEdge, group.m_nThickness, {}});
        for (const CDockablePane* pPane : group.m_listPanes) {
            fold.m_listPanes.push_back(pPane->objectName());
        }
    }
    return folds;
}

void CAutoHide::Restore(const std::vector<StoredFold>& folds) {
    for (const StoredFold& fold : folds) {
        CFoldedGroup group{fold.m_nEdge, fold.m_nThickness, {}};
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
