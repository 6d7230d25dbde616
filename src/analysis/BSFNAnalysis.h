// Calls of business functions in one process, thread or user: how often, how long, and which ones ran long.
#pragma once

#include "records/AnalysisSettings.h"
#include "records/DetailList.h"
#include "records/HeadList.h"
#include "records/NumberMap.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// What a call or return line says of its function, to which it may say nothing. The name is in the text or in
// the scratch string.
struct CallWords {
    std::string_view name;
    std::int32_t level = 0; // "BSFNLevel = ", 0 without it
};

CallWords ReadCallWords(LogKind kind, std::string_view text, std::string& scratch);
// The name that an object call of the web tier tells.
std::string_view ReadObjectName(std::string_view text, std::string& scratch);

// The same with the name interned. An empty name is a name like any other.
struct CallLine {
    std::uint32_t function = 0; // number of the interned name
    std::int32_t level = 0;
};

CallLine ReadCallLine(CDetailList& details, LogKind kind, std::string_view text);

class CBSFNAnalysis {
public:
    class CBSFN {
    public:
        struct CBSFNInstance {
            RecordIndex m_pStart;
            std::int32_t m_level;
            std::uint64_t m_endTime = 0;  // 0 while the call is open
            std::uint64_t m_duration = 0; // microseconds; all ones when the start time was 0
            std::int32_t m_result = 0;    // return code of the closing record
            std::uint32_t m_nOlderOpen;   // the one opened before among those that one return will close
        };

        std::string_view m_strName;
        std::string_view m_strLocation;         // "Local" when first seen on a call line
        std::vector<CBSFNInstance> m_instances; // in order of the calls
        std::uint64_t m_longest = 0;            // microseconds, as the two below
        std::uint64_t m_shortest = 0;
        std::uint64_t m_totalTime = 0;
    };

    // A LOG_CALL opens an instance, a LOG_RETURN closes every open one of its function and level, the last
    // one first.
    void AddCall(CDetailList& details, const AnalysisSettings& settings, RecordIndex record,
                 const CallLine& line);

    // The web tier has no return lines: an object call ends at its user's next record. What is called is
    // told by its place in m_functions.
    std::uint32_t AddObjectCall(CDetailList& details, RecordIndex record);
    void EndObjectCall(CDetailList& details, const AnalysisSettings& settings, RecordIndex record,
                       std::uint32_t function);

    std::deque<CBSFN> m_functions; // in order of first appearance
    CHeadList<RecordIndex> m_listLongTasks;

private:
    std::uint32_t FindOrAdd(const CDetailList& details, std::uint32_t name, std::string_view location);
    void Open(std::uint32_t function, RecordIndex record, std::int32_t level);
    void CloseInstances(CDetailList& details, const AnalysisSettings& settings, std::uint32_t function,
                        RecordIndex end, std::int32_t level);

    static std::uint64_t OpenKey(std::uint32_t function, std::int32_t level) {
        return (std::uint64_t{function} << 32U) | static_cast<std::uint32_t>(level);
    }

    static constexpr std::uint32_t kNoInstance = 0xFFFFFFFE;

    CNumberMap m_placeByName;
    // By function and level, of the instances that the next return closes the one opened last.
    CNumberMap m_newestOpen;
};

} // namespace carvelot
