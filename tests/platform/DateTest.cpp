#include "platform/DateText.h"
#include "platform/LocalTime.h"

#include <ctime>
#include <gtest/gtest.h>

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

TEST(LocalTime, IsTheTimeOfTheUsersClock) {
    for (int attempt = 0;; ++attempt) {
        const std::time_t before = std::time(nullptr);
        const LocalTime now = CurrentLocalTime();
        if (std::time(nullptr) != before && attempt < 5)
            continue; // the second changed meanwhile
        const std::tm* const expected = std::localtime(&before);
        EXPECT_EQ(now.m_nYear, expected->tm_year + 1900);
        EXPECT_EQ(now.m_nMonth, expected->tm_mon + 1);
        EXPECT_EQ(now.m_nDay, expected->tm_mday);
        EXPECT_EQ(now.m_nHour, expected->tm_hour);
        EXPECT_EQ(now.m_nMinute, expected->tm_min);
        EXPECT_EQ(now.m_nSecond, expected->tm_sec);
        EXPECT_GE(now.m_nMillisecond, 0);
        EXPECT_LE(now.m_nMillisecond, 999);
        break;
    }
}
