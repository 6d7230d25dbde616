#include "tools/JulianDate.h"

#include <gtest/gtest.h>

#include <string>

namespace carvelot {
namespace {

// Nothing but years, months and their lengths, counted on day by day.
bool IsLeap(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int MonthLength(int year, int month) {
    if (month == 2) {
        return IsLeap(year) ? 29 : 28;
    }
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

std::string ThreeDigits(int n) {
    const std::string text = std::to_string(n);
    return std::string(text.size() < 3 ? 3 - text.size() : 0, '0') + text;
}

TEST(JulianDate, EveryDayFrom1900To2899GoesThereAndBack) {
    int days = 0;
    for (int year = 1900; year <= 2899; ++year) {
        int dayOfYear = 0;
        for (int month = 1; month <= 12; ++month) {
            for (int day = 1; day <= MonthLength(year, month); ++day) {
                ++dayOfYear;
                ++days;
                const CCalendarDate date{year, month, day};
                const std::string julian = std::to_string(year - 1900) + ThreeDigits(dayOfYear);
                ASSERT_EQ(GregorianToJulian(date), julian);
                ASSERT_EQ(GregorianToJulian(date, 86399), julian);
                ASSERT_EQ(JulianToGregorian(julian), date) << julian;
            }
        }
        // Day 366 of a common year is the next year's first.
        const auto last = JulianToGregorian(std::to_string(year - 1900) + "366");
        ASSERT_EQ(last, (IsLeap(year) ? CCalendarDate{year, 12, 31} : CCalendarDate{year + 1, 1, 1}));
    }
    EXPECT_EQ(days, 365242 + 1);
}

TEST(JulianDate, ALengthOutsideThreeToSixIsInvalid) {
    for (const char* text : {"", "1", "12", "1234567", "00000001"}) {
        EXPECT_EQ(JulianToGregorian(text), std::nullopt) << text;
    }
}

TEST(JulianDate, ADayOutsideOneTo366IsInvalid) {
    for (const char* text : {"000", "367", "999", "125000", "125367", "abc", "1-01"}) {
        EXPECT_EQ(JulianToGregorian(text), std::nullopt) << text;
    }
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
