// Opening a file in the program that the user has chosen for its kind.
#pragma once

#include <string>

namespace carvelot::platform {

/// Starts the program and does not wait for it. False when none could be started.
bool OpenInItsProgram(const std::string& path);

} // namespace carvelot::platform
