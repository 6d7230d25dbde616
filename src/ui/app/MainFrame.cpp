#include "ui/app/MainFrame.h"
#include "ui/app/Requests.h"

#include "settings/AppSettings.h"
#include "ui/app/CarvelotApp.h"
#include "ui/app/CustomizeDlg.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/Document.h"
#include "ui/kit/Icons.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/PaneTabs.h"
#include "ui/kit/PathText.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/StoredLayout.h"
#include "ui/kit/TabbedClientArea.h"
#include "ui/kit/Text.h"
#include "ui/kit/ToolBar.h"
#include "ui/kit/UserInterface.h"
#include "ui/kit/WindowsDlg.h"

#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QLayout>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace carvelot {

namespace {

// How long a maximized window may take to its size, in milliseconds.
constexpr int kEnlarged = 1000;

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

bool CToolBarImages::Load(const QString& strPath) {
    constexpr qint64 kMaximum = 819200;
    const QFileInfo info(strPath);
    if (!info.isFile() || info.size() > kMaximum)
        return false;
    QImage strip;
    if (!strip.load(strPath, "BMP") || strip.height() < 16 || strip.width() < 16)
        return false;
    strip = strip.convertToFormat(QImage::Format_ARGB32);
    // Button grey is the background of such strips.
    for (int nY = 0; nY < strip.height(); ++nY) {
        auto* pLine = reinterpret_cast<QRgb*>(strip.scanLine(nY));
        for (int nX = 0; nX < strip.width(); ++nX) {
            if (pLine[nX] == qRgb(192, 192, 192))
                pLine[nX] = qRgba(0, 0, 0, 0);
        }
    }
    for (int nX = 0; nX + 16 <= strip.width(); nX += 16)
        m_listImages << QIcon(QPixmap::fromImage(strip.copy(nX, 0, 16, 16)));
    return true;
}

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
    m_habits.Load();
}

CMainFrame::~CMainFrame() {
    qApp->disconnect(this);
    // The documents' windows look at panes and commands of this window: they go first.
    theApp().CloseAllDocuments();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete m_pAutoHide; // before the panes that it looks after
    if (s_pMainFrame == this)
        s_pMainFrame = nullptr;
    CSessionPanes::Leave();
    CMainWindow::Leave();
}

bool CMainFrame::LoadFrame() {
    ConnectRequests(*this);
    m_pClientArea = new CTabbedClientArea;
    setCentralWidget(m_pClientArea);
    MakeCommands();
    MakeMenus();
    MakeToolBars();
    MakeStatusBar();
    m_pAutoHide = new CAutoHide(*this);
    new CPaneTabs(*this);
    DockPanes();
    OnApplicationLook(theApp().m_nAppLook);
    m_userImages.Load(QStringLiteral("./UserImages.bmp"));
    RestoreState();

    connect(this, &QMainWindow::tabifiedDockWidgetActivated, this, &CMainFrame::OnTabActivated);
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
        ScheduleUpdate();
    });
    UpdateTitleAndMenus();
    m_wndProcessPane.RefreshProcessList();
    return true;
}

