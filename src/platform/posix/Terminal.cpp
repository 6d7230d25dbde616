#include "platform/Terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace carvelot::platform {

std::optional<std::size_t> TerminalColumns() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return std::nullopt;
    }
    return size.ws_col;
}

void KeepLineEnds() {}

bool IsReaderGone() {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    return poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0;
}

} // namespace carvelot::platform
