// Spans of a stream: calls of business functions, events, statements and object calls, each below the one
// that it stands in. A flat array, however deep the calls go.
#pragma once

#include "explore/Clock.h"
#include "explore/FrameKeys.h"
#include "explore/Streams.h"
#include "records/PageAllocator.h"
#include "records/PagedArray.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace carvelot {

inline constexpr std::uint32_t kNoFrame = 0xFFFFFFFF;
inline constexpr std::int8_t kNoResult = -1;

struct Frame {
    RecordIndex record;
    RecordIndex ended;    // the record that ended it, its own for one without an end of its own; kNoRecord at
                          // the stream's end
    std::uint32_t parent; // a frame ahead of this one, or kNoFrame
    std::uint32_t key;
    std::int64_t start; // microseconds of the stream's time
    std::int64_t end;
    std::int8_t result; // the return code of the return that closed it, or kNoResult
    bool closed;        // by an end of its own
    bool withinItsKey;  // below a frame of the same key
    std::uint32_t stream;

    std::int64_t Total() const { return end - start; }
    bool IsFailed() const { return result >= 2; }
    bool IsWarned() const { return result == 1; }
};
static_assert(sizeof(Frame) == 40);

struct OrphanReturn {
    RecordIndex record;
    std::uint32_t key; // of the function that had no open call
};

// A stream's time grew by more than is usual from one of its records to the next.
struct Silence {
    RecordIndex record; // the later one
    std::int64_t length;
};

class CFrames {
public:
    static constexpr std::int64_t kNoSilences = std::numeric_limits<std::int64_t>::max();

    // Of a session whose load has ended. Steps of a stream's time of so many microseconds are silences.
    CFrames(const CCarvelotDoc& session, const CClock& clock, const CStreams& streams,
            std::int64_t shortestSilence = kNoSilences, CExploreProgress* progress = nullptr);

    std::uint32_t Count() const { return static_cast<std::uint32_t>(m_frames.Size()); } // by record
    const Frame& operator[](std::uint32_t frame) const { return m_frames[frame]; }
    // The frame that begins at a record, kNoFrame without one.
    std::uint32_t FrameAt(RecordIndex record) const;

    const CFrameKeys& Keys() const { return m_keys; }
    const std::vector<OrphanReturn>& OrphanReturns() const { return m_orphanReturns; } // by record
    const CLargeVector<Silence>& Silences() const { return m_silences; }               // by record

private:
    friend class CFrameWalk;

    CPagedArray<Frame, 18> m_frames;
    CFrameKeys m_keys;
    std::vector<OrphanReturn> m_orphanReturns;
    CLargeVector<Silence> m_silences;
};

} // namespace carvelot
