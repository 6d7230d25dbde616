#include "platform/LocalTime.h"

#include <windows.h>

namespace carvelot::platform {

LocalTime CurrentLocalTime() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds};
}

} // namespace carvelot::platform
