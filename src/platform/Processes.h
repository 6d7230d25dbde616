// The processes that run on this machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace carvelot::platform {

struct ProcessEntry {
    std::uint32_t m_nProcess = 0;
    std::string m_strImageName; // base name of the executable, UTF-8
};

/// Fills the list in the system's order with the first 1024 processes, as far as this user may look at them.
/// Process 0 is never among them. False when the system gives no list. Off Windows a Windows program bears
/// the name of its `.exe`.
bool EnumerateProcesses(std::vector<ProcessEntry>& processes);

} // namespace carvelot::platform
