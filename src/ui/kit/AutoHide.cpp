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
    m_pSlide->m_fnThickness = [this](int thickness) {
        if (CFoldedGroup* folded = m_pOut != nullptr ? GroupOf(*m_pOut) : nullptr) {
            folded->m_nThickness = std::max(StoredFold::kLeast, thickness);
            Place();
        }
    };
    for (CDockablePane* candidate : frame.Panes()) {
        candidate->installEventFilter(this);
        candidate->m_fnPin = [this, candidate] { Toggle(*candidate); };
    }
    frame.installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, &CAutoHide::OnFocusChanged);
    m_watch.setInterval(kWatchPeriod);
    connect(&m_watch, &QTimer::timeout, this, &CAutoHide::OnWatch);
}

CAutoHide::~CAutoHide() {
    m_frame.removeEventFilter(this);
    for (CDockablePane* candidate : m_frame.Panes()) {
        candidate->removeEventFilter(this);
        candidate->m_fnPin = nullptr;
        if (IsFolded(*candidate)) {
            candidate->setParent(nullptr);
        }
    }
    delete m_pSlide;
    delete m_pStore;
}

const CFoldedGroup* CAutoHide::GroupOf(const CDockablePane& pane) const {
    for (const CFoldedGroup& group : m_listGroups) {
        if (std::ranges::find(group.m_listPanes, &pane) != group.m_listPanes.end()) {
            return &group;
        }
    }
    return nullptr;
}

CFoldedGroup* CAutoHide::GroupOf(const CDockablePane& pane) {
    return const_cast<CFoldedGroup*>(std::as_const(*this).GroupOf(pane));
}

bool CAutoHide::IsFolded(const CDockablePane& pane) const { return GroupOf(pane) != nullptr; }

QList<CDockablePane*> CAutoHide::TabsOf(CDockablePane& pane) const {
    const QList<QDockWidget*> others = m_frame.tabifiedDockWidgets(&pane);
    QList<CDockablePane*> panes;
    for (CDockablePane* candidate : m_frame.Panes()) {
        if (candidate == &pane || (others.contains(candidate) && !candidate->isHidden())) {
            panes << candidate;
        }
    }
    // In the order of their tabs, which the user may have changed.
    for (const QTabBar* bar : m_frame.findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
        const auto place = [bar](const CDockablePane* candidate) {
            for (int n = 0; n < bar->count(); ++n) {
                if (bar->tabText(n) == candidate->windowTitle()) {
                    return n;
                }
            }
            return -1;
        };
        if (bar->isVisible() && place(&pane) >= 0) {
            std::ranges::stable_sort(panes, {}, place);
        }
    }
    return panes;
}

void CAutoHide::Fold(CDockablePane& pane) {
    const Qt::DockWidgetArea edge = m_frame.dockWidgetArea(&pane);
    if (IsFolded(pane) || pane.isFloating() || pane.isHidden() || edge == Qt::NoDockWidgetArea) {
        return;
    }
    // As thick as it can be kept.
    const int thickness = IsUpright(edge) ? pane.width() : pane.height();
    FoldGroup({edge, std::clamp(thickness, StoredFold::kLeast, StoredFold::kMost), TabsOf(pane)});
}

void CAutoHide::FoldGroup(CFoldedGroup group) {
    const QScopedValueRollback moving(m_bMoving, true);
    const QWidget* focus = QApplication::focusWidget();
    const bool hadFocus =
        std::ranges::any_of(group.m_listPanes, [&](const auto* p) { return p->isAncestorOf(focus); });
    for (CDockablePane* candidate : group.m_listPanes) {
        m_frame.removeDockWidget(candidate);
        candidate->setFeatures(QDockWidget::DockWidgetClosable);
        candidate->setParent(m_pStore);
        candidate->show(); // its store is not: only what the user closed counts as hidden
        candidate->SetPinned(false);
    }
    m_listGroups.push_back(std::move(group));
    m_bars.Show(m_listGroups);
    if (hadFocus) {
        m_frame.ClientArea().setFocus(Qt::OtherFocusReason);
    }
}

