#include "platform/posix/FolderLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>

namespace carvelot::platform {

namespace {

constexpr int kAttempts = 2000;
constexpr timespec kPause{0, 1'000'000};

constexpr int kMostChanges = 1000;

int s_nAttempts = kAttempts;

// When the folder last changed. Whoever holds the lock changes it, and lets go.
timespec LastChange(int folder) {
    struct stat status {};
    return ::fstat(folder, &status) == 0 ? status.st_mtim : timespec{};
}

} // namespace

FolderLock::FolderLock(const std::string& folder)
    : m_folder(OpenAny(folder.empty() ? "." : folder, O_RDONLY | O_DIRECTORY, 0, nullptr)) {
    if (!m_folder) {
        return;
    }
    int left = s_nAttempts;
    int changes = 0;
    timespec seen = LastChange(m_folder.Get());
    while (::flock(m_folder.Get(), LOCK_EX | LOCK_NB) != 0) {
        const timespec change = LastChange(m_folder.Get());
        if ((change.tv_sec != seen.tv_sec || change.tv_nsec != seen.tv_nsec) && ++changes < kMostChanges) {
            // Others were quicker: none of them keeps the lock.
            seen = change;
            left = s_nAttempts;
        }
        if (--left <= 0 || (errno != EWOULDBLOCK && errno != EINTR)) {
            s_nAttempts = 1;
            return;
        }
        ::nanosleep(&kPause, nullptr);
    }
}

} // namespace carvelot::platform
