#include "platform/LocalTime.h"

#include <windows.h>

namespace carvelot::platform {

LocalTime LocalTimeOf(std::chrono::system_clock::time_point moment) {
    // The system counts units of 100 ns from the year 1601 on.
    constexpr std::chrono::seconds kFrom1601To1970{11'644'473'600};
    using Units = std::chrono::duration<unsigned long long, std::ratio<1, 10'000'000>>;
    const Units units = std::chrono::duration_cast<Units>(moment.time_since_epoch() + kFrom1601To1970);
    const FILETIME time{static_cast<DWORD>(units.count()), static_cast<DWORD>(units.count() >> 32)};
    SYSTEMTIME universal{};
    SYSTEMTIME local{};
    FileTimeToSystemTime(&time, &universal);
    SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local);
    return {local.wYear,   local.wMonth,  local.wDay,         local.wHour,
            local.wMinute, local.wSecond, local.wMilliseconds};
}

} // namespace carvelot::platform
