// Where the time of a session went, as text for a terminal, the worst first.
#pragma once

#include "explore/Findings.h"
#include "report/ReportOptions.h"

#include <iosfwd>
#include <vector>

namespace carvelot {

// `findings`: all of the session, whatever the scope.
void WriteExploredText(const ExploredSession& explored, const ExploredScope& scope,
                       const std::vector<Finding>& findings, const ReportOptions& options, std::ostream& out);

} // namespace carvelot
