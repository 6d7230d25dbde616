#include "ui/app/MainFrame.h"

#include "settings/AppSettings.h"
#include "ui/app/CarvelotApp.h"
#include "ui/app/CustomizeDlg.h"
#include "ui/app/FrameCommands.h"
#include "ui/app/FrameLayout.h"
#include "ui/app/FrameMenus.h"
#include "ui/app/FrameToolBars.h"
#include "ui/app/Requests.h"
#include "ui/app/StatusBar.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/Icons.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/PathText.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/TabbedClientArea.h"
#include "ui/kit/UserInterface.h"
#include "ui/kit/WindowsDlg.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMimeData>
#include <QShortcut>
#include <QUrl>

#include <algorithm>

namespace carvelot {

namespace {

CMainFrame* s_pMainFrame = nullptr;

// Takes files as copies of their paths and nothing else: whoever hears that they were moved may delete them.
bool AcceptAsCopy(QDropEvent& event) {
    const bool bAccept = event.possibleActions().testFlag(Qt::CopyAction) &&
                         std::ranges::any_of(event.mimeData()->urls(), &QUrl::isLocalFile);
    if (bAccept)
        event.setDropAction(Qt::CopyAction);
    event.setAccepted(bAccept);
    return bAccept;
}

} // namespace

CMainFrame* MainFrame() { return s_pMainFrame; }

CMainFrame::CMainFrame() : m_nOffice2007(ID_APPLOOK_OFFICE_2007_BLUE) {
    s_pMainFrame = this;
    theApp().LoadApplicationLook();
    setObjectName(QStringLiteral("MainFrame"));
    setWindowIcon(ApplicationIcon());
    setAcceptDrops(true);
    setDockOptions(AnimatedDocks | AllowNestedDocks | AllowTabbedDocks);
    setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::South);
    setCorner(Qt::BottomLeftCorner, Qt::BottomDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::BottomDockWidgetArea);
}

CMainFrame::~CMainFrame() {
    qApp->disconnect(this);
    // The documents' windows look at panes and commands of this window: they go first.
    theApp().CloseAllDocuments();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_pLayout.reset(); // before the panes that it looks after
    if (s_pMainFrame == this)
        s_pMainFrame = nullptr;
    CSessionPanes::Leave();
    CMainWindow::Leave();
}

bool CMainFrame::LoadFrame() {
    ConnectRequests(*this);
    m_pClientArea = new CTabbedClientArea;
    setCentralWidget(m_pClientArea);
    m_pCommands = std::make_unique<CFrameCommands>(*this);
    AddOwnCommands();
    m_pMenus = std::make_unique<CFrameMenus>(*this);
    m_pToolBars = std::make_unique<CFrameToolBars>(*this);
    m_pStatusBar = new CStatusBar(CCarvelotApp::BitnessText());
    setStatusBar(m_pStatusBar);
    m_pLayout = std::make_unique<CFrameLayout>(*this);
    OnApplicationLook(theApp().m_nAppLook);
    RestoreState();

    connect(m_pClientArea, &CTabbedClientArea::ActiveChildChanged, this, [this] {
        UpdateTitleAndMenus();
        if (isVisible())
            theApp().RegisterRestart();
    });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* pOld, QWidget* pNow) {
        // The title of the pane with the focus is drawn in another colour.
        for (CDockablePane* pPane : Panes()) {
            if ((pOld != nullptr && pPane->isAncestorOf(pOld)) ||
                (pNow != nullptr && pPane->isAncestorOf(pNow)))
                pPane->update();
        }
        m_pCommands->ScheduleUpdate();
    });
    UpdateTitleAndMenus();
    m_wndProcessPane.RefreshProcessList();
    return true;
}