void CAutoHide::Dock(const CFoldedGroup& group, CDockablePane& front) {
    const QScopedValueRollback moving(m_bMoving, true);
    CDockablePane* before = nullptr;
    for (CDockablePane* candidate : group.m_listPanes) {
        candidate->setParent(&m_frame);
        candidate->setFeatures(kDocked);
        candidate->unsetCursor();
        candidate->SetPinned(true);
        m_frame.addDockWidget(group.m_nEdge, candidate);
        if (before != nullptr) {
            m_frame.tabifyDockWidget(before, candidate);
        }
        before = candidate;
        candidate->show();
    }
    if (m_frame.isVisible()) {
        m_frame.layout()->activate();
    }
    if (group.m_nThickness > 0) {
        // The toolkit counts the tabs below a pane as part of it.
        int tabs = 0;
        const bool upright = IsUpright(group.m_nEdge);
        for (const QTabBar* bar : m_frame.findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (!upright && group.m_listPanes.size() > 1 && !bar->isHidden()) {
                tabs = std::max(tabs, bar->sizeHint().height());
            }
        }
        m_frame.resizeDocks({&front}, {group.m_nThickness + tabs}, upright ? Qt::Horizontal : Qt::Vertical);
    }
    front.raise();
}

void CAutoHide::Pin(CDockablePane& pane) {
    SlideIn();
    for (std::size_t n = 0; n < m_listGroups.size(); ++n) {
        if (!m_listGroups[n].m_listPanes.contains(&pane)) {
            continue;
        }
        const CFoldedGroup group = m_listGroups[n];
        m_listGroups.erase(m_listGroups.begin() + static_cast<std::ptrdiff_t>(n));
        m_bars.Show(m_listGroups);
        Dock(group, pane);
        pane.MainControl()->setFocus(Qt::OtherFocusReason);
        return;
    }
}

void CAutoHide::PinAll() {
    while (!m_listGroups.empty()) {
        Pin(*m_listGroups.back().m_listPanes.back());
    }
}

void CAutoHide::OnClosed(CDockablePane* candidate) {
    CFoldedGroup* folded = GroupOf(*candidate);
    if (folded == nullptr) {
        return;
    }
    if (m_pOut == candidate) {
        SlideIn();
    }
    const CFoldedGroup alone{folded->m_nEdge, 0, {candidate}};
    folded->m_listPanes.removeOne(candidate);
    std::erase_if(m_listGroups, [](const CFoldedGroup& group) { return group.m_listPanes.isEmpty(); });
    m_bars.Show(m_listGroups);
    Dock(alone, *candidate);
    candidate->hide();
}

void CAutoHide::Place() {
    if (const CFoldedGroup* const group = m_pOut != nullptr ? GroupOf(*m_pOut) : nullptr) {
        m_pSlide->Place(group->m_nThickness);
    }
}

void CAutoHide::SlideOut(CDockablePane& pane, bool hadFocus) {
    const CFoldedGroup* folded = GroupOf(pane);
    if (folded == nullptr) {
        return;
    }
    if (m_pOut != &pane) {
        SlideIn();
        const QScopedValueRollback moving(m_bMoving, true);
        m_pOut = &pane;
        pane.setParent(m_pSlide);
        m_pSlide->SetPane(&pane, folded->m_nEdge);
        pane.show();
        Place();
        m_pSlide->show();
        m_pSlide->raise();
        if (CAutoHideTab* tab = Tab(pane)) {
            tab->update();
        }
    }
    m_nAway = 0;
    m_watch.start();
    if (hadFocus) {
        pane.MainControl()->setFocus(Qt::OtherFocusReason);
    }
}