void CMainFrame::MakeCommands() {
    m_pLookGroup = new QActionGroup(this);
    m_pLookGroup->setExclusionPolicy(QActionGroup::ExclusionPolicy::None);
    for (const CCommandInfo& command : AllCommands()) {
        auto* pAction = new QAction(CommandIcon(command.m_nId), ToQString(command.m_strText), this);
        pAction->setData(command.m_nId);
        pAction->setStatusTip(ToQString(StatusTip(command)));
        pAction->setToolTip(
            ToQString(command.m_strTip.empty() ? command.m_strText : ToolTip(command)).remove(u'&'));
        if (!command.m_strShortcut.empty()) {
            pAction->setShortcut(QKeySequence(ToQString(command.m_strShortcut), QKeySequence::PortableText));
            if (command.m_bShortcutShownOnly)
                pAction->setShortcutContext(Qt::WidgetShortcut);
        }
        const bool bLook = command.m_nId >= ID_APPLOOK_FIRST && command.m_nId <= ID_APPLOOK_LAST;
        pAction->setCheckable(bLook || command.m_nId == ID_VIEW_STATUS_BAR ||
                              command.m_nId == ID_VIEW_TOOLBAR);
        if (bLook)
            m_pLookGroup->addAction(pAction);
        connect(pAction, &QAction::triggered, this, [this, nId = command.m_nId] { RunCommand(nId); });
        m_mapActions[command.m_nId] = pAction;
        addAction(pAction); // its key works whatever menus show
    }

    for (int nId = ID_APPLOOK_FIRST; nId <= ID_APPLOOK_LAST; ++nId)
        AddCommand(nId, [this, nId] { OnApplicationLook(nId); });
    AddCommand(ID_APP_EXIT, [this] { close(); });
    AddCommand(
        ID_FILE_CLOSE, [this] { ActiveChild()->CloseWindow(); }, [this] { return ActiveChild() != nullptr; });
    AddCommand(ID_VIEW_STATUS_BAR, [this] { statusBar()->setVisible(statusBar()->isHidden()); });
    AddCommand(ID_VIEW_TOOLBAR, [this] { m_pToolBar->setVisible(m_pToolBar->isHidden()); });
    AddCommand(ID_VIEW_CUSTOMIZE, [this] { OnCustomize(); });
    AddCommand(ID_VIEW_RESTORE_LAYOUT, [this] { RestoreDefaultLayout(); });
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
    AddCommand(ID_WINDOW_NEXT_PANE, [this] { NextPane(true); });
    AddCommand(ID_WINDOW_PREV_PANE, [this] { NextPane(false); });

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

    // Edit commands go to the edit control with the focus.
    const auto fnCall = [this](const char* pszMethod) {
        if (QWidget* pEdit = EditWithFocus())
            QMetaObject::invokeMethod(pEdit, pszMethod);
    };
    const auto fnSelected = [this] {
        QWidget* pEdit = EditWithFocus();
        if (const auto* pLine = qobject_cast<QLineEdit*>(pEdit))
            return pLine->hasSelectedText();
        const auto* pText = qobject_cast<QPlainTextEdit*>(pEdit);
        return pText != nullptr && pText->textCursor().hasSelection();
    };
    const auto fnWritable = [this] {
        QWidget* pEdit = EditWithFocus();
        return pEdit != nullptr && !pEdit->property("readOnly").toBool();
    };
    AddCommand(
        ID_EDIT_COPY, [fnCall] { fnCall("copy"); }, fnSelected);
    AddCommand(
        ID_EDIT_CUT, [fnCall] { fnCall("cut"); }, [=] { return fnSelected() && fnWritable(); });
    AddCommand(
        ID_EDIT_PASTE, [fnCall] { fnCall("paste"); },
        [=] { return fnWritable() && !QApplication::clipboard()->text().isEmpty(); });
    AddCommand(
        ID_EDIT_UNDO, [fnCall] { fnCall("undo"); },
        [=, this] {
            QWidget* pEdit = EditWithFocus();
            const auto* pLine = qobject_cast<QLineEdit*>(pEdit);
            return fnWritable() && (pLine == nullptr || pLine->isUndoAvailable());
        });
}

CPersonalMenu* CMainFrame::AddMenu(EMenu nMenu) {
    auto* pMenu = new CPersonalMenu(ToQString(MenuText(nMenu)), m_habits, this);
    // Ahead of the menu's own work, so that it sees the commands as they are.
    connect(pMenu, &QMenu::aboutToShow, this, &CMainFrame::UpdateCommands);
    menuBar()->addMenu(pMenu);
    m_mapMenus[nMenu] = pMenu;
    return pMenu;
}

