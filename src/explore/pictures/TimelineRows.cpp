#include "explore/pictures/TimelineRows.h"

#include <algorithm>

namespace carvelot {

CTimelineRows::CTimelineRows(const CFrames& frames, const CStreams& streams, CExploreProgress* progress)
    : m_frames(frames), m_streams(streams), m_depths(frames.Count()), m_firstRows(streams.Count() + 1, 0) {
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        CheckAt(progress, i);
        const std::uint32_t parent = frames[i].parent;
        m_depths[i] = parent == kNoFrame ? 0 : m_depths[parent] + 1;
        std::uint32_t& rows = m_firstRows[StreamOf(i) + 1];
        rows = std::max(rows, m_depths[i] + 1);
    }
    for (std::uint32_t stream = 0; stream < streams.Count(); ++stream) {
        m_firstRows[stream + 1] += m_firstRows[stream];
    }
}

} // namespace carvelot
