// One walk over the records of all streams, a stack of open frames for each. Every step is told by a look-up,
// so that a hundred thousand nested calls cost each what one costs.
#pragma once

#include "explore/Frames.h"

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

class CFrameWalk {
public:
    CFrameWalk(CFrames& frames, const CCarvelotDoc& session, const CClock& clock, const CStreams& streams,
               std::int64_t shortestSilence);
    void Run(CExploreProgress* progress);

private:
    static constexpr std::uint32_t kNoPlace = 0xFFFFFFFE; // no place in a stack
    static constexpr std::int64_t kNotBegun = std::numeric_limits<std::int64_t>::min();

    struct OpenFrame {
        std::uint32_t frame;
        std::uint32_t key;
        std::int32_t level;        // of a function
        std::uint32_t levelledKey; // of a function: a number for its key at its level
        // Places in the stack, or kNoPlace: the one below that has the same key, and the one below that has
        // the same key at the same level or, for an event, that is an event.
        std::uint32_t sameKeyBelow;
        std::uint32_t sameBelow;
    };
    struct Stream {
        std::int64_t now = kNotBegun;
        std::vector<OpenFrame> open;
        std::vector<std::uint32_t> levelled; // places of functions of a level above 0, whose levels rise
        std::uint32_t newestEvent = kNoPlace;
        std::uint32_t pending = kNoFrame; // the statement or object call that awaits its end
    };

    void Take(RecordIndex record);
    void Reach(Stream& stream, RecordIndex record);
    void EndPending(Stream& stream, RecordIndex record, LogKind kind);
    void Call(std::uint32_t number, RecordIndex record);
    void Return(std::uint32_t number, RecordIndex record);
    void StartEvent(std::uint32_t number, RecordIndex record);
    void StartStatement(std::uint32_t number, RecordIndex record);
    void StartObjectCall(std::uint32_t number, RecordIndex record);
    std::uint32_t Add(std::uint32_t number, RecordIndex record, std::uint32_t key);
    void Open(std::uint32_t number, RecordIndex record, std::uint32_t key, std::int32_t level);
    // Ends what is open from a place of the stack on; the frame at the place is the one that is closed, if
    // any.
    void EndFrom(std::uint32_t number, std::uint32_t place, RecordIndex record, bool closed,
                 std::int8_t result);
    std::uint32_t StatementKey(RecordIndex record);
    std::uint32_t& NewestOfKey(std::uint32_t number, std::uint32_t key);
    std::uint32_t& NewestOfLevelledKey(std::uint32_t number, std::uint32_t levelledKey);
    std::uint32_t LevelledKey(std::uint32_t key, std::int32_t level);

    CFrames& m_result;
    const CDetailList& m_details;
    const CClock& m_clock;
    const CStreams& m_streamOf;
    const bool m_bJAS;
    const std::int64_t m_nShortestSilence;
    std::vector<Stream> m_streams;
    CNumberMap m_statementKeys; // by operation and table
    CNumberMap m_levelledKeys;
    std::uint32_t m_nLevelledKeys = 0;
    // Places in the streams' stacks, by stream.
    CNumberMap m_newestOfKey;
    CNumberMap m_newestOfLevelledKey;
    std::string m_strScratch;
};

} // namespace carvelot
