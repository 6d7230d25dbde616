// What this process has used of the machine's memory.
#pragma once

#include <cstdint>

namespace carvelot::platform {

/// The largest resident size of this process so far, in bytes; 0 when it can't be told.
std::uint64_t PeakResidentBytes();

} // namespace carvelot::platform
