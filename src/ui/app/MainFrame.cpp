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
#include "ui/session/Following.h"

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
    const bool accept = event.possibleActions().testFlag(Qt::CopyAction) &&
                        std::ranges::any_of(event.mimeData()->urls(), &QUrl::isLocalFile);
    if (accept) {
        event.setDropAction(Qt::CopyAction);
    }
    event.setAccepted(accept);
    return accept;
}

} // namespace

CMainFrame* MainFrame() { return s_pMainFrame; }

CMainFrame::CMainFrame() : m_pFollowing(new CFollowing(this)), m_nOffice2007(ID_APPLOOK_OFFICE_2007_BLUE) {
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
    if (s_pMainFrame == this) {
        s_pMainFrame = nullptr;
    }
    CSessionPanes::Leave();
    CMainWindow::Leave();
}

bool CMainFrame::LoadFrame() {
    m_pClientArea = new CTabbedClientArea;
    setCentralWidget(m_pClientArea);
    m_pCommands = std::make_unique<CFrameCommands>(*this);
    AddOwnCommands();
    m_pMenus = std::make_unique<CFrameMenus>(*this);
    m_pToolBars = std::make_unique<CFrameToolBars>(*this);
    m_pStatusBar = new CStatusBar(CCarvelotApp::BitnessText());
    setStatusBar(m_pStatusBar);
    ConnectRequests(*this);
    m_pLayout = std::make_unique<CFrameLayout>(*this);
    // A floating pane is a window of its own, of whose drops this one hears nothing.
    for (CDockablePane* pane : Panes()) {
        pane->setAcceptDrops(true);
        pane->installEventFilter(this);
    }
    OnApplicationLook(theApp().m_nAppLook);
    RestoreState();

    connect(m_pClientArea, &CTabbedClientArea::ActiveChildChanged, this, [this] {
        UpdateTitleAndMenus();
        if (isVisible()) {
            theApp().RegisterRestart();
            TellSetAside(); // a document's window reads settings of its own
        }
    });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* old, QWidget* now) {
        // The title of the pane with the focus is drawn in another colour.
        for (CDockablePane* pane : Panes()) {
            if ((old != nullptr && pane->isAncestorOf(old)) || (now != nullptr && pane->isAncestorOf(now))) {
                pane->update();
            }
        }
        m_pCommands->ScheduleUpdate();
    });
    UpdateTitleAndMenus();
    m_wndProcessPane.RefreshProcessList();
    return true;
}

void CMainFrame::AddOwnCommands() {
    for (int id = ID_APPLOOK_FIRST; id <= ID_APPLOOK_LAST; ++id) {
        AddCommand(
            id, [this, id] { OnApplicationLook(id); }, {}, [id] { return id == theApp().m_nAppLook; });
    }
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
    const auto onKey = [this](const char* key, auto run) {
        connect(new QShortcut(QKeySequence(QLatin1String(key)), this), &QShortcut::activated, this, run);
    };
    onKey("Ctrl+Tab", [this] { m_pClientArea->ActivateNext(true); });
    onKey("Ctrl+Shift+Tab", [this] { m_pClientArea->ActivateNext(false); });
    onKey("Ctrl+F4", [this] { RunCommand(ID_FILE_CLOSE); });
    onKey("Ctrl+F", [this] { OnSearch(); });
    onKey("F3", [this] { m_wndFindPane.OpenNextHit(true); });
    onKey("Shift+F3", [this] { m_wndFindPane.OpenNextHit(false); });
}

QList<CDockablePane*> CMainFrame::Panes() {
    return {&m_wndProcessPane, &m_wndSQLPane,   &m_wndTimingGapsPane, &m_wndFindPane, &m_wndLongTasksPane,
            &m_wndRawDataPane, &m_wndCachePane, &m_wndErrorPane,      &m_wndBSFNPane};
}

CAutoHide& CMainFrame::AutoHide() const { return m_pLayout->AutoHide(); }

QAction* CMainFrame::CommandAction(int id) const { return m_pCommands->Action(id); }

bool CMainFrame::RunCommand(int id) { return m_pCommands->Run(id); }

void CMainFrame::UpdateCommands() { m_pCommands->Update(); }

void CMainFrame::ShowEditMenu(const QPoint& screen) { m_pMenus->ShowEditMenu(screen); }

void CMainFrame::ShowProgress(int percent) { m_pStatusBar->ShowProgress(percent); }

void CMainFrame::TellSetAside() {
    if (const std::string text = TakeSetAsideText(); !text.empty()) {
        m_pStatusBar->Say(PathToQString(text));
    }
}

void CMainFrame::ShowRange(const QString& text) { m_pStatusBar->ShowRange(text); }

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
    const CMDIChildWnd* child = ActiveChild();
    const CDocument* document = child != nullptr ? child->GetActiveDocument() : nullptr;
    if (document == nullptr || document->GetDocTemplate() == nullptr) {
        return EMenuState::NoWindow;
    }
    return document->GetDocTemplate()->MenuState();
}

void CMainFrame::UpdateTitleAndMenus() {
    const CMDIChildWnd* child = ActiveChild();
    setWindowTitle(child != nullptr && !child->windowTitle().isEmpty()
                       ? PlainTitle(child->windowTitle()) + QStringLiteral(" - Carvelot")
                       : QStringLiteral("Carvelot"));
    m_pMenus->ShowMenusOf(MenuState());
    UpdateCommands();
}

void CMainFrame::OnApplicationLook(int id) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    theApp().m_nAppLook = id;
    setUpdatesEnabled(false);
    ApplyLook(LookOf(id, m_nOffice2007));
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
    auto* menu = new QMenu(this);
    m_pMenus->FillBarsAndPanes(*menu);
    return menu;
}

void CMainFrame::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    m_pLayout->OnShown();
}

void CMainFrame::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (m_pLayout != nullptr) {
        m_pLayout->OnResized();
    }
}

void CMainFrame::closeEvent(QCloseEvent* event) {
    m_pLayout->ShowFloatingPanes(); // else they would be kept as closed
    SaveState();
    if (m_pCustomizeDlg != nullptr) {
        m_pCustomizeDlg->close();
    }
    theApp().CloseAllDocuments();
    event->accept();
    QCoreApplication::quit();
}

bool CMainFrame::eventFilter(QObject* object, QEvent* event) {
    switch (event->type()) {
    case QEvent::DragEnter:
        dragEnterEvent(static_cast<QDragEnterEvent*>(event));
        return true;
    case QEvent::DragMove:
        dragMoveEvent(static_cast<QDragMoveEvent*>(event));
        return true;
    case QEvent::Drop:
        dropEvent(static_cast<QDropEvent*>(event));
        return true;
    default:
        return CMainWindow::eventFilter(object, event);
    }
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event) { AcceptAsCopy(*event); }

void CMainFrame::dragMoveEvent(QDragMoveEvent* event) { AcceptAsCopy(*event); }

void CMainFrame::dropEvent(QDropEvent* event) {
    if (!AcceptAsCopy(*event)) {
        return;
    }
    QStringList paths;
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile()) {
            paths << PathOfUrl(url);
        }
    }
    // The program that the file comes from waits until the drop is done: open afterwards.
    QMetaObject::invokeMethod(
        this, [paths] { theApp().OpenDocumentFiles(paths); }, Qt::QueuedConnection);
}

} // namespace carvelot
