// Titles of panes, and the signs in titles and tabs.
#include "ui/kit/LookPainting.h"
#include "ui/kit/LookStyle.h"

#include <QApplication>
#include <QDockWidget>
#include <QIconEngine>
#include <QPainter>
#include <QStyleOption>

namespace carvelot {

void DrawSign(QPainter& painter, const QRect& rect, QStyle::StandardPixmap nSign, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double fSize = std::min(rect.width(), rect.height());
    painter.translate(rect.x() + (rect.width() - fSize) / 2, rect.y() + (rect.height() - fSize) / 2);
    painter.scale(fSize / 10, fSize / 10);
    painter.setPen(QPen(color, 1.3, Qt::SolidLine, Qt::FlatCap));
    if (nSign == QStyle::SP_TitleBarNormalButton || nSign == QStyle::SP_TitleBarMaxButton) {
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
    CSignEngine(QStyle::StandardPixmap nSign, const QColor& color) : m_nSign(nSign), m_color(color) {}
    void paint(QPainter* pPainter, const QRect& rect, QIcon::Mode nMode, QIcon::State) override {
        QColor color = m_color;
        if (nMode == QIcon::Disabled)
            color.setAlpha(90);
        DrawSign(*pPainter, rect, m_nSign, color);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode nMode, QIcon::State nState) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), nMode, nState);
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
    const QWidget* pFocus = QApplication::focusWidget();
    return pFocus != nullptr && pane.isAncestorOf(pFocus);
}

QColor TitleTextColor(const QWidget& pane) {
    return IsActivePane(pane) ? CurrentLook().m_activeTitleText : CurrentLook().m_titleText;
}

void CLookStyle::DrawTitle(const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const {
    const auto* pTitle = qstyleoption_cast<const QStyleOptionDockWidget*>(pOption);
    if (pTitle == nullptr)
        return;
    const auto* pDock = qobject_cast<const QDockWidget*>(pWidget);
    const bool bActive = pDock != nullptr && IsActivePane(*pDock);
    pPainter->save();
    const QRect rect = pTitle->rect;
    FillGradient(*pPainter, rect, bActive ? m_look.m_activeTitle : m_look.m_title, !m_look.m_bTitleAcross);
    pPainter->setPen(m_look.m_border);
    pPainter->drawRect(rect.adjusted(0, 0, -1, -1));
    constexpr int kMargin = 5;
    const int nPin = pDock != nullptr ? 22 : 0;
    const bool bMirrored = pTitle->direction == Qt::RightToLeft;
    const QRect label = subElementRect(SE_DockWidgetTitleBarText, pOption, pWidget)
                            .adjusted(bMirrored ? nPin : kMargin, 0, bMirrored ? -kMargin : -nPin, 0);
    pPainter->setPen(bActive ? m_look.m_activeTitleText : m_look.m_titleText);
    pPainter->drawText(label, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                       pPainter->fontMetrics().elidedText(pTitle->title, Qt::ElideRight, label.width()));
    pPainter->restore();
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

QIcon CLookStyle::standardIcon(StandardPixmap nIcon, const QStyleOption* pOption,
                               const QWidget* pWidget) const {
    if (nIcon == SP_TitleBarCloseButton || nIcon == SP_TitleBarNormalButton || nIcon == SP_TitleBarMaxButton)
        return SignIcon(nIcon, m_look.m_titleText);
    return QProxyStyle::standardIcon(nIcon, pOption, pWidget);
}

} // namespace carvelot
