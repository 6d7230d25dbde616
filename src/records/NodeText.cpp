#include "records/NodeText.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace carvelot {

std::string TimeStampText(const CLogDetail& detail) {
    char buffer[64];
    const int length = std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d.%06d    ", detail.m_nHour,
                                     detail.m_nMinute, detail.m_nSecond, detail.m_nMicrosecond);
    return {buffer, static_cast<std::size_t>(length)};
}

std::string SecondsText(double seconds) {
    if (!std::isfinite(seconds)) {
        return std::isnan(seconds) ? "nan" : seconds < 0 ? "-inf" : "inf";
    }
    // Six decimals fill the width of 8 with a single digit ahead of them: the zeros of the format never show.
    char buffer[400]; // a double has at most 309 digits before its point
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, seconds, std::chars_format::fixed, 6);
    return {buffer, result.ptr};
}

std::string IdText(std::uint32_t id) { return std::to_string(static_cast<std::int32_t>(id)); }

std::string ProcessThreadText(std::uint32_t process, std::uint32_t thread) {
    return IdText(process).append("/").append(IdText(thread));
}

} // namespace carvelot
