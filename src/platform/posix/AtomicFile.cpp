#include "platform/AtomicFile.h"
#include "platform/posix/PosixFile.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace carvelot::platform {

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 16;

void SetError(int* error, int number) {
    if (error != nullptr) {
        *error = number;
    }
}

// Follows symbolic links, also to a file that does not exist yet. The kernel allows 40 links, and so do we;
// of a chain without end nothing is returned.
std::string FollowLinks(std::string path) {
    for (int links = 0; links <= 40; ++links) {
        char buffer[PATH_MAX];
        const ssize_t length = ::readlink(path.c_str(), buffer, sizeof buffer);
        if (length < 0) {
            return path;
        }
        const std::string target(buffer, static_cast<std::size_t>(length));
        const std::size_t slash = path.rfind('/');
        path = target.starts_with('/') || slash == std::string::npos ? target
                                                                     : path.substr(0, slash + 1) + target;
    }
    return {};
}

// Whether a file can't be made for a reason that would let a write to another fail just so.
bool IsOutOfRoom(int number) {
    return number == ENOSPC || number == EDQUOT || number == EIO || number == EMFILE || number == ENFILE ||
           number == ENOMEM;
}

bool SameFile(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// A new file beside `target`. Its name is short whatever the target's, so that it always fits.
Descriptor MakeBeside(const std::string& target, mode_t mode, std::string& path, int* error) {
    const std::size_t slash = target.rfind('/');
    const std::string folder = slash == std::string::npos ? std::string() : target.substr(0, slash + 1);
    static unsigned counter = 0;
    for (int attempt = 0; attempt < 1000; ++attempt) {
        path = folder + ".carvelot-" + std::to_string(::getpid()) + "-" + std::to_string(counter++) + ".tmp";
        int number = 0;
        Descriptor file = OpenAny(path, O_WRONLY | O_CREAT | O_EXCL, mode, &number);
        if (file) {
            return file;
        }
        if (number != EEXIST) {
            SetError(error, number);
            return file;
        }
    }
    SetError(error, EEXIST);
    return Descriptor();
}

// Opens what is no regular file. A pipe that nobody reads yet is given a second, never more.
Descriptor OpenDirectly(const std::string& path, int* error) {
    int number = 0;
    for (int attempt = 0; attempt < 100; ++attempt) {
        Descriptor file = OpenAny(path, O_WRONLY | O_NONBLOCK, 0, &number);
        if (file) {
            ::fcntl(file.Get(), F_SETFL, ::fcntl(file.Get(), F_GETFL) & ~O_NONBLOCK);
            return file;
        }
        if (number != ENXIO) {
            break;
        }
        const timespec pause{0, 10'000'000};
        ::nanosleep(&pause, nullptr);
    }
    SetError(error, number);
    return Descriptor();
}

} // namespace

struct AtomicFile::State {
    enum class Way { Replace, Direct, Collect };

    Way m_way = Way::Replace;
    std::string m_strTarget;
    std::string m_strTemporary;
    Descriptor m_file;
    std::string m_strBuffer;
    int m_nError = 0;

    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        if (!m_strTemporary.empty()) {
            ::unlink(m_strTemporary.c_str());
        }
    }

    void Flush() {
        if (m_nError == 0) {
            m_nError = WriteFully(m_file.Get(), m_strBuffer);
        }
        m_strBuffer.clear();
    }

    void Finish() {
        if (m_way == Way::Collect) {
            m_file = OpenAny(m_strTarget, O_WRONLY | O_TRUNC, 0, &m_nError);
            if (!m_file) {
                return;
            }
        }
        Flush();
        if (m_nError == 0 && m_way != Way::Direct && ::fsync(m_file.Get()) != 0 && errno != EINVAL) {
            m_nError = errno;
        }
        if (const int number = m_file.Close(); number != 0 && m_nError == 0) {
            m_nError = number;
        }
        if (m_nError == 0 && m_way == Way::Replace) {
            if (::rename(m_strTemporary.c_str(), m_strTarget.c_str()) == 0) {
                m_strTemporary.clear();
            } else {
                m_nError = errno;
            }
        }
    }
};

AtomicFile::AtomicFile() noexcept = default;
AtomicFile::AtomicFile(AtomicFile&& other) noexcept = default;
AtomicFile& AtomicFile::operator=(AtomicFile&& other) noexcept = default;
AtomicFile::~AtomicFile() = default;

AtomicFile AtomicFile::Create(const std::string& path, int* error) {
    AtomicFile result;
    if (path.empty() || path.find('\0') != std::string::npos) {
        SetError(error, ENOENT);
        return result;
    }
    auto state = std::make_unique<State>();
    struct stat status {};
    const bool exists = ::stat(path.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode)) {
        SetError(error, EISDIR);
        return result;
    }
    state->m_strTarget = FollowLinks(path);
    if (state->m_strTarget.empty()) {
        SetError(error, ELOOP);
        return result;
    }
    struct stat target {};
    if (exists && !S_ISREG(status.st_mode)) {
        state->m_way = State::Way::Direct;
        state->m_file = OpenDirectly(path, error);
    } else if (exists && (::stat(state->m_strTarget.c_str(), &target) != 0 || !SameFile(status, target))) {
        // A link of /proc to a file that has no name any more: there is nothing to put in its place.
        state->m_way = State::Way::Collect;
        state->m_strTarget = path;
    } else if (exists && ::access(path.c_str(), W_OK) != 0) {
        SetError(error, errno);
        return result;
    } else {
        int number = 0;
        state->m_file = MakeBeside(state->m_strTarget, exists ? 0600 : 0666, state->m_strTemporary, &number);
        if (!state->m_file) {
            state->m_strTemporary.clear();
        }
        if (state->m_file && exists) {
            // The owner can be kept by the superuser only; for anyone else the file becomes their own.
            [[maybe_unused]] const int owner = ::fchown(state->m_file.Get(), status.st_uid, status.st_gid);
            ::fchmod(state->m_file.Get(), status.st_mode & 07777);
        }
        if (!state->m_file) {
            SetError(error, number);
            state->m_way = exists && !IsOutOfRoom(number) ? State::Way::Collect : State::Way::Replace;
        }
    }
    if (!state->m_file && state->m_way != State::Way::Collect) {
        return result;
    }
    result.m_pState = std::move(state);
    return result;
}

bool AtomicFile::Write(std::string_view bytes) {
    if (m_pState == nullptr || m_pState->m_nError != 0) {
        return false;
    }
    m_pState->m_strBuffer.append(bytes);
    if (m_pState->m_way != State::Way::Collect && m_pState->m_strBuffer.size() >= kBlock) {
        m_pState->Flush();
    }
    return m_pState->m_nError == 0;
}

std::string AtomicFile::LeaveToOther() {
    return m_pState == nullptr ? std::string() : m_pState->m_strTemporary;
}

bool AtomicFile::Commit(int* error) {
    if (m_pState == nullptr) {
        SetError(error, EBADF);
        return false;
    }
    const std::unique_ptr<State> state = std::move(m_pState);
    if (state->m_nError == 0) {
        state->Finish();
    }
    SetError(error, state->m_nError);
    return state->m_nError == 0;
}

} // namespace carvelot::platform
