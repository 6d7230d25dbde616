// Where a timeline shows frames: a row a stream and depth. What stands in a row never overlaps, and starts in
// the order of its records.
#pragma once

#include "explore/ExploreProgress.h"
#include "explore/Frames.h"
#include "records/PageAllocator.h"

#include <cstdint>
#include <vector>

namespace carvelot {

class CTimelineRows {
public:
    // Refers to frames and streams.
    CTimelineRows(const CFrames& frames, const CStreams& streams, CExploreProgress* progress = nullptr);

    const CFrames& Frames() const { return m_frames; }
    std::uint32_t StreamCount() const { return m_streams.Count(); }
    std::uint32_t StreamOf(std::uint32_t frame) const { return m_streams.Of(m_frames[frame].record); }
    std::uint32_t DepthOf(std::uint32_t frame) const { return m_depths[frame]; }
    std::uint32_t RowOf(std::uint32_t frame) const { return FirstRow(StreamOf(frame)) + DepthOf(frame); }

    std::uint32_t Count() const { return m_firstRows.back(); }
    // Rows of a stream follow each other by depth.
    std::uint32_t FirstRow(std::uint32_t stream) const { return m_firstRows[stream]; }
    std::uint32_t RowCount(std::uint32_t stream) const {
        return m_firstRows[stream + 1] - m_firstRows[stream];
    }
    std::size_t Bytes() const {
        return m_depths.capacity() * sizeof(std::uint32_t) + m_firstRows.capacity() * sizeof(std::uint32_t);
    }

private:
    const CFrames& m_frames;
    const CStreams& m_streams;
    CLargeVector<std::uint32_t> m_depths;   // by frame
    std::vector<std::uint32_t> m_firstRows; // by stream, and one more
};

} // namespace carvelot
