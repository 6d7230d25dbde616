#include "records/LogDetail.h"

#include <array>

namespace carvelot {

namespace {

// What a step back in time has added: 13 hours less one microsecond. A clock that was set back by an hour or
// two thus shows as a long silence and not as none.
constexpr std::uint64_t kBackwardStep = 46'799'999'999;

} // namespace

std::string_view KindName(LogKind kind) {
    static constexpr std::array<std::string_view, 23> names = {
        "no interest",   "SQL",      "BSFN call", "On",      "return", "parameter in",
        "parameter out", "ER start", "ER end",    "",        "ERROR",  "cache",
        "MANDATORY",     "WARN",     "SEVERE",    "ER line", "",       "SQL done",
        "object call",   "UBE",      "JDB error", "gap",     "message"};
    return names[kind];
}

float SecondsFromMicroseconds(std::uint64_t microseconds) {
    // As a signed number, with 2^64 added back to a negative one: that rounds twice, and a conversion as an
    // unsigned number would give other last digits.
    float value = static_cast<float>(static_cast<std::int64_t>(microseconds));
    if (value < 0) {
        value += 18446744073709551616.0F;
    }
    return value / 1'000'000.0F;
}

float ElapsedSeconds(std::uint64_t later, std::uint64_t earlier) {
    if (earlier == 0) {
        return 0.0F;
    }
    std::uint64_t difference = later - earlier;
    if (later < earlier) {
        difference += kBackwardStep;
    }
    return SecondsFromMicroseconds(difference);
}

} // namespace carvelot
