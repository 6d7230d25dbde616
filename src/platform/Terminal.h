// What standard output goes to.
#pragma once

#include <cstddef>
#include <optional>

namespace carvelot::platform {

/// How many characters a line of it holds; nothing when standard output is no terminal, or can't tell.
std::optional<std::size_t> TerminalColumns();

/// From here on line ends go out as they are written, on Windows too.
void KeepLineEnds();

/// Whether standard output is a pipe whose reader has gone.
bool IsReaderGone();

} // namespace carvelot::platform
