#include "platform/Terminal.h"

#include <windows.h>

namespace carvelot::platform {

std::optional<std::size_t> TerminalColumns() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) ||
        info.srWindow.Right < info.srWindow.Left) {
        return std::nullopt;
    }
    // A console wraps what fills its last column.
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left);
}

} // namespace carvelot::platform
