#include "platform/PipeFile.h"

#include "platform/posix/PosixFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace carvelot::platform {

PipeFile::PipeFile(PipeFile&& other) noexcept : m_hFile(std::exchange(other.m_hFile, kClosed)) {}

PipeFile& PipeFile::operator=(PipeFile&& other) noexcept {
    std::swap(m_hFile, other.m_hFile);
    return *this;
}

PipeFile::~PipeFile() { Descriptor(static_cast<int>(m_hFile)).Close(); }

bool PipeFile::IsAt(const std::string& path) {
    struct stat status {};
    return path.find('\0') == std::string::npos && ::stat(path.c_str(), &status) == 0 &&
           S_ISFIFO(status.st_mode);
}

PipeFile PipeFile::Open(const std::string& path) {
    PipeFile file;
    file.m_hFile = OpenAny(path, O_RDONLY, 0, nullptr).Release();
    return file;
}

PipeFile PipeFile::StandardInput() {
    PipeFile file;
    file.m_hFile = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
    return file;
}

std::size_t PipeFile::Read(void* buffer, std::size_t size) {
    return ReadFully(static_cast<int>(m_hFile), buffer, size);
}

} // namespace carvelot::platform
