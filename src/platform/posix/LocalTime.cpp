#include "platform/LocalTime.h"

#include <time.h>

namespace carvelot::platform {

LocalTime LocalTimeOf(std::chrono::system_clock::time_point moment) {
    const auto second = std::chrono::floor<std::chrono::seconds>(moment);
    const time_t time = std::chrono::system_clock::to_time_t(second);
    tm parts{};
    localtime_r(&time, &parts);
    return {parts.tm_year + 1900,
            parts.tm_mon + 1,
            parts.tm_mday,
            parts.tm_hour,
            parts.tm_min,
            parts.tm_sec,
            static_cast<int>(std::chrono::floor<std::chrono::milliseconds>(moment - second).count())};
}

} // namespace carvelot::platform