void CMainFrame::MakeMenus() {
    menuBar()->setNativeMenuBar(false);
    CPersonalMenu* pFile = AddMenu(EMenu::File);
    pFile->AddCommand(*CommandAction(ID_FILE_OPEN));
    pFile->AddCommand(*CommandAction(ID_FILE_CLOSE));
    pFile->addSeparator();
    m_pRecentMark = pFile->addSeparator();
    pFile->AddCommand(*CommandAction(ID_APP_EXIT));
    connect(pFile, &QMenu::aboutToShow, this, &CMainFrame::FillRecentFiles);

    CPersonalMenu* pSession = AddMenu(EMenu::Session);
    for (const int nId : {ID_SESSION_ANALYZE, ID_SESSION_CLEAR_DEBUG_FILE, ID_SESSION_OPEN_AS_TEXT})
        pSession->AddCommand(*CommandAction(nId));

    CPersonalMenu* pCache = AddMenu(EMenu::Cache);
    for (const int nId : {ID_CACHE_DEFINE_STRUCTURE, ID_CACHE_REFRESH_DATA})
        pCache->AddCommand(*CommandAction(nId));

    CPersonalMenu* pTools = AddMenu(EMenu::Tools);
    for (const int nId :
         {ID_TOOLS_GLOBAL_TABLES, ID_TOOLS_CONVERT_DATES, ID_TOOLS_JDE_SETTINGS, ID_TOOLS_OPTIONS})
        pTools->AddCommand(*CommandAction(nId));

    CPersonalMenu* pView = AddMenu(EMenu::View);
    auto* pBars = new QMenu(tr("&Toolbars and Docking Windows"), this);
    connect(pBars, &QMenu::aboutToShow, this, [this, pBars] { FillToolBarMenu(*pBars); });
    pView->addMenu(pBars);
    pView->AddCommand(*CommandAction(ID_VIEW_STATUS_BAR));
    auto* pLooks = new CPersonalMenu(tr("&Application Look"), m_habits, this);
    connect(pLooks, &QMenu::aboutToShow, this, &CMainFrame::UpdateCommands);
    auto* pMarks = new QActionGroup(pLooks);
    pMarks->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    for (int nId = ID_APPLOOK_WINDOWS_2000; nId <= ID_APPLOOK_VS_2008; ++nId)
        pMarks->addAction(pLooks->AddCommand(*CommandAction(nId)));
    auto* pOffice2007 = new CPersonalMenu(tr("Office 200&7"), m_habits, this);
    for (int nId = ID_APPLOOK_OFFICE_2007_BLUE; nId <= ID_APPLOOK_OFFICE_2007_AQUA; ++nId)
        pMarks->addAction(pOffice2007->AddCommand(*CommandAction(nId)));
    pLooks->addMenu(pOffice2007);
    pView->addMenu(pLooks);

    CPersonalMenu* pWindow = AddMenu(EMenu::Window);
    for (const int nId : {ID_WINDOW_NEW_HORIZONTAL_GROUP, ID_WINDOW_NEW_VERTICAL_GROUP, ID_WINDOW_CLOSE_ALL})
        pWindow->AddCommand(*CommandAction(nId));
    pWindow->addSeparator();
    m_pWindowMark = pWindow->AddCommand(*CommandAction(ID_WINDOW_WINDOWS));
    connect(pWindow, &QMenu::aboutToShow, this, &CMainFrame::FillWindowList);

    AddMenu(EMenu::Help)->AddCommand(*CommandAction(ID_APP_ABOUT));

    m_pEditMenu = new QMenu(tr("Edit"), this);
    for (const int nId : {ID_EDIT_UNDO, ID_SEPARATOR, ID_EDIT_CUT, ID_EDIT_COPY, ID_EDIT_PASTE}) {
        if (nId == ID_SEPARATOR)
            m_pEditMenu->addSeparator();
        else
            m_pEditMenu->addAction(CommandAction(nId));
    }
}

