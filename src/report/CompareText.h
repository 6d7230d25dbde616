// What differs from one log to another, as text for a terminal, the largest differences first.
#pragma once

#include "explore/Comparison.h"
#include "report/ReportOptions.h"

#include <iosfwd>

namespace carvelot {

void WriteComparisonText(const Comparison& comparison, const ExploredSession& base,
                         const ExploredSession& log, const ReportOptions& options, std::ostream& out);

} // namespace carvelot
