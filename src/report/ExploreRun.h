// What carvelot-report tells of where a session's time went.
#pragma once

#include "report/ReportOptions.h"
#include "session/CarvelotDoc.h"

#include <iosfwd>

namespace carvelot {

// The exit status. Nothing goes to `out` unless it is REPORT_DONE.
int Explore(const CCarvelotDoc& session, const ReportOptions& options, std::ostream& out, std::ostream& err);

} // namespace carvelot
