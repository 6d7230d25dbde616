#include "tools/JulianDate.h"

#include "text/Columns.h"
#include "text/Numbers.h"

#include <chrono>
#include <cstdio>

namespace carvelot {

namespace {

constexpr int kFirstYear = 1900;

// The characters before a column.
std::string UpToColumn(std::string_view text, std::size_t nColumn) {
    std::string strResult;
    while (!text.empty() && UnitCount(strResult) < nColumn)
        AppendCodePoint(strResult, TakeCodePoint(text));
    return strResult;
}

} // namespace

std::optional<CCalendarDate> JulianToGregorian(std::string_view strJulian) {
    const std::size_t nLength = UnitCount(strJulian);
    if (nLength < 3 || nLength > 6)
        return std::nullopt;
    std::string strScratch;
    const int nDay = ReadInteger(FromColumn(strJulian, nLength - 3, strScratch));
    if (nDay < 1 || nDay > 366)
        return std::nullopt;
    // No century digit: all that stands before the day is one number.
    const int nYear = kFirstYear + ReadInteger(UpToColumn(strJulian, nLength - 3));

    using namespace std::chrono;
    const year_month_day date = sys_days(year(nYear) / January / 1) + days(nDay - 1);
    return CCalendarDate{static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
                         static_cast<int>(static_cast<unsigned>(date.day()))};
}

std::string GregorianToJulian(const std::optional<CCalendarDate>& date, int nSecondOfDay) {
    using namespace std::chrono;
    const int nYear = date ? date->m_nYear : -1;
    int nDays = 0;
    if (date) {
        const sys_days day = year(date->m_nYear) / month(static_cast<unsigned>(date->m_nMonth)) /
                             std::chrono::day(static_cast<unsigned>(date->m_nDay));
        const auto nWhole = (day - sys_days(year(nYear) / January / 1)).count();
        // Half a second keeps a count that comes out a little short of a day on that day.
        constexpr double kSecondsOfDay = 86400.0;
        const double fDays = static_cast<double>(nWhole) + nSecondOfDay / kSecondsOfDay;
        nDays = static_cast<int>(fDays + (fDays < 0 ? -0.5 : 0.5) / kSecondsOfDay);
    }
    char szText[32];
    std::snprintf(szText, sizeof szText, "%d%.3d", nYear - kFirstYear, nDays + 1);
    return szText;
}

} // namespace carvelot
