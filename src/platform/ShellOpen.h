// Opening a file in the program that the user has chosen for its kind.
#pragma once

#include <string>

namespace carvelot::platform {

/// Starts the program and does not wait for it. The program gets the whole path, also of a file that was
/// named by a relative one: it may run in another folder, and must not take a name for an option or an
/// address. False when none could be started.
bool OpenInItsProgram(const std::string& path);

} // namespace carvelot::platform
