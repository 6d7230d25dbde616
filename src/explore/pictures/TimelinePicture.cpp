#include "explore/pictures/TimelinePicture.h"

#include "explore/lists/ExploreNames.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace carvelot {

namespace {

constexpr double kPad = 3;          // beside a name
constexpr double kNarrowestBar = 3; // pixels of a frame that stands apart from its neighbours
constexpr double kEdged = 5;        // of one that shows how it ended
constexpr double kLettered = 16;    // of one that may bear the letter of its kind
constexpr double kNamed = 36;       // of the room for a name
constexpr double kMarksApart = 24;  // between the texts of two marks
constexpr double kFlagsApart = 6;
constexpr PictureColor kFailedEdge{0x7A, 0x2E, 0x00};
constexpr std::string_view kSilence = "silence";

} // namespace

// Bars of one row, from left to right. Neighbours that look alike go in one piece, and of those that share a
// column the first one is drawn, or one that failed.
class CTimelinePicture::CRowPainter {
public:
    CRowPainter(ICanvas& canvas, const CTimelineView& view, const PictureGround& ground)
        : m_canvas(canvas), m_view(view), m_ground(ground), m_plot(view.Plot()) {}

    void Begin(double y, double height, std::uint32_t depth) {
        m_y = y;
        m_height = height;
        m_depth = depth;
        m_right = m_left = m_plot.x - 1;
    }
    void Add(const TimelineBar& bar, bool faded) {
        auto [left, right] = m_view.ColumnsOf(bar.start, bar.end);
        left = std::max(left, m_plot.x);
        right = std::min(right, m_plot.Right());
        if (right <= left) {
            return;
        }
        const CFrames& frames = m_view.Timeline().Frames();
        const Frame& frame = frames[bar.frame];
        const FrameKind kind = frames.Keys().Kind(frame.key);
        PictureColor color = bar.HasFailed() ? kFailedColor : Shaded(ColorOf(kind), m_depth);
        if (faded) {
            color = Faded(color, m_ground.background);
        }
        if (bar.Count() > 1 || right - left < kNarrowestBar) {
            Join(left, right, color, bar.HasFailed());
            return;
        }
        End();
        const PictureRect rect{left, m_y, right - left - 1, m_height};
        m_canvas.Fill(rect, color);
        m_left = m_right = right;
        if (right - left < kEdged) {
            return;
        }
        if (bar.HasFailed() && !faded) {
            m_canvas.Outline(rect, kFailedEdge, 2);
        }
        if (!frame.closed && m_view.XOf(frame.end) <= m_plot.Right() + 1) {
            Tear(rect);
        }
        // A match is drawn again over what fades, and bears its name then.
        const bool isNamed = !faded || !m_view.IsMatch(frame.key);
        if (isNamed && right - left >= kLettered && m_height >= m_view.LineHeight() - 1) {
            m_names.push_back({{rect.x + kPad, rect.y, rect.width - 2 * kPad, rect.height},
                               frame.key,
                               faded ? m_ground.dimText : TextOn(color)});
        }
    }
    // What is still to be drawn of the row.
    void End() {
        if (m_right > m_left) {
            m_canvas.Fill({m_left, m_y, m_right - m_left, m_height}, m_color);
        }
        m_left = m_right;
    }
    // Over all that lies on the bars.
    void DrawNames() {
        const CFrameKeys& keys = m_view.Timeline().Frames().Keys();
        std::string text;
        for (const Name& name : m_names) {
            text.assign(LetterOf(keys.Kind(name.key)));
            if (name.rect.width >= kNamed) {
                text.append(" ").append(ShownKey(keys, name.key));
            }
            m_canvas.Text(name.rect, text, PictureAlign::Left, name.color);
        }
        m_names.clear();
    }

private:
    struct Name {
        PictureRect rect;
        std::uint32_t key;
        PictureColor color;
    };

