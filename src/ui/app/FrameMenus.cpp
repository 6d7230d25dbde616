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
    CPersonalMenu* file = AddMenu(EMenu::File);
    file->AddCommand(*m_frame.CommandAction(ID_FILE_OPEN));
    file->AddCommand(*m_frame.CommandAction(ID_FILE_CLOSE));
    file->addSeparator();
    m_pRecentMark = file->addSeparator();
    file->AddCommand(*m_frame.CommandAction(ID_APP_EXIT));
    connect(file, &QMenu::aboutToShow, this, &CFrameMenus::FillRecentFiles);

    CPersonalMenu* session = AddMenu(EMenu::Session);
    for (const int id : {ID_SESSION_ANALYZE, ID_SESSION_CLEAR_DEBUG_FILE, ID_SESSION_OPEN_AS_TEXT}) {
        session->AddCommand(*m_frame.CommandAction(id));
    }

    CPersonalMenu* explore = AddMenu(EMenu::Explore);
    for (const int id :
         {ID_EXPLORE_OVERVIEW, ID_EXPLORE_TIMELINE, ID_EXPLORE_CALL_PROFILE, ID_EXPLORE_FLAME_GRAPH,
          ID_EXPLORE_STATEMENTS, ID_EXPLORE_FINDINGS, ID_EXPLORE_ABOUT_LOG, ID_SEPARATOR,
          ID_EXPLORE_NEXT_FINDING, ID_EXPLORE_PREVIOUS_FINDING, ID_SEPARATOR, ID_EXPLORE_COMPARE,
          ID_EXPLORE_EXPORT_PROFILE, ID_EXPLORE_SAVE_PICTURE, ID_SEPARATOR, ID_EXPLORE_FOLLOW,
          ID_EXPLORE_OPEN_PIECES}) {
        if (id == ID_SEPARATOR) {
            explore->addSeparator();
        } else {
            explore->AddCommand(*m_frame.CommandAction(id));
        }
    }

    CPersonalMenu* cache = AddMenu(EMenu::Cache);
    for (const int id : {ID_CACHE_DEFINE_STRUCTURE, ID_CACHE_REFRESH_DATA}) {
        cache->AddCommand(*m_frame.CommandAction(id));
    }

    CPersonalMenu* tools = AddMenu(EMenu::Tools);
    for (const int id :
         {ID_TOOLS_GLOBAL_TABLES, ID_TOOLS_CONVERT_DATES, ID_TOOLS_JDE_SETTINGS, ID_TOOLS_OPTIONS}) {
        tools->AddCommand(*m_frame.CommandAction(id));
    }

    CPersonalMenu* view = AddMenu(EMenu::View);
    auto* bars = new QMenu(tr("&Toolbars and Docking Windows"), &m_frame);
    connect(bars, &QMenu::aboutToShow, this, [this, bars] { FillBarsAndPanes(*bars); });
    view->addMenu(bars);
    view->AddCommand(*m_frame.CommandAction(ID_VIEW_STATUS_BAR));
    auto* looks = new CPersonalMenu(tr("&Application Look"), m_habits, &m_frame);
    connect(looks, &QMenu::aboutToShow, &m_frame, &CMainFrame::UpdateCommands);
    auto* marks = new QActionGroup(looks);
    marks->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    for (int id = ID_APPLOOK_WINDOWS_2000; id <= ID_APPLOOK_VS_2008; ++id) {
        marks->addAction(looks->AddCommand(*m_frame.CommandAction(id)));
    }
    auto* office2007 = new CPersonalMenu(tr("Office 200&7"), m_habits, &m_frame);
    for (int id = ID_APPLOOK_OFFICE_2007_BLUE; id <= ID_APPLOOK_OFFICE_2007_AQUA; ++id) {
        marks->addAction(office2007->AddCommand(*m_frame.CommandAction(id)));
    }
    looks->addMenu(office2007);
    view->addMenu(looks);

    CPersonalMenu* window = AddMenu(EMenu::Window);
    for (const int id : {ID_WINDOW_NEW_HORIZONTAL_GROUP, ID_WINDOW_NEW_VERTICAL_GROUP, ID_WINDOW_CLOSE_ALL}) {
        window->AddCommand(*m_frame.CommandAction(id));
    }
    window->addSeparator();
    m_pWindowMark = window->AddCommand(*m_frame.CommandAction(ID_WINDOW_WINDOWS));
    connect(window, &QMenu::aboutToShow, this, &CFrameMenus::FillWindowList);

    AddMenu(EMenu::Help)->AddCommand(*m_frame.CommandAction(ID_APP_ABOUT));

    m_pEditMenu = new QMenu(tr("Edit"), &m_frame);
    for (const int id : {ID_EDIT_UNDO, ID_SEPARATOR, ID_EDIT_CUT, ID_EDIT_COPY, ID_EDIT_PASTE}) {
        if (id == ID_SEPARATOR) {
            m_pEditMenu->addSeparator();
        } else {
            m_pEditMenu->addAction(m_frame.CommandAction(id));
        }
    }
}

