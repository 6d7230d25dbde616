// The frames of a part of a log: of one process, thread or user, and of a range of clock.
#pragma once

#include "explore/Frames.h"
#include "records/PageAllocator.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

namespace carvelot {

// Clocks from `from` up to, but not including, `to`. Without one of them it is open on that side.
struct ClockRange {
    static constexpr std::int64_t kOpenFrom = std::numeric_limits<std::int64_t>::min();
    static constexpr std::int64_t kOpenTo = std::numeric_limits<std::int64_t>::max();

    std::int64_t from = kOpenFrom;
    std::int64_t to = kOpenTo;

    bool IsWhole() const { return from == kOpenFrom && to == kOpenTo; }
};

class CCut {
public:
    // Refers to the frames.
    CCut(const CFrames& frames, const CStreams& streams, const Selection& scope, const ClockRange& range,
         CExploreProgress* progress = nullptr);

    const CFrames& Frames() const { return m_frames; }
    // A frame that reaches into the range stays, and with it all that it stands in.
    bool Holds(std::uint32_t frame) const { return m_bWhole || m_stays[frame] != 0; }
    // What of a frame that stays lies in the range.
    std::int64_t Start(std::uint32_t frame) const { return std::max(m_frames[frame].start, m_range.from); }
    std::int64_t End(std::uint32_t frame) const { return std::min(m_frames[frame].end, m_range.to); }
    std::int64_t Total(std::uint32_t frame) const { return End(frame) - Start(frame); }
    // What is left of that without the frames directly below, by frame.
    CLargeVector<std::int64_t> SelfTimes(CExploreProgress* progress = nullptr) const;

private:
    const CFrames& m_frames;
    const ClockRange m_range;
    const bool m_bWhole;
    std::vector<std::uint8_t> m_stays;
};

} // namespace carvelot
