// The marks of a timeline's axis, told as the log's own stamps tell time.
#pragma once

#include "explore/Clock.h"

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
    // Refers to the clock.
    explicit CTimeAxis(const CClock& clock);

    // The shortest round step between marks that takes at least so many microseconds.
    static std::int64_t StepOf(double microseconds);
    // At whole steps of the day, at most a thousand.
    std::vector<TimeMark> Marks(std::int64_t from, std::int64_t to, std::int64_t step) const;
    // One time, to the microsecond: "Jan 15 09:12:03.250000".
    std::string Text(std::int64_t clock) const;

private:
    std::string TimeOfDay(const WallTime& time, std::int64_t step) const;

    const CClock& m_clock;
};

} // namespace carvelot
