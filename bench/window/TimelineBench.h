// What a timeline of a million frames costs.
#pragma once

#include <string>

namespace carvelot::bench {

// Writes its log into the folder.
void MeasureTimeline(const std::string& folder);

} // namespace carvelot::bench
