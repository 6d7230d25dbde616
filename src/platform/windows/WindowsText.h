// What the Windows implementations share: text and paths as the wide calls want them, and handles.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <windows.h>

namespace carvelot::platform {

/// UTF-8 to UTF-16; what is no valid UTF-8 becomes U+FFFD.
std::wstring ToWide(std::string_view utf8);

/// UTF-16 to UTF-8; what is no valid UTF-16 becomes U+FFFD.
std::string FromWide(std::wstring_view wide);

/// A path for a file call. Long paths get the prefix that lifts the limit of 260 characters.
std::wstring ToWidePath(std::string_view utf8);

/// Owns a file handle.
class WindowsHandle {
public:
    WindowsHandle() = default;
    explicit WindowsHandle(HANDLE handle) : m_hFile(handle) {}
    WindowsHandle(WindowsHandle&& other) noexcept
        : m_hFile(std::exchange(other.m_hFile, INVALID_HANDLE_VALUE)) {}
    WindowsHandle& operator=(WindowsHandle&& other) noexcept {
        if (this != &other) {
            Close();
            m_hFile = std::exchange(other.m_hFile, INVALID_HANDLE_VALUE);
        }
        return *this;
    }
    ~WindowsHandle() { Close(); }

    explicit operator bool() const { return m_hFile != INVALID_HANDLE_VALUE && m_hFile != nullptr; }
    HANDLE Get() const { return m_hFile; }
    HANDLE Release() { return std::exchange(m_hFile, INVALID_HANDLE_VALUE); }
    bool Close() {
        const HANDLE handle = Release();
        return handle == INVALID_HANDLE_VALUE || handle == nullptr || CloseHandle(handle) != 0;
    }

private:
    HANDLE m_hFile = INVALID_HANDLE_VALUE;
};

/// Opens a path with all sharing. A path with a NUL in it does not exist.
WindowsHandle OpenShared(const std::string& path, DWORD access, DWORD disposition, int* error);

/// The same for an existing file on a disk; anything else fails with ERROR_INVALID_FUNCTION or what the
/// system says.
WindowsHandle OpenSharedRegular(const std::string& path, DWORD access, int* error);

/// Writes everything; 0 or the error number.
DWORD WriteFully(HANDLE file, std::string_view bytes);

} // namespace carvelot::platform
