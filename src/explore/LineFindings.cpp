// Lines that nothing else tells of, for they became no record.
#include "explore/FindingRules.h"

namespace carvelot {

void FindUnreadLines(const ExploredSession& explored, FindingList& findings) {
    const RefusedLines& refused = explored.session.Refused();
    const auto add = [&findings](const char* reason, std::uint64_t count) {
        if (count > 0) {
            findings.push_back({FindingRule::UnreadLines, reason, count, 0, {}});
        }
    };
    add("third word no time", refused.noTime);
    add("second word no month", refused.noMonth);
    add("filtered", refused.filtered);
}

} // namespace carvelot
