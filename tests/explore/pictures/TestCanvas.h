// A canvas that remembers what was drawn on it.
#pragma once

#include "explore/pictures/Canvas.h"

#include <algorithm>
#include <string>
#include <vector>

namespace carvelot::test {

// Every letter is 7 pixels wide, every line 14 high.
class CTestCanvas final : public ICanvas {
public:
    struct Drawn {
        std::string what; // "fill", "outline", "hatch", "polygon", or the text
        PictureRect rect; // around a polygon
        PictureColor color;
        PictureRect clip;
    };

    void Fill(const PictureRect& rect, PictureColor color) override { Add("fill", rect, color); }
    void Outline(const PictureRect& rect, PictureColor color, double /*width*/) override {
        Add("outline", rect, color);
    }
    void Hatch(const PictureRect& rect, PictureColor color) override { Add("hatch", rect, color); }
    void Polygon(std::span<const PicturePoint> points, PictureColor color) override {
        PictureRect around{points[0].x, points[0].y, 0, 0};
        for (const PicturePoint& point : points) {
            const double right = std::max(around.Right(), point.x);
            const double bottom = std::max(around.Bottom(), point.y);
            around.x = std::min(around.x, point.x);
            around.y = std::min(around.y, point.y);
            around.width = right - around.x;
            around.height = bottom - around.y;
        }
        Add("polygon", around, color);
    }
    void Text(const PictureRect& rect, std::string_view text, PictureAlign /*align*/,
              PictureColor color) override {
        Add(std::string(text), rect, color);
    }
    double TextWidth(std::string_view text) override { return 7 * static_cast<double>(text.size()); }
    double LineHeight() const override { return 14; }
    void BeginClip(const PictureRect& rect) override {
        m_bNested = m_bNested || m_bClips;
        m_bClips = true;
        m_clip = rect;
    }
    void EndClip() override { m_bClips = false; }

    std::vector<Drawn> Of(std::string_view what) const {
        std::vector<Drawn> found;
        for (const Drawn& drawn : m_drawn) {
            if (drawn.what == what) {
                found.push_back(drawn);
            }
        }
        return found;
    }
    std::vector<Drawn> Filled(PictureColor color) const {
        std::vector<Drawn> found = Of("fill");
        std::erase_if(found, [color](const Drawn& drawn) { return drawn.color != color; });
        return found;
    }
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const Drawn& drawn : m_drawn) {
            if (drawn.what != "fill" && drawn.what != "outline" && drawn.what != "hatch" &&
                drawn.what != "polygon") {
                texts.push_back(drawn.what);
            }
        }
        return texts;
    }

    std::vector<Drawn> m_drawn;
    bool m_bNested = false; // a clip inside of another one

private:
    void Add(std::string what, const PictureRect& rect, PictureColor color) {
        m_drawn.push_back({std::move(what), rect, color, m_bClips ? m_clip : PictureRect{}});
    }

    bool m_bClips = false;
    PictureRect m_clip;
};

} // namespace carvelot::test