    void Join(double left, double right, PictureColor color, bool over) {
        if (left < m_right) {
            if (over && m_color != color) {
                m_right = std::min(m_right, left);
            } else {
                left = m_right;
            }
        }
        if (right <= left) {
            return;
        }
        if (left != m_right || color != m_color || m_left == m_right) {
            End();
            m_left = left;
            m_color = color;
        }
        m_right = right;
    }
    void Tear(const PictureRect& rect) {
        const double step = rect.height / 6;
        std::array<PicturePoint, 9> points;
        points[0] = {rect.Right(), rect.y};
        for (std::size_t i = 0; i < 7; ++i) {
            points[i + 1] = {rect.Right() - (i % 2 == 0 ? 0 : 3), rect.y + static_cast<double>(i) * step};
        }
        points[8] = {rect.Right(), rect.Bottom()};
        m_canvas.Polygon(points, m_ground.background);
    }

    ICanvas& m_canvas;
    const CTimelineView& m_view;
    const PictureGround& m_ground;
    const PictureRect m_plot;
    double m_y = 0;
    double m_height = 0;
    std::uint32_t m_depth = 0;
    double m_left = 0; // of what is still to be drawn
    double m_right = 0;
    PictureColor m_color;
    std::vector<Name> m_names;
};

void CTimelinePicture::DrawStill(ICanvas& canvas) const {
    canvas.Fill(m_view.Whole(), m_ground.background);
    DrawStrip(canvas);
    DrawAxis(canvas);
    DrawFlags(canvas);
    DrawLanes(canvas);
    DrawNames(canvas);
}

void CTimelinePicture::DrawStrip(ICanvas& canvas) const {
    const PictureRect strip = m_view.Strip();
    const CActivityStrip& activity = m_view.Timeline().Activity();
    canvas.BeginClip(strip);
    const double most = std::max(activity.Most(), 1.0);
    const double height = strip.height - 3;
    const auto columns = static_cast<std::size_t>(strip.width);
    for (std::size_t x = 0; x < columns; ++x) {
        const std::size_t first = x * CActivityStrip::kBuckets / columns;
        const std::size_t end = std::max((x + 1) * CActivityStrip::kBuckets / columns, first + 1);
        double busy = 0;
        for (std::size_t bucket = first; bucket < end; ++bucket) {
            busy = std::max(busy, activity.Busy()[bucket]);
        }
        const double bar = std::round(busy / most * height);
        if (busy > 0) {
            const double shown = std::max(bar, 1.0);
            canvas.Fill({strip.x + static_cast<double>(x), strip.Bottom() - 1 - shown, 1, shown},
                        m_ground.dimText);
        }
    }
    const double from = m_view.StripX(m_view.From());
    const double to = std::max(std::min(m_view.StripX(m_view.To()), strip.Right()), from + 2);
    ShadeOutside(canvas, strip, from, to);
    canvas.Outline({from, strip.y, to - from, strip.height}, m_ground.selection, 2);
    canvas.EndClip();
}

void CTimelinePicture::DrawAxis(ICanvas& canvas) const {
    const PictureRect axis = m_view.Axis();
    const CTimeAxis& times = m_view.Timeline().Axis();
    const double apart = canvas.TextWidth("Jan 30 00:00:00.000") + kMarksApart;
    const std::int64_t step = CTimeAxis::StepOf(apart * m_view.PerPixel());
    canvas.BeginClip({axis.x, axis.y, axis.width, m_view.Plot().Bottom() - axis.y});
    for (const TimeMark& mark : times.Marks(m_view.From(), m_view.To(), step)) {
        const double x = std::floor(m_view.XOf(mark.clock));
        canvas.Fill({x, axis.y, 1, axis.height}, m_ground.dimText);
        canvas.Fill({x, axis.Bottom(), 1, m_view.Plot().Bottom() - axis.Bottom()}, m_ground.line);
        canvas.Text({x + kPad, axis.y, apart, axis.height}, mark.text, PictureAlign::Left, m_ground.text);
    }
    canvas.EndClip();
}

void CTimelinePicture::DrawFlags(ICanvas& canvas) const {
    const PictureRect place = m_view.Flags();
    canvas.BeginClip(place);
    for (const Severity severity : {Severity::Note, Severity::Warning, Severity::Error}) {
        const std::span<const TimelineFlag> flags = m_view.Timeline().Flags(severity);
        const auto firstFrom = [&](double x) {
            return std::lower_bound(
                flags.begin(), flags.end(), x,
                [this](const TimelineFlag& flag, double sought) { return m_view.XOf(flag.clock) < sought; });
        };
        for (auto flag = firstFrom(place.x - kFlagsApart); flag != flags.end();) {
            const double x = std::floor(m_view.XOf(flag->clock));
            if (x >= place.Right()) {
                break;
            }
            canvas.Fill({x, place.y + 1, 1, place.height - 1}, ColorOf(severity));
            const std::array<PicturePoint, 3> points{
                PicturePoint{x, place.y + 1}, {x + 8, place.y + 5}, {x, place.y + 9}};
            canvas.Polygon(points, ColorOf(severity));
            flag = firstFrom(m_view.XOf(flag->clock) + kFlagsApart);
        }
    }
    canvas.EndClip();
}

