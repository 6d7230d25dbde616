// LookStyle.h - the looks of the window: colours, tab shapes and how menus, toolbars, tabs and panes are
// drawn.
#pragma once

#include <QColor>
#include <QLinearGradient>
#include <QPalette>
#include <QProxyStyle>

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

    QPalette Palette() const;
    void FillWorkspace(QPainter& painter, const QRect& rect) const;
};

// The look of a command number between 205 and 219. A number without a look of its own takes Office 2007 in
// the style that was last in force; nOffice2007 is that style's command and changes with the four that set
// it.
const CLook& LookOf(int nId, int& nOffice2007);
// Every look there is, in the order of their numbers.
QList<int> LookIds();

const CLook& CurrentLook();
// Makes the look that of the whole program.
void ApplyLook(const CLook& look);

// A pane with the focus inside has the colours of an active title.
bool IsActivePane(const QWidget& pane);
QColor TitleTextColor(const QWidget& pane);

// Draws menus, toolbars, tabs, pane titles, headers and the status bar in the colours of the current look.
class CLookStyle : public QProxyStyle {
    Q_OBJECT

public:
    explicit CLookStyle(const CLook& look);

    void drawPrimitive(PrimitiveElement nElement, const QStyleOption* pOption, QPainter* pPainter,
                       const QWidget* pWidget) const override;
    void drawControl(ControlElement nElement, const QStyleOption* pOption, QPainter* pPainter,
                     const QWidget* pWidget) const override;
    int pixelMetric(PixelMetric nMetric, const QStyleOption* pOption, const QWidget* pWidget) const override;
    int styleHint(StyleHint nHint, const QStyleOption* pOption, const QWidget* pWidget,
                  QStyleHintReturn* pReturn) const override;
    QSize sizeFromContents(ContentsType nType, const QStyleOption* pOption, const QSize& size,
                           const QWidget* pWidget) const override;
    QRect subElementRect(SubElement nElement, const QStyleOption* pOption,
                         const QWidget* pWidget) const override;
    QIcon standardIcon(StandardPixmap nIcon, const QStyleOption* pOption,
                       const QWidget* pWidget) const override;
    // A picture of a selected row keeps its colours.
    QPixmap generatedIconPixmap(QIcon::Mode nMode, const QPixmap& pixmap,
                                const QStyleOption* pOption) const override;

private:
    void DrawTab(const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const;
    void DrawTabLabel(const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const;
    void DrawMenuItem(const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const;
    void DrawTitle(const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const;
    void DrawHeaderWithTitle(const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const;
    void DrawHeader(const QStyleOption* pOption, QPainter* pPainter) const;
    void DrawEdges(QPainter* pPainter, const QRect& rect) const;
    void DrawButton(QPainter* pPainter, const QRect& rect, const CGradient& fill) const;

    const CLook& m_look;
};

} // namespace carvelot
