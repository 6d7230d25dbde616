// ProgramIdentity.h - how the system tells this program's windows from others', and how it starts it again.
// Off Windows there is nothing of the kind and both do nothing.
#pragma once

#include <string>
#include <string_view>

namespace carvelot::platform {

// The identifier under which the task bar groups the program's windows. Before the first window.
void SetProgramIdentifier(const std::string& identifier);
// The identifier that was set, as the system gives it back; empty where it does not.
std::string ProgramIdentifier();

// Has the system start the program again, with this file to open or none, when it ended it for an update or
// after a crash. The last call counts; one with a path that is too long for it registers without the path.
void RegisterRestart(std::string_view file);

} // namespace carvelot::platform
