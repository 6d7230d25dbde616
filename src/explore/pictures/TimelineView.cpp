#include "explore/pictures/TimelineView.h"

#include "text/FindText.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace carvelot {

namespace {

constexpr double kNamesWidth = 130;
constexpr double kStripHeight = 36;
constexpr double kFlagsHeight = 14;
constexpr double kFlagWidth = 8;
constexpr double kEdge = 4; // pixels beside an edge that take hold of it

} // namespace

CTimelineView::CTimelineView(const CTimeline& timeline) : m_timeline(timeline), m_lanes(timeline) {
    Settle();
}

void CTimelineView::SetSize(double width, double height, double lineHeight) {
    if (lineHeight != m_lineHeight) {
        m_lanes.SetRowHeight(m_lanes.RowHeight() * lineHeight / m_lineHeight);
    }
    m_width = width;
    m_height = height;
    m_lineHeight = lineHeight;
    Settle();
}

PictureRect CTimelineView::Strip() const {
    return {kNamesWidth, 0, std::max(m_width - kNamesWidth, 1.0), kStripHeight};
}

PictureRect CTimelineView::Axis() const {
    const PictureRect above = Strip();
    return {above.x, above.Bottom(), above.width, m_lineHeight + 6};
}

PictureRect CTimelineView::Flags() const {
    const PictureRect above = Axis();
    return {above.x, above.Bottom(), above.width, kFlagsHeight};
}

PictureRect CTimelineView::Plot() const {
    const PictureRect above = Flags();
    return {above.x, above.Bottom(), above.width, std::max(m_height - above.Bottom(), 1.0)};
}

PictureRect CTimelineView::Names() const {
    const PictureRect plot = Plot();
    return {0, plot.y, plot.x, plot.height};
}

std::int64_t CTimelineView::TimeAt(double x) const {
    return m_timeline.From() + static_cast<std::int64_t>(std::floor(m_from + (x - Plot().x) * m_perPixel));
}

double CTimelineView::XOf(std::int64_t time) const {
    return Plot().x + (static_cast<double>(time - m_timeline.From()) - m_from) / m_perPixel;
}

double CTimelineView::StripX(std::int64_t time) const {
    return Strip().x + static_cast<double>(time - m_timeline.From()) / Length() * Strip().width;
}

std::int64_t CTimelineView::StripTime(double x) const {
    const double share = std::clamp((x - Strip().x) / Strip().width, 0.0, 1.0);
    return m_timeline.From() + static_cast<std::int64_t>(std::floor(share * Length()));
}

unsigned CTimelineView::Level() const {
    return static_cast<unsigned>(std::bit_width(static_cast<std::uint64_t>(m_perPixel)) - 1);
}

// Takes what is shown into the log's span.
void CTimelineView::Settle() {
    const double width = Plot().width;
    const double most = std::max(Length() / width, kLeastPerPixel);
    m_perPixel = m_bAll ? most : std::clamp(m_perPixel, kLeastPerPixel, most);
    m_bAll = m_perPixel == most;
    m_from = m_bAll ? 0 : std::clamp(m_from, 0.0, std::max(Length() - width * m_perPixel, 0.0));
    m_lanes.SetSpan(From(), To() + 1);
    m_scroll = std::clamp(m_scroll, 0.0, MostScroll());
    ++m_nRevision;
}

void CTimelineView::ShowAll() {
    m_bAll = true;
    Settle();
}

void CTimelineView::ShowEnd() {
    m_from = Length();
    Settle();
}

void CTimelineView::ShowSpan(std::int64_t from, std::int64_t to) {
    m_bAll = false;
    m_perPixel = static_cast<double>(to - from) / Plot().width;
    m_from = static_cast<double>(from - m_timeline.From());
    Settle();
}

void CTimelineView::Zoom(double notches, double x) {
    const double pixels = x - Plot().x;
    const double time = m_from + pixels * m_perPixel;
    const double most = std::max(Length() / Plot().width, kLeastPerPixel);
    m_bAll = false;
    m_perPixel = std::clamp(m_perPixel * std::pow(kZoomStep, -notches), kLeastPerPixel, most);
    m_from = time - pixels * m_perPixel;
    Settle();
}

void CTimelineView::Pan(double pixels) {
    m_from += pixels * m_perPixel;
    Settle();
}