void CMainFrame::MakeToolBars() {
    const auto fnList = [](std::span<const int> ids) { return std::vector<int>(ids.begin(), ids.end()); };
    m_pToolBar = new CToolBar(*this, ID_TOOLBAR_STANDARD, tr("Standard"), QStringLiteral("StandardToolBar"),
                              fnList(StandardToolBar()));
    m_pCacheToolBar = new CToolBar(*this, ID_TOOLBAR_CACHE, tr("Cache Browser"),
                                   QStringLiteral("CacheToolBar"), fnList(CacheToolBar()));
    addToolBar(Qt::TopToolBarArea, m_pToolBar);
    addToolBar(Qt::TopToolBarArea, m_pCacheToolBar);
}

void CMainFrame::MakeStatusBar() {
    m_pProgress = new QProgressBar;
    m_pProgress->setRange(0, 100);
    m_pProgress->setMaximumWidth(180);
    m_pProgress->setTextVisible(false);
    m_pProgress->setAccessibleName(tr("Progress of the load"));
    m_pProgress->hide();
    m_pBitness = new QLabel(CCarvelotApp::BitnessText());
    m_pBitness->setObjectName(QStringLiteral("Bitness"));
    m_pBitness->setAccessibleName(tr("Build"));
    m_pBitness->setContentsMargins(10, 0, 10, 0);
    statusBar()->addPermanentWidget(m_pProgress);
    statusBar()->addPermanentWidget(m_pBitness);
}

QList<CDockablePane*> CMainFrame::Panes() {
    return {&m_wndProcessPane, &m_wndSQLPane,   &m_wndTimingGapsPane, &m_wndFindPane, &m_wndLongTasksPane,
            &m_wndRawDataPane, &m_wndCachePane, &m_wndErrorPane,      &m_wndBSFNPane};
}

// Whoever clicks on a pane's tab, or has the focus in the pane that it covers, goes on in that pane.
void CMainFrame::OnTabActivated(QDockWidget* pDock) {
    auto* pPane = qobject_cast<CDockablePane*>(pDock);
    if (pPane != nullptr &&
        (QApplication::mouseButtons().testFlag(Qt::LeftButton) || QApplication::focusWidget() == this))
        pPane->MainControl()->setFocus(Qt::MouseFocusReason);
}

void CMainFrame::DockPanes() {
    CDockablePane* pFirst = nullptr;
    for (CDockablePane* pPane : Panes()) {
        pPane->setFloating(false);
        addDockWidget(Qt::BottomDockWidgetArea, pPane);
        if (pFirst != nullptr)
            tabifyDockWidget(pFirst, pPane);
        pFirst = pPane;
        pPane->show();
    }
    if (isVisible()) {
        layout()->activate();
        m_wndBSFNPane.raise();
    } else {
        m_bRaiseBSFN = true; // tabs come into being with the window
    }
}

void CMainFrame::RestoreDefaultLayout() {
    m_layout.clear();
    m_pAutoHide->PinAll();
    for (CDockablePane* pPane : Panes()) {
        pPane->setFloating(false);
        removeDockWidget(pPane);
    }
    DockPanes();
    resizeDocks({&m_wndBSFNPane}, {240}, Qt::Vertical);
    QList<CToolBar*> listToolBars = ToolBars();
    for (CToolBar* pToolBar : listToolBars)
        removeToolBar(pToolBar);
    for (CToolBar* pToolBar : listToolBars) {
        if (pToolBar->IsUserToolBar() && pToolBar == m_listUserToolBars.constFirst())
            addToolBarBreak(Qt::TopToolBarArea);
        if (!pToolBar->IsUserToolBar())
            pToolBar->Reset();
        addToolBar(Qt::TopToolBarArea, pToolBar);
        pToolBar->show();
    }
    statusBar()->show();
    UpdateCommands();
}

