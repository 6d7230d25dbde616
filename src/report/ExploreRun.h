// What carvelot-report tells of where the time went.
#pragma once

#include "report/ReportOptions.h"
#include "session/CarvelotDoc.h"

#include <iosfwd>

namespace carvelot {

// Both give the exit status. Nothing goes to `out` unless it is REPORT_DONE.
int Explore(const CCarvelotDoc& session, const ReportOptions& options, std::ostream& out, std::ostream& err);
// How a session differs from that of another log.
int Compare(const CCarvelotDoc& base, const CCarvelotDoc& session, const ReportOptions& options,
            std::ostream& out, std::ostream& err);

} // namespace carvelot
