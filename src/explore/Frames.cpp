#include "explore/Frames.h"

#include "explore/FrameWalk.h"

namespace carvelot {

CFrames::CFrames(const CCarvelotDoc& session, const CClock& clock, const CStreams& streams,
                 std::int64_t shortestSilence, CExploreProgress* progress) {
    CFrameWalk(*this, session, clock, streams, shortestSilence).Run(progress);
    AddPart(progress, ExploreParts::kFrames);
}

std::uint32_t CFrames::FrameAt(RecordIndex record) const {
    std::uint32_t low = 0;
    std::uint32_t high = Count();
    while (low < high) {
        const std::uint32_t middle = low + (high - low) / 2;
        if (Number(m_frames[middle].record) < Number(record)) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low < Count() && m_frames[low].record == record ? low : kNoFrame;
}

} // namespace carvelot
