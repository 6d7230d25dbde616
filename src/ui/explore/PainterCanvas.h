// PainterCanvas.h - pictures in a window or in an image.
#pragma once

#include "explore/pictures/Canvas.h"
#include "explore/pictures/PictureColors.h"

#include <QCache>
#include <QFont>
#include <QFontMetricsF>
#include <QStaticText>

class QPainter;
class QWidget;

namespace carvelot {

// The layouts of texts, kept from one painting to the next by text and width.
class CTextLayouts {
public:
    explicit CTextLayouts(const QFont& font) : m_font(font), m_metrics(font) {}

    // A layout that is no wider than that.
    const QStaticText& Layout(std::string_view text, double width);
    double Width(std::string_view text);
    double LineHeight() const { return m_metrics.height(); }
    const QFont& Font() const { return m_font; }

private:
    struct CLaidOut {
        QStaticText m_text;
        double m_nNatural = 0; // the width of the whole text
        double m_nWidth = 0;   // what it was cut to
    };
    static constexpr int kMost = 20'000; // texts

    CLaidOut& Entry(std::string_view text);

    QFont m_font;
    QFontMetricsF m_metrics;
    QCache<QByteArray, CLaidOut> m_texts{kMost};
};

class CPainterCanvas final : public ICanvas {
public:
    // The painter and the layouts must outlive it.
    CPainterCanvas(QPainter& painter, CTextLayouts& layouts);

    void Fill(const PictureRect& rect, PictureColor color) override;
    void Outline(const PictureRect& rect, PictureColor color, double width) override;
    void Hatch(const PictureRect& rect, PictureColor color) override;
    void Polygon(std::span<const PicturePoint> points, PictureColor color) override;
    void Text(const PictureRect& rect, std::string_view text, PictureAlign align,
              PictureColor color) override;
    double TextWidth(std::string_view text) override { return m_layouts.Width(text); }
    double LineHeight() const override { return m_layouts.LineHeight(); }
    void BeginClip(const PictureRect& rect) override;
    void EndClip() override;

private:
    QPainter& m_painter;
    CTextLayouts& m_layouts;
};

// The colours of a widget's look.
PictureGround GroundOf(const QWidget& widget);

} // namespace carvelot
