// LookStyle.h - how menus, toolbars, tabs and panes are drawn in a look.
#pragma once

#include "ui/kit/Look.h"

#include <QProxyStyle>

class QStyleOptionMenuItem;
class QStyleOptionTab;
class QStyleOptionTabBarBase;
class QStyleOptionToolButton;

namespace carvelot {

// A pane with the focus inside has the colours of an active title.
bool IsActivePane(const QWidget& pane);
QColor TitleTextColor(const QWidget& pane);

// Draws menus, toolbars, tabs, pane titles, headers and the status bar in the colours of the current look.
class CLookStyle : public QProxyStyle {
    Q_OBJECT

public:
    explicit CLookStyle(const CLook& look);

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap standard, const QStyleOption* option,
                       const QWidget* widget) const override;
    // A picture of a selected row keeps its colours.
    QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                                const QStyleOption* option) const override;

private:
    // LookMenus.cpp
    void DrawMenuPanel(const QRect& rect, QPainter* painter, const QWidget* widget) const;
    void DrawMenuBarItem(const QStyleOptionMenuItem& item, QPainter* painter, const QWidget* widget) const;
    void DrawMenuItem(const QStyleOption* option, QPainter* painter, const QWidget* widget) const;
    static QSize MenuItemSize(const QStyleOptionMenuItem* item, const QSize& text);
    // LookButtons.cpp
    void DrawButton(QPainter* painter, const QRect& rect, const CGradient& fill) const;
    void DrawEdges(QPainter* painter, const QRect& rect) const;
    void DrawFrame(const QRect& rect, QPainter* painter, const QBrush& inside) const;
    void DrawToolButton(const QStyleOption& option, QPainter* painter) const;
    void DrawButtonFocus(const QStyleOption& option, QPainter* painter) const;
    void DrawToolBar(const QRect& rect, bool horizontal, QPainter* painter) const;
    void DrawToolBarSeparator(const QRect& rect, bool horizontal, QPainter* painter) const;
    void DrawToolBarHandle(const QRect& rect, bool horizontal, QPainter* painter) const;
    // LookTabs.cpp
    void DrawTab(const QStyleOption* option, QPainter* painter) const;
    void DrawTabLabel(const QStyleOption* option, QPainter* painter, const QWidget* widget) const;
    void DrawTabClose(const QStyleOption& option, QPainter* painter) const;
    void DrawTabBase(const QStyleOptionTabBarBase& base, QPainter* painter) const;
    QRect TabTextRect(const QStyleOptionTab& tab) const;
    int BoldTabRoom(const QStyleOptionTab& tab, const QWidget* widget) const;
    // LookTitles.cpp
    void DrawTitle(const QStyleOption* option, QPainter* painter, const QWidget* widget) const;
    void DrawTitleButton(const QStyleOptionToolButton& button, QPainter* painter,
                         const QWidget& widget) const;
    // LookHeaders.cpp
    void DrawHeaderWithTitle(const QStyleOption* option, QPainter* painter, const QWidget* widget) const;
    void DrawHeader(const QStyleOption* option, QPainter* painter) const;
    void DrawHeaderLabel(const QStyleOption* option, QPainter* painter, const QWidget* widget) const;
    void DrawHeaderEnd(const QRect& rect, QPainter* painter) const;

    const CLook& m_look;
};

} // namespace carvelot