void CAutoHide::SlideIn() {
    if (m_pOut == nullptr) {
        return;
    }
    const QScopedValueRollback moving(m_bMoving, true);
    m_watch.stop();
    CDockablePane* candidate = m_pOut;
    m_pOut = nullptr; // first: hiding moves the focus
    const QWidget* focus = QApplication::focusWidget();
    if (focus != nullptr && m_pSlide->isAncestorOf(focus)) {
        m_frame.ClientArea().setFocus(Qt::OtherFocusReason);
    }
    m_pSlide->hide();
    m_pSlide->SetPane(nullptr, Qt::BottomDockWidgetArea);
    const bool closed = candidate->isHidden();
    candidate->setParent(m_pStore);
    candidate->setVisible(!closed);
    if (CAutoHideTab* tab = Tab(*candidate)) {
        tab->update();
    }
}

void CAutoHide::OnFocusChanged(QWidget* old, QWidget* now) {
    // Another program in front takes the focus from all: that is no reason.
    if (m_pOut == nullptr || now == nullptr || m_bMoving || m_pSlide->isAncestorOf(now)) {
        return;
    }
    const auto* tab = dynamic_cast<const CAutoHideTab*>(now);
    if (tab != nullptr && &tab->Pane() == m_pOut) {
        return;
    }
    if (old != nullptr && !m_pSlide->isAncestorOf(old) && m_pSlide->underMouse()) {
        return;
    }
    SlideIn();
}

void CAutoHide::OnWatch() {
    const QWidget* focus = QApplication::focusWidget();
    const CAutoHideTab* tab = m_pOut != nullptr ? Tab(*m_pOut) : nullptr;
    const bool stay = (focus != nullptr && m_pSlide->isAncestorOf(focus)) || m_pSlide->underMouse() ||
                      (tab != nullptr && (tab->underMouse() || tab->hasFocus())) ||
                      QApplication::activePopupWidget() != nullptr ||
                      QApplication::mouseButtons() != Qt::NoButton;
    m_nAway = stay ? 0 : m_nAway + 1;
    if (m_nAway >= kWatchesAway) {
        SlideIn();
    }
}

std::vector<StoredFold> CAutoHide::Folds() const {
    std::vector<StoredFold> folds;
    for (const CFoldedGroup& group : m_listGroups) {
        StoredFold& fold = folds.emplace_back(StoredFold{group.m_nEdge, group.m_nThickness, {}});
        for (const CDockablePane* candidate : group.m_listPanes) {
            fold.m_listPanes.push_back(candidate->objectName());
        }
    }
    return folds;
}

void CAutoHide::Restore(const std::vector<StoredFold>& folds) {
    for (const StoredFold& fold : folds) {
        CFoldedGroup group{fold.m_nEdge, fold.m_nThickness, {}};
        for (const QString& name : fold.m_listPanes) {
            for (CDockablePane* candidate : m_frame.Panes()) {
                if (candidate->objectName() == name && !IsFolded(*candidate)) {
                    candidate->setFloating(false);
                    group.m_listPanes << candidate;
                }
            }
        }
        if (!group.m_listPanes.isEmpty()) {
            FoldGroup(group);
        }
    }
}

bool CAutoHide::eventFilter(QObject* object, QEvent* event) {
    if (object == &m_frame && (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)) {
        // After the frame has laid itself out.
        if (m_pOut != nullptr) {
            QMetaObject::invokeMethod(this, &CAutoHide::Place, Qt::QueuedConnection);
        }
    } else if (event->type() == QEvent::HideToParent && !m_bMoving) {
        auto* candidate = qobject_cast<CDockablePane*>(object);
        if (candidate != nullptr && IsFolded(*candidate)) {
            QMetaObject::invokeMethod(
                this, [this, candidate] { OnClosed(candidate); }, Qt::QueuedConnection);
        }
    }
    return QObject::eventFilter(object, event);
}

} // namespace carvelot
