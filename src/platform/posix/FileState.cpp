#include "platform/FileState.h"

#include "platform/SharedFile.h"

#include <cerrno>
#include <sys/stat.h>

namespace carvelot::platform {

namespace {

FileState StateOf(const struct stat& status) {
    FileState state;
    if (S_ISREG(status.st_mode)) {
        state.presence = FileState::Presence::There;
        state.size = static_cast<std::uint64_t>(status.st_size);
        state.identity = {static_cast<std::uint64_t>(status.st_dev),
                          static_cast<std::uint64_t>(status.st_ino)};
    }
    return state;
}

} // namespace

FileState LookAtFile(const std::string& path) {
    struct stat status {};
    if (path.find('\0') != std::string::npos) {
        errno = ENOENT;
    } else if (::stat(path.c_str(), &status) == 0) {
        return StateOf(status);
    }
    FileState state;
    if (errno == ENOENT || errno == ENOTDIR) {
        state.presence = FileState::Presence::Missing;
    }
    return state;
}

FileState SharedFile::State() const {
    struct stat status {};
    return ::fstat(static_cast<int>(m_hFile), &status) == 0 ? StateOf(status) : FileState{};
}

} // namespace carvelot::platform
