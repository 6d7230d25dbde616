// What each record tells by itself: that nothing was written for long ahead of it, that a transaction is
// rolled back.
#include "explore/FindingRules.h"
#include "explore/OpenFunctions.h"
#include "text/ByteScan.h"

#include <algorithm>
#include <limits>

namespace carvelot {

namespace {

class CSilences {
public:
    CSilences(const ExploredSession& explored, FindingList& findings)
        : m_explored(explored), m_times(explored.streams.Count(), kNone),
          m_byFunction(FindingRule::SilenceInCall, findings) {}

    void Take(RecordIndex record, std::uint32_t stream, std::uint32_t function) {
        std::int64_t& time = m_times[stream];
        const std::int64_t before = time;
        time = std::max(time, m_explored.clock[record]);
        if (before == kNone || function == kNoFrame) {
            return;
        }
        const std::int64_t step = time - before;
        if (SecondsFromMicroseconds(static_cast<std::uint64_t>(step)) > m_explored.settings.m_fThreshold) {
            const std::uint32_t key = m_explored.frames[function].key;
            Finding& finding = m_byFunction.At(key, [&] { return m_explored.frames.Keys().Name(key); });
            ++finding.count;
            finding.cost = AddTimes(finding.cost, step);
            finding.AddRecord(record);
        }
    }

private:
    static constexpr std::int64_t kNone = std::numeric_limits<std::int64_t>::min();

    const ExploredSession& m_explored;
    std::vector<std::int64_t> m_times; // by stream
    CFindingsByNumber m_byFunction;
};

enum class Transaction { None, Begins, RollsBack };

// A text that holds both is that of a rollback.
Transaction TransactionOf(std::string_view text) {
    constexpr std::string_view entering = "Entering JDB_";
    Transaction found = Transaction::None;
    for (std::size_t at = FindWord(text, entering); at != std::string_view::npos;
         at = FindWord(text, entering)) {
        text.remove_prefix(at + entering.size());
        if (Starts(text, "RollbackUser")) {
            return Transaction::RollsBack;
        }
        if (Starts(text, "BeginTransaction")) {
            found = Transaction::Begins;
        }
    }
    return found;
}

class CRollbacks {
public:
    CRollbacks(const ExploredSession& explored, FindingList& findings)
        : m_explored(explored), m_details(explored.session.m_listDetails),
          m_troubles(explored.streams.Count(), kNoRecord), m_findings(findings) {}

    void Take(RecordIndex record, std::uint32_t stream, std::uint32_t function) {
        RecordIndex& trouble = m_troubles[stream];
        const Transaction transaction = TransactionOf(m_details.Text(record));
        if (transaction == Transaction::None) {
            if (IsTrouble(m_details, record)) {
                trouble = record;
            }
            return;
        }
        if (transaction == Transaction::RollsBack) {
            Finding finding{FindingRule::RolledBack, {}, 1, 0, {}};
            if (function != kNoFrame) {
                finding.subject = m_explored.frames.Keys().Name(m_explored.frames[function].key);
            }
            if (trouble != kNoRecord) {
                finding.AddRecord(trouble);
            }
            finding.AddRecord(record);
            m_findings.push_back(std::move(finding));
        }
        trouble = kNoRecord;
    }

private:
    const ExploredSession& m_explored;
    const CDetailList& m_details;
    std::vector<RecordIndex> m_troubles; // by stream, the latest one of its transaction
    FindingList& m_findings;
};

} // namespace

void FindAmongRecords(const ExploredSession& explored, FindingList& findings) {
    COpenFunctions functions(explored.frames, explored.streams);
    CSilences silences(explored, findings);
    CRollbacks rollbacks(explored, findings);
    const auto count = static_cast<std::uint32_t>(explored.session.m_listDetails.Size());
    for (std::uint32_t i = 0; i < count; ++i) {
        const RecordIndex record{i};
        const std::uint32_t stream = explored.streams.Of(record);
        const std::uint32_t function = functions.AheadOf(record, stream);
        silences.Take(record, stream, function);
        rollbacks.Take(record, stream, function);
    }
}

} // namespace carvelot
