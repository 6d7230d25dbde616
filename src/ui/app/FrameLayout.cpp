#include "ui/app/FrameLayout.h"

#include "settings/AppSettings.h"
#include "settings/Commands.h"
#include "ui/app/MainFrame.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/PaneTabs.h"
#include "ui/kit/StoredLayout.h"

#include <QApplication>
#include <QLayout>
#include <QScreen>
#include <QTimer>

#include <utility>

namespace carvelot {

namespace {

// How long a maximized window may take to its size, in milliseconds.
constexpr int kEnlarged = 1000;

} // namespace

CFrameLayout::CFrameLayout(CMainFrame& frame)
    : m_frame(frame), m_pAutoHide(std::make_unique<CAutoHide>(frame)) {
    new CPaneTabs(frame);
    frame.AddCommand(ID_VIEW_RESTORE_LAYOUT, [this] { m_frame.RestoreDefaultLayout(); });
    frame.AddCommand(ID_WINDOW_NEXT_PANE, [this] { NextPane(true); });
    frame.AddCommand(ID_WINDOW_PREV_PANE, [this] { NextPane(false); });
    DockPanes();
}

CFrameLayout::~CFrameLayout() = default;

void CFrameLayout::DockPanes() {
    CDockablePane* first = nullptr;
    for (CDockablePane* pane : m_frame.Panes()) {
        pane->setFloating(false);
        m_frame.addDockWidget(Qt::BottomDockWidgetArea, pane);
        if (first != nullptr) {
            m_frame.tabifyDockWidget(first, pane);
        }
        first = pane;
        pane->show();
    }
    if (m_frame.isVisible()) {
        m_frame.layout()->activate();
        m_frame.m_wndBSFNPane.raise();
    } else {
        m_bRaiseBSFN = true; // tabs come into being with the window
    }
}

void CFrameLayout::RestoreDefault() {
    m_layout.clear();
    m_pAutoHide->PinAll();
    for (CDockablePane* pane : m_frame.Panes()) {
        pane->setFloating(false);
        m_frame.removeDockWidget(pane);
    }
    DockPanes();
    m_frame.resizeDocks({&m_frame.m_wndBSFNPane}, {240}, Qt::Vertical);
}

void CFrameLayout::Restore() {
    // What does not become the window's is kept aside: the next end of the program writes over it.
    const auto setAside = [](const char* name) {
        if (!GetWorkspaceString(name, "").empty()) {
            SetAsideWorkspaceValue(name);
        }
    };
    const QByteArray geometry = Unseal(GetWorkspaceString("Geometry", ""));
    if (geometry.isEmpty() || !m_frame.restoreGeometry(geometry)) {
        setAside("Geometry");
        const QSize available = m_frame.screen()->availableSize();
        m_frame.resize(QSize(1240, 800).boundedTo(available * 0.9));
    }
    m_size = m_frame.size();
    m_layout = Unseal(GetWorkspaceString("Layout", ""));
    m_listUnplaced = m_frame.Panes();
    if (ApplyLayout()) {
        m_bRaiseBSFN = false;
        m_pAutoHide->Restore(ReadWorkspace("AutoHide", ReadFolds, WriteFolds));
        TakeSize();
    } else {
        setAside("Layout");
        setAside("AutoHide");
        m_frame.RestoreDefaultLayout();
    }
    connect(&m_frame, &QMainWindow::tabifiedDockWidgetActivated, this, &CFrameLayout::OnTabActivated);
}

// Before the window shows, a layout says which panes are closed, float or are folded away; sizes of groups
// and front tabs take effect in a window of its final size only, so that the layout is applied again then.
bool CFrameLayout::ApplyLayout() {
    for (CDockablePane* pane : m_frame.Panes()) {
        pane->setAttribute(Qt::WA_DontShowOnScreen);
    }
    // The toolkit leaves a pane that the layout does not know, of an older version for instance, beside
    // others or on top of them.
    m_listUnplaced.removeIf([this](CDockablePane* pane) { return m_pAutoHide->IsFolded(*pane); });
    for (CDockablePane* pane : m_listUnplaced) {
        m_frame.removeDockWidget(pane);
    }
    const bool applied = !m_layout.isEmpty() && m_frame.restoreState(m_layout, kLayoutVersion);
    if (applied) {
        DockUnplaced();
    }
    // A floating pane that is on the screen before this window is no companion of it for the window manager
    // and would vanish behind it.
    for (CDockablePane* pane : m_frame.Panes()) {
        if (pane->isFloating() && !pane->isHidden()) {
            pane->hide();
            m_listFloatLater << pane;
        }
        pane->setAttribute(Qt::WA_DontShowOnScreen, false);
    }
    if (m_frame.isVisible() && !m_listFloatLater.isEmpty()) {
        QMetaObject::invokeMethod(this, &CFrameLayout::ShowFloatingPanes, Qt::QueuedConnection);
    }
    return applied;
}

// As a tab of the group at the bottom, without coming to its front, or as that group.
void CFrameLayout::DockUnplaced() {
    m_listUnplaced.removeIf([this](CDockablePane* pane) {
        return pane->isFloating() || m_frame.dockWidgetArea(pane) != Qt::NoDockWidgetArea;
    });
    CDockablePane* group = nullptr;
    for (CDockablePane* pane : m_frame.Panes()) {
        const bool docked = !m_listUnplaced.contains(pane) && !pane->isFloating() && !pane->isHidden() &&
                            m_frame.dockWidgetArea(pane) == Qt::BottomDockWidgetArea;
        if (docked && (group == nullptr || pane->IsInFront())) {
            group = pane;
        }
    }
    const bool isNew = group == nullptr;
    for (CDockablePane* pane : m_listUnplaced) {
        m_frame.addDockWidget(Qt::BottomDockWidgetArea, pane);
        if (group != nullptr) {
            m_frame.tabifyDockWidget(group, pane);
        } else {
            group = pane;
        }
        pane->show();
    }
    if (!m_listUnplaced.isEmpty() && m_frame.isVisible()) {
        m_frame.layout()->activate();
        (isNew && m_listUnplaced.contains(&m_frame.m_wndBSFNPane) ? &m_frame.m_wndBSFNPane : group)->raise();
    }
}

void CFrameLayout::Save() const {
    WriteWorkspaceString("Geometry", Seal(m_frame.saveGeometry()));
    WriteWorkspaceString("Layout", Seal(m_frame.saveState(kLayoutVersion)));
    WriteWorkspaceString("AutoHide", WriteFolds(m_pAutoHide->Folds()));
}

void CFrameLayout::OnShown() {
    if (std::exchange(m_bRaiseBSFN, false)) {
        m_frame.m_wndBSFNPane.raise();
    }
    if (m_layout.isEmpty()) {
        return;
    }
    ApplyLayout();
    // The system enlarges the window after it has shown it.
    if (m_frame.isMaximized() || m_frame.isFullScreen()) {
        QTimer::singleShot(kEnlarged, this, [this] { m_layout.clear(); });
    } else {
        TakeSize();
        m_layout.clear();
    }
}

// A layout enlarges the window for panes that are folded away behind it, and for tool bars of which it does
// not yet know that they are hidden.
void CFrameLayout::TakeSize() {
    m_frame.layout()->activate();
    m_frame.resize(m_size);
}

void CFrameLayout::OnResized() {
    if (m_frame.isVisible() && !m_layout.isEmpty()) {
        ApplyLayout();
    }
}

void CFrameLayout::ShowFloatingPanes() {
    for (CDockablePane* pane : std::exchange(m_listFloatLater, {})) {
        pane->show();
    }
}

// Whoever clicks on a pane's tab, or has the focus in the pane that it covers, goes on in that pane.
void CFrameLayout::OnTabActivated(QDockWidget* dock) {
    auto* pane = qobject_cast<CDockablePane*>(dock);
    if (pane != nullptr &&
        (QApplication::mouseButtons().testFlag(Qt::LeftButton) || QApplication::focusWidget() == &m_frame)) {
        pane->MainControl()->setFocus(Qt::MouseFocusReason);
    }
}

void CFrameLayout::ShowPane(CDockablePane& pane) {
    if (m_pAutoHide->IsFolded(pane)) {
        m_pAutoHide->SlideOut(pane, true);
        return;
    }
    pane.show();
    pane.raise();
    pane.window()->activateWindow();
    pane.MainControl()->setFocus(Qt::OtherFocusReason);
}

void CFrameLayout::NextPane(bool forward) {
    QList<QWidget*> panes;
    if (const CMDIChildWnd* child = m_frame.ActiveChild()) {
        panes = child->WindowPanes();
    }
    for (CDockablePane* pane : m_frame.Panes()) {
        if (pane->IsInFront()) {
            panes << pane->MainControl();
        }
    }
    panes += m_pAutoHide->Bars().Strips();
    if (panes.isEmpty()) {
        return;
    }
    const QWidget* focus = QApplication::focusWidget();
    qsizetype now = -1;
    for (qsizetype n = 0; n < panes.size(); ++n) {
        const QWidget* around = panes[n];
        for (const CDockablePane* pane : m_frame.Panes()) {
            if (pane->isAncestorOf(panes[n])) {
                around = pane;
            }
        }
        if (focus != nullptr && (around == focus || around->isAncestorOf(focus))) {
            now = n;
        }
    }
    qsizetype next = now + (forward ? 1 : -1);
    if (now < 0 || next >= panes.size()) {
        next = now < 0 && !forward ? panes.size() - 1 : 0;
    }
    if (next < 0) {
        next = panes.size() - 1;
    }
    panes[next]->window()->activateWindow();
    panes[next]->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

} // namespace carvelot
