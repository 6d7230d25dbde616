// Times in groups, for what can only be told of all times of a group.
#pragma once

#include "records/PageAllocator.h"

#include <cstdint>
#include <vector>

namespace carvelot {

class CGroupedTimes {
public:
    // How many times each group has.
    explicit CGroupedTimes(const std::vector<std::uint32_t>& counts);

    void Add(std::uint32_t group, std::int64_t time) { m_times[m_next[group]++] = time; }
    // Of a group's n times, all of which have been added and which are one at least, the
    // ceil(percent * n / 100)-th smallest. To be asked for the larger percents first, for speed.
    std::int64_t Percentile(std::uint32_t group, std::uint32_t percent);

private:
    std::vector<std::size_t> m_first; // of each group, and behind the last one
    std::vector<std::size_t> m_next; // of each group where the next time comes, later where one has its place
    CLargeVector<std::int64_t> m_times;
};

} // namespace carvelot
