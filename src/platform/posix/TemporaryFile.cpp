#include "platform/TemporaryFile.h"
#include "platform/posix/PosixFile.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace carvelot::platform {

std::optional<std::string> MakeTemporaryName(std::string_view prefix, int* error) {
    const char* const folder = std::getenv("TMPDIR");
    std::string path = folder != nullptr && *folder != '\0' ? folder : "/tmp";
    path.append("/").append(prefix).append("XXXXXX");
    const Descriptor file(::mkostemp(path.data(), O_CLOEXEC));
    if (!file) {
        if (error != nullptr) {
            *error = errno;
        }
        return std::nullopt;
    }
    return path;
}

bool CopyFileOver(const std::string& from, const std::string& to) {
    const Descriptor source = OpenRegular(from, O_RDONLY, nullptr);
    struct stat sourceStatus {};
    if (!source || ::fstat(source.Get(), &sourceStatus) != 0) {
        return false;
    }
    // Emptied only once it is known not to be the source itself.
    Descriptor target = OpenAny(to, O_WRONLY | O_CREAT | O_NONBLOCK, 0666, nullptr);
    struct stat targetStatus {};
    if (!target || ::fstat(target.Get(), &targetStatus) != 0) {
        return false;
    }
    if (sourceStatus.st_dev == targetStatus.st_dev && sourceStatus.st_ino == targetStatus.st_ino) {
        return false;
    }
    if (::ftruncate(target.Get(), 0) != 0) {
        return false;
    }
    std::vector<char> buffer(std::size_t{1} << 20);
    while (const std::size_t count = ReadFully(source.Get(), buffer.data(), buffer.size())) {
        if (WriteFully(target.Get(), {buffer.data(), count}) != 0) {
            return false;
        }
    }
    return target.Close() == 0;
}

bool DeleteFileAt(const std::string& path) {
    return path.find('\0') == std::string::npos && ::unlink(path.c_str()) == 0;
}

} // namespace carvelot::platform
