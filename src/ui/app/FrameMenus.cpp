#include "ui/app/FrameMenus.h"

#include "ui/app/CarvelotApp.h"
#include "ui/app/FrameLayout.h"
#include "ui/app/FrameToolBars.h"
#include "ui/app/MainFrame.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/PathText.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/TabbedClientArea.h"
#include "ui/kit/Text.h"
#include "ui/kit/ToolBar.h"
#include "ui/kit/UserInterface.h"

#include <QActionGroup>
#include <QMenuBar>

#include <algorithm>

namespace carvelot {

CFrameMenus::CFrameMenus(CMainFrame& frame) : m_frame(frame) {
    m_habits.Load();
    m_frame.menuBar()->setNativeMenuBar(false);
    CPersonalMenu* pFile = AddMenu(EMenu::File);
    pFile->AddCommand(*m_frame.CommandAction(ID_FILE_OPEN));
    pFile->AddCommand(*m_frame.CommandAction(ID_FILE_CLOSE));
    pFile->addSeparator();
    m_pRecentMark = pFile->addSeparator();
    pFile->AddCommand(*m_frame.CommandAction(ID_APP_EXIT));
    connect(pFile, &QMenu::aboutToShow, this, &CFrameMenus::FillRecentFiles);

    CPersonalMenu* pSession = AddMenu(EMenu::Session);
    for (const int nId : {ID_SESSION_ANALYZE, ID_SESSION_CLEAR_DEBUG_FILE, ID_SESSION_OPEN_AS_TEXT})
        pSession->AddCommand(*m_frame.CommandAction(nId));

    CPersonalMenu* pCache = AddMenu(EMenu::Cache);
    for (const int nId : {ID_CACHE_DEFINE_STRUCTURE, ID_CACHE_REFRESH_DATA})
        pCache->AddCommand(*m_frame.CommandAction(nId));

    CPersonalMenu* pTools = AddMenu(EMenu::Tools);
    for (const int nId :
         {ID_TOOLS_GLOBAL_TABLES, ID_TOOLS_CONVERT_DATES, ID_TOOLS_JDE_SETTINGS, ID_TOOLS_OPTIONS})
        pTools->AddCommand(*m_frame.CommandAction(nId));

    CPersonalMenu* pView = AddMenu(EMenu::View);
    auto* pBars = new QMenu(tr("&Toolbars and Docking Windows"), &m_frame);
    connect(pBars, &QMenu::aboutToShow, this, [this, pBars] { FillBarsAndPanes(*pBars); });
    pView->addMenu(pBars);
    pView->AddCommand(*m_frame.CommandAction(ID_VIEW_STATUS_BAR));
    auto* pLooks = new CPersonalMenu(tr("&Application Look"), m_habits, &m_frame);
    connect(pLooks, &QMenu::aboutToShow, &m_frame, &CMainFrame::UpdateCommands);
    auto* pMarks = new QActionGroup(pLooks);
    pMarks->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    for (int nId = ID_APPLOOK_WINDOWS_2000; nId <= ID_APPLOOK_VS_2008; ++nId)
        pMarks->addAction(pLooks->AddCommand(*m_frame.CommandAction(nId)));
    auto* pOffice2007 = new CPersonalMenu(tr("Office 200&7"), m_habits, &m_frame);
    for (int nId = ID_APPLOOK_OFFICE_2007_BLUE; nId <= ID_APPLOOK_OFFICE_2007_AQUA; ++nId)
        pMarks->addAction(pOffice2007->AddCommand(*m_frame.CommandAction(nId)));
    pLooks->addMenu(pOffice2007);
    pView->addMenu(pLooks);

    CPersonalMenu* pWindow = AddMenu(EMenu::Window);
    for (const int nId : {ID_WINDOW_NEW_HORIZONTAL_GROUP, ID_WINDOW_NEW_VERTICAL_GROUP, ID_WINDOW_CLOSE_ALL})
        pWindow->AddCommand(*m_frame.CommandAction(nId));
    pWindow->addSeparator();
    m_pWindowMark = pWindow->AddCommand(*m_frame.CommandAction(ID_WINDOW_WINDOWS));
    connect(pWindow, &QMenu::aboutToShow, this, &CFrameMenus::FillWindowList);

    AddMenu(EMenu::Help)->AddCommand(*m_frame.CommandAction(ID_APP_ABOUT));

    m_pEditMenu = new QMenu(tr("Edit"), &m_frame);
    for (const int nId : {ID_EDIT_UNDO, ID_SEPARATOR, ID_EDIT_CUT, ID_EDIT_COPY, ID_EDIT_PASTE}) {
        if (nId == ID_SEPARATOR)
            m_pEditMenu->addSeparator();
        else
            m_pEditMenu->addAction(m_frame.CommandAction(nId));
    }
}

CPersonalMenu* CFrameMenus::AddMenu(EMenu nMenu) {
    auto* pMenu = new CPersonalMenu(ToQString(MenuText(nMenu)), m_habits, &m_frame);
    // Ahead of the menu's own work, so that it sees the commands as they are.
    connect(pMenu, &QMenu::aboutToShow, &m_frame, &CMainFrame::UpdateCommands);
    m_frame.menuBar()->addMenu(pMenu);
    m_mapMenus[nMenu] = pMenu;
    return pMenu;
}

void CFrameMenus::FillBarsAndPanes(QMenu& menu) {
    menu.clear();
    for (const CToolBar* pToolBar : m_frame.Bars().All())
        NewEntry(*pToolBar->toggleViewAction(), menu);
    menu.addSeparator();
    for (CDockablePane* pPane : m_frame.Panes()) {
        QAction* pAction = menu.addAction(PlainCaption(pPane->windowTitle()));
        pAction->setCheckable(true);
        pAction->setChecked(!pPane->isHidden());
        connect(pAction, &QAction::triggered, pPane, [this, pPane](bool bShow) {
            // A pane behind another one's tab comes to the front first.
            const bool bBehind = pPane->isVisible() && !pPane->IsInFront();
            if (bShow || bBehind || m_frame.AutoHide().IsFolded(*pPane))
                m_frame.Arrangement().ShowPane(*pPane);
            else
                pPane->hide();
        });
    }
    menu.addSeparator();
    NewEntry(*m_frame.CommandAction(ID_VIEW_RESTORE_LAYOUT), menu);
    NewEntry(*m_frame.CommandAction(ID_VIEW_CUSTOMIZE), menu);
}

QString CFrameMenus::NumberedEntry(std::size_t nNumber, const QString& strText) const {
    return QStringLiteral("&%1 ").arg(nNumber) +
           PlainCaption(m_frame.fontMetrics().elidedText(strText, Qt::ElideMiddle, 420));
}

void CFrameMenus::FillRecentFiles() {
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

void CFrameMenus::FillWindowList() {
    CPersonalMenu& menu = *m_mapMenus.at(EMenu::Window);
    qDeleteAll(m_listWindowActions);
    m_listWindowActions.clear();
    const QList<CMDIChildWnd*> listChildren = m_frame.ClientArea().Children();
    for (qsizetype n = 0; n < std::min<qsizetype>(listChildren.size(), 9); ++n) {
        CMDIChildWnd* pChild = listChildren[n];
        auto* pAction =
            new QAction(NumberedEntry(static_cast<std::size_t>(n) + 1, pChild->windowTitle()), &menu);
        pAction->setCheckable(true);
        pAction->setChecked(pChild == m_frame.ActiveChild());
        pAction->setStatusTip(tr("Activate this window"));
        connect(pAction, &QAction::triggered, pChild,
                [this, pChild] { m_frame.ClientArea().Activate(*pChild); });
        m_listWindowActions << pAction;
    }
    menu.insertActions(m_pWindowMark, m_listWindowActions);
}

void CFrameMenus::ShowEditMenu(const QPoint& screen) {
    m_frame.UpdateCommands();
    UserInterface().RunMenu(*m_pEditMenu, screen);
}

void CFrameMenus::ShowMenusOf(EMenuState nState) {
    const std::span<const EMenu> menus = MenusOf(nState);
    for (const auto& [menu, shown] : m_mapMenus) {
        shown->menuAction()->setVisible(std::ranges::find(menus, menu) != menus.end());
    }
}

} // namespace carvelot
