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
    CDockablePane* pFirst = nullptr;
    for (CDockablePane* pPane : m_frame.Panes()) {
        pPane->setFloating(false);
        m_frame.addDockWidget(Qt::BottomDockWidgetArea, pPane);
        if (pFirst != nullptr)
            m_frame.tabifyDockWidget(pFirst, pPane);
        pFirst = pPane;
        pPane->show();
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
    for (CDockablePane* pPane : m_frame.Panes()) {
        pPane->setFloating(false);
        m_frame.removeDockWidget(pPane);
    }
    DockPanes();
    m_frame.resizeDocks({&m_frame.m_wndBSFNPane}, {240}, Qt::Vertical);
}

void CFrameLayout::Restore() {
    const QByteArray geometry = Unseal(GetWorkspaceString("Geometry", ""));
    if (geometry.isEmpty() || !m_frame.restoreGeometry(geometry)) {
        const QSize available = m_frame.screen()->availableSize();
        m_frame.resize(QSize(1240, 800).boundedTo(available * 0.9));
    }
    m_layout = Unseal(GetWorkspaceString("Layout", ""));
    if (ApplyLayout()) {
        m_bRaiseBSFN = false;
        m_pAutoHide->Restore(ReadFolds(GetWorkspaceString("AutoHide", "")));
    } else {
        m_frame.RestoreDefaultLayout();
    }
    connect(&m_frame, &QMainWindow::tabifiedDockWidgetActivated, this, &CFrameLayout::OnTabActivated);
}

// Before the window shows, a layout says which panes are closed, float or are folded away; sizes of groups
// and front tabs take effect in a window of its final size only, so that the layout is applied again then.
bool CFrameLayout::ApplyLayout() {
    for (CDockablePane* pPane : m_frame.Panes())
        pPane->setAttribute(Qt::WA_DontShowOnScreen);
    const bool bApplied = !m_layout.isEmpty() && m_frame.restoreState(m_layout, kLayoutVersion);
    // A floating pane that is on the screen before this window is no companion of it for the window manager
    // and would vanish behind it.
    for (CDockablePane* pPane : m_frame.Panes()) {
        if (pPane->isFloating() && !pPane->isHidden()) {
            pPane->hide();
            m_listFloatLater << pPane;
        }
        pPane->setAttribute(Qt::WA_DontShowOnScreen, false);
    }
    if (m_frame.isVisible() && !m_listFloatLater.isEmpty())
        QMetaObject::invokeMethod(this, &CFrameLayout::ShowFloatingPanes, Qt::QueuedConnection);
    return bApplied;
}

void CFrameLayout::Save() const {
    WriteWorkspaceString("Geometry", Seal(m_frame.saveGeometry()));
    WriteWorkspaceString("Layout", Seal(m_frame.saveState(kLayoutVersion)));
    WriteWorkspaceString("AutoHide", WriteFolds(m_pAutoHide->Folds()));
}

void CFrameLayout::OnShown() {
    if (std::exchange(m_bRaiseBSFN, false))
        m_frame.m_wndBSFNPane.raise();
    if (m_layout.isEmpty())
        return;
    ApplyLayout();
    // The system enlarges the window after it has shown it.
    if (m_frame.isMaximized() || m_frame.isFullScreen())
        QTimer::singleShot(kEnlarged, this, [this] { m_layout.clear(); });
    else
        m_layout.clear();
}

void CFrameLayout::OnResized() {
    if (m_frame.isVisible() && !m_layout.isEmpty())
        ApplyLayout();
}

void CFrameLayout::ShowFloatingPanes() {
    for (CDockablePane* pPane : std::exchange(m_listFloatLater, {}))
        pPane->show();
}

// Whoever clicks on a pane's tab, or has the focus in the pane that it covers, goes on in that pane.
void CFrameLayout::OnTabActivated(QDockWidget* pDock) {
    auto* pPane = qobject_cast<CDockablePane*>(pDock);
    if (pPane != nullptr &&
        (QApplication::mouseButtons().testFlag(Qt::LeftButton) || QApplication::focusWidget() == &m_frame))
        pPane->MainControl()->setFocus(Qt::MouseFocusReason);
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

void CFrameLayout::NextPane(bool bForward) {
    QList<QWidget*> listPanes;
    if (const CMDIChildWnd* pChild = m_frame.ActiveChild())
        listPanes = pChild->WindowPanes();
    for (CDockablePane* pPane : m_frame.Panes()) {
        if (pPane->IsInFront())
            listPanes << pPane->MainControl();
    }
    listPanes += m_pAutoHide->Bars().Strips();
    if (listPanes.isEmpty())
        return;
    const QWidget* pFocus = QApplication::focusWidget();
    qsizetype nNow = -1;
    for (qsizetype n = 0; n < listPanes.size(); ++n) {
        const QWidget* pAround = listPanes[n];
        for (const CDockablePane* pPane : m_frame.Panes()) {
            if (pPane->isAncestorOf(listPanes[n]))
                pAround = pPane;
        }
        if (pFocus != nullptr && (pAround == pFocus || pAround->isAncestorOf(pFocus)))
            nNow = n;
    }
    qsizetype nNext = nNow + (bForward ? 1 : -1);
    if (nNow < 0 || nNext >= listPanes.size())
        nNext = nNow < 0 && !bForward ? listPanes.size() - 1 : 0;
    if (nNext < 0)
        nNext = listPanes.size() - 1;
    listPanes[nNext]->window()->activateWindow();
    listPanes[nNext]->setFocus(bForward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

} // namespace carvelot
