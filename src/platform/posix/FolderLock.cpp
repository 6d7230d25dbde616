#include "platform/posix/FolderLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <time.h>

namespace carvelot::platform {

namespace {

constexpr int kAttempts = 2000;
constexpr timespec kPause{0, 1'000'000};

int s_nAttempts = kAttempts;

} // namespace

FolderLock::FolderLock(const std::string& folder)
    : m_folder(OpenAny(folder.empty() ? "." : folder, O_RDONLY | O_DIRECTORY, 0, nullptr)) {
    if (!m_folder) {
        return;
    }
    int left = s_nAttempts;
    while (::flock(m_folder.Get(), LOCK_EX | LOCK_NB) != 0) {
        if (--left <= 0 || (errno != EWOULDBLOCK && errno != EINTR)) {
            s_nAttempts = 1;
            return;
        }
        ::nanosleep(&kPause, nullptr);
    }
}

} // namespace carvelot::platform