CPersonalMenu* CFrameMenus::AddMenu(EMenu which) {
    auto* menu = new CPersonalMenu(ToQString(MenuText(which)), m_habits, &m_frame);
    // Ahead of the menu's own work, so that it sees the commands as they are.
    connect(menu, &QMenu::aboutToShow, &m_frame, &CMainFrame::UpdateCommands);
    m_frame.menuBar()->addMenu(menu);
    m_mapMenus[which] = menu;
    return menu;
}

void CFrameMenus::FillBarsAndPanes(QMenu& menu) {
    menu.clear();
    for (const CToolBar* toolBar : m_frame.Bars().All()) {
        NewEntry(*toolBar->toggleViewAction(), menu);
    }
    menu.addSeparator();
    for (CDockablePane* pane : m_frame.Panes()) {
        QAction* action = menu.addAction(PlainCaption(pane->windowTitle()));
        action->setCheckable(true);
        action->setChecked(!pane->isHidden());
        connect(action, &QAction::triggered, pane, [this, pane](bool show) {
            // A pane behind another one's tab comes to the front first.
            const bool behind = pane->isVisible() && !pane->IsInFront();
            if (show || behind || m_frame.AutoHide().IsFolded(*pane)) {
                m_frame.Arrangement().ShowPane(*pane);
            } else {
                pane->hide();
            }
        });
    }
    menu.addSeparator();
    NewEntry(*m_frame.CommandAction(ID_VIEW_RESTORE_LAYOUT), menu);
    NewEntry(*m_frame.CommandAction(ID_VIEW_CUSTOMIZE), menu);
}

QString CFrameMenus::NumberedEntry(std::size_t number, const QString& text) const {
    return QStringLiteral("&%1 ").arg(number) +
           PlainCaption(m_frame.fontMetrics().elidedText(text, Qt::ElideMiddle, 420));
}

void CFrameMenus::FillRecentFiles() {
    CPersonalMenu& menu = *m_mapMenus.at(EMenu::File);
    qDeleteAll(m_listRecentActions);
    m_listRecentActions.clear();
    const std::vector<std::string>& paths = theApp().m_recentFiles.m_listPaths;
    for (std::size_t n = 0; n < paths.size(); ++n) {
        const QString path = PathToQString(paths[n]);
        auto* action = new QAction(NumberedEntry(n + 1, ToQString(paths[n])), &menu);
        action->setStatusTip(tr("Open this document"));
        connect(action, &QAction::triggered, this, [path] {
            // A file that cannot be opened any more leaves the list.
            if (theApp().OpenDocumentFile(path) == nullptr) {
                theApp().m_recentFiles.Remove(PathOf(path));
            }
        });
        m_listRecentActions << action;
    }
    if (m_listRecentActions.isEmpty()) {
        auto* none = new QAction(tr("Recent File"), &menu);
        none->setEnabled(false);
        m_listRecentActions << none;
    }
    menu.insertActions(m_pRecentMark, m_listRecentActions);
}

void CFrameMenus::FillWindowList() {
    CPersonalMenu& menu = *m_mapMenus.at(EMenu::Window);
    qDeleteAll(m_listWindowActions);
    m_listWindowActions.clear();
    const QList<CMDIChildWnd*> children = m_frame.ClientArea().Children();
    for (qsizetype n = 0; n < std::min<qsizetype>(children.size(), 9); ++n) {
        CMDIChildWnd* child = children[n];
        auto* action =
            new QAction(NumberedEntry(static_cast<std::size_t>(n) + 1, child->windowTitle()), &menu);
        action->setCheckable(true);
        action->setChecked(child == m_frame.ActiveChild());
        action->setStatusTip(tr("Activate this window"));
        connect(action, &QAction::triggered, child, [this, child] { m_frame.ClientArea().Activate(*child); });
        m_listWindowActions << action;
    }
    menu.insertActions(m_pWindowMark, m_listWindowActions);
}

void CFrameMenus::ShowEditMenu(const QPoint& screen) {
    m_frame.UpdateCommands();
    UserInterface().RunMenu(*m_pEditMenu, screen);
}

void CFrameMenus::ShowMenusOf(EMenuState state) {
    const std::span<const EMenu> menus = MenusOf(state);
    for (const auto& [menu, shown] : m_mapMenus) {
        shown->menuAction()->setVisible(std::ranges::find(menus, menu) != menus.end());
    }
}

} // namespace carvelot
