// Look.h - the looks of the window, as data: colours, the shape of tabs, how buttons show themselves.
// LookTable.cpp has them, CLookStyle paints with them.
#pragma once

#include <QColor>
#include <QList>
#include <QPalette>

#include <span>

class QPainter;
class QRect;

namespace carvelot {

enum class ETabShape { Classic, Flat, Themed, Slanted, OneNote, Rounded, Glass };

struct CGradient {
    QColor m_from;
    QColor m_to;
};

// One look, as a table of what it is painted with.
struct CLook {
    int m_nId = 0;
    const char* m_pszBase = "Fusion"; // the style that draws what the look leaves alone
    ETabShape m_nTabShape = ETabShape::OneNote;

    QColor m_face; // dialogs and the pane's own background
    QColor m_text;
    QColor m_disabledText;
    QColor m_border;    // lines around panes, tabs and menus
    QColor m_selection; // in lists and trees
    QColor m_selectionText;
    QColor m_workspaceText;

    CGradient m_menuBar;
    CGradient m_toolBar;
    CGradient m_menuGutter;
    CGradient m_title;       // of a pane
    CGradient m_activeTitle; // of the pane with the focus
    CGradient m_tab;
    CGradient m_activeTab;
    CGradient m_header;
    CGradient m_workspace; // behind the document windows
    CGradient m_hot;       // below the pointer
    CGradient m_pressed;
    CGradient m_checked;
    QColor m_hotBorder;
    QColor m_menu;
    QColor m_menuBarText;
    QColor m_titleText;
    QColor m_activeTitleText;
    QColor m_tabText;
    QColor m_activeTabText;
    bool m_bBoldActiveTab = true;
    bool m_bRoundButtons = false;
    bool m_bRaisedButtons = false; // edges in three dimensions instead of a frame
    bool m_bTitleAcross = false;   // a title's colours change from left to right

    QPalette Palette() const;
    void FillWorkspace(QPainter& painter, const QRect& rect) const;
};

// Every look there is, in the order of their numbers.
std::span<const CLook> Looks();

// The look of a command number between 205 and 219. A number without a look of its own takes Office 2007 in
// the style that was last in force; office2007 is that style's command and changes with the four that set
// it.
const CLook& LookOf(int id, int& office2007);
QList<int> LookIds();

const CLook& CurrentLook();
// Makes the look that of the whole program.
void ApplyLook(const CLook& look);

} // namespace carvelot
