// Headers of lists.
#include "ui/kit/LookPainting.h"
#include "ui/kit/LookStyle.h"

#include <QPainter>
#include <QStyleOption>
#include <qdrawutil.h>

namespace carvelot {

namespace {

QStyleOptionHeaderV2 HeaderOption(const QStyleOption* option) {
    QStyleOptionHeaderV2 header;
    if (const auto* newer = qstyleoption_cast<const QStyleOptionHeaderV2*>(option)) {
        header = *newer;
    } else if (const auto* older = qstyleoption_cast<const QStyleOptionHeader*>(option)) {
        static_cast<QStyleOptionHeader&>(header) = *older;
    }
    return header;
}

} // namespace

// The toolkit puts the arrow of a sorted column beside the title and cuts that off; here it stands above the
// title's middle.
void CLookStyle::DrawHeaderWithTitle(const QStyleOption* option, QPainter* painter,
                                     const QWidget* widget) const {
    QStyleOptionHeaderV2 header = HeaderOption(option);
    const QRect rect = option->rect;
    painter->save();
    painter->setClipRect(rect);
    drawControl(CE_HeaderSection, &header, painter, widget);
    const int margin = pixelMetric(PM_HeaderMargin, option, widget);
    header.rect = rect.adjusted(margin, margin + 1, -margin, -margin + 1);
    drawControl(CE_HeaderLabel, &header, painter, widget);
    if (header.sortIndicator != QStyleOptionHeader::None) {
        const QRectF arrow(rect.center().x() - 3, rect.top() + 1, 7, 3.5);
        // The toolkit says "down" for what ascends.
        const bool up = header.sortIndicator == QStyleOptionHeader::SortDown;
        const double base = up ? arrow.bottom() : arrow.top();
        const double tip = up ? arrow.top() : arrow.bottom();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(m_look.m_text);
        painter->drawPolygon(
            QPolygonF({{arrow.left(), base}, {arrow.right(), base}, {arrow.center().x(), tip}}));
    }
    painter->restore();
}

void CLookStyle::DrawHeader(const QStyleOption* option, QPainter* painter) const {
    const QRect rect = option->rect;
    const bool enabled = (option->state & State_Enabled) != 0;
    const bool hot = enabled && (option->state & State_MouseOver) != 0;
    if (m_look.m_bRaisedButtons) {
        painter->fillRect(rect, m_look.m_face);
        qDrawShadePanel(painter, rect, option->palette, (option->state & State_Sunken) != 0, 1);
        return;
    }
    FillGradient(*painter, rect,
                 (option->state & State_Sunken) != 0 ? m_look.m_pressed
                 : hot                               ? m_look.m_hot
                                                     : m_look.m_header);
    QColor line = m_look.m_border;
    painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), line);
    line.setAlpha(130);
    painter->fillRect(QRect(rect.right(), rect.top() + 3, 1, rect.height() - 6), line);
}

// The margin is one at the sides: above and below, the text takes what room there is.
void CLookStyle::DrawHeaderLabel(const QStyleOption* option, QPainter* painter, const QWidget* widget) const {
    QStyleOptionHeaderV2 label = HeaderOption(option);
    const int margin = pixelMetric(PM_HeaderMargin, option, widget);
    label.rect.adjust(0, -margin, 0, margin);
    QProxyStyle::drawControl(CE_HeaderLabel, &label, painter, widget);
}

void CLookStyle::DrawHeaderEnd(const QRect& rect, QPainter* painter) const {
    FillGradient(*painter, rect, m_look.m_header);
    painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), m_look.m_border);
}

} // namespace carvelot
