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
void CLookStyle::DrawHeaderWithTitle(const QStyleOption* pOption, QPainter* pPainter,
                                     const QWidget* pWidget) const {
    QStyleOptionHeaderV2 option = HeaderOption(pOption);
    const QRect rect = pOption->rect;
    pPainter->save();
    pPainter->setClipRect(rect);
    drawControl(CE_HeaderSection, &option, pPainter, pWidget);
    const int nMargin = pixelMetric(PM_HeaderMargin, pOption, pWidget);
    option.rect = rect.adjusted(nMargin, nMargin + 1, -nMargin, -nMargin + 1);
    drawControl(CE_HeaderLabel, &option, pPainter, pWidget);
    if (option.sortIndicator != QStyleOptionHeader::None) {
        const QRectF arrow(rect.center().x() - 3, rect.top() + 1, 7, 3.5);
        // The toolkit says "down" for what ascends.
        const bool bUp = option.sortIndicator == QStyleOptionHeader::SortDown;
        const double fBase = bUp ? arrow.bottom() : arrow.top();
        const double fTip = bUp ? arrow.top() : arrow.bottom();
        pPainter->setRenderHint(QPainter::Antialiasing);
        pPainter->setPen(Qt::NoPen);
        pPainter->setBrush(m_look.m_text);
        pPainter->drawPolygon(
            QPolygonF({{arrow.left(), fBase}, {arrow.right(), fBase}, {arrow.center().x(), fTip}}));
    }
    pPainter->restore();
}

void CLookStyle::DrawHeader(const QStyleOption* pOption, QPainter* pPainter) const {
    const QRect rect = pOption->rect;
    const bool bEnabled = (pOption->state & State_Enabled) != 0;
    const bool bHot = bEnabled && (pOption->state & State_MouseOver) != 0;
    if (m_look.m_bRaisedButtons) {
        pPainter->fillRect(rect, m_look.m_face);
        qDrawShadePanel(pPainter, rect, pOption->palette, (pOption->state & State_Sunken) != 0, 1);
        return;
    }
    FillGradient(*pPainter, rect,
                 (pOption->state & State_Sunken) != 0 ? m_look.m_pressed
                 : bHot                               ? m_look.m_hot
                                                      : m_look.m_header);
    QColor line = m_look.m_border;
    pPainter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), line);
    line.setAlpha(130);
    pPainter->fillRect(QRect(rect.right(), rect.top() + 3, 1, rect.height() - 6), line);
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
