// Which part of the window is drawn by which function; the drawing is in the files beside this one, a subject
// each.
#include "ui/kit/LookStyle.h"

#include "ui/kit/LookPainting.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

namespace carvelot {

CLookStyle::CLookStyle(const CLook& look)
    : QProxyStyle(QStyleFactory::create(QString::fromLatin1(look.m_pszBase))), m_look(look) {
    setObjectName(QStringLiteral("carvelot-%1").arg(look.m_nId));
}

void CLookStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const QRect rect = option->rect;
    const bool horizontal = (option->state & State_Horizontal) != 0;
    switch (element) {
    case PE_PanelMenu:
        DrawMenuPanel(rect, painter, widget);
        return;
    case PE_FrameMenu:
        DrawEdges(painter, rect);
        return;
    case PE_PanelMenuBar:
        return;
    case PE_PanelToolBar:
    case PE_PanelStatusBar:
        FillGradient(*painter, rect, m_look.m_toolBar);
        return;
    case PE_FrameStatusBarItem:
        painter->fillRect(QRect(rect.left(), rect.top() + 3, 1, rect.height() - 6), m_look.m_border);
        return;
    case PE_FrameTabBarBase:
        if (const auto* base = qstyleoption_cast<const QStyleOptionTabBarBase*>(option)) {
            DrawTabBase(*base, painter);
        }
        return;
    case PE_FrameDockWidget:
        DrawFrame(rect, painter, Qt::NoBrush);
        return;
    case PE_FrameTabWidget:
        DrawFrame(rect, painter, m_look.m_activeTab.m_to);
        return;
    case PE_IndicatorTabClose:
        DrawTabClose(*option, painter);
        return;
    case PE_IndicatorToolBarSeparator:
        DrawToolBarSeparator(rect, horizontal, painter);
        return;
    case PE_IndicatorToolBarHandle:
        DrawToolBarHandle(rect, horizontal, painter);
        return;
    case PE_PanelButtonTool:
        DrawToolButton(*option, painter);
        return;
    case PE_IndicatorDockWidgetResizeHandle:
        painter->fillRect(rect, m_look.m_face);
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void CLookStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    const QRect rect = option->rect;
    switch (element) {
    case CE_MenuBarEmptyArea:
        FillGradient(*painter, rect, m_look.m_menuBar);
        return;
    case CE_MenuBarItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
            DrawMenuBarItem(*item, painter, widget);
            return;
        }
        break;
    case CE_MenuItem:
        DrawMenuItem(option, painter, widget);
        return;
    case CE_MenuEmptyArea:
        return;
    case CE_ToolBar: {
        const auto* bar = qstyleoption_cast<const QStyleOptionToolBar*>(option);
        DrawToolBar(rect, bar == nullptr || (bar->state & State_Horizontal) != 0, painter);
        return;
    }
    case CE_TabBarTabShape:
        DrawTab(option, painter);
        return;
    case CE_TabBarTabLabel:
        DrawTabLabel(option, painter, widget);
        return;
    case CE_DockWidgetTitle:
        DrawTitle(option, painter, widget);
        return;
    case CE_Header:
        DrawHeaderWithTitle(option, painter, widget);
        return;
    case CE_HeaderSection:
        DrawHeader(option, painter);
        return;
    case CE_HeaderEmptyArea:
        DrawHeaderEnd(rect, painter);
        return;
    case CE_HeaderLabel:
        DrawHeaderLabel(option, painter, widget);
        return;
    case CE_PushButton:
        QProxyStyle::drawControl(element, option, painter, widget);
        DrawButtonFocus(*option, painter);
        return;
    case CE_ToolButtonLabel: {
        const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
        if (button != nullptr && widget != nullptr && widget->inherits("QDockWidgetTitleButton")) {
            DrawTitleButton(*button, painter, *widget);
            return;
        }
        break;
    }
    case CE_Splitter:
        painter->fillRect(rect, m_look.m_face);
        return;
    default:
        break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

int CLookStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_ToolBarIconSize:
    case PM_SmallIconSize:
    case PM_TabBarIconSize:
    case PM_ListViewIconSize:
        return 16;
    case PM_HeaderMargin:
        return 6;
    case PM_ToolBarItemSpacing:
        return 1;
    case PM_ToolBarItemMargin:
        return 2;
    case PM_ToolBarHandleExtent:
        return 9;
    case PM_ToolBarSeparatorExtent:
        return 7;
    case PM_ToolBarFrameWidth:
        return 0;
    case PM_ToolBarExtensionExtent:
        return 14;
    case PM_MenuPanelWidth:
        return 1;
    case PM_MenuHMargin:
        return 0;
    case PM_MenuVMargin:
        return 1;
    case PM_MenuBarHMargin:
        return 4;
    case PM_MenuBarVMargin:
        return 2;
    case PM_MenuBarPanelWidth:
        return 0;
    case PM_MenuBarItemSpacing:
        return 0;
    case PM_TabBarTabOverlap:
        return 0;
    case PM_TabBarTabHSpace:
        return TabShapeOf(m_look).m_nAir;
    case PM_TabBarTabVSpace:
        return 9;
    case PM_TabBarBaseOverlap:
        return 1;
    case PM_TabBarTabShiftVertical:
    case PM_TabBarTabShiftHorizontal:
        return 0;
    case PM_TabCloseIndicatorWidth:
    case PM_TabCloseIndicatorHeight:
        return 18;
    case PM_DockWidgetTitleMargin:
        return 3;
    case PM_DockWidgetTitleBarButtonMargin:
        return 2;
    case PM_DockWidgetSeparatorExtent:
    case PM_SplitterWidth:
        return 5;
    case PM_DockWidgetFrameWidth:
        return 1;
    case PM_TitleBarButtonIconSize:
    case PM_DockWidgetHandleExtent:
        return 12;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QPixmap CLookStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                                        const QStyleOption* option) const {
    return mode == QIcon::Selected ? pixmap : QProxyStyle::generatedIconPixmap(mode, pixmap, option);
}

int CLookStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returned) const {
    switch (hint) {
    case SH_TabBar_Alignment:
        return Qt::AlignLeft;
    case SH_TabBar_CloseButtonPosition:
        return QTabBar::RightSide;
    case SH_TabBar_PreferNoArrows:
        return 0;
    case SH_ItemView_ActivateItemOnSingleClick:
        return 0;
    case SH_DockWidget_ButtonsHaveFrame:
        return 0;
    case SH_EtchDisabledText:
    case SH_DialogButtonBox_ButtonsHaveIcons:
        return 0;
    case SH_MenuBar_AltKeyNavigation:
        return 1;
    case SH_Menu_Mask:
        return 0;
    case SH_ItemView_ShowDecorationSelected:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }
}

