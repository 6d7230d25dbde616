#include "platform/windows/WindowsText.h"

#include <algorithm>

namespace carvelot::platform {

std::wstring ToWide(std::string_view utf8) {
    std::wstring wide;
    if (utf8.empty()) {
        return wide;
    }
    const int size = static_cast<int>(utf8.size());
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0)));
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string FromWide(std::wstring_view wide) {
    std::string utf8;
    if (wide.empty()) {
        return utf8;
    }
    const int size = static_cast<int>(wide.size());
    utf8.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr)));
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), static_cast<int>(utf8.size()), nullptr,
                        nullptr);
    return utf8;
}

std::wstring ToWidePath(std::string_view utf8) {
    std::wstring path = ToWide(utf8);
    // A folder's path may have 12 characters less than a file's, for a short name below it.
    if (path.size() < MAX_PATH - 12 || path.starts_with(L"\\\\?\\") || path.starts_with(L"\\\\.\\")) {
        return path;
    }
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    if (full.empty()) {
        return path;
    }
    if (full.starts_with(L"\\\\")) {
        return L"\\\\?\\UNC" + full.substr(1);
    }
    return L"\\\\?\\" + full;
}

WindowsHandle OpenShared(const std::string& path, DWORD access, DWORD disposition, int* error) {
    WindowsHandle file;
    if (path.find('\0') != std::string::npos) {
        SetLastError(ERROR_FILE_NOT_FOUND);
    } else {
        file = WindowsHandle(CreateFileW(ToWidePath(path).c_str(), access,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                         disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
    }
    if (!file && error != nullptr) {
        *error = static_cast<int>(GetLastError());
    }
    return file;
}

WindowsHandle OpenSharedRegular(const std::string& path, DWORD access, int* error) {
    WindowsHandle file = OpenShared(path, access, OPEN_EXISTING, error);
    if (file && GetFileType(file.Get()) != FILE_TYPE_DISK) {
        if (error != nullptr) {
            *error = ERROR_INVALID_FUNCTION;
        }
        file.Close();
    }
    return file;
}

DWORD WriteFully(HANDLE file, std::string_view bytes) {
    constexpr std::size_t kMost = std::size_t{1} << 30;
    while (!bytes.empty()) {
        DWORD count = 0;
        if (!WriteFile(file, bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kMost)), &count,
                       nullptr)) {
            return GetLastError();
        }
        if (count == 0) {
            return ERROR_WRITE_FAULT;
        }
        bytes.remove_prefix(count);
    }
    return ERROR_SUCCESS;
}

} // namespace carvelot::platform
