#include "platform/ShellOpen.h"
#include "platform/windows/WindowsText.h"

#include <cstdint>
#include <shellapi.h>

namespace carvelot::platform {

bool OpenInItsProgram(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        return false;
    }
    const std::wstring wide = ToWide(path);
    std::wstring whole(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
    whole.resize(GetFullPathNameW(wide.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr));
    // Values above 32 mean that it went well.
    return !whole.empty() && reinterpret_cast<std::intptr_t>(ShellExecuteW(
                                 nullptr, L"open", whole.c_str(), nullptr, nullptr, SW_SHOWNORMAL)) > 32;
}

} // namespace carvelot::platform
