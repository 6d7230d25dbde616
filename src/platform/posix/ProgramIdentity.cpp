#include "platform/ProgramIdentity.h"

namespace carvelot::platform {

void SetProgramIdentifier(const std::string&) {}

std::string ProgramIdentifier() { return {}; }

void RegisterRestart(std::string_view) {}

} // namespace carvelot::platform
