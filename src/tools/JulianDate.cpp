#include "tools/JulianDate.h"

#include "text/Integers.h"
#include "text/TextColumns.h"

#include <chrono>
#include <cstdio>

namespace carvelot {

namespace {

constexpr int kFirstYear = 1900;

// The characters before a column.
std::string UpToColumn(std::string_view text, std::size_t column) {
    std::string result;
    while (!text.empty() && UnitCount(result) < column) {
        AppendCodePoint(result, TakeCodePoint(text));
    }
    return result;
}

} // namespace

std::optional<CCalendarDate> JulianToGregorian(std::string_view julian) {
    const std::size_t length = UnitCount(julian);
    if (length < 3 || length > 6) {
        return std::nullopt;
    }
    std::string scratch;
    const int day = ReadInteger(FromColumn(julian, length - 3, scratch));
    if (day < 1 || day > 366) {
        return std::nullopt;
    }
    // No century digit: all that stands before the day is one number.
    const int yearNumber = kFirstYear + ReadInteger(UpToColumn(julian, length - 3));

    using namespace std::chrono;
    const year_month_day date = sys_days(year(yearNumber) / January / 1) + days(day - 1);
    return CCalendarDate{static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
                         static_cast<int>(static_cast<unsigned>(date.day()))};
}

std::string GregorianToJulian(const std::optional<CCalendarDate>& date, int secondOfDay) {
    using namespace std::chrono;
    const int yearNumber = date ? date->m_nYear : -1;
    int days = 0;
    if (date) {
        const sys_days day = year(date->m_nYear) / month(static_cast<unsigned>(date->m_nMonth)) /
                             std::chrono::day(static_cast<unsigned>(date->m_nDay));
        const auto whole = (day - sys_days(year(yearNumber) / January / 1)).count();
        // Half a second keeps a count that comes out a little short of a day on that day.
        constexpr double kSecondsOfDay = 86400.0;
        const double daysAndFraction = static_cast<double>(whole) + secondOfDay / kSecondsOfDay;
        days = static_cast<int>(daysAndFraction + (daysAndFraction < 0 ? -0.5 : 0.5) / kSecondsOfDay);
    }
    char text[32];
    std::snprintf(text, sizeof text, "%d%.3d", yearNumber - kFirstYear, days + 1);
    return text;
}

} // namespace carvelot
