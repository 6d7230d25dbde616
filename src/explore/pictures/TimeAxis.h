// The marks of a timeline's axis, told as the log's own stamps tell time.
#pragma once

#include "explore/lists/WallClock.h"

#include <cstdint>
#include <string>
#include <vector>

namespace carvelot {

struct TimeMark {
    std::int64_t clock;
    std::string text;
};

class CTimeAxis {
public:
    explicit CTimeAxis(const ExploredSession& explored);

    // The shortest round step between marks that takes at least so many microseconds.
    static std::int64_t StepOf(double microseconds);
    // At whole steps of the day, at most a thousand. The day is told where it changes and, in a log of
    // several days, ahead of that, too.
    std::vector<TimeMark> Marks(std::int64_t from, std::int64_t to, std::int64_t step) const;
    // One time, to the microsecond: "Jan 15 09:12:03.250000".
    std::string Text(std::int64_t clock) const;

private:
    const CWallClock m_wall;
    const bool m_bOneDay;
};

} // namespace carvelot
