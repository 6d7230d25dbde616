#include "logcore/NodeText.h"

#include <cstdio>

namespace carvelot {

std::string TimeStampText(const CLogDetail& detail) {
    char buffer[64];
    const int length = std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d.%06d    ", detail.m_nHour,
                                     detail.m_nMinute, detail.m_nSecond, detail.m_nMicrosecond);
    return {buffer, static_cast<std::size_t>(length)};
}

std::string Formatted(const char* format, double value) {
    char buffer[400]; // a double has at most 309 digits before its point
    const int length = std::snprintf(buffer, sizeof buffer, format, value);
    return {buffer, static_cast<std::size_t>(length)};
}

std::string SecondsText(float seconds) { return Formatted("%08.6f", static_cast<double>(seconds)); }

std::string IdText(std::uint32_t id) { return std::to_string(static_cast<std::int32_t>(id)); }

std::string ProcessThreadText(std::uint32_t process, std::uint32_t thread) {
    return IdText(process).append("/").append(IdText(thread));
}

} // namespace carvelot
