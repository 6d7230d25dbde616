#include "tools/JulianDate.h"

#include <gtest/gtest.h>

#include <string>

namespace carvelot {
namespace {

// Nothing but years, months and their lengths, counted on day by day.
bool IsLeap(int nYear) { return nYear % 4 == 0 && (nYear % 100 != 0 || nYear % 400 == 0); }

int MonthLength(int nYear, int nMonth) {
    if (nMonth == 2)
        return IsLeap(nYear) ? 29 : 28;
    return nMonth == 4 || nMonth == 6 || nMonth == 9 || nMonth == 11 ? 30 : 31;
}

std::string ThreeDigits(int n) {
    const std::string text = std::to_string(n);
    return std::string(text.size() < 3 ? 3 - text.size() : 0, '0') + text;
}

TEST(JulianDate, EveryDayFrom1900To2899GoesThereAndBack) {
    int nDays = 0;
    for (int nYear = 1900; nYear <= 2899; ++nYear) {
        int nDayOfYear = 0;
        for (int nMonth = 1; nMonth <= 12; ++nMonth) {
            for (int nDay = 1; nDay <= MonthLength(nYear, nMonth); ++nDay) {
                ++nDayOfYear;
                ++nDays;
                const CCalendarDate date{nYear, nMonth, nDay};
                const std::string julian = std::to_string(nYear - 1900) + ThreeDigits(nDayOfYear);
                ASSERT_EQ(GregorianToJulian(date), julian);
                ASSERT_EQ(GregorianToJulian(date, 86399), julian);
                ASSERT_EQ(JulianToGregorian(julian), date) << julian;
            }
        }
        // Day 366 of a common year is the next year's first.
        const auto last = JulianToGregorian(std::to_string(nYear - 1900) + "366");
        ASSERT_EQ(last, (IsLeap(nYear) ? CCalendarDate{nYear, 12, 31} : CCalendarDate{nYear + 1, 1, 1}));
    }
    EXPECT_EQ(nDays, 365242 + 1);
}

TEST(JulianDate, ALengthOutsideThreeToSixIsInvalid) {
    for (const char* pszText : {"", "1", "12", "1234567", "00000001"})
        EXPECT_EQ(JulianToGregorian(pszText), std::nullopt) << pszText;
}

TEST(JulianDate, ADayOutsideOneTo366IsInvalid) {
    for (const char* pszText : {"000", "367", "999", "125000", "125367", "abc", "1-01"})
        EXPECT_EQ(JulianToGregorian(pszText), std::nullopt) << pszText;
}

TEST(JulianDate, TheYearsPrefixIsOneNumberWithoutACenturyDigit) {
    EXPECT_EQ(JulianToGregorian("001"), (CCalendarDate{1900, 1, 1}));
    EXPECT_EQ(JulianToGregorian("0001"), (CCalendarDate{1900, 1, 1}));
    EXPECT_EQ(JulianToGregorian("000001"), (CCalendarDate{1900, 1, 1}));
    EXPECT_EQ(JulianToGregorian("5032"), (CCalendarDate{1905, 2, 1}));
    EXPECT_EQ(JulianToGregorian("99365"), (CCalendarDate{1999, 12, 31}));
    EXPECT_EQ(JulianToGregorian("125001"), (CCalendarDate{2025, 1, 1}));
    EXPECT_EQ(JulianToGregorian("999366"), (CCalendarDate{2900, 1, 1}));
}

TEST(JulianDate, LeapDaysFollowTheCalendar) {
    EXPECT_EQ(JulianToGregorian("366"), (CCalendarDate{1901, 1, 1}));
    EXPECT_EQ(JulianToGregorian("100366"), (CCalendarDate{2000, 12, 31}));
    EXPECT_EQ(JulianToGregorian("100060"), (CCalendarDate{2000, 2, 29}));
    EXPECT_EQ(JulianToGregorian("101060"), (CCalendarDate{2001, 3, 1}));
    EXPECT_EQ(GregorianToJulian(CCalendarDate{2024, 2, 29}), "124060");
}

TEST(JulianDate, LengthCountsUtf16UnitsAndOtherCharactersEndTheNumbers) {
    EXPECT_EQ(JulianToGregorian("\xC3\xA9"
                                "001"),
              (CCalendarDate{1900, 1, 1}));
    EXPECT_EQ(JulianToGregorian("\xF0\x9F\x98\x80"
                                "0032"),
              (CCalendarDate{1900, 2, 1}));
    EXPECT_EQ(JulianToGregorian("\xF0\x9F\x98\x80"
                                "00032"),
              std::nullopt);
}

TEST(JulianDate, TheWrittenYearIsNotPaddedAndMayBeNegative) {
    EXPECT_EQ(GregorianToJulian(CCalendarDate{2025, 1, 1}), "125001");
    EXPECT_EQ(GregorianToJulian(CCalendarDate{1999, 12, 31}), "99365");
    EXPECT_EQ(GregorianToJulian(CCalendarDate{1900, 1, 1}), "0001");
    EXPECT_EQ(GregorianToJulian(CCalendarDate{1899, 12, 31}), "-1365");
    EXPECT_EQ(GregorianToJulian(CCalendarDate{1752, 9, 14}), "-148258");
    EXPECT_EQ(GregorianToJulian(CCalendarDate{9999, 12, 31}, 86399), "8099365");
    EXPECT_EQ(GregorianToJulian(std::nullopt), "-1901001");
}

TEST(JulianDate, TheTimeOfDayDoesNotCount) {
    EXPECT_EQ(GregorianToJulian(CCalendarDate{2024, 12, 31}, 43200), "124366");
    EXPECT_EQ(GregorianToJulian(CCalendarDate{2024, 1, 1}, 86399), "124001");
}

} // namespace
} // namespace carvelot
