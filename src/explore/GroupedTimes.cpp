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
    const auto first = m_times.begin() + static_cast<std::ptrdiff_t>(m_first[group]);
    const auto end = m_times.begin() + static_cast<std::ptrdiff_t>(m_first[group + 1]);
    const auto place = ((end - first) * percent + 99) / 100 - 1;
    std::nth_element(first, first + place, end);
    return first[place];
}

} // namespace carvelot
