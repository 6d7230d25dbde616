// Times of a log's clock as the wall clock showed them where it was written.
#pragma once

#include "explore/ExploredSession.h"

#include <cstdint>
#include <string>

namespace carvelot {

class CWallClock {
public:
    explicit CWallClock(const ExploredSession& explored);

    // Microseconds since the midnight ahead of the log's first stamp. In a log without stamps time begins at
    // a midnight.
    std::int64_t SinceMidnight(std::int64_t clock) const { return m_nFirst + clock; }
    // "09:12:03.250000"; `places` of the second from 0 to 6, what lies behind them is cut.
    std::string TimeOfDay(std::int64_t clock, int places = 6) const;
    // "Mar 5"; empty in a log without stamps.
    std::string Day(std::int64_t clock) const;
    // The number of the day, the first stamp's being 0.
    std::int64_t DayNumber(std::int64_t clock) const;

private:
    bool m_bStamped = false;
    bool m_bLeapYear = false;
    int m_nMonth = 1;
    int m_nDay = 1;
    std::int64_t m_nFirst = 0; // the first stamp's time of day
};

// "09:12:03.250000 to 09:12:05.000000 (1.750000 s)"; "from ..." or "up to ..." where one side is open.
std::string RangeText(const CWallClock& wall, const ClockRange& range);

} // namespace carvelot