void CMainFrame::RestoreState() {
    LoadUserToolBars();
    const QByteArray geometry = Unseal(GetWorkspaceString("Geometry", ""));
    if (geometry.isEmpty() || !restoreGeometry(geometry)) {
        const QSize available = screen()->availableSize();
        resize(QSize(1240, 800).boundedTo(available * 0.9));
    }
    m_layout = Unseal(GetWorkspaceString("Layout", ""));
    if (ApplyLayout()) {
        m_bRaiseBSFN = false;
        m_pAutoHide->Restore(ReadFolds(GetWorkspaceString("AutoHide", "")));
    } else {
        RestoreDefaultLayout();
    }
    statusBar()->setVisible(GetWorkspaceInt("StatusBar", 1) != 0);
    SetShowsToolTips(GetWorkspaceInt("ToolTips", 1) != 0);
}

// Before the window shows, a layout says which panes are closed, float or are folded away; sizes of groups
// and front tabs take effect in a window of its final size only, so that the layout is applied again then.
bool CMainFrame::ApplyLayout() {
    for (CDockablePane* pPane : Panes())
        pPane->setAttribute(Qt::WA_DontShowOnScreen);
    const bool bApplied = !m_layout.isEmpty() && restoreState(m_layout, kLayoutVersion);
    // A floating pane that is on the screen before this window is no companion of it for the window manager
    // and would vanish behind it.
    for (CDockablePane* pPane : Panes()) {
        if (pPane->isFloating() && !pPane->isHidden()) {
            pPane->hide();
            m_listFloatLater << pPane;
        }
        pPane->setAttribute(Qt::WA_DontShowOnScreen, false);
    }
    if (isVisible() && !m_listFloatLater.isEmpty())
        QMetaObject::invokeMethod(this, &CMainFrame::ShowFloatingPanes, Qt::QueuedConnection);
    return bApplied;
}

void CMainFrame::LoadUserToolBars() {
    const auto load = [](const char* name, CToolBar& toolBar) {
        if (const std::string stored = GetWorkspaceString(name, ""); !stored.empty()) {
            toolBar.SetCommands(ReadCommands(stored, kMostToolBarCommands));
        }
    };
    load("ToolBarStandard", *m_pToolBar);
    load("ToolBarCache", *m_pCacheToolBar);
    for (int nId = ID_TOOLBAR_USER_FIRST; nId <= ID_TOOLBAR_USER_LAST; ++nId) {
        if (const auto stored = ReadToolBar(GetWorkspaceString("UserToolBar" + std::to_string(nId), ""))) {
            AddUserToolBar(nId, stored->m_strTitle)->SetCommands(stored->m_listCommands);
        }
    }
    for (const auto& [nId, nImage] : ReadUserImages(GetWorkspaceString("UserImages", ""))) {
        SetUserImage(nId, nImage);
    }
}

void CMainFrame::SaveState() const {
    WriteWorkspaceString("Geometry", Seal(saveGeometry()));
    WriteWorkspaceString("Layout", Seal(saveState(kLayoutVersion)));
    WriteWorkspaceString("AutoHide", WriteFolds(m_pAutoHide->Folds()));
    WriteWorkspaceInt("StatusBar", statusBar()->isHidden() ? 0 : 1);
    WriteWorkspaceInt("ToolTips", m_bToolTips ? 1 : 0);
    WriteWorkspaceString("ToolBarStandard",
                         m_pToolBar->IsChanged() ? WriteCommands(m_pToolBar->Commands()) : "");
    WriteWorkspaceString("ToolBarCache",
                         m_pCacheToolBar->IsChanged() ? WriteCommands(m_pCacheToolBar->Commands()) : "");
    for (int nId = ID_TOOLBAR_USER_FIRST; nId <= ID_TOOLBAR_USER_LAST; ++nId) {
        const std::string strName = "UserToolBar" + std::to_string(nId);
        const auto it = std::ranges::find(m_listUserToolBars, nId, &CToolBar::Id);
        if (it != m_listUserToolBars.end())
            WriteWorkspaceString(strName, WriteToolBar({(*it)->windowTitle(), (*it)->Commands()}));
        else if (!GetWorkspaceString(strName, "").empty())
            WriteWorkspaceString(strName, "");
    }
    WriteWorkspaceString("UserImages", WriteUserImages(m_mapUserImages));
    m_habits.Save();
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
    const std::span<const EMenu> menus = MenusOf(MenuState());
    for (const auto& [nMenu, pMenu] : m_mapMenus)
        pMenu->menuAction()->setVisible(std::ranges::find(menus, nMenu) != menus.end());
    UpdateCommands();
}

