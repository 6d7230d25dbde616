// One log with all that its tables are made from.
#pragma once

#include "explore/ExploredSession.h"
#include "explore/Findings.h"
#include "session/CarvelotDoc.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

struct TableOptions {
    std::string host = {};        // that the log is from, as its reader says; empty when nobody does
    std::optional<int> year = {}; // of the log's first stamp, which names none
    bool shapesOnly = false;      // whatever may hold a value of the business is left out
};

// A number that texts have in common with all logs in which they stand.
std::uint64_t StableNumber(std::string_view text, std::uint64_t start = 0xCBF29CE484222325U);

class CTableSource {
public:
    // Refers to the session, whose load has ended, and to the settings that it was loaded with.
    CTableSource(const CCarvelotDoc& session, const AnalysisSettings& settings, TableOptions options);

    const std::string& Log() const { return m_strLog; }
    const TableOptions& Options() const { return m_options; }
    const CCarvelotDoc& Session() const { return m_explored.session; }
    const CDetailList& Records() const { return m_explored.session.m_listDetails; }
    const ExploredSession& Explored() const { return m_explored; }

    // These are made when they are first asked for, by the one thread that asks.
    const ExploredScope& Scope() const;
    const std::vector<Finding>& Findings() const;
    const CLargeVector<std::int64_t>& SelfTimes() const; // by frame
    const std::vector<RecordIndex>& Errors() const;      // by record

    // The line of a record, from 1 on; nothing where the load did not number them.
    std::optional<std::uint32_t> Line(RecordIndex record) const;
    // The shape of a record that is a statement, else kNoShape.
    std::uint32_t ShapeAt(RecordIndex record) const;
    // The day of a record's stamp, counted from 1970-01-01 on. Without a year the days are those of the year
    // 2000, which has all that there are; nothing for a record without a stamp, or for a day that its year
    // has not.
    std::optional<std::int64_t> DayNumber(RecordIndex record) const;
    // "2026-01-15", or "--01-15" without a year.
    std::string DayText(std::int64_t dayNumber) const;
    // The day of the log's first stamp.
    std::optional<std::int64_t> FirstDay() const;

    // A name as it may be shown: whole, or without what may be a value. In the argument or the scratch
    // string.
    std::string_view ShownName(std::string_view name, std::string& scratch) const;
    // The text of a record likewise, of a statement its shape; nothing when it may not be shown.
    std::optional<std::string_view> ShownText(RecordIndex record) const;
    // "thread:PID/TID" or "user:NAME".
    std::string_view StreamName(std::uint32_t stream, std::string& scratch) const;

private:
    // Whole days from 1970 on to where the clock has come to at a record.
    std::int64_t DaysByClock(RecordIndex record) const;
    std::optional<std::int64_t> FindDayNumber(RecordIndex record) const;

    const std::string m_strLog;
    const TableOptions m_options;
    const ExploredSession m_explored;
    std::int64_t m_nFirstDay = 0; // of the first stamp
    std::int64_t m_nFirstTime = 0;
    mutable std::optional<ExploredScope> m_scope;
    mutable std::optional<std::vector<Finding>> m_findings;
    mutable std::optional<CLargeVector<std::int64_t>> m_selfTimes;
    mutable std::optional<std::vector<RecordIndex>> m_errors;
    // The day of the latest record that DayNumber was asked for.
    struct KnownDay {
        std::uint32_t month = 0; // number of its name
        std::int32_t day = 0;
        std::optional<std::int64_t> number;
    };
    mutable KnownDay m_knownDay;
};

} // namespace carvelot
