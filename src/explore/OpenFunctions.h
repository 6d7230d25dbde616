// Which function was open at a record: frames replayed.
#pragma once

#include "explore/Frames.h"

#include <cstdint>
#include <vector>

namespace carvelot {

class COpenFunctions {
public:
    COpenFunctions(const CFrames& frames, const CStreams& streams)
        : m_frames(frames), m_streamOf(streams), m_streams(streams.Count()) {}

    // The innermost function frame of the record's stream that was open ahead of the record, kNoFrame without
    // one. To be asked in file order.
    std::uint32_t AheadOf(RecordIndex record) {
        for (; m_nNext < m_frames.Count() && Number(m_frames[m_nNext].record) < Number(record); ++m_nNext) {
            Open(m_nNext);
        }
        std::vector<OpenFrame>& open = m_streams[m_streamOf.Of(record)];
        while (!open.empty() && Number(open.back().ended) < Number(record)) {
            open.pop_back();
        }
        return Innermost(open);
    }

private:
    struct OpenFrame {
        std::uint32_t function; // the frame itself, or the function that it stands in
        RecordIndex ended;
    };

    static std::uint32_t Innermost(const std::vector<OpenFrame>& open) {
        return open.empty() ? kNoFrame : open.back().function;
    }

    void Open(std::uint32_t number) {
        const Frame& frame = m_frames[number];
        const FrameKind kind = m_frames.Keys().Kind(frame.key);
        if (kind != FrameKind::Function && kind != FrameKind::Event) {
            return;
        }
        std::vector<OpenFrame>& open = m_streams[frame.stream];
        // What a call ends at its own record is not below it.
        while (!open.empty() && Number(open.back().ended) <= Number(frame.record)) {
            open.pop_back();
        }
        open.push_back({kind == FrameKind::Function ? number : Innermost(open), frame.ended});
    }

    const CFrames& m_frames;
    const CStreams& m_streamOf;
    std::vector<std::vector<OpenFrame>> m_streams;
    std::uint32_t m_nNext = 0; // frame
};

} // namespace carvelot
