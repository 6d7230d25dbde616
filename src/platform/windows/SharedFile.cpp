#include "platform/SharedFile.h"
#include "platform/windows/WindowsText.h"

#include <algorithm>
#include <limits>

namespace carvelot::platform {

static_assert(sizeof(HANDLE) == sizeof(std::intptr_t));

namespace {

HANDLE ToHandle(std::intptr_t file) { return reinterpret_cast<HANDLE>(file); }
std::intptr_t FromHandle(HANDLE file) { return reinterpret_cast<std::intptr_t>(file); }

} // namespace

SharedFile::SharedFile(SharedFile&& other) noexcept : m_hFile(std::exchange(other.m_hFile, kClosed)) {}

SharedFile& SharedFile::operator=(SharedFile&& other) noexcept {
    if (this != &other) {
        Close();
        m_hFile = std::exchange(other.m_hFile, kClosed);
    }
    return *this;
}

SharedFile::~SharedFile() { Close(); }

SharedFile SharedFile::OpenForReading(const std::string& path, int* error) {
    SharedFile file;
    file.m_hFile = FromHandle(OpenSharedRegular(path, GENERIC_READ, error).Release());
    return file;
}

std::size_t SharedFile::Read(void* buffer, std::size_t size, int* error) {
    constexpr std::size_t kMost = std::size_t{1} << 30;
    std::size_t done = 0;
    while (done < size) {
        DWORD count = 0;
        const bool read = ReadFile(ToHandle(m_hFile), static_cast<char*>(buffer) + done,
                                   static_cast<DWORD>(std::min(size - done, kMost)), &count, nullptr) != 0;
        if (!read && error != nullptr) {
            *error = static_cast<int>(GetLastError());
        }
        if (!read || count == 0) {
            break;
        }
        done += count;
    }
    return done;
}

bool SharedFile::Seek(std::uint64_t position) {
    LARGE_INTEGER place{};
    place.QuadPart = static_cast<LONGLONG>(position);
    return place.QuadPart >= 0 && SetFilePointerEx(ToHandle(m_hFile), place, nullptr, FILE_BEGIN) != 0;
}

std::uint64_t SharedFile::Size() const {
    LARGE_INTEGER size{};
    return GetFileSizeEx(ToHandle(m_hFile), &size) ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

void SharedFile::Close() { WindowsHandle(ToHandle(std::exchange(m_hFile, kClosed))).Close(); }

bool TruncateShared(const std::string& path, int* error) {
    const WindowsHandle file = OpenSharedRegular(path, GENERIC_READ | GENERIC_WRITE, error);
    if (!file) {
        return false;
    }
    if (!SetEndOfFile(file.Get())) {
        if (error != nullptr) {
            *error = static_cast<int>(GetLastError());
        }
        return false;
    }
    return true;
}

std::int32_t SharedFileSize(const std::string& path) {
    const WindowsHandle file = OpenSharedRegular(path, GENERIC_READ | GENERIC_WRITE, nullptr);
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.Get(), &size) ||
        size.QuadPart > std::numeric_limits<std::int32_t>::max()) {
        return -1;
    }
    return static_cast<std::int32_t>(size.QuadPart);
}

AppendFile::AppendFile(AppendFile&& other) noexcept : m_hFile(std::exchange(other.m_hFile, kClosed)) {}

AppendFile& AppendFile::operator=(AppendFile&& other) noexcept {
    if (this != &other) {
        Close();
        m_hFile = std::exchange(other.m_hFile, kClosed);
    }
    return *this;
}

AppendFile::~AppendFile() { Close(); }

AppendFile AppendFile::Open(const std::string& path, int* error) {
    AppendFile file;
    // With this right alone every write goes to the file's end, wherever another process has put it
    // meanwhile.
    file.m_hFile = FromHandle(OpenShared(path, FILE_APPEND_DATA | SYNCHRONIZE, OPEN_ALWAYS, error).Release());
    return file;
}

bool AppendFile::Write(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<DWORD>::max()) {
        return false;
    }
    DWORD count = 0;
    return WriteFile(ToHandle(m_hFile), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) &&
           count == bytes.size();
}

void AppendFile::Close() { WindowsHandle(ToHandle(std::exchange(m_hFile, kClosed))).Close(); }

} // namespace carvelot::platform
