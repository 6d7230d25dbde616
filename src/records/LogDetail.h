// One parsed line of a log and the small types that name it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

// What a line is. The numbers are compared all over the system and stand in the JSON report; 9 and 16 are
// never given.
enum LogKind : std::uint8_t {
    LOG_NONE = 0,
    LOG_SQL = 1,
    LOG_CALL = 2,
    LOG_ON = 3,
    LOG_RETURN = 4,
    LOG_PARM_IN = 5,
    LOG_PARM_OUT = 6,
    LOG_EVENT_START = 7,
    LOG_EVENT_END = 8,
    LOG_ERROR = 10,
    LOG_CACHE = 11,
    LOG_MANDATORY = 12,
    LOG_WARN = 13,
    LOG_SEVERE = 14,
    LOG_ER_LINE = 15,
    LOG_SQL_DONE = 17,
    LOG_OBJECT_CALL = 18,
    LOG_UBE = 19,
    LOG_JDB_ERROR = 20,
    LOG_GAP = 21,
    LOG_MESSAGE = 22,
};

// What people call it: "BSFN call"; empty for a number that is never given.
std::string_view KindName(LogKind kind);

// Some kinds.
class CKindSet {
public:
    template <class... Kinds>
    constexpr explicit CKindSet(Kinds... kinds) : m_nBits(((std::uint32_t{1} << kinds) | ...)) {}

    constexpr bool Has(LogKind kind) const { return (m_nBits >> kind & 1U) != 0; }

private:
    std::uint32_t m_nBits;
};

enum LogFormat : std::uint8_t { LOG_FORMAT_DEBUG = 0, LOG_FORMAT_JAS = 1 };

enum SqlOperation : std::uint8_t {
    SQL_NONE = 0,
    SQL_SELECT = 1,
    SQL_UPDATE = 2,
    SQL_INSERT = 3,
    SQL_DELETE = 4
};

// A record's place in its session's m_listDetails, counted from 0 in file order. Valid until the session is
// cleared.
enum class RecordIndex : std::uint32_t {};
inline constexpr RecordIndex kNoRecord{0xFFFFFFFF};

constexpr std::uint32_t Number(RecordIndex record) { return static_cast<std::uint32_t>(record); }

// The thread label of a debug line in up to two pieces: what many lines of a thread share, and what only this
// line has.
struct LabelText {
    std::string_view shared;
    std::string_view own;

    std::string Joined() const { return std::string(shared).append(own); }
};

// One record with all its fields. Texts are UTF-8 (a cut through a surrogate pair leaves a lone surrogate in
// its three-byte form). Out of a session's list this is a snapshot: its texts are views that live as long as
// the session's content does, and a change to it changes nothing in the session.
struct CLogDetail {
    // Written out so that the members are set one by one: for "= default" g++ clears the record by a string
    // instruction, whose start-up costs a tenth of a load.
    CLogDetail() {}

    LogKind m_nKind = LOG_NONE;
    SqlOperation m_nSQLOperation = SQL_NONE;
    bool m_bUBE = false;
    std::int32_t m_nReturnCode = 0;
    std::int32_t m_nDay = 0;
    std::int32_t m_nHour = 0;
    std::int32_t m_nMinute = 0;
    std::int32_t m_nSecond = 0;
    std::int32_t m_nMicrosecond = 0; // the fraction as the log wrote it, not scaled by its number of digits
    std::int32_t m_nUBELevel = 0;
    std::uint32_t m_nProcessID = 0;
    std::uint32_t m_nThreadID = 0;
    float m_fDuration = 0; // seconds, 0 when not measured
    float m_fGap = 0;      // seconds of silence before this record, 0 when not above the threshold
    std::uint64_t m_nTime = 0;
    std::string_view m_strText;
    std::string_view m_strMonth;
    LabelText m_strThreadLabel;
    std::string_view m_strName;
    std::string_view m_strTable;
    std::string_view m_strLevel;
    std::string_view m_strUser;
    std::string_view m_strSource;
};

// Microseconds since midnight; the date takes no part. Computed modulo 2^64, so fields out of range wrap.
constexpr std::uint64_t LogTime(std::int32_t hour, std::int32_t minute, std::int32_t second,
                                std::int32_t fraction) {
    const auto wide = [](std::int32_t n) { return static_cast<std::uint64_t>(std::int64_t{n}); };
    return ((wide(hour) * 60 + wide(minute)) * 60 + wide(second)) * 1'000'000 + wide(fraction);
}

// Seconds from an earlier to a later log time, the one rule for every gap and SQL duration. An earlier time
// of 0 is an unknown time and gives 0. A time that fell gets 13 hours less a microsecond added: logs of a
// 12-hour clock come out right, and a log that passes midnight shows one enormous value.
float ElapsedSeconds(std::uint64_t later, std::uint64_t earlier);

// Microseconds as 32-bit seconds. Single precision is deliberate and shows in the digits of every list.
float SecondsFromMicroseconds(std::uint64_t microseconds);

} // namespace carvelot