double CTimelineView::MostScroll() const { return std::max(m_lanes.Height() - Plot().height, 0.0); }

void CTimelineView::ScrollTo(double top) {
    m_scroll = top;
    Settle();
}

void CTimelineView::ZoomLanes(double notches, double y) {
    const double below = y - Plot().y;
    const double height = std::max(m_lanes.Height(), 1.0);
    const double share = (m_scroll + below) / height;
    m_lanes.SetRowHeight(std::round(m_lanes.RowHeight() * std::pow(kZoomStep, notches)));
    m_scroll = share * m_lanes.Height() - below;
    Settle();
}

void CTimelineView::SetRowHeight(double height) {
    m_lanes.SetRowHeight(height);
    Settle();
}

void CTimelineView::Fold(std::uint32_t stream, bool folded) {
    m_lanes.Fold(stream, folded);
    Settle();
}

void CTimelineView::FoldAll(bool folded) {
    m_lanes.FoldAll(folded);
    Settle();
}

void CTimelineView::SortByActivity(bool sorts) {
    m_lanes.SortByActivity(sorts);
    Settle();
}

void CTimelineView::HideIdle(bool hides) {
    m_lanes.HideIdle(hides);
    Settle();
}

void CTimelineView::SetScope(const Selection& scope) {
    m_lanes.SetScope(scope);
    Settle();
}

CTimelineView::Columns CTimelineView::ColumnsOf(std::int64_t start, std::int64_t end) const {
    // What starts with the log's end shows, too.
    const double last = std::floor(XOf(m_timeline.To())) - 1;
    const double left = std::min(std::floor(XOf(start)), last);
    return {left, std::max(left + 1, std::floor(XOf(end)))};
}

std::optional<TimelineBar> CTimelineView::BarAt(std::uint32_t row, double x) const {
    std::optional<TimelineBar> found;
    const auto widthOf = [this](const TimelineBar& bar) {
        const Columns columns = ColumnsOf(bar.start, bar.end);
        return columns.right - columns.left;
    };
    m_timeline.Levels().ForEachBar(
        row, TimeAt(x - 1), TimeAt(x + 2) + 1, Level(), [&](const TimelineBar& bar) {
            const Columns columns = ColumnsOf(bar.start, bar.end);
            if (columns.left <= x && x < columns.right && (!found || widthOf(bar) > widthOf(*found))) {
                found = bar;
            }
        });
    return found;
}

const TimelineFlag* CTimelineView::FlagAt(double x) const {
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
        const std::span<const TimelineFlag> flags = m_timeline.Flags(severity);
        const auto behind =
            std::upper_bound(flags.begin(), flags.end(), x, [this](double place, const TimelineFlag& flag) {
                return place < XOf(flag.clock);
            });
        if (behind != flags.begin() && XOf((behind - 1)->clock) > x - kFlagWidth) {
            return &*(behind - 1);
        }
    }
    return nullptr;
}

CTimelineView::Hit CTimelineView::At(PicturePoint point) const {
    Hit hit;
    if (Strip().Holds(point)) {
        const double from = StripX(From());
        const double to = StripX(To());
        // Of a frame that is hardly wider than its edges the middle stays.
        const double edge = std::min(kEdge, (to - from) / 4);
        hit.part = std::abs(point.x - from) <= edge ? Part::StripFrom
                   : std::abs(point.x - to) <= edge ? Part::StripTo
                   : point.x > from && point.x < to ? Part::StripFrame
                                                    : Part::Strip;
    } else if (Axis().Holds(point)) {
        hit.part = Part::Axis;
    } else if (Flags().Holds(point)) {
        hit.part = Part::Flags;
        hit.flag = FlagAt(point.x);
    } else if (Names().Holds(point) || Plot().Holds(point)) {
        const auto place = m_lanes.At(point.y - Plot().y + m_scroll);
        if (!place) {
            return hit;
        }
        const CTimelineLanes::Lane& lane = m_lanes.Shown()[place->lane];
        hit.part = point.x < Plot().x ? Part::Name : Part::Lane;
        hit.stream = lane.stream;
        const CTimelineRows& rows = m_timeline.Rows();
        if (hit.part == Part::Lane && place->row < std::min(lane.rows, rows.RowCount(lane.stream))) {
            hit.bar = BarAt(rows.FirstRow(lane.stream) + place->row, point.x);
        }
    }
    return hit;
}