void CTimelinePicture::DrawNames(ICanvas& canvas) const {
    const PictureRect names = m_view.Names();
    const CTimelineLanes& lanes = m_view.Lanes();
    canvas.BeginClip({names.x, names.y, m_view.Whole().width, names.height});
    const std::vector<CTimelineLanes::Lane>& shown = lanes.Shown();
    for (std::size_t i = lanes.FirstBelow(m_view.ScrollTop()); i < shown.size(); ++i) {
        const double top = m_view.TopOf(shown[i]);
        if (top >= names.Bottom()) {
            break;
        }
        const double row = std::max(lanes.RowHeight(), m_view.LineHeight());
        // A tall lane's name stays in view.
        const double y = std::max(std::min(names.y, top + shown[i].height - row), top);
        const double middle = y + row / 2;
        const std::array<PicturePoint, 3> folded{PicturePoint{5, middle - 4}, {10, middle}, {5, middle + 4}};
        const std::array<PicturePoint, 3> open{
            PicturePoint{3, middle - 3}, {11, middle - 3}, {7, middle + 3}};
        canvas.Polygon(lanes.IsFolded(shown[i].stream) ? folded : open, m_ground.dimText);
        canvas.Text({15, y, names.width - 18, row}, m_view.Timeline().NameOf(shown[i].stream),
                    PictureAlign::Left, m_ground.text);
        canvas.Fill({0, std::floor(top + shown[i].height) - 2, m_view.Whole().width, 1}, m_ground.line);
    }
    canvas.EndClip();
}

void CTimelinePicture::DrawLanes(ICanvas& canvas) const {
    const PictureRect plot = m_view.Plot();
    const CTimelineLanes& lanes = m_view.Lanes();
    const CTimeline& timeline = m_view.Timeline();
    const double rowHeight = lanes.RowHeight();
    const double barHeight = rowHeight - 1;
    const bool isSearch = m_view.Matches() != nullptr;
    canvas.BeginClip(plot);
    CRowPainter painter(canvas, m_view, m_ground);
    for (std::size_t i = lanes.FirstBelow(m_view.ScrollTop()); i < lanes.Shown().size(); ++i) {
        const CTimelineLanes::Lane& lane = lanes.Shown()[i];
        const double top = m_view.TopOf(lane);
        if (top >= plot.Bottom()) {
            break;
        }
        const auto rowsAbove = [&](double y) {
            return static_cast<std::uint32_t>(std::clamp(std::floor((y - top) / rowHeight), 0.0, 1e9));
        };
        const std::uint32_t end =
            std::min({lane.rows, timeline.Rows().RowCount(lane.stream), rowsAbove(plot.Bottom()) + 1});
        for (std::uint32_t depth = rowsAbove(plot.y); depth < end; ++depth) {
            const std::uint32_t row = timeline.Rows().FirstRow(lane.stream) + depth;
            const auto draw = [&](const CTimelineLevels& levels, bool faded) {
                painter.Begin(top + depth * rowHeight, barHeight, depth);
                levels.ForEachBar(row, m_view.From(), m_view.To() + 1, m_view.Level(),
                                  [&](const TimelineBar& bar) { painter.Add(bar, faded); });
                painter.End();
            };
            draw(timeline.Levels(), isSearch);
            if (isSearch) {
                draw(*m_view.Matches(), false);
            }
        }
        DrawSilences(canvas, lane);
        painter.DrawNames();
    }
    canvas.EndClip();
}

