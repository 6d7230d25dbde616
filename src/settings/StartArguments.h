// StartArguments.h - what the command line asks for.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace carvelot {

// The log to open: the first argument that is no switch.
// Arguments come without the program's name. A switch begins with "-", on Windows also with "/".
std::optional<std::string> FileToOpen(const std::vector<std::string>& arguments);

} // namespace carvelot
