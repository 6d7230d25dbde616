#include "platform/TemporaryFile.h"
#include "platform/windows/WindowsText.h"

namespace carvelot::platform {

std::optional<std::string> MakeTemporaryName(std::string_view prefix, int* error) {
    wchar_t folder[MAX_PATH + 1];
    wchar_t name[MAX_PATH];
    const DWORD length = GetTempPathW(MAX_PATH + 1, folder);
    if (length == 0 || length > MAX_PATH || GetTempFileNameW(folder, ToWide(prefix).c_str(), 0, name) == 0) {
        if (error != nullptr) {
            *error = static_cast<int>(GetLastError());
        }
        return std::nullopt;
    }
    return FromWide(name);
}

bool CopyFileOver(const std::string& from, const std::string& to) {
    if (from.find('\0') != std::string::npos || to.find('\0') != std::string::npos) {
        return false;
    }
    const std::wstring target = ToWidePath(to);
    if (!CopyFileW(ToWidePath(from).c_str(), target.c_str(), FALSE)) {
        return false;
    }
    // The copy of a write-protected file is not to be protected: it could not be deleted.
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesW(target.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    }
    return true;
}

bool DeleteFileAt(const std::string& path) {
    return path.find('\0') == std::string::npos && DeleteFileW(ToWidePath(path).c_str()) != 0;
}

} // namespace carvelot::platform
