// JulianDate.h - between JDE's Julian dates, CYYDDD, and calendar dates.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace carvelot {

struct CCalendarDate {
    int m_nYear = 0;
    int m_nMonth = 0; // 1 to 12
    int m_nDay = 0;

    bool operator==(const CCalendarDate&) const = default;
};

// The date of a Julian one: years since 1900 followed by a three-digit day of the year. Nothing when the text
// is shorter than 3 or longer than 6 characters, or the day is not from 1 to 366. Day 366 of a common year is
// the first of the next.
std::optional<CCalendarDate> JulianToGregorian(std::string_view julian);

// The Julian form of a date with its time of day in seconds: the year less 1900 without padding, then the day
// of the year with at least three digits. No date counts as the first day of the year -1.
std::string GregorianToJulian(const std::optional<CCalendarDate>& date, int secondOfDay = 0);

} // namespace carvelot
