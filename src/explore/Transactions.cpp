#include "explore/Transactions.h"

#include "text/ByteScan.h"

namespace carvelot {

std::vector<TransactionStep> FindTransactionSteps(const CDetailList& details, CExploreProgress* progress) {
    constexpr std::string_view entering = "Entering JDB_";
    constexpr std::string_view shortest = "Entering JDB_RollbackUser";
    std::vector<TransactionStep> steps;
    const bool anyRollback = details.MayHold(shortest, [progress] { CheckAt(progress, 0); });
    const auto count = anyRollback ? static_cast<std::uint32_t>(details.Size()) : 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        CheckAt(progress, i);
        const RecordIndex record{i};
        std::string_view text = details.Text(record);
        if (text.size() < shortest.size()) {
            continue;
        }
        bool begins = false;
        bool rollsBack = false; // also when both stand in one text
        for (std::size_t at = FindWord(text, entering); at != std::string_view::npos && !rollsBack;
             at = FindWord(text, entering)) {
            text.remove_prefix(at + entering.size());
            rollsBack = Starts(text, "RollbackUser");
            begins = begins || Starts(text, "BeginTransaction");
        }
        if (begins || rollsBack) {
            steps.push_back({record, rollsBack});
        }
    }
    AddPart(progress, ExploreParts::kTransactions);
    return steps;
}

} // namespace carvelot
