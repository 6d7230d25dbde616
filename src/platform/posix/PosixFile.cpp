#include "platform/posix/PosixFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace carvelot::platform {

namespace {

int KindError(const struct stat& status) {
    if (S_ISREG(status.st_mode)) {
        return 0;
    }
    return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
}

} // namespace

int Descriptor::Close() {
    const int file = Release();
    return file >= 0 && ::close(file) != 0 ? errno : 0;
}

Descriptor OpenAny(const std::string& path, int flags, mode_t mode, int* error) {
    int result = -1;
    if (path.find('\0') != std::string::npos) {
        errno = ENOENT;
    } else {
        do {
            result = ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode);
        } while (result < 0 && errno == EINTR);
    }
    if (result < 0 && error != nullptr) {
        *error = errno;
    }
    return Descriptor(result);
}

Descriptor OpenRegular(const std::string& path, int flags, int* error) {
    const auto fail = [error](int number) {
        if (error != nullptr) {
            *error = number;
        }
        return Descriptor();
    };
    // The look before the opening keeps us from waking a pipe's writer or moving a device.
    struct stat status {};
    if (path.find('\0') == std::string::npos && ::stat(path.c_str(), &status) == 0) {
        if (const int number = KindError(status)) {
            return fail(number);
        }
    }
    Descriptor file = OpenAny(path, flags | O_NONBLOCK, 0, error);
    if (!file) {
        return file;
    }
    if (::fstat(file.Get(), &status) != 0) {
        return fail(errno);
    }
    if (const int number = KindError(status)) {
        return fail(number);
    }
    return file;
}

std::size_t ReadFully(int file, void* buffer, std::size_t size, int* error) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::read(file, static_cast<char*>(buffer) + done, size - done);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 && error != nullptr) {
            *error = errno;
        }
        if (count <= 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    return done;
}

int WriteFully(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return errno;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

} // namespace carvelot::platform
