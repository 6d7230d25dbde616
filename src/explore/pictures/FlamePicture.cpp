#include "explore/pictures/FlamePicture.h"

#include "explore/lists/ExploreNames.h"
#include "text/NumberText.h"

#include <algorithm>
#include <cmath>

namespace carvelot {

namespace {

constexpr double kNarrowestPart = 0.5; // pixels: what is narrower becomes a rest
constexpr double kLeastForText = 24;   // pixels
constexpr double kMargin = 3;
constexpr double kTallest = 500; // rows of a picture in a file
constexpr PictureColor kHitColor{0xD0, 0x20, 0x90};

} // namespace

std::string PercentText(std::int64_t part, std::int64_t whole) {
    // Whatever the locale.
    const long tenths =
        whole > 0 ? std::lround(1000.0 * static_cast<double>(part) / static_cast<double>(whole)) : 0;
    return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + " %";
}

bool CFlamePicture::ZoomTo(Place place) {
    if (place != CFlameLayout::kWhole && m_layout.Total(place) <= 0) {
        return false;
    }
    m_zoomed = place;
    m_nTop = m_layout.LevelOf(place);
    return true;
}

std::uint32_t CFlamePicture::Rows() const {
    // Levels have places of the zoomed one as long as they have one that starts in it; what has no time is
    // out of sight.
    std::uint32_t low = m_nTop;
    std::uint32_t high = m_layout.Levels();
    while (low + 1 < high) {
        const std::uint32_t middle = (low + high) / 2;
        const Place first =
            m_layout.FirstEndingBehind(middle, m_layout.LevelBegin(middle), m_layout.Start(m_zoomed));
        const bool reaches =
            first < m_layout.LevelBegin(middle + 1) && m_layout.Start(first) < m_layout.End(m_zoomed);
        (reaches ? low : high) = middle;
    }
    return low - m_nTop + 1;
}

PictureSize CFlamePicture::Size() const {
    return {m_nWidth, std::min<double>(Rows(), kTallest) * m_nRowHeight};
}

void CFlamePicture::Draw(ICanvas& canvas) const {
    const PictureSize size = Size();
    DrawPart(canvas, {0, 0, size.width, size.height});
}

double CFlamePicture::XOf(std::int64_t time) const {
    const auto whole = static_cast<double>(m_layout.Total(m_zoomed));
    return whole > 0 ? static_cast<double>(time - m_layout.Start(m_zoomed)) / whole * m_nWidth
                     : (time > 0 ? m_nWidth : 0.0);
}

std::int64_t CFlamePicture::TimeAt(double x) const {
    const auto whole = static_cast<double>(m_layout.Total(m_zoomed));
    return m_layout.Start(m_zoomed) + static_cast<std::int64_t>(x / m_nWidth * whole);
}

void CFlamePicture::DrawPart(ICanvas& canvas, const PictureRect& part) const {
    canvas.Fill({0, 0, part.width, part.height}, m_ground.background);
    const std::uint32_t rows = Rows();
    const auto first = static_cast<std::uint32_t>(std::max(0.0, part.y / m_nRowHeight));
    for (std::uint32_t row = first; row < rows && row * m_nRowHeight < part.Bottom(); ++row) {
        DrawRow(canvas, row, part);
    }
    if (m_focus != CFlameLayout::kNoPlace) {
        PictureRect focus = RectOf(m_focus);
        if (focus.width > 0 && focus.y < part.Bottom() && focus.Bottom() > part.y) {
            focus.x -= part.x;
            focus.y -= part.y;
            focus.width = std::max(focus.width, 2.0);
            canvas.Outline(focus, m_ground.selection, 2);
        }
    }
}

void CFlamePicture::DrawRow(ICanvas& canvas, std::uint32_t row, const PictureRect& part) const {
    const std::uint32_t level = m_nTop + row;
    const Place end = m_layout.LevelBegin(level + 1);
    const std::int64_t behind = std::min(TimeAt(part.Right()) + 1, m_layout.End(m_zoomed));
    const double y = row * m_nRowHeight - part.y;
    Place place = m_layout.FirstEndingBehind(level, m_layout.LevelBegin(level),
                                             std::max(TimeAt(part.x) - 1, m_layout.Start(m_zoomed)));
    const double microsecond = m_nWidth / std::max(1.0, static_cast<double>(m_layout.Total(m_zoomed)));
    const auto half = static_cast<std::int64_t>(kNarrowestPart / microsecond);
    while (place < end && m_layout.Start(place) < behind) {
        const double x = XOf(m_layout.Start(place));
        const double right = XOf(m_layout.End(place));
        if (right - x >= kNarrowestPart) {
            DrawBar(canvas, place, {x - part.x, y, right - x, m_nRowHeight - 1}, row);
            ++place;
            continue;
        }
        // Narrow ones that touch each other are one rest.
        const Place first = place;
        double restEnd = right;
        do {
            // What ends within the next half pixel is narrow, too.
            place =
                std::max(place + 1, m_layout.FirstEndingBehind(level, place, m_layout.Start(place) + half));
            restEnd = XOf(m_layout.End(place - 1));
        } while (place < end && m_layout.Start(place) < behind &&
                 XOf(m_layout.Start(place)) - restEnd < kNarrowestPart &&
                 XOf(m_layout.End(place)) - XOf(m_layout.Start(place)) < kNarrowestPart);
        if (restEnd == x) {
            continue; // what took no time is not to be seen
        }
        const bool isHit = m_search.IsOn() && m_search.MarksAny(first, place);
        canvas.Fill({x - part.x, y, std::max(restEnd - x, kNarrowestPart), m_nRowHeight - 1},
                    isHit             ? kHitColor
                    : m_search.IsOn() ? Faded(kRestColor, m_ground.background)
                                      : kRestColor);
    }
}

PictureColor CFlamePicture::ColorOfPlace(Place place, std::uint32_t row) const {
    if (place == CFlameLayout::kWhole) {
        return {0xB8, 0xB8, 0xB8};
    }
    if (m_coloring == Coloring::Kind) {
        return Shaded(ColorOf(m_keys.Kind(m_layout.Key(place))), row);
    }
    // From pale to dark, so that it is told without its hue.
    const auto most = static_cast<double>(std::max<std::int64_t>(1, m_layout.MostSelf()));
    const double heat = std::sqrt(static_cast<double>(m_layout.Self(place)) / most);
    const auto mix = [heat](int pale, int dark) {
        return static_cast<std::uint8_t>(std::lround(pale + (dark - pale) * heat));
    };
    return {mix(0xFF, 0x8C), mix(0xF1, 0x2D), mix(0xC9, 0x04)};
}

void CFlamePicture::DrawBar(ICanvas& canvas, Place place, const PictureRect& rect, std::uint32_t row) const {
    PictureColor color = ColorOfPlace(place, row);
    const bool isHit = m_search.IsOn() && m_search.Marks(place);
    if (m_search.IsOn() && !isHit && place != CFlameLayout::kWhole) {
        color = Faded(color, m_ground.background);
    }
    PictureRect bar = rect;
    // A hair between neighbours, where there is room for it.
    bar.width = rect.width >= 3 ? rect.width - 1 : rect.width;
    canvas.Fill(bar, color);
    if (isHit) {
        canvas.Outline(bar, kHitColor, 2);
    }
    const double left = std::max(bar.x, 0.0);
    const double right = std::min(bar.Right(), m_nWidth);
    if (right - left >= kLeastForText) {
        canvas.Text({left + kMargin, bar.y, right - left - 2 * kMargin, bar.height}, Name(place),
                    PictureAlign::Left, TextOn(color));
    }
}

CFlamePicture::Place CFlamePicture::At(PicturePoint point) const {
    if (point.x < 0 || point.x >= m_nWidth || point.y < 0) {
        return CFlameLayout::kNoPlace;
    }
    const double row = point.y / m_nRowHeight;
    if (row >= Rows()) {
        return CFlameLayout::kNoPlace;
    }
    const auto level = m_nTop + static_cast<std::uint32_t>(row);
    const Place place = m_layout.At(level, TimeAt(point.x));
    if (place == CFlameLayout::kNoPlace || m_layout.Start(place) >= m_layout.End(m_zoomed) ||
        m_layout.Start(place) < m_layout.Start(m_zoomed)) {
        return CFlameLayout::kNoPlace;
    }
    const bool isRest = XOf(m_layout.End(place)) - XOf(m_layout.Start(place)) < kNarrowestPart;
    return isRest ? CFlameLayout::kNoPlace : place;
}

PictureRect CFlamePicture::RectOf(Place place) const {
    const std::uint32_t level = m_layout.LevelOf(place);
    if (level < m_nTop || m_layout.Start(place) < m_layout.Start(m_zoomed) ||
        m_layout.End(place) > m_layout.End(m_zoomed)) {
        return {};
    }
    const double x = XOf(m_layout.Start(place));
    return {x, (level - m_nTop) * m_nRowHeight, XOf(m_layout.End(place)) - x, m_nRowHeight - 1};
}

std::string CFlamePicture::Name(Place place) const {
    if (place == CFlameLayout::kWhole) {
        return m_strWhole;
    }
    const std::uint32_t key = m_layout.Key(place);
    return std::string(LetterOf(m_keys.Kind(key))).append(" ").append(ShownName(m_keys.Name(key)));
}

std::string CFlamePicture::Description(Place place) const {
    const std::int64_t whole = m_layout.Total(CFlameLayout::kWhole);
    if (place == CFlameLayout::kWhole) {
        return m_strWhole + ", total " + SecondsWithPlaces(whole) + " s";
    }
    return Name(place) + ", " + Counted(m_layout.Calls(place), "call") + ", total " +
           SecondsWithPlaces(m_layout.Total(place)) + " s (" + PercentText(m_layout.Total(place), whole) +
           "), self " + SecondsWithPlaces(m_layout.Self(place)) + " s";
}

} // namespace carvelot
