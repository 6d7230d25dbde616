// Which function was open at each record: frames replayed.
#pragma once

#include "explore/Frames.h"

#include <cstdint>
#include <vector>

namespace carvelot {

class COpenFunctions {
public:
    COpenFunctions(const CFrames& frames, const CStreams& streams)
        : m_frames(frames), m_streams(streams.Count()) {}

    // The innermost function frame of the record's stream that was open ahead of the record, kNoFrame without
    // one. To be asked for every record in file order.
    std::uint32_t AheadOf(RecordIndex record, std::uint32_t stream) {
        std::vector<Open>& open = m_streams[stream];
        while (!open.empty() && Number(open.back().ended) < Number(record)) {
            open.pop_back();
        }
        const std::uint32_t ahead = open.empty() ? kNoFrame : open.back().function;
        if (m_nNext < m_frames.Count() && m_frames[m_nNext].record == record) {
            const Frame& frame = m_frames[m_nNext];
            const FrameKind kind = m_frames.Keys().Kind(frame.key);
            if (kind == FrameKind::Function || kind == FrameKind::Event) {
                // What a call ends at its own record is not below it.
                while (!open.empty() && open.back().ended == record) {
                    open.pop_back();
                }
                const std::uint32_t below = open.empty() ? kNoFrame : open.back().function;
                open.push_back({kind == FrameKind::Function ? m_nNext : below, frame.ended});
            }
            ++m_nNext;
        }
        return ahead;
    }

private:
    struct Open {
        std::uint32_t function; // the frame itself, or the function that it stands in
        RecordIndex ended;
    };

    const CFrames& m_frames;
    std::vector<std::vector<Open>> m_streams;
    std::uint32_t m_nNext = 0; // frame
};

} // namespace carvelot
