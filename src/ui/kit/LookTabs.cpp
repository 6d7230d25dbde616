// Tabs of windows and panes.
#include "ui/kit/LookPainting.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/TabbedClientArea.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

namespace carvelot {

namespace {

QPainterPath ClassicOutline(const QRectF& box) {
    QPainterPath path(box.bottomLeft());
    path.lineTo(box.left(), box.top() + 2.5);
    path.lineTo(box.left() + 2, box.top() + 0.5);
    path.lineTo(box.right() - 2, box.top() + 0.5);
    path.lineTo(box.right(), box.top() + 2.5);
    path.lineTo(box.bottomRight());
    return path;
}

QPainterPath FlatOutline(const QRectF& box) {
    QPainterPath path(box.bottomLeft());
    path.lineTo(box.left(), box.top() + 0.5);
    path.lineTo(box.right(), box.top() + 0.5);
    path.lineTo(box.bottomRight());
    return path;
}

template <int RadiusInTenths> QPainterPath RoundOutline(const QRectF& box) {
    constexpr double kRadius = RadiusInTenths / 10.0;
    const double top = box.top() + 0.5;
    QPainterPath path(box.bottomLeft());
    path.lineTo(box.left(), top + kRadius);
    path.quadTo(box.left(), top, box.left() + kRadius, top);
    path.lineTo(box.right() - kRadius, top);
    path.quadTo(box.right(), top, box.right(), top + kRadius);
    path.lineTo(box.bottomRight());
    return path;
}

// A slant takes at most a quarter of a tab.
double Slant(const QRectF& box, double most) { return std::min(most, (box.width() + 1) / 4); }

QPainterPath SlantedOutline(const QRectF& box) {
    const double top = box.top() + 0.5;
    const double left = box.left() + Slant(box, 10);
    QPainterPath path(box.bottomLeft());
    path.lineTo(left, box.top() + 2);
    path.quadTo(left + 1, top, left + 3, top);
    path.lineTo(box.right() - 2, top);
    path.lineTo(box.right(), box.top() + 2.5);
    path.lineTo(box.bottomRight());
    return path;
}

QPainterPath OneNoteOutline(const QRectF& box) {
    const double top = box.top() + 0.5;
    const double right = box.right() - Slant(box, 9);
    QPainterPath path(box.bottomLeft());
    path.lineTo(box.left(), box.top() + 3);
    path.quadTo(box.left(), top, box.left() + 2.5, top);
    path.lineTo(right - 3, top);
    path.cubicTo(right, top, right + 2, box.top() + 2.5, right + 4, box.top() + 6);
    path.lineTo(box.bottomRight());
    return path;
}

// In the order of ETabShape.
constexpr CTabShape kTabShapes[] = {
    {.m_fnOutline = ClassicOutline, .m_bCurved = false, .m_bLitEdges = true},
    {.m_fnOutline = FlatOutline, .m_bCurved = false},
    {.m_fnOutline = RoundOutline<25>, .m_bMarkedTop = true},
    {.m_fnOutline = SlantedOutline, .m_nAir = 26, .m_nTextLead = 16, .m_nIconLead = 15},
    {.m_fnOutline = OneNoteOutline, .m_nAir = 26, .m_nCloseGap = 8, .m_closeShift = QPoint(-5, 1)},
    {.m_fnOutline = RoundOutline<45>},
    {.m_fnOutline = RoundOutline<25>, .m_bTwoHalves = true},
};

} // namespace

const CTabShape& TabShapeOf(const CLook& look) {
    return kTabShapes[static_cast<std::size_t>(look.m_nTabShape)];
}

void CLookStyle::DrawTab(const QStyleOption* option, QPainter* painter) const {
    const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
    if (tab == nullptr) {
        return;
    }
    const bool selected = (tab->state & State_Selected) != 0;
    const bool hot = (tab->state & State_MouseOver) != 0 && (tab->state & State_Enabled) != 0;
    painter->save();
    // Drawn as a tab above its page; one below is the same turned over.
    QRectF rect(tab->rect);
    if (IsSouth(tab->shape)) {
        painter->translate(0, rect.top() + rect.bottom());
        painter->scale(1, -1);
    } else if (!IsNorth(tab->shape)) {
        painter->fillRect(rect, selected ? m_look.m_activeTab.m_from : m_look.m_tab.m_from);
        painter->setPen(m_look.m_border);
        painter->drawRect(rect.adjusted(0, 0, -1, -1));
        painter->restore();
        return;
    }
    const CGradient fill = selected ? m_look.m_activeTab
                           : hot    ? CGradient{m_look.m_tab.m_from.lighter(104), m_look.m_activeTab.m_to}
                                    : m_look.m_tab;
    const double top = rect.top() + (selected ? 1 : 3);
    const double left = rect.left() + 0.5;
    const double right = rect.right() - 0.5;
    const double bottom = rect.bottom();
    const CTabShape& shape = TabShapeOf(m_look);
    const QPainterPath path = shape.m_fnOutline(QRectF(QPointF(left, top), QPointF(right, bottom)));
    QLinearGradient gradient(0, top, 0, bottom);
    gradient.setColorAt(0, fill.m_from);
    if (shape.m_bTwoHalves && !selected) {
        gradient.setColorAt(0.49, fill.m_from.darker(102));
        gradient.setColorAt(0.5, fill.m_to);
    }
    gradient.setColorAt(1, fill.m_to);
    painter->setRenderHint(QPainter::Antialiasing, shape.m_bCurved);
    painter->fillPath(path, gradient);
    painter->setPen(QPen(m_look.m_border, 1));
    painter->drawPath(path);
    painter->setRenderHint(QPainter::Antialiasing, false);
    if (shape.m_bMarkedTop && (selected || hot)) {
        painter->fillRect(QRectF(rect.left() + 1, top, rect.width() - 2, 3), QColor(0xFF, 0xB9, 0x3B));
    }
    if (shape.m_bLitEdges) {
        painter->fillRect(QRectF(rect.left() + 1, top + 3, 1, bottom - top - 3), Qt::white);
        painter->fillRect(QRectF(rect.left() + 3, top + 1, rect.width() - 6, 1), Qt::white);
    }
    if (selected) { // the page and its tab are one
        painter->fillRect(QRectF(rect.left() + 1, bottom - 1, rect.width() - 2, 2), fill.m_to);
    }
    painter->restore();
}

void CLookStyle::DrawTabLabel(const QStyleOption* option, QPainter* painter, const QWidget* widget) const {
    const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
    if (tab == nullptr) {
        return;
    }
    if (!IsNorth(tab->shape) && !IsSouth(tab->shape)) {
        QProxyStyle::drawControl(CE_TabBarTabLabel, option, painter, widget);
        return;
    }
    const bool selected = (tab->state & State_Selected) != 0;
    painter->save();
    QRect rect = subElementRect(SE_TabBarTabText, option, widget);
    if (!tab->icon.isNull()) {
        const QRect icon(tab->rect.left() + TabShapeOf(m_look).m_nIconLead, rect.center().y() - 7, 16, 16);
        tab->icon.paint(painter, icon);
        rect.setLeft(icon.right() + 6);
    }
    painter->setPen((tab->state & State_Enabled) == 0 ? m_look.m_disabledText
                    : selected                        ? m_look.m_activeTabText
                                                      : m_look.m_tabText);
    QFont font = painter->font();
    if (selected && m_look.m_bBoldActiveTab && (widget == nullptr || !widget->property("calm").toBool())) {
        font.setBold(true);
    }
    // The panes' tabs share a narrow room, with none for the bold face: the whole name tells more.
    if (IsSouth(tab->shape) && QFontMetrics(font).horizontalAdvance(tab->text) > rect.width()) {
        font.setBold(false);
    }
    painter->setFont(font);
    const QFontMetrics metrics = painter->fontMetrics();
    if (const auto* bar = qobject_cast<const CTabBar*>(widget)) {
        painter->drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          bar->ShortText(tab->tabIndex, metrics, rect.width()));
    } else {
        painter->drawText(rect,
                          Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine |
                              Qt::TextHideMnemonic,
                          metrics.elidedText(tab->text, Qt::ElideMiddle, rect.width(), Qt::TextShowMnemonic));
    }
    painter->restore();
    if ((tab->state & State_HasFocus) != 0) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(*tab);
        focus.rect = rect.adjusted(-2, 2, 2, -2);
        QProxyStyle::drawPrimitive(PE_FrameFocusRect, &focus, painter, widget);
    }
}

