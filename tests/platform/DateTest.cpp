#include "platform/DateText.h"
#include "platform/LocalTime.h"
#include "support/TestFolder.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <time.h>

using namespace carvelot::platform;

TEST(AutomationDate, AreTheDatesOfTheCalendarFromYear100To9999) {
    EXPECT_TRUE(IsAutomationDate(2025, 1, 31));
    EXPECT_TRUE(IsAutomationDate(2024, 2, 29));
    EXPECT_TRUE(IsAutomationDate(2000, 2, 29));
    EXPECT_TRUE(IsAutomationDate(1900, 2, 28));
    EXPECT_TRUE(IsAutomationDate(100, 1, 1));
    EXPECT_TRUE(IsAutomationDate(9999, 12, 31));
    EXPECT_FALSE(IsAutomationDate(1900, 2, 29));
    EXPECT_FALSE(IsAutomationDate(2025, 2, 29));
    EXPECT_FALSE(IsAutomationDate(2025, 2, 30));
    EXPECT_FALSE(IsAutomationDate(2025, 4, 31));
    EXPECT_FALSE(IsAutomationDate(2025, 13, 1));
    EXPECT_FALSE(IsAutomationDate(2025, 0, 1));
    EXPECT_FALSE(IsAutomationDate(2025, 1, 0));
    EXPECT_FALSE(IsAutomationDate(0, 0, 0)) << "an unset date";
    EXPECT_FALSE(IsAutomationDate(99, 1, 1));
    EXPECT_FALSE(IsAutomationDate(25, 1, 1)) << "a year of two digits comes back as another";
    EXPECT_FALSE(IsAutomationDate(10000, 1, 1));
    EXPECT_FALSE(IsAutomationDate(-1, 1, 1));
    EXPECT_FALSE(IsAutomationDate(2025, -1, 1));
    EXPECT_FALSE(IsAutomationDate(2025, 1, -1));
}

TEST(DateText, WhatIsNoDateHasNoText) {
    EXPECT_FALSE(ShortDate(2025, 2, 30));
    EXPECT_FALSE(ShortDate(2025, 0, 1));
    EXPECT_FALSE(AutomationDateText(2025, 2, 30));
    EXPECT_FALSE(AutomationDateText(0, 0, 0));
}

TEST(DateText, HoldsYearMonthAndDay) {
#ifdef _WIN32
    // The form is the user's; this one is that of the United States, which a new Wine has.
    EXPECT_EQ(ShortDate(2025, 1, 31), "1/31/2025");
    EXPECT_EQ(AutomationDateText(2025, 1, 31), "1/31/2025");
#else
    EXPECT_EQ(ShortDate(2025, 1, 31), "2025-01-31");
    EXPECT_EQ(ShortDate(2899, 12, 31), "2899-12-31");
    EXPECT_EQ(AutomationDateText(2025, 1, 31), "2025-01-31");
    EXPECT_EQ(AutomationDateText(100, 1, 1), "0100-01-01");
#endif
}

TEST(LocalTime, IsTheMomentWhereTheUserIs) {
    using namespace std::chrono;
    const system_clock::time_point moment{seconds{1'709'251'199} +
                                          milliseconds{678}}; // 2024-02-29 23:59:59 UTC
#ifdef _WIN32
    const LocalTime time = LocalTimeOf(moment);
    EXPECT_EQ(time.m_nYear, 2024);
    EXPECT_EQ(time.m_nSecond, 59);
    EXPECT_EQ(time.m_nMillisecond, 678);
#else
    const auto text = [moment](const char* zone) {
        const carvelot::test::EnvironmentGuard guard("TZ", zone);
        tzset();
        const LocalTime time = LocalTimeOf(moment);
        std::string result;
        for (const int part : {time.m_nYear, time.m_nMonth, time.m_nDay, time.m_nHour, time.m_nMinute,
                               time.m_nSecond, time.m_nMillisecond}) {
            result += std::to_string(part) + " ";
        }
        return result;
    };
    EXPECT_EQ(text("UTC0"), "2024 2 29 23 59 59 678 ");
    EXPECT_EQ(text("XYZ-1:30"), "2024 3 1 1 29 59 678 ");
    tzset();
#endif
}
