#include "explore/pictures/TimeAxis.h"

#include <array>
#include <optional>

namespace carvelot {

namespace {

constexpr std::int64_t kMillisecond = 1'000;
constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;
constexpr std::size_t kMostMarks = 1000;

// What a mark of such a step has to tell.
std::string TimeText(const CWallClock& wall, std::int64_t clock, std::int64_t step) {
    if (step >= kMinute) {
        return wall.TimeOfDay(clock, 0).substr(0, 5);
    }
    return wall.TimeOfDay(clock, step >= kSecond ? 0 : step >= kMillisecond ? 3 : 6);
}

} // namespace

CTimeAxis::CTimeAxis(const ExploredSession& explored)
    : m_wall(explored), m_bOneDay(m_wall.DayNumber(0) == m_wall.DayNumber(explored.clock.Length())) {}

std::int64_t CTimeAxis::StepOf(double microseconds) {
    constexpr std::array<std::int64_t, 3> round{1, 2, 5};
    constexpr std::array<std::int64_t, 17> sixties{
        kSecond, 2 * kSecond, 5 * kSecond, 10 * kSecond, 15 * kSecond, 30 * kSecond,
        kMinute, 2 * kMinute, 5 * kMinute, 10 * kMinute, 15 * kMinute, 30 * kMinute,
        kHour,   2 * kHour,   3 * kHour,   6 * kHour,    12 * kHour};
    const auto isEnough = [microseconds](std::int64_t step) {
        return static_cast<double>(step) >= microseconds;
    };
    const auto decimal = [&](std::int64_t unit, std::int64_t end) -> std::optional<std::int64_t> {
        for (; unit < end; unit *= 10) {
            for (const std::int64_t factor : round) {
                if (isEnough(factor * unit)) {
                    return factor * unit;
                }
            }
        }
        return {};
    };
    if (const auto step = decimal(1, kSecond)) {
        return *step;
    }
    for (const std::int64_t step : sixties) {
        if (isEnough(step)) {
            return step;
        }
    }
    return decimal(kDay, 1'000'000 * kDay).value_or(10'000'000 * kDay);
}

std::vector<TimeMark> CTimeAxis::Marks(std::int64_t from, std::int64_t to, std::int64_t step) const {
    std::vector<TimeMark> marks;
    // Steps count from the first day's midnight on.
    const std::int64_t into = m_wall.SinceMidnight(from) % step;
    std::int64_t clock = from + (into == 0 ? 0 : (into < 0 ? 0 : step) - into);
    std::int64_t day = m_wall.DayNumber(clock) - (m_bOneDay ? 0 : 1); // the one told last
    for (; clock <= to && marks.size() < kMostMarks; clock += step) {
        std::string text;
        if (step >= kDay || m_wall.DayNumber(clock) != day) {
            text = m_wall.Day(clock);
            day = m_wall.DayNumber(clock);
        }
        if (step < kDay || text.empty()) {
            text.append(text.empty() ? "" : " ").append(TimeText(m_wall, clock, step));
        }
        marks.push_back({clock, std::move(text)});
    }
    return marks;
}

std::string CTimeAxis::Text(std::int64_t clock) const {
    const std::string day = m_wall.Day(clock);
    return day.empty() ? m_wall.TimeOfDay(clock) : day + ' ' + m_wall.TimeOfDay(clock);
}

} // namespace carvelot
