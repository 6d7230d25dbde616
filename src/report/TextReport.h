// A session as text for a terminal: what a developer asks first, the worst first.
#pragma once

#include "session/CarvelotDoc.h"
#include "trees/DetailTree.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace carvelot {

void WriteSummary(const CCarvelotDoc& session, const std::string& log, std::ostream& out);
void WriteTree(const CDetailTree& tree, std::ostream& out);
void WriteHits(const CCarvelotDoc& session, const std::vector<RecordIndex>& hits, std::ostream& out);

} // namespace carvelot