void CLookStyle::DrawTabClose(const QStyleOption& option, QPainter* painter) const {
    const bool hot = (option.state & State_MouseOver) != 0 && (option.state & State_Enabled) != 0;
    const QRect box = option.rect.adjusted(1, 1, -1, -1);
    QColor color = m_look.m_text;
    if (hot) {
        DrawButton(painter, box, (option.state & State_Sunken) != 0 ? m_look.m_pressed : m_look.m_hot);
    } else {
        color = (option.state & State_Selected) != 0 ? m_look.m_activeTabText : m_look.m_tabText;
        color.setAlpha(190);
    }
    DrawSign(*painter, box.adjusted(3, 3, -3, -3), SP_TitleBarCloseButton, color);
}

// The line between a row of tabs and their page.
void CLookStyle::DrawTabBase(const QStyleOptionTabBarBase& base, QPainter* painter) const {
    if (!IsSouth(base.shape) && !IsNorth(base.shape)) {
        return;
    }
    const int y = IsSouth(base.shape) ? base.rect.top() : base.rect.bottom();
    painter->save();
    painter->setPen(m_look.m_border);
    painter->drawLine(base.rect.left(), y, base.rect.right(), y);
    painter->restore();
}

QRect CLookStyle::TabTextRect(const QStyleOptionTab& tab) const {
    const CTabShape& shape = TabShapeOf(m_look);
    QRect rect = tab.rect.adjusted(shape.m_nTextLead, IsSouth(tab.shape) ? -1 : 2, -5, 0);
    if (!tab.rightButtonSize.isEmpty()) {
        rect.adjust(0, 0, -tab.rightButtonSize.width() - shape.m_nCloseGap, 0);
    }
    return rect;
}

// The name of the tab in front may be bold.
int CLookStyle::BoldTabRoom(const QStyleOptionTab& tab, const QWidget* widget) const {
    if (!m_look.m_bBoldActiveTab) {
        return 0;
    }
    QFont bold = widget != nullptr ? widget->font() : QApplication::font();
    bold.setBold(true);
    return std::max(0, QFontMetrics(bold).horizontalAdvance(tab.text) -
                           tab.fontMetrics.horizontalAdvance(tab.text));
}

} // namespace carvelot
