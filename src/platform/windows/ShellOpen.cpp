#include "platform/ShellOpen.h"
#include "platform/windows/WindowsText.h"

#include <cstdint>
#include <shellapi.h>

namespace carvelot::platform {

bool OpenInItsProgram(const std::string& path) {
    // Values above 32 mean that it went well.
    return reinterpret_cast<std::intptr_t>(
               ShellExecuteW(nullptr, L"open", ToWide(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL)) > 32;
}

} // namespace carvelot::platform