void CMainFrame::AddOwnCommands() {
    for (int nId = ID_APPLOOK_FIRST; nId <= ID_APPLOOK_LAST; ++nId)
        AddCommand(
            nId, [this, nId] { OnApplicationLook(nId); }, {}, [nId] { return nId == theApp().m_nAppLook; });
    AddCommand(ID_APP_EXIT, [this] { close(); });
    AddCommand(
        ID_FILE_CLOSE, [this] { ActiveChild()->CloseWindow(); }, [this] { return ActiveChild() != nullptr; });
    AddCommand(
        ID_VIEW_STATUS_BAR, [this] { m_pStatusBar->setVisible(m_pStatusBar->isHidden()); }, {},
        [this] { return !m_pStatusBar->isHidden(); });
    AddCommand(ID_VIEW_CUSTOMIZE, [this] { OnCustomize(); });
    AddCommand(
        ID_WINDOW_CLOSE_ALL, [this] { OnCloseAll(); }, [this] { return ActiveChild() != nullptr; });
    AddCommand(
        ID_WINDOW_WINDOWS, [this] { OnWindows(); }, [this] { return ActiveChild() != nullptr; });
    AddCommand(
        ID_WINDOW_NEW_HORIZONTAL_GROUP, [this] { m_pClientArea->MakeGroup(Qt::Horizontal); },
        [this] { return m_pClientArea->CanMakeGroup(Qt::Horizontal); });
    AddCommand(
        ID_WINDOW_NEW_VERTICAL_GROUP, [this] { m_pClientArea->MakeGroup(Qt::Vertical); },
        [this] { return m_pClientArea->CanMakeGroup(Qt::Vertical); });

    // Keys of tabbed windows that have no menu entry.
    const auto fnKey = [this](const char* pszKey, auto fnRun) {
        connect(new QShortcut(QKeySequence(QLatin1String(pszKey)), this), &QShortcut::activated, this, fnRun);
    };
    fnKey("Ctrl+Tab", [this] { m_pClientArea->ActivateNext(true); });
    fnKey("Ctrl+Shift+Tab", [this] { m_pClientArea->ActivateNext(false); });
    fnKey("Ctrl+F4", [this] { RunCommand(ID_FILE_CLOSE); });
    fnKey("Ctrl+F", [this] { OnSearch(); });
    fnKey("F3", [this] { m_wndFindPane.OpenNextHit(true); });
    fnKey("Shift+F3", [this] { m_wndFindPane.OpenNextHit(false); });
}

QList<CDockablePane*> CMainFrame::Panes() {
    return {&m_wndProcessPane, &m_wndSQLPane,   &m_wndTimingGapsPane, &m_wndFindPane, &m_wndLongTasksPane,
            &m_wndRawDataPane, &m_wndCachePane, &m_wndErrorPane,      &m_wndBSFNPane};
}

CAutoHide& CMainFrame::AutoHide() const { return m_pLayout->AutoHide(); }

QAction* CMainFrame::CommandAction(int nId) const { return m_pCommands->Action(nId); }

bool CMainFrame::RunCommand(int nId) { return m_pCommands->Run(nId); }

void CMainFrame::UpdateCommands() { m_pCommands->Update(); }

void CMainFrame::ShowEditMenu(const QPoint& screen) { m_pMenus->ShowEditMenu(screen); }

void CMainFrame::ShowProgress(int nPercent) { m_pStatusBar->ShowProgress(nPercent); }

CMenuHabits& CMainFrame::MenuHabits() { return m_pMenus->Habits(); }

void CMainFrame::RestoreDefaultLayout() {
    m_pLayout->RestoreDefault();
    m_pToolBars->RestoreDefault();
    m_pStatusBar->show();
    UpdateCommands();
}

void CMainFrame::RestoreState() {
    m_pToolBars->Load();
    m_pLayout->Restore();
    m_pStatusBar->setVisible(GetWorkspaceInt("StatusBar", 1) != 0);
    m_pToolBars->SetShowsToolTips(GetWorkspaceInt("ToolTips", 1) != 0);
}

void CMainFrame::SaveState() const {
    m_pLayout->Save();
    WriteWorkspaceInt("StatusBar", m_pStatusBar->isHidden() ? 0 : 1);
    m_pToolBars->Save();
    m_pMenus->Habits().Save();
}

CMDIChildWnd* CMainFrame::ActiveChild() const { return m_pClientArea->ActiveChild(); }

