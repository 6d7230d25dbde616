#include "explore/lists/WallClock.h"

#include "explore/lists/ExploreNames.h"

#include <array>
#include <chrono>
#include <string_view>

namespace carvelot {

namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kDay = 86'400 * kSecond;

constexpr std::array<std::string_view, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::string TwoDigits(std::int64_t number) { return std::to_string(100 + number).substr(1); }

// Rounded down, also below 0.
std::int64_t DaysIn(std::int64_t microseconds) {
    return microseconds >= 0 ? microseconds / kDay : -((kDay - 1 - microseconds) / kDay);
}

} // namespace

CWallClock::CWallClock(const ExploredSession& explored) : m_bLeapYear(explored.clock.IsLeapYear()) {
    const std::optional<RecordIndex> first = explored.clock.FirstRecord();
    if (!first) {
        return;
    }
    const CLogDetail detail = explored.session.m_listDetails[*first];
    for (std::size_t month = 0; month < kMonths.size(); ++month) {
        if (kMonths[month] == detail.m_strMonth) {
            m_nMonth = static_cast<int>(month) + 1;
        }
    }
    m_bStamped = true;
    m_nDay = detail.m_nDay;
    m_nFirst = ((std::int64_t{detail.m_nHour} * 60 + detail.m_nMinute) * 60 + detail.m_nSecond) * kSecond +
               detail.m_nMicrosecond;
}

std::int64_t CWallClock::DayNumber(std::int64_t clock) const { return DaysIn(SinceMidnight(clock)); }

std::string CWallClock::TimeOfDay(std::int64_t clock, int places) const {
    const std::int64_t time = SinceMidnight(clock) - DayNumber(clock) * kDay;
    const std::int64_t seconds = time / kSecond;
    std::string text =
        TwoDigits(seconds / 3600) + ':' + TwoDigits(seconds / 60 % 60) + ':' + TwoDigits(seconds % 60);
    if (places > 0) {
        text += '.' + std::to_string(kSecond + time % kSecond).substr(1, static_cast<std::size_t>(places));
    }
    return text;
}

std::string CWallClock::Day(std::int64_t clock) const {
    if (!m_bStamped) {
        return {};
    }
    using namespace std::chrono;
    // Stamps have no year: one that has a Feb 29, or one that has none, stands for it.
    const year_month_day first = year(m_bLeapYear ? 2020 : 2021) / m_nMonth / m_nDay;
    const year_month_day day(sys_days(first) + days(DayNumber(clock)));
    return std::string(kMonths[static_cast<unsigned>(day.month()) - 1]) + ' ' +
           std::to_string(static_cast<unsigned>(day.day()));
}

std::string RangeText(const CWallClock& wall, const ClockRange& range) {
    const bool hasFrom = range.from != ClockRange::kOpenFrom;
    const bool hasTo = range.to != ClockRange::kOpenTo;
    if (hasFrom && hasTo) {
        return wall.TimeOfDay(range.from) + " to " + wall.TimeOfDay(range.to) + " (" +
               SecondsWithPlaces(range.to - range.from) + " s)";
    }
    return hasFrom ? "from " + wall.TimeOfDay(range.from)
           : hasTo ? "up to " + wall.TimeOfDay(range.to)
                   : std::string();
}

} // namespace carvelot
