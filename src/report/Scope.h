// What "process:PID", "thread:PID/TID" or "user:NAME" names in a session.
#pragma once

#include "session/Selection.h"

#include <optional>
#include <string_view>

namespace carvelot {

// Nothing when the session has no such scope. Process and thread numbers stand in their unsigned or their
// signed form.
std::optional<Selection> FindScope(const CCarvelotDoc& session, std::string_view scope);

} // namespace carvelot
