#include "platform/ProcessMemory.h"

#include <fstream>
#include <string>
#include <sys/resource.h>

namespace carvelot::platform {

std::uint64_t PeakResidentBytes() {
    // The resource usage of a process starts at the peak of the program that started it; /proc tells our own.
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) {
            return std::stoull(line.substr(6)) * 1024;
        }
    }
    rusage usage{};
    if (getrusage(RUSAGE_SELF, &usage) != 0) {
        return 0;
    }
    return static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
}

} // namespace carvelot::platform
