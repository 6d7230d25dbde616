// FrameMenus.h - the main frame's menus, with what they show of the moment: recent files, windows, bars and
// panes.
#pragma once

#include "settings/Commands.h"
#include "ui/kit/PersonalMenu.h"

#include <QObject>

#include <map>

class QPoint;

namespace carvelot {

class CMainFrame;

class CFrameMenus : public QObject {
    Q_OBJECT

public:
    explicit CFrameMenus(CMainFrame& frame);

    CMenuHabits& Habits() { return m_habits; }
    // Shows the menus that belong to the window in front.
    void ShowMenusOf(EMenuState state);
    // Opens the "Edit" context menu at a screen position for the control with the focus.
    void ShowEditMenu(const QPoint& screen);
    // What shows or hides toolbars and panes, in the place of what the menu holds.
    void FillBarsAndPanes(QMenu& menu);

private:
    CPersonalMenu* AddMenu(EMenu menu);
    // A menu's entry for the n-th file or window.
    QString NumberedEntry(std::size_t number, const QString& text) const;
    void FillRecentFiles();
    void FillWindowList();

    CMainFrame& m_frame;
    CMenuHabits m_habits;
    std::map<EMenu, CPersonalMenu*> m_mapMenus;
    QMenu* m_pEditMenu = nullptr;
    QList<QAction*> m_listRecentActions;
    QAction* m_pRecentMark = nullptr;
    QList<QAction*> m_listWindowActions;
    QAction* m_pWindowMark = nullptr;
};

} // namespace carvelot
