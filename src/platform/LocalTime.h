// The time of day where the user is.
#pragma once

#include <chrono>

namespace carvelot::platform {

struct LocalTime {
    int m_nYear = 0;
    int m_nMonth = 0; // 1 to 12
    int m_nDay = 0;
    int m_nHour = 0;
    int m_nMinute = 0;
    int m_nSecond = 0;
    int m_nMillisecond = 0;
};

// A moment as the user's clocks show it.
LocalTime LocalTimeOf(std::chrono::system_clock::time_point moment);

inline LocalTime CurrentLocalTime() { return LocalTimeOf(std::chrono::system_clock::now()); }

} // namespace carvelot::platform
