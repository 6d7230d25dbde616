// carvelot-report from its arguments to its exit status.
#pragma once

#include "report/ReportOptions.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace carvelot {

// `arguments` without the program's name; `width` in characters, of lines that have a choice. Nothing goes to
// `out` unless the status is 0, or 1 for a log that could be read up to some place.
int RunReport(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
              std::size_t width = ReportOptions::kUsualWidth);

} // namespace carvelot
