// What pictures are drawn on: a window, a file, a test that looks at what was drawn. Lengths are
// device-independent pixels, y grows downwards.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace carvelot {

struct PicturePoint {
    double x = 0;
    double y = 0;
};

struct PictureRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double Right() const { return x + width; }
    double Bottom() const { return y + height; }
    bool Holds(PicturePoint point) const {
        return point.x >= x && point.x < Right() && point.y >= y && point.y < Bottom();
    }
    bool operator==(const PictureRect&) const = default;
};

struct PictureColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;

    bool operator==(const PictureColor&) const = default;
};

enum class PictureAlign : std::uint8_t { Left, Center, Right };

class ICanvas {
public:
    virtual ~ICanvas() = default;

    virtual void Fill(const PictureRect& rect, PictureColor color) = 0;
    // Inside the rectangle.
    virtual void Outline(const PictureRect& rect, PictureColor color, double width) = 0;
    // Parallel lines from the lower left to the upper right.
    virtual void Hatch(const PictureRect& rect, PictureColor color) = 0;
    // A filled polygon.
    virtual void Polygon(std::span<const PicturePoint> points, PictureColor color) = 0;
    // On one line in the middle of the rectangle's height, cut with an ellipsis where it does not fit, and
    // never over the rectangle's edge. UTF-8.
    virtual void Text(const PictureRect& rect, std::string_view text, PictureAlign align,
                      PictureColor color) = 0;
    virtual double TextWidth(std::string_view text) = 0;
    virtual double LineHeight() const = 0;
    // What is drawn until EndClip stays inside the rectangle. One clip at a time.
    virtual void BeginClip(const PictureRect& rect) = 0;
    virtual void EndClip() = 0;
};

struct PictureSize {
    double width = 0;
    double height = 0;
};

// A picture as a file takes it: whole, at its own size.
class IPicture {
public:
    virtual ~IPicture() = default;
    virtual PictureSize Size() const = 0;
    virtual void Draw(ICanvas& canvas) const = 0;
};

} // namespace carvelot