std::optional<PictureRect> CTimelineView::RectOf(std::uint32_t frame) const {
    const CTimelineRows& rows = m_timeline.Rows();
    const auto place = m_lanes.Find(rows.StreamOf(frame));
    const std::uint32_t depth = rows.DepthOf(frame);
    if (!place || depth >= m_lanes.Shown()[*place].rows) {
        return {};
    }
    const Frame& shown = m_timeline.Frames()[frame];
    const Columns columns = ColumnsOf(shown.start, shown.end);
    return PictureRect{columns.left, TopOf(m_lanes.Shown()[*place]) + depth * m_lanes.RowHeight(),
                       columns.right - columns.left, m_lanes.RowHeight()};
}

void CTimelineView::Select(std::uint32_t frame) { m_selected = frame; }

void CTimelineView::Reveal(std::uint32_t frame) {
    const CTimelineRows& rows = m_timeline.Rows();
    const std::uint32_t stream = rows.StreamOf(frame);
    if (rows.DepthOf(frame) != 0 && m_lanes.IsFolded(stream)) {
        m_lanes.Fold(stream, false);
    }
    const Frame& shown = m_timeline.Frames()[frame];
    const Columns columns = ColumnsOf(shown.start, shown.end);
    const PictureRect plot = Plot();
    const double width = columns.right - columns.left;
    const bool isWide = width > plot.width;
    const bool isInView = isWide ? columns.left < plot.Right() && columns.right > plot.x
                                 : columns.left >= plot.x && columns.right <= plot.Right();
    if (!isInView) {
        const double margin = isWide ? 0 : (plot.width - width) / 2;
        m_from = static_cast<double>(shown.start - m_timeline.From()) - margin * m_perPixel;
    }
    Settle();
    if (const auto rect = RectOf(frame)) {
        if (rect->y < plot.y) {
            ScrollTo(m_scroll - (plot.y - rect->y));
        } else if (rect->Bottom() > plot.Bottom()) {
            ScrollTo(m_scroll + std::min(rect->Bottom() - plot.Bottom(), rect->y - plot.y));
        }
    }
}

std::uint32_t CTimelineView::ShownRows(std::uint32_t stream) const {
    const std::uint32_t rows = m_timeline.Rows().RowCount(stream);
    return m_lanes.IsFolded(stream) ? std::min(rows, 1U) : rows;
}

std::uint32_t CTimelineView::FirstInView() const {
    for (const CTimelineLanes::Lane& lane : m_lanes.Shown()) {
        if (ShownRows(lane.stream) == 0) {
            continue;
        }
        const std::uint32_t row = m_timeline.Rows().FirstRow(lane.stream);
        const std::uint32_t ahead = m_timeline.Levels().LastAhead(row, From());
        if (ahead != kNoFrame && m_timeline.Frames()[ahead].end > From()) {
            return ahead;
        }
        const std::uint32_t first = m_timeline.Levels().FirstFrom(row, From());
        if (first != kNoFrame && m_timeline.Frames()[first].start <= To()) {
            return first;
        }
    }
    return kNoFrame;
}

// The one behind or ahead of a frame by record, among those of its lane that show.
std::uint32_t CTimelineView::InStream(std::uint32_t frame, bool next) const {
    const CTimelineRows& rows = m_timeline.Rows();
    const std::uint32_t stream = rows.StreamOf(frame);
    std::uint32_t found = kNoFrame;
    for (std::uint32_t depth = 0; depth < ShownRows(stream); ++depth) {
        const std::span<const std::uint32_t> row =
            m_timeline.Levels().FramesOf(rows.FirstRow(stream) + depth);
        if (next) {
            const auto behind = std::upper_bound(row.begin(), row.end(), frame);
            found = behind == row.end() ? found : std::min(found, *behind);
        } else {
            const auto at = std::lower_bound(row.begin(), row.end(), frame);
            if (at != row.begin() && (found == kNoFrame || *(at - 1) > found)) {
                found = *(at - 1);
            }
        }
    }
    return found;
}

