// The program's command line.
#pragma once

#include <string>
#include <vector>

namespace carvelot::platform {

/// The arguments as UTF-8, the program's name first. On Windows they come from the system, whatever `argv`
/// lost.
std::vector<std::string> Arguments(int argc, char** argv);

} // namespace carvelot::platform
