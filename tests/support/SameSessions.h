// Whether two sessions hold the same.
#pragma once

#include "session/CarvelotDoc.h"
#include "support/SameRecords.h"

#include <string>

namespace carvelot::test {

// The first difference between what two loads learnt and kept: state, records with all their fields, lines
// that became none, and the lists of processes, threads and users; empty when there is none.
std::string DifferenceOf(const CCarvelotDoc& one, const CCarvelotDoc& other);

} // namespace carvelot::test
