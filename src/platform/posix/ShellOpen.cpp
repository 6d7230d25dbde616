#include "platform/ShellOpen.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace carvelot::platform {

bool OpenInItsProgram(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        return false;
    }
    std::error_code error;
    const std::string argument = std::filesystem::absolute(path, error).string();
    if (error) {
        return false;
    }
    int report[2];
    if (::pipe2(report, O_CLOEXEC) != 0) {
        return false;
    }
    const pid_t child = ::fork();
    if (child < 0) {
        ::close(report[0]);
        ::close(report[1]);
        return false;
    }
    if (child == 0) {
        // The program is the child of a child that is gone, so that nobody has to wait for it.
        const pid_t grandchild = ::fork();
        if (grandchild == 0) {
            ::execlp("xdg-open", "xdg-open", argument.c_str(), static_cast<char*>(nullptr));
        }
        if (grandchild <= 0) {
            const int number = errno;
            [[maybe_unused]] const ssize_t written = ::write(report[1], &number, sizeof number);
        }
        ::_exit(0);
    }
    ::close(report[1]);
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    // The pipe closes without a word when the program has started.
    int number = 0;
    ssize_t count;
    do {
        count = ::read(report[0], &number, sizeof number);
    } while (count < 0 && errno == EINTR);
    ::close(report[0]);
    return count == 0;
}

} // namespace carvelot::platform
