// A session as JSON: the contract that scripts hold on to. Texts that are no valid Unicode show U+FFFD.
#pragma once

#include "session/CarvelotDoc.h"
#include "trees/DetailTree.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace carvelot {

// The whole model of a loaded log.
void WriteSessionJson(const CCarvelotDoc& session, const std::string& log, std::ostream& out);
// The detail tree of one scope.
void WriteTreeJson(const CDetailTree& tree, const std::string& scope, std::ostream& out);
// The records that a search found.
void WriteHitsJson(const std::vector<RecordIndex>& hits, std::ostream& out);

} // namespace carvelot
