// Titles of panes, and the signs in titles and tabs.
#include "ui/kit/LookPainting.h"
#include "ui/kit/LookStyle.h"

#include <QApplication>
#include <QDockWidget>
#include <QIconEngine>
#include <QPainter>
#include <QStyleOption>

namespace carvelot {

void DrawSign(QPainter& painter, const QRect& rect, QStyle::StandardPixmap sign, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double size = std::min(rect.width(), rect.height());
    painter.translate(rect.x() + (rect.width() - size) / 2, rect.y() + (rect.height() - size) / 2);
    painter.scale(size / 10, size / 10);
    painter.setPen(QPen(color, 1.3, Qt::SolidLine, Qt::FlatCap));
    if (sign == QStyle::SP_TitleBarNormalButton || sign == QStyle::SP_TitleBarMaxButton) {
        painter.setPen(QPen(color, 1));
        painter.drawRect(QRectF(3.5, 1.5, 5, 5));
        painter.fillRect(QRectF(3, 1, 6, 1.8), color);
        painter.fillRect(QRectF(1, 4, 1, 5), color);
        painter.fillRect(QRectF(1, 8, 5, 1), color);
    } else {
        painter.drawLine(QPointF(1.8, 1.8), QPointF(8.2, 8.2));
        painter.drawLine(QPointF(8.2, 1.8), QPointF(1.8, 8.2));
    }
    painter.restore();
}

namespace {

class CSignEngine final : public QIconEngine {
public:
    CSignEngine(QStyle::StandardPixmap sign, const QColor& color) : m_nSign(sign), m_color(color) {}
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        QColor color = m_color;
        if (mode == QIcon::Disabled) {
            color.setAlpha(90);
        }
        DrawSign(*painter, rect, m_nSign, color);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new CSignEngine(*this); }

private:
    QStyle::StandardPixmap m_nSign;
    QColor m_color;
};

} // namespace

QIcon SignIcon(QStyle::StandardPixmap sign, const QColor& color) {
    return QIcon(new CSignEngine(sign, color));
}

bool IsActivePane(const QWidget& pane) {
    const QWidget* focus = QApplication::focusWidget();
    return focus != nullptr && pane.isAncestorOf(focus);
}

QColor TitleTextColor(const QWidget& pane) {
    return IsActivePane(pane) ? CurrentLook().m_activeTitleText : CurrentLook().m_titleText;
}

void CLookStyle::DrawTitle(const QStyleOption* option, QPainter* painter, const QWidget* widget) const {
    const auto* title = qstyleoption_cast<const QStyleOptionDockWidget*>(option);
    if (title == nullptr) {
        return;
    }
    const auto* dock = qobject_cast<const QDockWidget*>(widget);
    const bool active = dock != nullptr && IsActivePane(*dock);
    painter->save();
    const QRect rect = title->rect;
    FillGradient(*painter, rect, active ? m_look.m_activeTitle : m_look.m_title, !m_look.m_bTitleAcross);
    painter->setPen(m_look.m_border);
    painter->drawRect(rect.adjusted(0, 0, -1, -1));
    constexpr int kMargin = 5;
    const int pin = dock != nullptr ? 22 : 0;
    const bool mirrored = title->direction == Qt::RightToLeft;
    const QRect label = subElementRect(SE_DockWidgetTitleBarText, option, widget)
                            .adjusted(mirrored ? pin : kMargin, 0, mirrored ? -kMargin : -pin, 0);
    painter->setPen(active ? m_look.m_activeTitleText : m_look.m_titleText);
    painter->drawText(label, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      painter->fontMetrics().elidedText(title->title, Qt::ElideRight, label.width()));
    painter->restore();
}

// The toolkit's buttons in a title; their own icons know nothing of the focus.
void CLookStyle::DrawTitleButton(const QStyleOptionToolButton& button, QPainter* painter,
                                 const QWidget& widget) const {
    QStyleOptionToolButton label = button;
    const bool close = widget.objectName() == QLatin1String("qt_dockwidget_closebutton");
    label.icon = SignIcon(close ? SP_TitleBarCloseButton : SP_TitleBarNormalButton,
                          TitleTextColor(*widget.parentWidget()));
    QProxyStyle::drawControl(CE_ToolButtonLabel, &label, painter, &widget);
}

QIcon CLookStyle::standardIcon(StandardPixmap standard, const QStyleOption* option,
                               const QWidget* widget) const {
    if (standard == SP_TitleBarCloseButton || standard == SP_TitleBarNormalButton ||
        standard == SP_TitleBarMaxButton) {
        return SignIcon(standard, m_look.m_titleText);
    }
    return QProxyStyle::standardIcon(standard, option, widget);
}

} // namespace carvelot
