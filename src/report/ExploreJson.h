// Where the time of a session went, as JSON.
#pragma once

#include "explore/ExploredSession.h"
#include "explore/Findings.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace carvelot {

// `findings`: all of the session, whatever the scope.
void WriteExploredJson(const ExploredSession& explored, const ExploredScope& scope,
                       const std::vector<Finding>& findings, const std::string& log, std::ostream& out);

} // namespace carvelot