const CCommandTarget::CHandler* CMainFrame::FindHandler(int nId) const {
    if (const CMDIChildWnd* pChild = ActiveChild()) {
        if (const CHandler* pHandler = pChild->OwnHandler(nId))
            return pHandler;
        if (pChild->GetActiveDocument() != nullptr) {
            if (const CHandler* pHandler = pChild->GetActiveDocument()->OwnHandler(nId))
                return pHandler;
        }
    }
    const CHandler* pHandler = OwnHandler(nId);
    return pHandler != nullptr ? pHandler : theApp().OwnHandler(nId);
}

QAction* CMainFrame::CommandAction(int nId) const {
    const auto it = m_mapActions.find(nId);
    return it != m_mapActions.end() ? it->second : nullptr;
}

bool CMainFrame::RunCommand(int nId) {
    const CHandler* pHandler = FindHandler(nId);
    if (pHandler == nullptr || (pHandler->m_fnEnabled && !pHandler->m_fnEnabled()))
        return false;
    const FHandler fnRun = pHandler->m_fnRun; // the command may take its own handler away
    fnRun();
    if (s_pMainFrame == this)
        UpdateCommands();
    return true;
}

void CMainFrame::UpdateCommands() {
    m_bUpdateScheduled = false;
    for (const auto& [nId, pAction] : m_mapActions) {
        const CHandler* pHandler = FindHandler(nId);
        pAction->setEnabled(pHandler != nullptr && (!pHandler->m_fnEnabled || pHandler->m_fnEnabled()));
        if (nId >= ID_APPLOOK_FIRST && nId <= ID_APPLOOK_LAST)
            pAction->setChecked(nId == theApp().m_nAppLook);
    }
    CommandAction(ID_VIEW_STATUS_BAR)->setChecked(!statusBar()->isHidden());
    CommandAction(ID_VIEW_TOOLBAR)->setChecked(!m_pToolBar->isHidden());
}

