#include "explore/pictures/TimelineLanes.h"

#include <algorithm>
#include <numeric>

namespace carvelot {

namespace {

constexpr double kBetween = 5; // pixels between two lanes

} // namespace

CTimelineLanes::CTimelineLanes(const CTimeline& timeline)
    : m_timeline(timeline), m_byActivity(timeline.Rows().StreamCount()), m_isFolded(m_byActivity.size(), 0),
      m_isInScope(m_byActivity.size(), 1), m_nFrom(timeline.From()), m_nTo(timeline.To()) {
    std::iota(m_byActivity.begin(), m_byActivity.end(), 0U);
    std::stable_sort(m_byActivity.begin(), m_byActivity.end(), [&](std::uint32_t one, std::uint32_t other) {
        return timeline.ActivityOf(one) > timeline.ActivityOf(other);
    });
    Arrange();
}

void CTimelineLanes::Fold(std::uint32_t stream, bool folded) {
    m_isFolded[stream] = folded ? 1 : 0;
    Arrange();
}

void CTimelineLanes::FoldAll(bool folded) {
    std::fill(m_isFolded.begin(), m_isFolded.end(), static_cast<std::uint8_t>(folded ? 1 : 0));
    Arrange();
}

bool CTimelineLanes::AreAllFolded() const {
    return std::all_of(m_isFolded.begin(), m_isFolded.end(), [](std::uint8_t folded) { return folded != 0; });
}

void CTimelineLanes::SortByActivity(bool sorts) {
    m_bByActivity = sorts;
    Arrange();
}

void CTimelineLanes::HideIdle(bool hides) {
    m_bHidesIdle = hides;
    Arrange();
}

void CTimelineLanes::SetRowHeight(double height) {
    m_rowHeight = std::clamp(height, kLeastRow, kMostRow);
    Arrange();
}

void CTimelineLanes::SetScope(const Selection& scope) {
    for (std::uint32_t stream = 0; stream < m_isInScope.size(); ++stream) {
        m_isInScope[stream] = m_timeline.Explored().streams.IsIn(stream, scope) ? 1 : 0;
    }
    Arrange();
}

void CTimelineLanes::SetSpan(std::int64_t from, std::int64_t to) {
    m_nFrom = from;
    m_nTo = to;
    if (m_bHidesIdle) {
        Arrange();
    }
}

bool CTimelineLanes::IsIdle(std::uint32_t stream) const {
    const CTimelineRows& rows = m_timeline.Rows();
    return rows.RowCount(stream) == 0 || !m_timeline.Levels().HasAny(rows.FirstRow(stream), m_nFrom, m_nTo);
}

void CTimelineLanes::Arrange() {
    m_shown.clear();
    m_height = 0;
    for (std::uint32_t i = 0; i < m_isFolded.size(); ++i) {
        const std::uint32_t stream = m_bByActivity ? m_byActivity[i] : i;
        if (m_isInScope[stream] == 0 || (m_bHidesIdle && IsIdle(stream))) {
            continue;
        }
        const std::uint32_t rows = IsFolded(stream) ? 1 : m_timeline.Depth(stream);
        const double height = rows * m_rowHeight + kBetween;
        m_shown.push_back({stream, m_height, height, rows});
        m_height += height;
    }
}

std::optional<std::size_t> CTimelineLanes::Find(std::uint32_t stream) const {
    const auto found = std::find_if(m_shown.begin(), m_shown.end(),
                                    [stream](const Lane& lane) { return lane.stream == stream; });
    if (found == m_shown.end()) {
        return {};
    }
    return static_cast<std::size_t>(found - m_shown.begin());
}

std::size_t CTimelineLanes::FirstBelow(double y) const {
    const auto found =
        std::upper_bound(m_shown.begin(), m_shown.end(), y,
                         [](double sought, const Lane& lane) { return sought < lane.top + lane.height; });
    return static_cast<std::size_t>(found - m_shown.begin());
}

std::optional<CTimelineLanes::Place> CTimelineLanes::At(double y) const {
    const std::size_t lane = FirstBelow(y);
    if (y < 0 || lane == m_shown.size()) {
        return {};
    }
    return Place{lane, static_cast<std::uint32_t>((y - m_shown[lane].top) / m_rowHeight)};
}

} // namespace carvelot
