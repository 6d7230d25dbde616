#include "platform/ProgramIdentity.h"
#include "platform/windows/WindowsText.h"

#include <objbase.h>
#include <shlobj.h>

namespace carvelot::platform {

void SetProgramIdentifier(const std::string& strIdentifier) {
    SetCurrentProcessExplicitAppUserModelID(ToWide(strIdentifier).c_str());
}

std::string ProgramIdentifier() {
    wchar_t* pszFound = nullptr;
    if (FAILED(GetCurrentProcessExplicitAppUserModelID(&pszFound)) || pszFound == nullptr)
        return {};
    std::string strFound = FromWide(pszFound);
    CoTaskMemFree(pszFound);
    return strFound;
}

void RegisterRestart(std::string_view strFile) {
    // No path holds a quote.
    const std::wstring strArguments = strFile.empty() ? std::wstring() : L'"' + ToWide(strFile) + L'"';
    if (strArguments.size() >= RESTART_MAX_CMD_LINE ||
        RegisterApplicationRestart(strArguments.c_str(), 0) != S_OK)
        RegisterApplicationRestart(L"", 0);
}

} // namespace carvelot::platform
