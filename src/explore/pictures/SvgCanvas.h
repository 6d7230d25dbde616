// A picture as an SVG file. Texts stay texts, so that a reader of the file can search and copy them.
#pragma once

#include "explore/pictures/Canvas.h"

#include <string>

namespace carvelot {

class CSvgCanvas final : public ICanvas {
public:
    // Widths of texts are as the canvas of the screen has them: that one is asked.
    CSvgCanvas(PictureSize size, ICanvas& screen, std::string_view fontFamily, double fontSize);

    void Fill(const PictureRect& rect, PictureColor color) override;
    void Outline(const PictureRect& rect, PictureColor color, double width) override;
    void Hatch(const PictureRect& rect, PictureColor color) override;
    void Polygon(std::span<const PicturePoint> points, PictureColor color) override;
    void Text(const PictureRect& rect, std::string_view text, PictureAlign align,
              PictureColor color) override;
    double TextWidth(std::string_view text) override { return m_screen.TextWidth(text); }
    double LineHeight() const override { return m_screen.LineHeight(); }
    void BeginClip(const PictureRect& rect) override;
    void EndClip() override;

    // The whole file, UTF-8. Nothing can be drawn after it.
    std::string TakeFile();

private:
    void OpenRect(const PictureRect& rect);
    void AddColor(std::string_view attribute, PictureColor color);
    std::string Cut(std::string_view text, double width);

    ICanvas& m_screen;
    std::string m_strBody;
    double m_nFontSize;
    int m_nNames = 0; // of clips and hatchings
};

} // namespace carvelot
