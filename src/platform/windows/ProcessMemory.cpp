#include "platform/ProcessMemory.h"

#include <windows.h>
// Below windows.h, whose types it needs.
#include <psapi.h>

namespace carvelot::platform {

std::uint64_t PeakResidentBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) ? counters.PeakWorkingSetSize
                                                                                 : 0;
}

} // namespace carvelot::platform
