#include "records/LineHead.h"

namespace carvelot {

void CLineHeads::Learn(std::string_view head, std::uint32_t month, bool labelRunsOn, std::size_t blanks,
                       std::uint32_t context, LogKind levelKind) {
    if (head.empty() || head.size() > LineHead::kLongest || blanks > LineHead::kMostBlanks) {
        return;
    }
    const std::size_t place = PlaceFor(head.data());
    const auto isKnownAt = [&](std::size_t at) {
        return m_heads[at].length == head.size() && m_heads[at].IsAt(head.data(), head.size(), month);
    };
    const bool second = !isKnownAt(place) && (isKnownAt(place ^ 1U) || m_heads[place].length != 0);
    LineHead& known = m_heads[second ? place ^ 1U : place];
    if (!isKnownAt(second ? place ^ 1U : place)) {
        known.length = static_cast<std::uint32_t>(head.size());
        known.month = month;
        known.labelRunsOn = labelRunsOn;
        known.levelKind = levelKind;
        known.contexts.fill(LineHead::kUnknown);
        std::memcpy(known.bytes, head.data(), head.size());
    }
    known.contexts[labelRunsOn ? blanks : 0] = context;
    m_bLearnt = true;
}

} // namespace carvelot
