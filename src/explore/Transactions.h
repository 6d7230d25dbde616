// Where transactions begin and are rolled back.
#pragma once

#include "explore/ExploreProgress.h"
#include "records/DetailList.h"

#include <vector>

namespace carvelot {

struct TransactionStep {
    RecordIndex record;
    bool rollsBack; // it begins one otherwise
};

// By record; none in a log in which nothing is rolled back.
std::vector<TransactionStep> FindTransactionSteps(const CDetailList& details,
                                                  CExploreProgress* progress = nullptr);

} // namespace carvelot
