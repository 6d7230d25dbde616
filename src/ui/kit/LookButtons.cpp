// Buttons, tool bars and the edges that menus and panes share.
#include "ui/kit/LookPainting.h"
#include "ui/kit/LookStyle.h"

#include <QPainter>
#include <QStyleOption>
#include <qdrawutil.h>

namespace carvelot {

void FillGradient(QPainter& painter, const QRect& rect, const CGradient& colors, bool downwards) {
    if (colors.m_from == colors.m_to) {
        painter.fillRect(rect, colors.m_from);
        return;
    }
    QLinearGradient gradient(rect.topLeft(), downwards ? rect.bottomLeft() : rect.topRight());
    gradient.setColorAt(0, colors.m_from);
    gradient.setColorAt(1, colors.m_to);
    painter.fillRect(rect, gradient);
}

void CLookStyle::DrawButton(QPainter* painter, const QRect& rect, const CGradient& fill) const {
    painter->save();
    if (m_look.m_bRoundButtons) {
        painter->setRenderHint(QPainter::Antialiasing);
        QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
        gradient.setColorAt(0, fill.m_from);
        gradient.setColorAt(1, fill.m_to);
        painter->setPen(m_look.m_hotBorder);
        painter->setBrush(gradient);
        painter->drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), 2.5, 2.5);
    } else {
        FillGradient(*painter, rect, fill);
        painter->setPen(m_look.m_hotBorder);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(rect.adjusted(0, 0, -1, -1));
    }
    painter->restore();
}

// Filled edges stay whole at any scale.
void CLookStyle::DrawEdges(QPainter* painter, const QRect& rect) const {
    for (const QRect& edge :
         {QRect(rect.left(), rect.top(), rect.width(), 1), QRect(rect.left(), rect.bottom(), rect.width(), 1),
          QRect(rect.left(), rect.top(), 1, rect.height()),
          QRect(rect.right(), rect.top(), 1, rect.height())}) {
        painter->fillRect(edge, m_look.m_border);
    }
}

// The frame of a pane or a page. A pane keeps the brush that the painter has.
void CLookStyle::DrawFrame(const QRect& rect, QPainter* painter, const QBrush& inside) const {
    painter->save();
    painter->setPen(m_look.m_border);
    if (inside.style() != Qt::NoBrush) {
        painter->setBrush(inside);
    }
    painter->drawRect(rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

void CLookStyle::DrawToolButton(const QStyleOption& option, QPainter* painter) const {
    const QRect rect = option.rect;
    const bool sunken = (option.state & State_Sunken) != 0;
    const bool on = (option.state & State_On) != 0;
    const bool hot = (option.state & State_MouseOver) != 0 && (option.state & State_Enabled) != 0;
    if (m_look.m_bRaisedButtons) {
        if (sunken || on || hot) {
            painter->fillRect(rect, on && !hot ? m_look.m_checked.m_from : m_look.m_face);
            qDrawShadeRect(painter, rect, option.palette, sunken || on, 1);
        }
    } else if (sunken) {
        DrawButton(painter, rect, m_look.m_pressed);
    } else if (hot) {
        DrawButton(painter, rect, on ? m_look.m_pressed : m_look.m_hot);
    } else if (on) {
        DrawButton(painter, rect, m_look.m_checked);
    } else if ((option.state & State_HasFocus) != 0) {
        DrawButton(painter, rect, m_look.m_hot);
    }
}

// A default button has a frame as strong as that of the focus: the focus shows inside. The old look has a
// mark of its own.
void CLookStyle::DrawButtonFocus(const QStyleOption& option, QPainter* painter) const {
    if ((option.state & State_HasFocus) == 0 || (option.state & State_KeyboardFocusChange) == 0 ||
        m_look.m_bRaisedButtons) {
        return;
    }
    painter->save();
    painter->setPen(QPen(m_look.m_text, 1, Qt::DotLine));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option.rect.adjusted(3, 3, -4, -4));
    painter->restore();
}

void CLookStyle::DrawToolBar(const QRect& rect, bool horizontal, QPainter* painter) const {
    FillGradient(*painter, rect, m_look.m_toolBar, horizontal);
    QColor line = m_look.m_border;
    line.setAlpha(110);
    painter->fillRect(horizontal ? QRect(rect.left(), rect.bottom(), rect.width(), 1)
                                 : QRect(rect.right(), rect.top(), 1, rect.height()),
                      line);
}

void CLookStyle::DrawToolBarSeparator(const QRect& rect, bool horizontal, QPainter* painter) const {
    const QColor light(255, 255, 255, 150);
    if (horizontal) {
        const int x = rect.center().x();
        painter->fillRect(QRect(x, rect.top() + 3, 1, rect.height() - 6), m_look.m_border);
        painter->fillRect(QRect(x + 1, rect.top() + 4, 1, rect.height() - 6), light);
    } else {
        const int y = rect.center().y();
        painter->fillRect(QRect(rect.left() + 3, y, rect.width() - 6, 1), m_look.m_border);
        painter->fillRect(QRect(rect.left() + 4, y + 1, rect.width() - 6, 1), light);
    }
}

void CLookStyle::DrawToolBarHandle(const QRect& rect, bool horizontal, QPainter* painter) const {
    const int length = horizontal ? rect.height() : rect.width();
    for (int n = 5; n + 2 <= length - 4; n += 4) {
        const QPoint at =
            horizontal ? QPoint(rect.left() + 3, rect.top() + n) : QPoint(rect.left() + n, rect.top() + 3);
        painter->fillRect(QRect(at + QPoint(1, 1), QSize(2, 2)), QColor(255, 255, 255, 190));
        painter->fillRect(QRect(at, QSize(2, 2)), m_look.m_border);
    }
}

} // namespace carvelot
