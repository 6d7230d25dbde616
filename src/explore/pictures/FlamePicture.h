// The flame graph: the call tree with its root on top, each call as wide as its time.
#pragma once

#include "explore/pictures/Canvas.h"
#include "explore/pictures/FlameLayout.h"
#include "explore/pictures/PictureColors.h"

#include <string>

namespace carvelot {

class CFlamePicture final : public IPicture {
public:
    using Place = CFlameLayout::Place;
    enum class Coloring : std::uint8_t { Kind, Self };

    // Refers to both. `whole` is what the topmost bar is called: "Whole log".
    CFlamePicture(const CFlameLayout& layout, const CFrameKeys& keys, std::string whole)
        : m_layout(layout), m_keys(keys), m_strWhole(std::move(whole)) {}

    PictureGround m_ground;
    double m_nWidth = 800;
    double m_nRowHeight = 18;
    Coloring m_coloring = Coloring::Kind;
    CFlameSearch m_search;
    Place m_focus = CFlameLayout::kNoPlace;

    const CFlameLayout& Layout() const { return m_layout; }
    // A place takes the whole width, with what stands below it. False for one without any time.
    bool ZoomTo(Place place);
    Place Zoomed() const { return m_zoomed; }
    // How many rows the zoomed place has with what stands below it, at most the levels of the whole.
    std::uint32_t Rows() const;

    PictureSize Size() const override;
    void Draw(ICanvas& canvas) const override;
    // The part of it that lies in a rectangle, whose upper left corner is the canvas's.
    void DrawPart(ICanvas& canvas, const PictureRect& part) const;

    // What lies at a point; kNoPlace where only a rest or nothing is.
    Place At(PicturePoint point) const;
    // Where a place lies; without width where it is out of sight.
    PictureRect RectOf(Place place) const;
    std::string Name(Place place) const;
    // "F4211FSEditLine, 400 calls, total 12.903000 s (57.3 %), self 0.100000 s".
    std::string Description(Place place) const;

private:
    // A part of a microsecond for each pixel may be a tiny one, so that these are no whole numbers.
    double XOf(std::int64_t time) const;
    std::int64_t TimeAt(double x) const;
    void DrawRow(ICanvas& canvas, std::uint32_t row, const PictureRect& part) const;
    void DrawBar(ICanvas& canvas, Place place, const PictureRect& rect, std::uint32_t row) const;
    PictureColor ColorOfPlace(Place place, std::uint32_t row) const;

    const CFlameLayout& m_layout;
    const CFrameKeys& m_keys;
    const std::string m_strWhole;
    Place m_zoomed = CFlameLayout::kWhole;
    std::uint32_t m_nTop = 0; // level of the zoomed place
};

// "57.3 %"; of nothing "0.0 %".
std::string PercentText(std::int64_t part, std::int64_t whole);

} // namespace carvelot