// By record in a lane, then on in the lane below or above.
std::uint32_t CTimelineView::BesideInLanes(std::uint32_t frame, bool next) const {
    if (const std::uint32_t found = InStream(frame, next); found != kNoFrame) {
        return found;
    }
    const std::vector<CTimelineLanes::Lane>& lanes = m_lanes.Shown();
    const auto own = m_lanes.Find(m_timeline.Rows().StreamOf(frame));
    if (!own) {
        return kNoFrame;
    }
    for (std::size_t lane = *own; next ? lane + 1 < lanes.size() : lane > 0;) {
        lane = next ? lane + 1 : lane - 1;
        const std::uint32_t stream = lanes[lane].stream;
        if (ShownRows(stream) == 0) {
            continue;
        }
        const std::uint32_t firstRow = m_timeline.Rows().FirstRow(stream);
        if (next) {
            return m_timeline.Levels().FramesOf(firstRow).front();
        }
        std::uint32_t last = 0;
        for (std::uint32_t depth = 0; depth < ShownRows(stream); ++depth) {
            last = std::max(last, m_timeline.Levels().FramesOf(firstRow + depth).back());
        }
        return last;
    }
    return kNoFrame;
}

std::uint32_t CTimelineView::Beside(Step step) const {
    if (m_selected == kNoFrame) {
        return FirstInView();
    }
    const CTimelineRows& rows = m_timeline.Rows();
    const std::uint32_t stream = rows.StreamOf(m_selected);
    const auto rowOf = [&](std::uint32_t depth) {
        return m_timeline.Levels().FramesOf(rows.FirstRow(stream) + depth);
    };
    switch (step) {
    case Step::Earlier: {
        const std::span<const std::uint32_t> row = rowOf(rows.DepthOf(m_selected));
        const auto at = std::lower_bound(row.begin(), row.end(), m_selected);
        return at == row.begin() ? kNoFrame : *(at - 1);
    }
    case Step::Later: {
        const std::span<const std::uint32_t> row = rowOf(rows.DepthOf(m_selected));
        const auto behind = std::upper_bound(row.begin(), row.end(), m_selected);
        return behind == row.end() ? kNoFrame : *behind;
    }
    case Step::Parent:
        return m_timeline.Frames()[m_selected].parent;
    case Step::Child: {
        const std::uint32_t depth = rows.DepthOf(m_selected) + 1;
        if (depth >= ShownRows(stream)) {
            return kNoFrame;
        }
        const std::span<const std::uint32_t> row = rowOf(depth);
        const auto behind = std::upper_bound(row.begin(), row.end(), m_selected);
        return behind == row.end() || m_timeline.Frames()[*behind].parent != m_selected ? kNoFrame : *behind;
    }
    case Step::Next:
        return BesideInLanes(m_selected, true);
    case Step::Previous:
        break;
    }
    return BesideInLanes(m_selected, false);
}

void CTimelineView::Search(std::string_view text) {
    m_strSought = text;
    m_matches.clear();
    m_pMatches.reset();
    m_nMatches = 0;
    ++m_nRevision;
    if (text.empty()) {
        return;
    }
    const CFrameKeys& keys = m_timeline.Frames().Keys();
    const CFindText find(text);
    for (std::uint32_t key = 0; key < keys.Count(); ++key) {
        m_matches.push_back(find.IsIn(keys.Name(key), false) ? 1 : 0);
    }
    const CTimelineRows& rows = m_timeline.Rows();
    m_pMatches = std::make_unique<CTimelineLevels>(
        rows, [this](const Frame& frame) { return m_matches[frame.key] != 0; });
    for (std::uint32_t row = 0; row < rows.Count(); ++row) {
        m_nMatches += m_pMatches->FramesOf(row).size();
    }
}

std::uint32_t CTimelineView::NextMatch(bool forward) const {
    const CFrames& frames = m_timeline.Frames();
    const std::uint32_t count = frames.Count();
    if (m_nMatches == 0) {
        return kNoFrame;
    }
    // From none to the first or the last one.
    std::uint32_t frame = m_selected != kNoFrame ? m_selected : forward ? count - 1 : 0;
    for (std::uint32_t looked = 0; looked < count; ++looked) {
        frame = forward ? (frame + 1) % count : (frame + count - 1) % count;
        if (IsMatch(frames[frame].key) && m_lanes.IsInScope(m_timeline.Rows().StreamOf(frame))) {
            return frame;
        }
    }
    return kNoFrame;
}

} // namespace carvelot