void CMainFrame::ScheduleUpdate() {
    if (m_bUpdateScheduled)
        return;
    m_bUpdateScheduled = true;
    QMetaObject::invokeMethod(this, &CMainFrame::UpdateCommands, Qt::QueuedConnection);
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

void CMainFrame::NextPane(bool bForward) {
    QList<QWidget*> listPanes;
    if (const CMDIChildWnd* pChild = ActiveChild())
        listPanes = pChild->WindowPanes();
    for (CDockablePane* pPane : Panes()) {
        if (pPane->IsInFront())
            listPanes << pPane->MainControl();
    }
    listPanes += m_pAutoHide->Strips();
    if (listPanes.isEmpty())
        return;
    const QWidget* pFocus = QApplication::focusWidget();
    qsizetype nNow = -1;
    for (qsizetype n = 0; n < listPanes.size(); ++n) {
        const QWidget* pAround = listPanes[n];
        for (const CDockablePane* pPane : Panes()) {
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

void CMainFrame::ShowPane(CDockablePane& pane) {
    if (m_pAutoHide->IsFolded(pane)) {
        m_pAutoHide->SlideOut(pane, true);
        return;
    }
    pane.show();
    pane.raise();
    pane.window()->activateWindow();
    pane.MainControl()->setFocus(Qt::OtherFocusReason);
}

void CMainFrame::OnSearch() {
    ShowPane(m_wndFindPane);
    m_wndFindPane.SearchEdit().selectAll();
}

void CMainFrame::FillToolBarMenu(QMenu& menu) {
    menu.clear();
    for (const CToolBar* pToolBar : ToolBars())
        NewEntry(*pToolBar->toggleViewAction(), menu);
    menu.addSeparator();
    for (CDockablePane* pPane : Panes()) {
        QAction* pAction = menu.addAction(PlainCaption(pPane->windowTitle()));
        pAction->setCheckable(true);
        pAction->setChecked(!pPane->isHidden());
        connect(pAction, &QAction::triggered, pPane, [this, pPane](bool bShow) {
            // A pane behind another one's tab comes to the front first.
            const bool bBehind = pPane->isVisible() && !pPane->IsInFront();
            if (bShow || bBehind || m_pAutoHide->IsFolded(*pPane))
                ShowPane(*pPane);
            else
                pPane->hide();
        });
    }
    menu.addSeparator();
    NewEntry(*CommandAction(ID_VIEW_RESTORE_LAYOUT), menu);
    NewEntry(*CommandAction(ID_VIEW_CUSTOMIZE), menu);
}

QMenu* CMainFrame::createPopupMenu() {
    auto* pMenu = new QMenu(this);
    FillToolBarMenu(*pMenu);
    return pMenu;
}

QString CMainFrame::NumberedEntry(std::size_t nNumber, const QString& strText) const {
    return QStringLiteral("&%1 ").arg(nNumber) +
           PlainCaption(fontMetrics().elidedText(strText, Qt::ElideMiddle, 420));
}

void CMainFrame::FillRecentFiles() {
    CPersonalMenu& menu = *m_mapMenus.at(EMenu::File);
    qDeleteAll(m_listRecentActions);
    m_listRecentActions.clear();
    const std::vector<std::string>& listPaths = theApp().m_recentFiles.m_listPaths;
    for (std::size_t n = 0; n < listPaths.size(); ++n) {
        const QString strPath = PathToQString(listPaths[n]);
        auto* pAction = new QAction(NumberedEntry(n + 1, ToQString(listPaths[n])), &menu);
        pAction->setStatusTip(tr("Open this document"));
        connect(pAction, &QAction::triggered, this, [strPath] {
            // A file that cannot be opened any more leaves the list.
            if (theApp().OpenDocumentFile(strPath) == nullptr)
                theApp().m_recentFiles.Remove(PathOf(strPath));
        });
        m_listRecentActions << pAction;
    }
    if (m_listRecentActions.isEmpty()) {
        auto* pNone = new QAction(tr("Recent File"), &menu);
        pNone->setEnabled(false);
        m_listRecentActions << pNone;
    }
    menu.insertActions(m_pRecentMark, m_listRecentActions);
}

void CMainFrame::FillWindowList() {
    CPersonalMenu& menu = *m_mapMenus.at(EMenu::Window);
    qDeleteAll(m_listWindowActions);
    m_listWindowActions.clear();
    const QList<CMDIChildWnd*> listChildren = m_pClientArea->Children();
    for (qsizetype n = 0; n < std::min<qsizetype>(listChildren.size(), 9); ++n) {
        CMDIChildWnd* pChild = listChildren[n];
        auto* pAction =
            new QAction(NumberedEntry(static_cast<std::size_t>(n) + 1, pChild->windowTitle()), &menu);
        pAction->setCheckable(true);
        pAction->setChecked(pChild == ActiveChild());
        pAction->setStatusTip(tr("Activate this window"));
        connect(pAction, &QAction::triggered, pChild, [this, pChild] { m_pClientArea->Activate(*pChild); });
        m_listWindowActions << pAction;
    }
    menu.insertActions(m_pWindowMark, m_listWindowActions);
}

QWidget* CMainFrame::EditWithFocus() const {
    QWidget* pFocus = QApplication::focusWidget();
    return qobject_cast<QLineEdit*>(pFocus) != nullptr || qobject_cast<QPlainTextEdit*>(pFocus) != nullptr
               ? pFocus
               : nullptr;
}

void CMainFrame::ShowEditMenu(const QPoint& screen) {
    UpdateCommands();
    UserInterface().RunMenu(*m_pEditMenu, screen);
}

void CMainFrame::ShowProgress(int nPercent) {
    m_pProgress->setVisible(nPercent >= 0);
    if (nPercent < 0 || m_pProgress->value() == nPercent)
        return;
    m_pProgress->setValue(nPercent);
    statusBar()->repaint();
}

QList<CToolBar*> CMainFrame::ToolBars() const {
    return QList<CToolBar*>{m_pToolBar, m_pCacheToolBar} + m_listUserToolBars;
}

CToolBar* CMainFrame::AddUserToolBar(int nId, const QString& strTitle) {
    auto* toolBar = new CToolBar(*this, nId, strTitle, QStringLiteral("UserToolBar%1").arg(nId), {});
    addToolBar(Qt::TopToolBarArea, toolBar);
    m_listUserToolBars << toolBar;
    return toolBar;
}

CToolBar* CMainFrame::NewUserToolBar(const QString& strTitle) {
    for (int nId = ID_TOOLBAR_USER_FIRST; nId <= ID_TOOLBAR_USER_LAST; ++nId) {
        if (std::ranges::find(m_listUserToolBars, nId, &CToolBar::Id) != m_listUserToolBars.end())
            continue;
        CToolBar* const pToolBar = AddUserToolBar(nId, strTitle);
        m_pAutoHide->PlaceStrips();
        return pToolBar;
    }
    return nullptr;
}

void CMainFrame::DeleteUserToolBar(CToolBar* pToolBar) {
    if (!m_listUserToolBars.removeOne(pToolBar))
        return;
    removeToolBar(pToolBar);
    pToolBar->deleteLater();
}

void CMainFrame::SetUserImage(int nId, int nImage) {
    QAction* pAction = CommandAction(nId);
    if (pAction == nullptr)
        return;
    if (nImage < 0)
        m_mapUserImages.erase(nId);
    else
        m_mapUserImages[nId] = nImage;
    const bool bThere = nImage >= 0 && nImage < m_userImages.Count();
    pAction->setIcon(bThere ? m_userImages.Icon(nImage) : CommandIcon(nId));
}

int CMainFrame::UserImage(int nId) const {
    const auto it = m_mapUserImages.find(nId);
    return it != m_mapUserImages.end() ? it->second : -1;
}

void CMainFrame::SetShowsToolTips(bool bShow) {
    m_bToolTips = bShow;
    if (bShow)
        qApp->removeEventFilter(this);
    else
        qApp->installEventFilter(this);
}

bool CMainFrame::eventFilter(QObject* pObject, QEvent* pEvent) {
    // Installed only while the user wants no tips on toolbars.
    if (pEvent->type() == QEvent::ToolTip && pObject->isWidgetType() &&
        qobject_cast<CToolBar*>(pObject->parent()) != nullptr)
        return true;
    return QMainWindow::eventFilter(pObject, pEvent);
}

void CMainFrame::ShowFloatingPanes() {
    for (CDockablePane* pPane : std::exchange(m_listFloatLater, {}))
        pPane->show();
}

void CMainFrame::showEvent(QShowEvent* pEvent) {
    QMainWindow::showEvent(pEvent);
    if (std::exchange(m_bRaiseBSFN, false))
        m_wndBSFNPane.raise();
    if (m_layout.isEmpty())
        return;
    ApplyLayout();
    // The system enlarges the window after it has shown it.
    if (isMaximized() || isFullScreen())
        QTimer::singleShot(kEnlarged, this, [this] { m_layout.clear(); });
    else
        m_layout.clear();
}

void CMainFrame::resizeEvent(QResizeEvent* pEvent) {
    QMainWindow::resizeEvent(pEvent);
    if (isVisible() && !m_layout.isEmpty())
        ApplyLayout();
}

void CMainFrame::closeEvent(QCloseEvent* pEvent) {
    ShowFloatingPanes(); // else they would be kept as closed
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
