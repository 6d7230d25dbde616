// Rolled back transactions, with what went wrong in them.
#include "explore/FindingRules.h"
#include "explore/OpenFunctions.h"

#include <algorithm>

namespace carvelot {

void FindRollbacks(const ExploredSession& explored, FindingList& findings) {
    const std::vector<TransactionStep>& steps = explored.transactionSteps;
    const CDetailList& details = explored.session.m_listDetails;
    std::vector<RecordIndex> troubles(explored.streams.Count(), kNoRecord); // the latest of its transaction
    COpenFunctions functions(explored.frames, explored.streams);
    // Behind the last rollback nothing matters any more.
    const auto last = std::find_if(steps.rbegin(), steps.rend(),
                                   [](const TransactionStep& step) { return step.rollsBack; });
    std::uint32_t record = 0;
    for (auto step = steps.begin(); step != last.base(); ++step) {
        for (; record < Number(step->record); ++record) {
            if (IsTrouble(details, RecordIndex{record})) {
                troubles[explored.streams.Of(RecordIndex{record})] = RecordIndex{record};
            }
        }
        ++record; // what begins or ends a transaction is itself no trouble of it
        RecordIndex& trouble = troubles[explored.streams.Of(step->record)];
        if (step->rollsBack) {
            Finding finding{FindingRule::RolledBack, {}, 1, 0, {}};
            if (const std::uint32_t function = functions.AheadOf(step->record); function != kNoFrame) {
                finding.subject = explored.frames.Keys().Name(explored.frames[function].key);
            }
            if (trouble != kNoRecord) {
                finding.AddRecord(trouble);
            }
            finding.AddRecord(step->record);
            findings.push_back(std::move(finding));
        }
        trouble = kNoRecord;
    }
}

} // namespace carvelot
