// Whether two lists of records hold the same.
#pragma once

#include "records/DetailList.h"

#include <string>

namespace carvelot::test {

// The first difference between two lists of records, with all their fields; empty when there is none.
std::string DifferenceOf(const CDetailList& one, const CDetailList& other);

} // namespace carvelot::test
