#include "logcore/LineHead.h"

namespace carvelot {

void CLineHeads::Learn(std::string_view head, std::uint32_t month, bool labelRunsOn, std::size_t blanks,
                       std::uint32_t context, std::uint32_t processID, LogKind levelKind) {
    if (head.empty() || head.size() > LineHead::kLongest || blanks > LineHead::kMostBlanks) {
        return;
    }
    LineHead& known = PlaceFor(head.data());
    if (!known.IsAt(head.data(), head.size()) || known.length != head.size() || known.month != month) {
        known.length = static_cast<std::uint32_t>(head.size());
        known.month = month;
        known.labelRunsOn = labelRunsOn;
        known.levelKind = levelKind;
        known.processID = processID;
        known.contexts.fill(LineHead::kUnknown);
        std::memcpy(known.bytes, head.data(), head.size());
    }
    known.contexts[labelRunsOn ? blanks : 0] = context;
}

} // namespace carvelot
