// How many streams were busy, over the whole log: what the strip above a timeline shows.
#pragma once

#include "explore/pictures/TimelineRows.h"

#include <cstdint>
#include <vector>

namespace carvelot {

class CActivityStrip {
public:
    static constexpr std::size_t kBuckets = 1024;

    // Of the time in [from, to), which is not empty.
    CActivityStrip(const CTimelineRows& rows, std::int64_t from, std::int64_t to);

    // Busy streams by bucket, as a mean.
    const std::vector<double>& Busy() const { return m_busy; }
    double Most() const { return m_most; }

private:
    std::vector<double> m_busy;
    double m_most = 0;
};

} // namespace carvelot
