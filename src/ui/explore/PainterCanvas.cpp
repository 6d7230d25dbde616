#include "ui/explore/PainterCanvas.h"

#include "ui/kit/Text.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace carvelot {

namespace {

QColor ToQColor(PictureColor color) { return {color.red, color.green, color.blue, color.alpha}; }

QRectF ToQRectF(const PictureRect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }

PictureColor ToPictureColor(const QColor& color) {
    return {static_cast<std::uint8_t>(color.red()), static_cast<std::uint8_t>(color.green()),
            static_cast<std::uint8_t>(color.blue()), static_cast<std::uint8_t>(color.alpha())};
}

QColor Between(const QColor& one, const QColor& other, double share) {
    const auto mix = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue())};
}

} // namespace

CTextLayouts::CLaidOut& CTextLayouts::Entry(std::string_view text) {
    const QByteArray key(text.data(), static_cast<qsizetype>(text.size()));
    if (CLaidOut* const known = m_texts.object(key)) {
        return *known;
    }
    auto* const made = new CLaidOut;
    made->m_nNatural = m_metrics.horizontalAdvance(ToQString(text));
    m_texts.insert(key, made);
    return *made;
}

double CTextLayouts::Width(std::string_view text) { return Entry(text).m_nNatural; }

const QStaticText& CTextLayouts::Layout(std::string_view text, double width) {
    CLaidOut& entry = Entry(text);
    const double wanted = std::min(std::floor(width), entry.m_nNatural);
    if (entry.m_text.text().isEmpty() || wanted != entry.m_nWidth) {
        const QString whole = ToQString(text);
        entry.m_text.setTextFormat(Qt::PlainText);
        entry.m_text.setText(wanted < entry.m_nNatural ? m_metrics.elidedText(whole, Qt::ElideRight, wanted)
                                                       : whole);
        entry.m_text.prepare({}, m_font);
        entry.m_nWidth = wanted;
    }
    return entry.m_text;
}

CPainterCanvas::CPainterCanvas(QPainter& painter, CTextLayouts& layouts)
    : m_painter(painter), m_layouts(layouts) {
    m_painter.setFont(layouts.Font());
}

void CPainterCanvas::Fill(const PictureRect& rect, PictureColor color) {
    m_painter.fillRect(ToQRectF(rect), ToQColor(color));
}

void CPainterCanvas::Outline(const PictureRect& rect, PictureColor color, double width) {
    const QColor ink = ToQColor(color);
    const double across = std::min(width, rect.width);
    const double down = std::min(width, rect.height);
    m_painter.fillRect(QRectF(rect.x, rect.y, rect.width, down), ink);
    m_painter.fillRect(QRectF(rect.x, rect.Bottom() - down, rect.width, down), ink);
    m_painter.fillRect(QRectF(rect.x, rect.y, across, rect.height), ink);
    m_painter.fillRect(QRectF(rect.Right() - across, rect.y, across, rect.height), ink);
}

void CPainterCanvas::Hatch(const PictureRect& rect, PictureColor color) {
    m_painter.fillRect(ToQRectF(rect), QBrush(ToQColor(color), Qt::BDiagPattern));
}

void CPainterCanvas::Polygon(std::span<const PicturePoint> points, PictureColor color) {
    QPolygonF polygon;
    for (const PicturePoint& point : points) {
        polygon << QPointF(point.x, point.y);
    }
    const bool smooth = m_painter.testRenderHint(QPainter::Antialiasing);
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(ToQColor(color));
    m_painter.drawPolygon(polygon);
    m_painter.setRenderHint(QPainter::Antialiasing, smooth);
}

void CPainterCanvas::Text(const PictureRect& rect, std::string_view text, PictureAlign align,
                          PictureColor color) {
    if (text.empty() || rect.width < 1) {
        return;
    }
    const QStaticText& layout = m_layouts.Layout(text, rect.width);
    if (layout.text().isEmpty()) {
        return;
    }
    const double room = rect.width - std::min(rect.width, layout.size().width());
    const double lead = align == PictureAlign::Left ? 0 : align == PictureAlign::Center ? room / 2 : room;
    m_painter.setPen(ToQColor(color));
    m_painter.drawStaticText(
        QPointF(std::round(rect.x + lead), std::round(rect.y + (rect.height - m_layouts.LineHeight()) / 2)),
        layout);
}

void CPainterCanvas::BeginClip(const PictureRect& rect) {
    m_painter.save();
    m_painter.setClipRect(ToQRectF(rect), Qt::IntersectClip);
}

void CPainterCanvas::EndClip() { m_painter.restore(); }

PictureGround GroundOf(const QWidget& widget) {
    const QPalette& palette = widget.palette();
    const QColor base = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    PictureGround ground;
    ground.background = ToPictureColor(base);
    ground.text = ToPictureColor(text);
    ground.dimText = ToPictureColor(Between(text, base, 0.35));
    ground.line = ToPictureColor(Between(text, base, 0.82));
    ground.selection = ToPictureColor(palette.color(QPalette::Highlight));
    ground.shade = ground.text;
    ground.shade.alpha = 40;
    return ground;
}

} // namespace carvelot
