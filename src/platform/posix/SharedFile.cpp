#include "platform/SharedFile.h"
#include "platform/posix/PosixFile.h"

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace carvelot::platform {

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
    Descriptor opened = OpenRegular(path, O_RDONLY, error);
    if (opened) {
        ::posix_fadvise(opened.Get(), 0, 0, POSIX_FADV_SEQUENTIAL);
        file.m_hFile = opened.Release();
    }
    return file;
}

std::size_t SharedFile::Read(void* buffer, std::size_t size, int* error) {
    return ReadFully(static_cast<int>(m_hFile), buffer, size, error);
}

bool SharedFile::Seek(std::uint64_t position) {
    return position <= static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()) &&
           ::lseek(static_cast<int>(m_hFile), static_cast<off_t>(position), SEEK_SET) >= 0;
}

std::uint64_t SharedFile::Size() const {
    struct stat status {};
    if (::fstat(static_cast<int>(m_hFile), &status) != 0) {
        return 0;
    }
    return static_cast<std::uint64_t>(status.st_size);
}

void SharedFile::Close() { Descriptor(static_cast<int>(std::exchange(m_hFile, kClosed))).Close(); }

bool TruncateShared(const std::string& path, int* error) {
    Descriptor file = OpenRegular(path, O_RDWR, error);
    if (!file) {
        return false;
    }
    if (::ftruncate(file.Get(), 0) != 0) {
        if (error != nullptr) {
            *error = errno;
        }
        return false;
    }
    return true;
}

std::int32_t SharedFileSize(const std::string& path) {
    const Descriptor file = OpenRegular(path, O_RDWR, nullptr);
    struct stat status {};
    if (!file || ::fstat(file.Get(), &status) != 0 ||
        status.st_size > std::numeric_limits<std::int32_t>::max()) {
        return -1;
    }
    return static_cast<std::int32_t>(status.st_size);
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
    // Without waiting: a pipe that nobody reads fails instead of holding us up.
    file.m_hFile = OpenAny(path, O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK, 0666, error).Release();
    return file;
}

bool AppendFile::Write(std::string_view bytes) {
    ssize_t count;
    do {
        count = ::write(static_cast<int>(m_hFile), bytes.data(), bytes.size());
    } while (count < 0 && errno == EINTR);
    return count >= 0 && static_cast<std::size_t>(count) == bytes.size();
}

void AppendFile::Close() { Descriptor(static_cast<int>(std::exchange(m_hFile, kClosed))).Close(); }

} // namespace carvelot::platform
