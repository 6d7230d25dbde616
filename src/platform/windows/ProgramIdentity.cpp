#include "platform/ProgramIdentity.h"
#include "platform/windows/WindowsText.h"

#include <objbase.h>
#include <shlobj.h>

namespace carvelot::platform {

void SetProgramIdentifier(const std::string& identifier) {
    SetCurrentProcessExplicitAppUserModelID(ToWide(identifier).c_str());
}

std::string ProgramIdentifier() {
    wchar_t* wideFound = nullptr;
    if (FAILED(GetCurrentProcessExplicitAppUserModelID(&wideFound)) || wideFound == nullptr) {
        return {};
    }
    std::string found = FromWide(wideFound);
    CoTaskMemFree(wideFound);
    return found;
}

void RegisterRestart(std::string_view file) {
    // No path holds a quote.
    const std::wstring arguments = file.empty() ? std::wstring() : L'"' + ToWide(file) + L'"';
    if (arguments.size() >= RESTART_MAX_CMD_LINE ||
        RegisterApplicationRestart(arguments.c_str(), 0) != S_OK) {
        RegisterApplicationRestart(L"", 0);
    }
}

} // namespace carvelot::platform
