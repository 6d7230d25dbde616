#include "explore/lists/FindingWalk.h"

namespace carvelot {

void CFindingWalk::Begin(const std::vector<Finding>& findings) {
    m_pFindings = &findings;
    m_place.reset();
}

void CFindingWalk::Drop() {
    m_pFindings = nullptr;
    m_place.reset();
}

std::optional<CFindingWalk::Place> CFindingWalk::Step(bool forward) {
    const std::size_t count = m_pFindings != nullptr ? m_pFindings->size() : 0;
    if (count == 0) {
        return std::nullopt;
    }
    const auto recordsOf = [this](std::size_t finding) { return (*m_pFindings)[finding].records.size(); };
    if (m_place) {
        const std::size_t records = recordsOf(m_place->finding);
        if (forward ? m_place->record + 1 < records : m_place->record > 0) {
            m_place->record += forward ? 1 : std::size_t{0} - 1;
            return m_place;
        }
    }
    // From nowhere the round begins at an end of the list.
    std::size_t finding = m_place ? m_place->finding : forward ? count - 1 : 0;
    for (std::size_t tried = 0; tried < count; ++tried) {
        finding = (forward ? finding + 1 : finding + count - 1) % count;
        if (const std::size_t records = recordsOf(finding); records != 0) {
            m_place = Place{finding, forward ? 0 : records - 1};
            return m_place;
        }
    }
    return std::nullopt;
}

std::optional<CFindingWalk::Place> CFindingWalk::StepWithin(std::size_t finding) {
    if (m_pFindings == nullptr || finding >= m_pFindings->size() || (*m_pFindings)[finding].records.empty()) {
        return std::nullopt;
    }
    const bool stands = m_place && m_place->finding == finding;
    m_place = Place{finding, stands ? (m_place->record + 1) % (*m_pFindings)[finding].records.size() : 0};
    return m_place;
}

void CFindingWalk::StandAt(Place place) {
    if (m_pFindings != nullptr && place.finding < m_pFindings->size() &&
        place.record < (*m_pFindings)[place.finding].records.size()) {
        m_place = place;
    }
}

} // namespace carvelot
