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

void CLookStyle::drawPrimitive(PrimitiveElement nElement, const QStyleOption* pOption, QPainter* pPainter,
                               const QWidget* pWidget) const {
    const QRect rect = pOption->rect;
    const bool horizontal = (pOption->state & State_Horizontal) != 0;
    switch (nElement) {
    case PE_PanelMenu:
        DrawMenuPanel(rect, pPainter, pWidget);
        return;
    case PE_FrameMenu:
        DrawEdges(pPainter, rect);
        return;
    case PE_PanelMenuBar:
        return;
    case PE_PanelToolBar:
    case PE_PanelStatusBar:
        FillGradient(*pPainter, rect, m_look.m_toolBar);
        return;
    case PE_FrameStatusBarItem:
        pPainter->fillRect(QRect(rect.left(), rect.top() + 3, 1, rect.height() - 6), m_look.m_border);
        return;
    case PE_FrameTabBarBase:
        if (const auto* base = qstyleoption_cast<const QStyleOptionTabBarBase*>(pOption)) {
            DrawTabBase(*base, pPainter);
        }
        return;
    case PE_FrameDockWidget:
        DrawFrame(rect, pPainter, Qt::NoBrush);
        return;
    case PE_FrameTabWidget:
        DrawFrame(rect, pPainter, m_look.m_activeTab.m_to);
        return;
    case PE_IndicatorTabClose:
        DrawTabClose(*pOption, pPainter);
        return;
    case PE_IndicatorToolBarSeparator:
        DrawToolBarSeparator(rect, horizontal, pPainter);
        return;
    case PE_IndicatorToolBarHandle:
        DrawToolBarHandle(rect, horizontal, pPainter);
        return;
    case PE_PanelButtonTool:
        DrawToolButton(*pOption, pPainter);
        return;
    case PE_IndicatorDockWidgetResizeHandle:
        pPainter->fillRect(rect, m_look.m_face);
        return;
    default:
        QProxyStyle::drawPrimitive(nElement, pOption, pPainter, pWidget);
    }
}

void CLookStyle::drawControl(ControlElement nElement, const QStyleOption* pOption, QPainter* pPainter,
                             const QWidget* pWidget) const {
    const QRect rect = pOption->rect;
    switch (nElement) {
    case CE_MenuBarEmptyArea:
        FillGradient(*pPainter, rect, m_look.m_menuBar);
        return;
    case CE_MenuBarItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(pOption)) {
            DrawMenuBarItem(*item, pPainter, pWidget);
            return;
        }
        break;
    case CE_MenuItem:
        DrawMenuItem(pOption, pPainter, pWidget);
        return;
    case CE_MenuEmptyArea:
        return;
    case CE_ToolBar: {
        const auto* bar = qstyleoption_cast<const QStyleOptionToolBar*>(pOption);
        DrawToolBar(rect, bar == nullptr || (bar->state & State_Horizontal) != 0, pPainter);
        return;
    }
    case CE_TabBarTabShape:
        DrawTab(pOption, pPainter);
        return;
    case CE_TabBarTabLabel:
        DrawTabLabel(pOption, pPainter, pWidget);
        return;
    case CE_DockWidgetTitle:
        DrawTitle(pOption, pPainter, pWidget);
        return;
    case CE_Header:
        DrawHeaderWithTitle(pOption, pPainter, pWidget);
        return;
    case CE_HeaderSection:
        DrawHeader(pOption, pPainter);
        return;
    case CE_HeaderEmptyArea:
        DrawHeaderEnd(rect, pPainter);
        return;
    case CE_HeaderLabel:
        DrawHeaderLabel(pOption, pPainter, pWidget);
        return;
    case CE_PushButton:
        QProxyStyle::drawControl(nElement, pOption, pPainter, pWidget);
        DrawButtonFocus(*pOption, pPainter);
        return;
    case CE_ToolButtonLabel: {
        const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(pOption);
        if (button != nullptr && pWidget != nullptr && pWidget->inherits("QDockWidgetTitleButton")) {
            DrawTitleButton(*button, pPainter, *pWidget);
            return;
        }
        break;
    }
    case CE_Splitter:
        pPainter->fillRect(rect, m_look.m_face);
        return;
    default:
        break;
    }
    QProxyStyle::drawControl(nElement, pOption, pPainter, pWidget);
}

int CLookStyle::pixelMetric(PixelMetric nMetric, const QStyleOption* pOption, const QWidget* pWidget) const {
    switch (nMetric) {
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
        return QProxyStyle::pixelMetric(nMetric, pOption, pWidget);
    }
}

QPixmap CLookStyle::generatedIconPixmap(QIcon::Mode nMode, const QPixmap& pixmap,
                                        const QStyleOption* pOption) const {
    return nMode == QIcon::Selected ? pixmap : QProxyStyle::generatedIconPixmap(nMode, pixmap, pOption);
}

int CLookStyle::styleHint(StyleHint nHint, const QStyleOption* pOption, const QWidget* pWidget,
                          QStyleHintReturn* pReturn) const {
    switch (nHint) {
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
        return QProxyStyle::styleHint(nHint, pOption, pWidget, pReturn);
    }
}

QSize CLookStyle::sizeFromContents(ContentsType nType, const QStyleOption* pOption, const QSize& size,
                                   const QWidget* pWidget) const {
    if (nType == CT_MenuItem) {
        return MenuItemSize(qstyleoption_cast<const QStyleOptionMenuItem*>(pOption), size);
    }
    if (nType == CT_MenuBarItem) {
        return {size.width() + 14, std::max(size.height() + 6, 22)};
    }
    QSize result = QProxyStyle::sizeFromContents(nType, pOption, size, pWidget);
    if (nType == CT_TabBarTab) {
        if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(pOption)) {
            result.rwidth() += BoldTabRoom(*tab, pWidget);
        }
    }
    if (nType == CT_PushButton) {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(pOption);
        constexpr int kAir = 20; // beside the text
        if (button != nullptr && !button->text.isEmpty()) {
            result.setWidth(std::max(result.width(), size.width() + kAir));
        }
    }
    if (nType == CT_ItemViewItem) {
        result.setHeight(std::max(result.height(), pOption->fontMetrics.height() + 4));
    }
    if (nType == CT_HeaderSection) {
        result.setHeight(pOption->fontMetrics.height() + 7);
    }
    return result;
}

QRect CLookStyle::subElementRect(SubElement nElement, const QStyleOption* pOption,
                                 const QWidget* pWidget) const {
    if (nElement == SE_TabBarTabText) {
        const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(pOption);
        if (tab != nullptr && (IsNorth(tab->shape) || IsSouth(tab->shape))) {
            return TabTextRect(*tab);
        }
    }
    QRect rect = QProxyStyle::subElementRect(nElement, pOption, pWidget);
    if (nElement == SE_TabBarTabRightButton) {
        rect.translate(TabShapeOf(m_look).m_closeShift);
    }
    return rect;
}

} // namespace carvelot
