#include "explore/Frames.h"

#include "explore/FrameWalk.h"

namespace carvelot {

CFrames::CFrames(const CCarvelotDoc& session, const CClock& clock, const CStreams& streams) {
    CFrameWalk(*this, session, clock, streams).Run();
}

std::vector<std::int64_t> CFrames::SelfTimes() const {
    std::vector<std::int64_t> times(Count(), 0);
    for (std::uint32_t i = 0; i < Count(); ++i) {
        const Frame& frame = m_frames[i];
        times[i] += frame.Total();
        if (frame.parent != kNoFrame) {
            times[frame.parent] -= frame.Total();
        }
    }
    return times;
}

} // namespace carvelot
