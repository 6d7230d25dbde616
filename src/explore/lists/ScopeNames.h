// The parts of a log that one can look at alone, and what they are called.
#pragma once

#include "session/Selection.h"

#include <string>
#include <vector>

namespace carvelot {

// The whole log, then each process with its threads behind it or each user, in order of first appearance.
std::vector<Selection> ScopesOf(const CCarvelotDoc& session);

// "Whole log", "Process 4576", "Thread 4576/3268", "User JSMITH".
std::string ShownScope(const Selection& scope);

} // namespace carvelot
