#include "platform/Terminal.h"

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

} // namespace carvelot::platform
