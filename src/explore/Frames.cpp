#include "explore/Frames.h"

#include "explore/FrameWalk.h"

namespace carvelot {

CFrames::CFrames(const CCarvelotDoc& session, const CClock& clock, const CStreams& streams) {
    CFrameWalk(*this, session, clock, streams).Run();
}

} // namespace carvelot
