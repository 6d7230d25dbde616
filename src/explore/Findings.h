// What in a log asks for a look, the worst first.
#pragma once

#include "explore/ExploredSession.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

enum class FindingRule : std::uint8_t {
    RepeatedStatement,
    CacheNotTerminated,
    CursorNotClosed,
    CallWithoutReturn,
    OrphanReturn,
    FirstCause,
    SilenceInCall,
    RolledBack,
    UnreadLines,
};
enum class Severity : std::uint8_t { Error, Warning, Note };

std::string_view NameOf(FindingRule rule); // "repeated-statement"
std::string_view NameOf(Severity severity);
Severity SeverityOf(FindingRule rule);
// One sentence that says what it means.
std::string_view MeaningOf(FindingRule rule);

struct Finding {
    static constexpr std::size_t kMostRecords = 100;

    FindingRule rule;
    std::string subject;
    std::uint64_t count = 0;
    std::int64_t cost = 0;            // microseconds
    std::vector<RecordIndex> records; // the first ones
    std::string cache = {};           // of a cache and of a cursor the cache's name

    // What the same finding of another log bears too, which a handle is not.
    std::string_view LastingSubject() const {
        const bool isOfCache =
            rule == FindingRule::CacheNotTerminated || rule == FindingRule::CursorNotClosed;
        return isOfCache ? cache : subject;
    }
    void AddRecord(RecordIndex record) {
        if (records.size() < kMostRecords) {
            records.push_back(record);
        }
    }
};

// Errors, warnings, notes; in each by cost, then count, both falling, then subject, rule and records.
// `progress`, where there is one, can end it: then it throws ExploringEnded.
std::vector<Finding> FindAll(const ExploredSession& explored, CExploreProgress* progress = nullptr);

} // namespace carvelot
