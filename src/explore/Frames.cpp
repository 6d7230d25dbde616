#include "explore/Frames.h"

#include "explore/FrameWalk.h"

namespace carvelot {

CFrames::CFrames(const CCarvelotDoc& session, const CClock& clock, const CStreams& streams,
                 std::int64_t shortestSilence, CExploreProgress* progress) {
    CFrameWalk(*this, session, clock, streams, shortestSilence).Run(progress);
    AddPart(progress, ExploreParts::kFrames);
}

} // namespace carvelot
