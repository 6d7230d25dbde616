// Levels of detail of a timeline: what level k shows as one bar are the frames of a row that start within the
// same 2^k microseconds and are shorter than that; a longer one stands alone. So a picture whose pixels take
// 2^k microseconds or more draws at most a few bars a column, however many frames there are.
//
// Levels are stored for a few thousand neighbours at a time, and only where they hold at most a quarter of
// the bars of the one stored below: with the frames' own order 12 bytes a frame at the most. What lies
// between two stored ones is made of the lower one while it is asked for.
#pragma once

#include "explore/pictures/TimelineRows.h"
#include "records/PagedArray.h"

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace carvelot {

struct TimelineBar {
    std::int64_t start = 0;
    std::int64_t end = 0;
    std::uint32_t frame = kNoFrame; // the longest one, the first of these
    std::uint32_t countAndFailed = 0;

    std::uint32_t Count() const { return countAndFailed >> 1U; } // frames
    bool HasFailed() const { return (countAndFailed & 1U) != 0; }
};
static_assert(sizeof(TimelineBar) == 24);

class CTimelineLevels {
public:
    using Wanted = std::function<bool(const Frame& frame)>;
    static constexpr unsigned kMostLevel = 62;

    // Refers to the rows. `isWanted`: of some frames only.
    explicit CTimelineLevels(const CTimelineRows& rows, const Wanted& isWanted = {},
                             CExploreProgress* progress = nullptr);

    // By number, which is by start, too.
    std::span<const std::uint32_t> FramesOf(std::uint32_t row) const {
        return std::span(m_frames).subspan(m_rows[row].first, m_rows[row + 1].first - m_rows[row].first);
    }
    // The first of a row's frames that starts at a time or later, and the last one that starts ahead of it;
    // kNoFrame without one.
    std::uint32_t FirstFrom(std::uint32_t row, std::int64_t time) const;
    std::uint32_t LastAhead(std::uint32_t row, std::int64_t time) const;
    // Whether a row has a frame in [from, to), if only one that takes no time.
    bool HasAny(std::uint32_t row, std::int64_t from, std::int64_t to) const;

    // The bars of a level that reach into [from, to), by start, and a few beside them. Gives how many stored
    // ones it has looked at.
    std::size_t ForEachBar(std::uint32_t row, std::int64_t from, std::int64_t to, unsigned level,
                           const std::function<void(const TimelineBar&)>& take) const;

    std::size_t Bytes() const;

private:
    static constexpr std::uint32_t kBlock = 4096;   // frames
    static constexpr std::uint32_t kFewFrames = 64; // too few for levels
    static constexpr std::uint32_t kThinning = 4;   // from stored level to stored level

    struct Row {
        std::uint32_t first; // place in m_frames
        std::uint32_t block; // the first one of the row
    };
    struct Level {
        std::uint32_t level;
        std::uint32_t first; // place in m_bars
    };
    class CMerge;

    std::uint32_t Place(std::uint32_t row, std::int64_t time) const;
    void AddLevels(std::uint32_t first, std::uint32_t end);
    TimelineBar BarOf(std::uint32_t place) const;

    const CFrames& m_source;
    CLargeVector<std::uint32_t> m_frames; // by row and start
    std::vector<Row> m_rows;              // and one more
    std::vector<std::uint32_t> m_blocks;  // the place of each one's first level, and one more
    std::vector<Level> m_levels;          // of each block the lowest first, and one more
    CPagedArray<TimelineBar, 12> m_bars;
};

} // namespace carvelot