QSize CLookStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
    if (type == CT_MenuItem) {
        return MenuItemSize(qstyleoption_cast<const QStyleOptionMenuItem*>(option), size);
    }
    if (type == CT_MenuBarItem) {
        return {size.width() + 14, std::max(size.height() + 6, 22)};
    }
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    if (type == CT_TabBarTab) {
        if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
            result.rwidth() += BoldTabRoom(*tab, widget);
        }
    }
    if (type == CT_PushButton) {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        constexpr int kAir = 20; // beside the text
        if (button != nullptr && !button->text.isEmpty()) {
            result.setWidth(std::max(result.width(), size.width() + kAir));
        }
    }
    if (type == CT_ItemViewItem) {
        result.setHeight(std::max(result.height(), option->fontMetrics.height() + 4));
    }
    if (type == CT_HeaderSection) {
        result.setHeight(option->fontMetrics.height() + 7);
    }
    return result;
}

QRect CLookStyle::subElementRect(SubElement element, const QStyleOption* option,
                                 const QWidget* widget) const {
    if (element == SE_TabBarTabText) {
        const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
        if (tab != nullptr && (IsNorth(tab->shape) || IsSouth(tab->shape))) {
            return TabTextRect(*tab);
        }
    }
    QRect rect = QProxyStyle::subElementRect(element, option, widget);
    if (element == SE_TabBarTabRightButton) {
        // A tab looks the same in either direction of reading: its picture stands on the left.
        if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
            rect = visualRect(option->direction, tab->rect, rect);
        }
        rect.translate(TabShapeOf(m_look).m_closeShift);
    }
    return rect;
}

} // namespace carvelot
