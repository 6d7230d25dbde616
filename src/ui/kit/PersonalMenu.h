// PersonalMenu.h - a menu that first shows its basic and lately used commands and then, expanded, all of
// them.
#pragma once

#include <QMenu>
#include <QTimer>

#include <functional>
#include <set>

namespace carvelot {

// How menus behave; one for the whole window, kept between runs.
struct CMenuHabits {
    bool m_bRecentlyUsedMenus = true;   // off: menus always show everything
    bool m_bFullMenusAfterDelay = true; // a short menu that stays open expands by itself
    std::set<int> m_setUsed;            // commands that were used from a menu

    void Load();
    void Save() const;
};

// Adds an entry to a menu that follows a command's text, tips and state and triggers it, after what is to be
// done first. A command that stands in several menus needs one in each: the accessibility tree has one place
// for an action.
QAction* NewEntry(QAction& command, QMenu& menu, std::function<void()> chosen = {});

class CPersonalMenu : public QMenu {
    Q_OBJECT

public:
    CPersonalMenu(const QString& title, CMenuHabits& habits, QWidget* parent);

    // Adds a command's entry, whose use is remembered.
    QAction* AddCommand(QAction& command);
    // Shows what is still hidden. The chevron at the end, a short wait and the Down key behind the last entry
    // do it.
    void Expand();
    bool IsExpanded() const;

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void OnAboutToShow();

    CMenuHabits& m_habits;
    QAction* m_pChevron;
    QTimer m_timer;
};

} // namespace carvelot
