// The terminal that standard output goes to.
#pragma once

#include <cstddef>
#include <optional>

namespace carvelot::platform {

/// How many characters a line of it holds; nothing when standard output is no terminal, or can't tell.
std::optional<std::size_t> TerminalColumns();

} // namespace carvelot::platform
