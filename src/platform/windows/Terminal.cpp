#include "platform/Terminal.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
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

void KeepLineEnds() { _setmode(_fileno(stdout), _O_BINARY); }

bool IsReaderGone() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD written = 0;
    return GetFileType(output) == FILE_TYPE_PIPE && !WriteFile(output, "", 0, &written, nullptr) &&
           (GetLastError() == ERROR_NO_DATA || GetLastError() == ERROR_BROKEN_PIPE);
}

} // namespace carvelot::platform