void CTimelinePicture::DrawSilences(ICanvas& canvas, const CTimelineLanes::Lane& lane) const {
    const PictureRect plot = m_view.Plot();
    const CTimeline& timeline = m_view.Timeline();
    const double rowHeight = m_view.Lanes().RowHeight();
    const std::span<const TimelineSilence> silences = timeline.Silences(lane.stream);
    // Silences of a stream never overlap.
    auto silence =
        std::upper_bound(silences.begin(), silences.end(), m_view.From(),
                         [](std::int64_t time, const TimelineSilence& other) { return time < other.end; });
    while (silence != silences.end() && silence->start <= m_view.To()) {
        const auto [left, right] = m_view.ColumnsOf(silence->start, silence->end);
        const double y = m_view.TopOf(lane) + silence->depth * rowHeight;
        if (silence->depth < lane.rows && y < plot.Bottom() && y + rowHeight > plot.y) {
            const double from = std::max(left, plot.x);
            const double width = std::min(right, plot.Right()) - from;
            canvas.Hatch({from, y, width, rowHeight - 1}, kSilenceColor);
            // Where a statement was waited for, its own name stands there.
            const bool isFree =
                silence->depth >= timeline.Rows().RowCount(lane.stream) ||
                !timeline.Levels().HasAny(timeline.Rows().FirstRow(lane.stream) + silence->depth,
                                          silence->start, silence->end);
            const double text = canvas.TextWidth(kSilence) + 2 * kPad;
            if (isFree && width >= text + 2 * kPad && rowHeight >= m_view.LineHeight()) {
                const PictureRect label{from + (width - text) / 2, y + 1, text, rowHeight - 3};
                canvas.Fill(label, m_ground.background);
                canvas.Text(label, kSilence, PictureAlign::Center, m_ground.dimText);
            }
        }
        // No more than one a column.
        const std::int64_t next = m_view.TimeAt(left + 1);
        ++silence;
        if (silence != silences.end() && silence->end < next) {
            silence = std::lower_bound(
                silence, silences.end(), next,
                [](const TimelineSilence& other, std::int64_t time) { return other.end < time; });
        }
    }
}

void CTimelinePicture::ShadeOutside(ICanvas& canvas, const PictureRect& area, double from, double to) const {
    const double left = std::clamp(from, area.x, area.Right());
    const double right = std::clamp(to, left, area.Right());
    if (left > area.x) {
        canvas.Fill({area.x, area.y, left - area.x, area.height}, m_ground.shade);
    }
    if (right < area.Right()) {
        canvas.Fill({right, area.y, area.Right() - right, area.height}, m_ground.shade);
    }
}

void CTimelinePicture::DrawMarks(ICanvas& canvas) const {
    const PictureRect plot = m_view.Plot();
    const PictureRect axis = m_view.Axis();
    const ClockRange& range = m_view.Range();
    if (!range.IsWhole()) {
        const auto at = [&](std::int64_t time, double open,
                            double (CTimelineView::*place)(std::int64_t) const) {
            return time == ClockRange::kOpenFrom || time == ClockRange::kOpenTo ? open
                                                                                : (m_view.*place)(time);
        };
        const PictureRect strip = m_view.Strip();
        ShadeOutside(canvas, {axis.x, axis.y, axis.width, plot.Bottom() - axis.y},
                     at(range.from, plot.x, &CTimelineView::XOf),
                     at(range.to, plot.Right(), &CTimelineView::XOf));
        ShadeOutside(canvas, strip, at(range.from, strip.x, &CTimelineView::StripX),
                     at(range.to, strip.Right(), &CTimelineView::StripX));
    }
    canvas.BeginClip(plot);
    if (const auto record = m_view.Marked()) {
        const CTimeline& timeline = m_view.Timeline();
        const CTimelineLanes& lanes = m_view.Lanes();
        if (const auto lane = lanes.Find(timeline.Explored().streams.Of(*record))) {
            const CTimelineLanes::Lane& shown = lanes.Shown()[*lane];
            const double x = std::floor(m_view.XOf(timeline.Explored().clock[*record]));
            canvas.Fill({x, m_view.TopOf(shown), 1, shown.height - 3}, m_ground.selection);
        }
    }
    if (m_view.Selected() != kNoFrame) {
        if (const auto rect = m_view.RectOf(m_view.Selected())) {
            canvas.Outline({rect->x - 1, rect->y - 1, rect->width + 2, rect->height + 1}, m_ground.selection,
                           2);
        }
    }
    canvas.EndClip();
}

} // namespace carvelot