EMenuState CMainFrame::MenuState() const {
    const CMDIChildWnd* pChild = ActiveChild();
    const CDocument* pDocument = pChild != nullptr ? pChild->GetActiveDocument() : nullptr;
    if (pDocument == nullptr || pDocument->GetDocTemplate() == nullptr)
        return EMenuState::NoWindow;
    return pDocument->GetDocTemplate()->MenuState();
}

void CMainFrame::UpdateTitleAndMenus() {
    const CMDIChildWnd* pChild = ActiveChild();
    setWindowTitle(pChild != nullptr && !pChild->windowTitle().isEmpty()
                       ? PlainTitle(pChild->windowTitle()) + QStringLiteral(" - Carvelot")
                       : QStringLiteral("Carvelot"));
    m_pMenus->ShowMenusOf(MenuState());
    UpdateCommands();
}

void CMainFrame::OnApplicationLook(int nId) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    theApp().m_nAppLook = nId;
    setUpdatesEnabled(false);
    ApplyLook(LookOf(nId, m_nOffice2007));
    setUpdatesEnabled(true);
    theApp().SaveApplicationLook();
    UpdateCommands();
    QApplication::restoreOverrideCursor();
}

void CMainFrame::OnCloseAll() {
    theApp().CloseAllDocuments();
    ClearPanes();
    // On the way the sessions that were still open have come to the front.
    m_wndFindPane.DressForRows();
}

void CMainFrame::OnWindows() {
    CWindowsDlg dialog(*m_pClientArea);
    UserInterface().RunDialog(dialog);
}

void CMainFrame::OnCustomize() {
    if (m_pCustomizeDlg == nullptr) {
        m_pCustomizeDlg = new CCustomizeDlg(*this);
        m_pCustomizeDlg->setAttribute(Qt::WA_DeleteOnClose);
        connect(m_pCustomizeDlg, &QObject::destroyed, this, [this] { m_pCustomizeDlg = nullptr; });
    }
    m_pCustomizeDlg->show();
    m_pCustomizeDlg->raise();
    m_pCustomizeDlg->activateWindow();
}

void CMainFrame::OnSearch() {
    m_pLayout->ShowPane(m_wndFindPane);
    m_wndFindPane.SearchEdit().selectAll();
}

QMenu* CMainFrame::createPopupMenu() {
    auto* pMenu = new QMenu(this);
    m_pMenus->FillBarsAndPanes(*pMenu);
    return pMenu;
}

void CMainFrame::showEvent(QShowEvent* pEvent) {
    QMainWindow::showEvent(pEvent);
    m_pLayout->OnShown();
}

void CMainFrame::resizeEvent(QResizeEvent* pEvent) {
    QMainWindow::resizeEvent(pEvent);
    if (m_pLayout != nullptr) {
        m_pLayout->OnResized();
    }
}

void CMainFrame::closeEvent(QCloseEvent* pEvent) {
    m_pLayout->ShowFloatingPanes(); // else they would be kept as closed
    SaveState();
    if (m_pCustomizeDlg != nullptr)
        m_pCustomizeDlg->close();
    theApp().CloseAllDocuments();
    pEvent->accept();
    QCoreApplication::quit();
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* pEvent) { AcceptAsCopy(*pEvent); }

void CMainFrame::dragMoveEvent(QDragMoveEvent* pEvent) { AcceptAsCopy(*pEvent); }

void CMainFrame::dropEvent(QDropEvent* pEvent) {
    if (!AcceptAsCopy(*pEvent))
        return;
    QStringList listPaths;
    for (const QUrl& url : pEvent->mimeData()->urls()) {
        if (url.isLocalFile())
            listPaths << PathOfUrl(url);
    }
    // The program that the file comes from waits until the drop is done: open afterwards.
    QMetaObject::invokeMethod(
        this,
        [listPaths] {
            for (const QString& strPath : listPaths)
                theApp().OpenDocumentFile(strPath);
        },
        Qt::QueuedConnection);
}

} // namespace carvelot
