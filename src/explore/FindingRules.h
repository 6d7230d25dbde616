// The rules, each for itself. Each appends what it finds, in no order.
#pragma once

#include "explore/Findings.h"

#include <vector>

namespace carvelot {

using FindingList = std::vector<Finding>;

void FindRepeatedStatements(const ExploredSession& explored, FindingList& findings,
                            CExploreProgress* progress = nullptr);
void FindOpenCaches(const ExploredSession& explored, FindingList& findings);
void FindCallsWithoutReturn(const ExploredSession& explored, FindingList& findings);
void FindOrphanReturns(const ExploredSession& explored, FindingList& findings);
void FindFirstCauses(const ExploredSession& explored, FindingList& findings);
void FindSilences(const ExploredSession& explored, FindingList& findings);
void FindRollbacks(const ExploredSession& explored, FindingList& findings);
void FindUnreadLines(const ExploredSession& explored, FindingList& findings);

// Whether a record tells of something that went wrong: an error, a SEVERE or a return code of 2 or more.
inline bool IsTrouble(const CDetailList& details, RecordIndex record) {
    constexpr CKindSet troubles{LOG_ERROR, LOG_JDB_ERROR, LOG_SEVERE};
    return troubles.Has(details.Kind(record)) || details.ReturnCode(record) >= 2;
}

// One finding a number, made when it is first asked for.
class CFindingsByNumber {
public:
    CFindingsByNumber(FindingRule rule, FindingList& findings) : m_rule(rule), m_findings(findings) {}

    // Valid until the next one is made. `subject` is asked for the subject of a new one.
    template <class Subject> Finding& At(std::uint64_t number, Subject subject) {
        const auto [place, isNew] = m_places.FindOrAdd(number, static_cast<std::uint32_t>(m_findings.size()));
        if (isNew) {
            m_findings.push_back({m_rule, std::string(subject()), 0, 0, {}});
        }
        return m_findings[place];
    }

private:
    const FindingRule m_rule;
    FindingList& m_findings;
    CNumberMap m_places;
};

} // namespace carvelot
