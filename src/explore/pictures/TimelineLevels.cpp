#include "explore/pictures/TimelineLevels.h"

#include <algorithm>
#include <array>
#include <bit>

namespace carvelot {

namespace {

unsigned BitsOf(std::int64_t number) {
    return static_cast<unsigned>(std::bit_width(static_cast<std::uint64_t>(number)));
}

} // namespace

// Joins bars that come by start to those of a level.
class CTimelineLevels::CMerge {
public:
    CMerge(const CFrames& frames, unsigned level) : m_frames(frames), m_nLevel(level) {}

    // `take` gets what is complete.
    template <class Take> void Add(const TimelineBar& bar, const Take& take) {
        const bool isLong = bar.Count() == 1 && ((bar.end - bar.start) >> m_nLevel) != 0;
        if (!isLong && m_bar.Count() != 0 && m_bar.start >> m_nLevel == bar.start >> m_nLevel) {
            if (m_frames[bar.frame].Total() > m_frames[m_bar.frame].Total()) {
                m_bar.frame = bar.frame;
            }
            m_bar.end = std::max(m_bar.end, bar.end);
            const std::uint32_t failed = (m_bar.countAndFailed | bar.countAndFailed) & 1U;
            m_bar.countAndFailed = ((m_bar.Count() + bar.Count()) << 1U) | failed;
            return;
        }
        End(take);
        m_bar = bar;
    }
    template <class Take> void End(const Take& take) {
        if (m_bar.Count() != 0) {
            take(m_bar);
            m_bar.countAndFailed = 0;
        }
    }

private:
    const CFrames& m_frames;
    const unsigned m_nLevel;
    TimelineBar m_bar;
};

CTimelineLevels::CTimelineLevels(const CTimelineRows& rows, const Wanted& isWanted,
                                 CExploreProgress* progress)
    : m_source(rows.Frames()), m_rows(rows.Count() + 1, Row{0, 0}) {
    const auto holds = [&](std::uint32_t frame) { return !isWanted || isWanted(m_source[frame]); };
    for (std::uint32_t i = 0; i < m_source.Count(); ++i) {
        if (holds(i)) {
            ++m_rows[rows.RowOf(i)].first;
        }
    }
    std::uint32_t place = 0;
    for (Row& row : m_rows) {
        place += std::exchange(row.first, place);
    }
    m_frames.resize(place);
    // Each row's place goes on to where the next row begins, and then one back.
    for (std::uint32_t i = 0; i < m_source.Count(); ++i) {
        CheckAt(progress, i);
        if (holds(i)) {
            m_frames[m_rows[rows.RowOf(i)].first++] = i;
        }
    }
    for (std::size_t row = m_rows.size() - 1; row > 0; --row) {
        m_rows[row].first = m_rows[row - 1].first;
    }
    m_rows.front().first = 0;
    for (std::size_t row = 0; row + 1 < m_rows.size(); ++row) {
        m_rows[row].block = static_cast<std::uint32_t>(m_blocks.size());
        const std::uint32_t end = m_rows[row + 1].first;
        if (end - m_rows[row].first <= kFewFrames) {
            continue;
        }
        for (std::uint32_t first = m_rows[row].first; first < end; first += kBlock) {
            CheckAt(progress, 0);
            AddLevels(first, std::min(end, first + kBlock));
        }
    }
    m_rows.back().block = static_cast<std::uint32_t>(m_blocks.size());
    m_blocks.push_back(static_cast<std::uint32_t>(m_levels.size()));
    m_levels.push_back({0, static_cast<std::uint32_t>(m_bars.Size())});
}

TimelineBar CTimelineLevels::BarOf(std::uint32_t place) const {
    const std::uint32_t number = m_frames[place];
    const Frame& frame = m_source[number];
    return {frame.start, frame.end, number, 2U | (frame.IsFailed() ? 1U : 0U)};
}

void CTimelineLevels::AddLevels(std::uint32_t first, std::uint32_t end) {
    m_blocks.push_back(static_cast<std::uint32_t>(m_levels.size()));
    // Two neighbours are two bars in all levels up to the one in which they start together; so how many bars
    // each level has is known before any is made.
    std::array<std::uint32_t, 65> parted{};
    std::int64_t before = 0;
    for (std::uint32_t i = first; i < end; ++i) {
        const Frame& frame = m_source[m_frames[i]];
        const unsigned bits = i == first ? 64 : BitsOf(frame.start ^ before);
        ++parted[std::max(bits, BitsOf(frame.Total()))];
        before = frame.start;
    }
    std::uint32_t bars = end - first; // of the level at hand
    std::uint32_t stored = bars;      // of the one stored last
    const std::size_t firstLevel = m_levels.size();
    for (unsigned level = 0; level <= kMostLevel && stored > 1; ++level) {
        bars -= parted[level];
        if (bars > stored / kThinning) {
            continue;
        }
        const auto place = static_cast<std::uint32_t>(m_bars.Size());
        CMerge merge(m_source, level);
        const auto store = [this](const TimelineBar& bar) { m_bars.Add(bar); };
        if (m_levels.size() == firstLevel) {
            for (std::uint32_t i = first; i < end; ++i) {
                merge.Add(BarOf(i), store);
            }
        } else {
            for (std::uint32_t i = m_levels.back().first; i < place; ++i) {
                merge.Add(TimelineBar(m_bars[i]), store);
            }
        }
        merge.End(store);
        m_levels.push_back({level, place});
        stored = bars;
    }
}

// Of a row's first frame that starts at a time or later.
std::uint32_t CTimelineLevels::Place(std::uint32_t row, std::int64_t time) const {
    const auto found = std::lower_bound(
        m_frames.begin() + m_rows[row].first, m_frames.begin() + m_rows[row + 1].first, time,
        [this](std::uint32_t frame, std::int64_t from) { return m_source[frame].start < from; });
    return static_cast<std::uint32_t>(found - m_frames.begin());
}

std::uint32_t CTimelineLevels::FirstFrom(std::uint32_t row, std::int64_t time) const {
    const std::uint32_t place = Place(row, time);
    return place == m_rows[row + 1].first ? kNoFrame : m_frames[place];
}

std::uint32_t CTimelineLevels::LastAhead(std::uint32_t row, std::int64_t time) const {
    const std::uint32_t place = Place(row, time);
    return place == m_rows[row].first ? kNoFrame : m_frames[place - 1];
}

bool CTimelineLevels::HasAny(std::uint32_t row, std::int64_t from, std::int64_t to) const {
    const std::uint32_t first = FirstFrom(row, from);
    if (first != kNoFrame && m_source[first].start < to) {
        return true;
    }
    const std::uint32_t ahead = LastAhead(row, from);
    return ahead != kNoFrame && m_source[ahead].end > from;
}

std::size_t CTimelineLevels::ForEachBar(std::uint32_t row, std::int64_t from, std::int64_t to, unsigned level,
                                        const std::function<void(const TimelineBar&)>& take) const {
    level = std::min(level, kMostLevel);
    // Whole steps of the level, so that a bar holds the same frames wherever the window stands. What is
    // shorter than a step and reaches into the first one starts in the one ahead of it.
    const std::int64_t step = std::int64_t{1} << level;
    const std::int64_t begin = (std::max(from, -(std::int64_t{1} << 62U)) >> level << level) - step;
    const std::int64_t last = (std::min(to, std::int64_t{1} << 62U) - 1) | (step - 1);
    const std::uint32_t end = m_rows[row + 1].first;
    std::size_t looked = 0;
    CMerge merge(m_source, level);
    std::uint32_t place = Place(row, begin);
    if (place > m_rows[row].first && m_source[m_frames[place - 1]].end > from) {
        merge.Add(BarOf(place - 1), take);
        ++looked;
    }
    bool isBehind = false;
    const auto add = [&](const TimelineBar& bar) {
        isBehind = bar.start > last;
        if (!isBehind) {
            merge.Add(bar, take);
            ++looked;
        }
    };
    const bool hasLevels = m_rows[row].block != m_rows[row + 1].block;
    while (place < end && !isBehind) {
        const std::uint32_t block = (place - m_rows[row].first) / kBlock;
        const std::uint32_t blockEnd = std::min(end, m_rows[row].first + (block + 1) * kBlock);
        const Level* stored = nullptr;
        if (hasLevels) {
            const std::uint32_t firstLevel = m_blocks[m_rows[row].block + block];
            const std::uint32_t endLevel = m_blocks[m_rows[row].block + block + 1];
            for (std::uint32_t i = firstLevel; i < endLevel && m_levels[i].level <= level; ++i) {
                stored = &m_levels[i];
            }
        }
        if (stored == nullptr) {
            for (; place < blockEnd && !isBehind; ++place) {
                add(BarOf(place));
            }
        } else {
            std::uint32_t bar = stored[0].first;
            std::uint32_t endBar = stored[1].first;
            while (bar < endBar) { // the first one that starts in the window
                const std::uint32_t middle = bar + (endBar - bar) / 2;
                if (m_bars[middle].start < begin) {
                    bar = middle + 1;
                } else {
                    endBar = middle;
                }
            }
            for (; bar < stored[1].first && !isBehind; ++bar) {
                add(m_bars[bar]);
            }
        }
        place = blockEnd;
    }
    merge.End(take);
    return looked;
}

std::size_t CTimelineLevels::Bytes() const {
    return m_frames.capacity() * sizeof(std::uint32_t) + m_rows.capacity() * sizeof(Row) +
           m_blocks.capacity() * sizeof(std::uint32_t) + m_levels.capacity() * sizeof(Level) +
           m_bars.Size() * sizeof(TimelineBar);
}

} // namespace carvelot
