#include "explore/GroupedTimes.h"

#include <algorithm>

namespace carvelot {

CGroupedTimes::CGroupedTimes(const std::vector<std::uint32_t>& counts) {
    m_first.push_back(0);
    for (const std::uint32_t count : counts) {
        m_first.push_back(m_first.back() + count);
    }
    m_next.assign(m_first.begin(), m_first.end() - 1);
    m_times.resize(m_first.back());
}

std::int64_t CGroupedTimes::Percentile(std::uint32_t group, std::uint32_t percent) {
    const std::size_t count = m_first[group + 1] - m_first[group];
    const std::size_t place = m_first[group] + (count * percent + 99) / 100 - 1;
    // What stands behind the place that was asked for last is larger than all ahead of it.
    std::size_t& placed = m_next[group];
    if (place != placed) {
        const std::size_t end = place < placed ? placed : m_first[group + 1];
        const auto at = [this](std::size_t index) {
            return m_times.begin() + static_cast<std::ptrdiff_t>(index);
        };
        std::nth_element(at(m_first[group]), at(place), at(end));
        placed = place;
    }
    return m_times[place];
}

} // namespace carvelot
