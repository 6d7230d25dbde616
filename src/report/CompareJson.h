// What differs from one log to another, as JSON.
#pragma once

#include "explore/Comparison.h"

#include <iosfwd>
#include <string>

namespace carvelot {

// `base` and `log`: their paths.
void WriteComparisonJson(const Comparison& comparison, const std::string& base, const std::string& log,
                         std::ostream& out);

} // namespace carvelot
