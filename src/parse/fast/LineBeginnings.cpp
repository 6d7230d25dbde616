#include "parse/fast/LineBeginnings.h"

#include "records/DetailList.h"

namespace carvelot {

bool KnownStamp::Enter(std::string_view stamp, std::string_view monthName) {
    length = stamp.size();
    std::memcpy(bytes, stamp.data(), length);
    month = static_cast<std::uint32_t>(Load32(monthName.data()) & 0xFFFFFFU);
    time = LogTime(hour, minute, second, 0);
    packed = CDetailList::PackStamp(*this);
    return IsOfAClock();
}

void CLineBeginnings::Clear() {
    if (m_bLearnt) {
        for (LineBeginning& beginning : m_beginnings) {
            beginning.length = 0;
        }
        m_bLearnt = false;
    }
}

void CLineBeginnings::Learn(std::string_view bytes, std::uint32_t month, bool labelRunsOn, std::size_t blanks,
                            std::uint32_t context, LogKind levelKind, bool dashFixesColumn) {
    if (bytes.empty() || bytes.size() > LineBeginning::kLongest || blanks > LineBeginning::kMostBlanks) {
        return;
    }
    const std::size_t place = PlaceFor(bytes.data());
    const auto isKnownAt = [&](std::size_t at) {
        return m_beginnings[at].length == bytes.size() &&
               m_beginnings[at].IsAt(bytes.data(), bytes.size(), month);
    };
    const bool second = !isKnownAt(place) && (isKnownAt(place ^ 1U) || m_beginnings[place].length != 0);
    LineBeginning& known = m_beginnings[second ? place ^ 1U : place];
    if (!isKnownAt(second ? place ^ 1U : place)) {
        known.length = static_cast<std::uint32_t>(bytes.size());
        known.month = month;
        known.labelRunsOn = labelRunsOn;
        known.levelKind = levelKind;
        known.dashFixesColumn = dashFixesColumn;
        known.contexts.fill(kNoContext);
        std::memcpy(known.bytes, bytes.data(), bytes.size());
    }
    known.contexts[labelRunsOn ? blanks : 0] = context;
    m_bLearnt = true;
}

void CLineBeginnings::CopyFrom(const CLineBeginnings& other) {
    // What stands behind the length of one that is not known was never written.
    for (std::size_t at = 0; at < m_beginnings.size(); ++at) {
        if (other.m_beginnings[at].length != 0) {
            m_beginnings[at] = other.m_beginnings[at];
        } else {
            m_beginnings[at].length = 0;
        }
    }
    m_bLearnt = other.m_bLearnt;
}

void CSharedBeginnings::Clear() {
    const std::lock_guard lock(m_mutex);
    m_learnt.Clear();
    ++m_nGeneration;
    m_bChanged = true;
}

void CSharedBeginnings::Learn(std::string_view bytes, std::uint32_t month, bool labelRunsOn,
                              std::size_t blanks, std::uint32_t context, LogKind levelKind,
                              bool dashFixesColumn) {
    const std::lock_guard lock(m_mutex);
    m_learnt.Learn(bytes, month, labelRunsOn, blanks, context, levelKind, dashFixesColumn);
    m_bChanged = true;
}

const CLineBeginnings& CSharedBeginnings::Latest(std::uint32_t& generation) {
    const std::lock_guard lock(m_mutex);
    if (m_bChanged) {
        m_copy.CopyFrom(m_learnt);
        m_bChanged = false;
    }
    generation = m_nGeneration;
    return m_copy;
}

} // namespace carvelot
