// A record of the form that nearly all have, in pieces that need no more work.
#pragma once

#include "records/LogDetail.h"

#include <cstdint>
#include <string_view>

namespace carvelot {

// No context of records.
inline constexpr std::uint32_t kNoContext = 0xFFFFFFFF;

// Day and clock time up to the whole second.
struct LineStamp {
    std::int32_t day = 0;
    std::int32_t hour = 0;
    std::int32_t minute = 0;
    std::int32_t second = 0;
    std::uint64_t time = 0;   // microseconds since midnight
    std::uint64_t packed = 0; // day and time as records keep them

    // Whether a record can keep the numbers without more ado.
    bool IsOfAClock() const { return day < 32 && hour < 32 && minute < 64 && second < 64; }
};

struct UsualLine {
    const LineStamp& stamp;
    std::uint32_t fraction; // microseconds
    std::uint32_t context;
    LogKind kind;
    std::int32_t returnCode;
    SqlOperation operation;
    bool ascii;
    bool labelRunsOn; // the label goes on into the text, to the next tab
    std::string_view text;
    std::string_view stored; // the text, and perhaps blanks behind it that belong to its label
    std::string_view name;   // the display name, or the table of a SQL record
};

} // namespace carvelot
