// Where transactions begin and are rolled back.
#pragma once

#include "records/DetailList.h"

#include <vector>

namespace carvelot {

struct TransactionStep {
    RecordIndex record;
    bool rollsBack; // it begins one otherwise
};

// By record.
std::vector<TransactionStep> FindTransactionSteps(const CDetailList& details);

} // namespace carvelot
