// Menus and the menu bar.
#include "ui/kit/LookPainting.h"
#include "ui/kit/LookStyle.h"

#include <QPainter>
#include <QStyleOption>
#include <qdrawutil.h>

namespace carvelot {

void CLookStyle::DrawMenuPanel(const QRect& rect, QPainter* painter, const QWidget* widget) const {
    // The frame round a combo box's list asks for this too: nothing but its edges shows.
    if (widget != nullptr && widget->inherits("QComboBoxPrivateContainer")) {
        DrawEdges(painter, rect);
        return;
    }
    painter->fillRect(rect, m_look.m_menu);
    FillGradient(*painter, QRect(rect.left() + 1, rect.top() + 1, kMenuGutter, rect.height() - 2),
                 m_look.m_menuGutter);
}

void CLookStyle::DrawMenuBarItem(const QStyleOptionMenuItem& item, QPainter* painter,
                                 const QWidget* widget) const {
    const QRect rect = item.rect;
    FillGradient(*painter,
                 item.menuRect.isValid()
                     ? QRect(rect.x(), item.menuRect.y(), rect.width(), item.menuRect.height())
                     : rect,
                 m_look.m_menuBar);
    const bool open = (item.state & State_Sunken) != 0;
    const bool hot = (item.state & State_Selected) != 0;
    QColor text = m_look.m_menuBarText;
    if (open || hot) {
        if (m_look.m_bRaisedButtons) {
            qDrawShadeRect(painter, rect, item.palette, open, 1);
        } else if (open) {
            painter->fillRect(rect, m_look.m_menu);
            painter->save();
            painter->setPen(m_look.m_border);
            painter->drawRect(rect.adjusted(0, 0, -1, 0));
            painter->restore();
            text = m_look.m_text;
        } else {
            DrawButton(painter, rect, m_look.m_hot);
            text = m_look.m_text;
        }
    }
    if ((item.state & State_Enabled) == 0) {
        text = m_look.m_disabledText;
    }
    painter->save();
    painter->setPen(text);
    const int mnemonic = proxy()->styleHint(SH_UnderlineShortcut, &item, widget) != 0 ? Qt::TextShowMnemonic
                                                                                      : Qt::TextHideMnemonic;
    painter->drawText(rect, Qt::AlignCenter | mnemonic | Qt::TextSingleLine, item.text);
    painter->restore();
}

void CLookStyle::DrawMenuItem(const QStyleOption* option, QPainter* painter, const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (item == nullptr) {
        return;
    }
    const QRect rect = item->rect;
    painter->save();
    if (item->menuItemType == QStyleOptionMenuItem::Separator) {
        painter->fillRect(
            QRect(rect.left() + kMenuGutter + 6, rect.center().y(), rect.width() - kMenuGutter - 8, 1),
            QColor(m_look.m_border.red(), m_look.m_border.green(), m_look.m_border.blue(), 140));
        painter->restore();
        return;
    }
    const bool enabled = (item->state & State_Enabled) != 0;
    const bool selected = (item->state & State_Selected) != 0;
    QColor text = enabled ? m_look.m_text : m_look.m_disabledText;
    if (selected) {
        if (m_look.m_bRaisedButtons) {
            painter->fillRect(rect, enabled ? m_look.m_selection : m_look.m_face.darker(106));
            text = enabled ? m_look.m_selectionText : m_look.m_disabledText;
        } else if (enabled) {
            DrawButton(painter, rect.adjusted(1, 0, -1, 0), m_look.m_hot);
        } else {
            painter->setPen(m_look.m_border);
            painter->drawRect(rect.adjusted(1, 0, -2, -1));
        }
    }
    const QRect box(rect.left() + (kMenuGutter - 20) / 2, rect.center().y() - 9, 20, 20);
    const bool checked = item->checkType != QStyleOptionMenuItem::NotCheckable && item->checked;
    if (checked && !m_look.m_bRaisedButtons) {
        DrawButton(painter, box, m_look.m_checked);
    }
    if (checked && (item->icon.isNull() || item->checkType == QStyleOptionMenuItem::Exclusive)) {
        painter->setRenderHint(QPainter::Antialiasing);
        const QPointF center = QRectF(box).center();
        if (item->checkType == QStyleOptionMenuItem::Exclusive) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(text);
            painter->drawEllipse(center, 3.2, 3.2);
        } else {
            painter->setPen(QPen(text, 1.8));
            painter->drawPolyline(
                QPolygonF({center + QPointF(-4, 0), center + QPointF(-1.2, 3), center + QPointF(4, -3.4)}));
        }
        painter->setRenderHint(QPainter::Antialiasing, false);
    } else if (!item->icon.isNull()) {
        const QRect icon(box.center() - QPoint(7, 7), QSize(16, 16));
        item->icon.paint(painter, icon, Qt::AlignCenter, enabled ? QIcon::Normal : QIcon::Disabled);
    }

    const QRect label = rect.adjusted(kMenuGutter + 8, 0, -22, 0);
    const qsizetype tabAt = item->text.indexOf(QLatin1Char('\t'));
    const int mnemonic = proxy()->styleHint(SH_UnderlineShortcut, option, widget) != 0 ? Qt::TextShowMnemonic
                                                                                       : Qt::TextHideMnemonic;
    painter->setFont(item->font);
    painter->setPen(text);
    painter->drawText(label, int{Qt::AlignLeft} | int{Qt::AlignVCenter} | mnemonic | int{Qt::TextSingleLine},
                      tabAt < 0 ? item->text : item->text.left(tabAt));
    if (tabAt >= 0) {
        painter->drawText(label, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
                          item->text.mid(tabAt + 1));
    }
    if (item->menuItemType == QStyleOptionMenuItem::SubMenu) {
        painter->setRenderHint(QPainter::Antialiasing);
        const double x = rect.right() - 12;
        const double y = rect.top() + rect.height() / 2.0;
        painter->setPen(Qt::NoPen);
        painter->setBrush(text);
        painter->drawPolygon(QPolygonF({{x, y - 4}, {x + 4, y}, {x, y + 4}}));
    }
    painter->restore();
}

QSize CLookStyle::MenuItemSize(const QStyleOptionMenuItem* item, const QSize& text) {
    if (item != nullptr && item->menuItemType == QStyleOptionMenuItem::Separator) {
        return {10, 5};
    }
    const int height = std::max(22, (item != nullptr ? QFontMetrics(item->font).height() : 14) + 7);
    const bool shortcut = item != nullptr && item->text.contains(QLatin1Char('\t'));
    return {text.width() + kMenuGutter + 8 + 26 + (shortcut ? 20 : 0), height};
}

} // namespace carvelot
