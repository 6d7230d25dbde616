#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

TEST(ParseDebugLine, ReadsEveryFieldOfTheNewerForm) {
    const TestSession session(
        std::vector<std::string>{"Jan 15 09:12:03.250000 - 4120/3388 Worker\tEntering JDB_OpenTable",
                                 "Feb  3 10:11:12.000007 - 1/2 A b\tx y  "});
    ASSERT_EQ(session.Count(), 2U);
    const CLogDetail a = session.Record(0);
    EXPECT_EQ(a.m_strMonth, "Jan");
    EXPECT_EQ(a.m_nDay, 15);
    EXPECT_EQ(a.m_nHour, 9);
    EXPECT_EQ(a.m_nMinute, 12);
    EXPECT_EQ(a.m_nSecond, 3);
    EXPECT_EQ(a.m_nMicrosecond, 250000);
    EXPECT_EQ(a.m_nTime, 33'123'250'000U);
    EXPECT_EQ(a.m_nProcessID, 4120U);
    EXPECT_EQ(a.m_nThreadID, 3388U);
    EXPECT_EQ(a.m_strThreadLabel.Joined(), "Worker");
    EXPECT_EQ(a.m_strText, "Entering JDB_OpenTable");
    EXPECT_EQ(a.m_strLevel, "");
    EXPECT_EQ(a.m_strUser, "");
    const CLogDetail b = session.Record(1);
    EXPECT_EQ(b.m_nDay, 3);
    EXPECT_EQ(b.m_strThreadLabel.Joined(), "A b");
    EXPECT_EQ(b.m_strText, "x y");
    EXPECT_TRUE(session.m_doc.m_bDashForm);
}

TEST(ParseDebugLine, ReadsTheOlderFormWithoutALabel) {
    const TestSession session(
        std::vector<std::string>{"Jan 15 09:12:03 ** 4120/3388 \tEntering JDB_OpenTable"});
    ASSERT_EQ(session.Count(), 1U);
    EXPECT_EQ(session.Record(0).m_nMicrosecond, 0);
    EXPECT_EQ(session.Record(0).m_nProcessID, 4120U);
    EXPECT_EQ(session.Record(0).m_strThreadLabel.Joined(), "");
    EXPECT_EQ(session.Text(0), "Entering JDB_OpenTable");
    EXPECT_FALSE(session.m_doc.m_bDashForm);
}

TEST(ParseDebugLine, TakesTheTextForTheLabelWhereATabFollowsTheIds) {
    for (const char* line :
         {"Jan 15 09:12:03.25 - 4120/3388 \tText", "Jan 15 09:12:03.25 - 4120/3388\tText"}) {
        const TestSession session(DebugLog({line}));
        EXPECT_EQ(session.Last().m_strThreadLabel.Joined(), "Text") << line;
        EXPECT_EQ(session.Last().m_strText, "Text") << line;
    }
}

TEST(ParseDebugLine, TakesTheWholeRestForTheLabelOfALineWithoutATab) {
    const TestSession session(std::vector<std::string>{
        "Jan 15 09:12:03.25 - 4120/3388 WRK:Call Object        Entering JDB_Fetch  "});
    EXPECT_EQ(session.Last().m_strThreadLabel.Joined(), "WRK:Call Object        Entering JDB_Fetch  ");
    EXPECT_EQ(session.Last().m_strText, "Entering JDB_Fetch");
}

TEST(ParseDebugLine, EndsALabelThatRunsIntoTheTextAtItsFirstTab) {
    const TestSession session(
        std::vector<std::string>{"Jan 15 09:12:03.25 - 4120/3388 WRK  Entering JDB_Fetch",
                                 "Jan 15 09:12:03.25 - 4120/3388 WRK  RT: one\ttwo\tthree"});
    EXPECT_EQ(session.Text(1), "RT: one\ttwo\tthree");
    EXPECT_EQ(session.Record(1).m_strThreadLabel.Joined(), "WRK  RT: one");
}

TEST(ParseDebugLine, KeepsALongLabelThatSharesNothingWithTheText) {
    const std::string label(300, 'L');
    const TestSession session(DebugLog({"Jan 15 09:12:03.25 - 4/3 " + label + "\tthe text"}));
    EXPECT_EQ(session.Last().m_strThreadLabel.Joined(), label);
    EXPECT_EQ(session.Last().m_strText, "the text");
}

TEST(ParseDebugLine, AddsTheFractionAsAnInteger) {
    const TestSession session(DebugLog({"Jun 3 12:00:01.5 - 1/2 x"}));
    EXPECT_EQ(session.Last().m_nMicrosecond, 5);
    EXPECT_EQ(session.Last().m_nTime, LogTime(12, 0, 1, 5));
    EXPECT_EQ(session.Last().m_strMonth, "Jun");
    EXPECT_EQ(session.Last().m_nDay, 3);
}

TEST(ParseDebugLine, CallsAWordThatIsNoMonthMonthAndKeepsTheRecord) {
    const TestSession session(DebugLog({"Foo 15 09:12:03.25 - 1/2 L\tx", "anF 15 09:12:03.25 - 1/2 L\tx",
                                        "foo abc 09:12:03.25 - 1/2 L\tx"}));
    EXPECT_EQ(session.Record(1).m_strMonth, "MONTH");
    EXPECT_EQ(session.Record(2).m_strMonth, "anF");
    EXPECT_EQ(session.Record(3).m_nDay, 0);
}

TEST(ParseDebugLine, DropsALineWhoseThirdWordIsNoTime) {
    const TestSession session(DebugLog(
        {"a continuation line", "--UBE--[2] is dropped", "x 1 12:00", "x 1 12:00:", "   ", "", "\t \t"}));
    EXPECT_EQ(session.Count(), 1U);
}

TEST(ParseDebugLine, MakesRecordsOfProcess0OfLinesWithoutIds) {
    const TestSession session(
        DebugLog({"one", "two words", "Jan 15 09:12:03.25", "Jan 15 09:12:03.25 no marker",
                  "Jan 15 09:12:03.25 -", "Jan 15 09:12:03.25 ** ids"}));
    ASSERT_EQ(session.Count(), 7U);
    for (std::uint32_t i = 1; i < 7; ++i) {
        EXPECT_EQ(session.Record(i).m_nProcessID, 0U) << i;
        EXPECT_EQ(session.Record(i).m_nThreadID, 0U) << i;
    }
    EXPECT_EQ(session.Record(1).m_nTime, 0U);
    EXPECT_EQ(session.Record(3).m_nTime, LogTime(9, 12, 3, 25));
}

TEST(ParseDebugLine, PassesOverEveryWordAheadOfTheMarker) {
    const TestSession session(DebugLog({"Jan 15 09:12:03.25 one *** -- two - 7/8 L\tx"}));
    EXPECT_EQ(session.Last().m_nProcessID, 7U);
    EXPECT_EQ(session.Last().m_nThreadID, 8U);
}

TEST(ParseDebugLine, ReadsIdsAsFarAsTheyScan) {
    const TestSession session(
        DebugLog({"Jan 15 09:12:03.25 - 4120 L\tx", "Jan 15 09:12:03.25 - 18753/-167733552 L\tx",
                  "Jan 15 09:12:03.25 - x/5 L\tx", "Jan 15 09:12:03.25 - 99999999999/1 L\tx",
                  "Jan 15 09:12:03.250000 - 99999999999/1 L\tx"}));
    EXPECT_EQ(session.Record(1).m_nProcessID, 4120U);
    EXPECT_EQ(session.Record(1).m_nThreadID, 0U);
    EXPECT_EQ(session.Record(2).m_nThreadID, static_cast<std::uint32_t>(-167733552));
    EXPECT_EQ(session.Record(3).m_nProcessID, 0U);
    EXPECT_EQ(session.Record(3).m_nThreadID, 0U);
    EXPECT_EQ(session.Record(4).m_nProcessID, 2147483647U);
    EXPECT_EQ(session.Record(5).m_nProcessID, 2147483647U);
}

TEST(ParseDebugLine, KeepsStampsThatNoClockHas) {
    const TestSession session(
        DebugLog({"Jan 99 77:88:99.12345678 - 1/2 L\tx", "Jan -5 -1:0:0.0 - 1/2 L\tx"}));
    EXPECT_EQ(session.Record(1).m_nDay, 99);
    EXPECT_EQ(session.Record(1).m_nHour, 77);
    EXPECT_EQ(session.Record(1).m_nMinute, 88);
    EXPECT_EQ(session.Record(1).m_nSecond, 99);
    EXPECT_EQ(session.Record(1).m_nMicrosecond, 12345678);
    EXPECT_EQ(session.Record(1).m_nTime, LogTime(77, 88, 99, 12345678));
    EXPECT_EQ(session.Record(2).m_nDay, -5);
    EXPECT_EQ(session.Record(2).m_nTime, LogTime(-1, 0, 0, 0));
}

TEST(ParseDebugLine, StartsTheTabSearchOverWhereALineHasFewerTabs) {
    const std::string two = "Jan 15 09:12:03.25 - 1/2 L\ta\tEntering JDB_X";
    const std::string three = "Jan 15 09:12:03.25 - 1/2 L\ta\tb\tEntering JDB_X";
    const std::string oneTab = "Jan 15 09:12:04.25 - 1/2 L\tthe rest";
    EXPECT_EQ(TestSession(std::vector<std::string>{two, oneTab}).Text(1), "");
    EXPECT_EQ(TestSession(std::vector<std::string>{three, oneTab}).Text(1), "the rest");
}

TEST(ParseDebugLine, FixesTheTextColumnAtTheFirstDashBehindTheTabs) {
    const TestSession session(std::vector<std::string>{
        "Jan 15 09:12:03.25 - 1/2 L\tEntering JDB_X", "Jan 15 09:12:03.25 - 1/2 L\t - now fixed",
        "Jan 15 09:12:03.25 - 1/2 L\t - now fixed", "Jan 15 09:12:03.25 - 1234/5678 L\t - cut elsewhere",
        "short"});
    EXPECT_EQ(session.Text(0), "Entering JDB_X");
    EXPECT_EQ(session.m_doc.m_nTextColumn, 30);
    EXPECT_EQ(session.Text(1), "now fixed");
    EXPECT_EQ(session.Text(2), "now fixed");
    // Column 30 of every later line, whatever the width of its ids.
    EXPECT_EQ(session.Text(3), "L\t - cut elsewhere");
    EXPECT_EQ(session.Text(4), "");
}

TEST(ParseDebugLine, ReadsAUBELineWhateverElseItIs) {
    const TestSession session(DebugLog({"--UBE--[1] Started"}));
    const CLogDetail ube = session.Last();
    EXPECT_TRUE(ube.m_bUBE);
    EXPECT_EQ(ube.m_nUBELevel, 1);
    EXPECT_EQ(ube.m_strText, "--UBE--[1] Started");
    EXPECT_EQ(ube.m_nProcessID, 0U);
    EXPECT_EQ(ube.m_nThreadID, 0U);
    EXPECT_EQ(ube.m_nTime, 0U);
    EXPECT_EQ(ube.m_nHour, 0);
    EXPECT_EQ(ube.m_nKind, LOG_UBE);
    EXPECT_TRUE(session.m_doc.m_bUBELog);
}

TEST(ParseDebugLine, TakesColumn8OfAStampedUBELineForItsLevel) {
    const TestSession session(DebugLog({"Jan 15 09:12:03.25 - 7/8 L\t--UBE--[3]-- Section  "}));
    const CLogDetail ube = session.Last();
    EXPECT_TRUE(ube.m_bUBE);
    EXPECT_EQ(ube.m_nUBELevel, 9); // of "Jan 15 09:": no level at all
    EXPECT_EQ(ube.m_nProcessID, 0U);
    EXPECT_EQ(ube.m_strText, "Jan 15 09:12:03.25 - 7/8 L\t--UBE--[3]-- Section  ");
    EXPECT_EQ(ube.m_strThreadLabel.Joined(), "L");
    EXPECT_EQ(ube.m_nTime, LogTime(9, 12, 3, 25));
}

TEST(ParseDebugLine, KeepsOnlyTheProcessOfAFilter) {
    TestSession session(DebugLog({DebugLine("09:00:00.000001", "a b", "5/1"),
                                  DebugLine("09:00:00.000002", "c d", "6/1"), "--UBE--[1] Started"}));
    session.m_doc.m_nProcessFilter = 6;
    ASSERT_TRUE(session.m_doc.LoadLog());
    EXPECT_EQ(session.Texts(), std::vector<std::string>{"c d"});
    // A UBE line's process is 0, so it is dropped, but the session has learnt that there are such lines.
    EXPECT_TRUE(session.m_doc.m_bUBELog);
}

TEST(ParseDebugLine, TakesInvalidUTF8ForWindows1252) {
#ifndef _WIN32
    const TestSession session(DebugLog(
        {DebugLine("09:00:00.000001", "valid \xC3\xA9"), DebugLine("09:00:00.000002", "no \xE9 \x81 \x80")}));
    EXPECT_EQ(session.Text(1), "valid \xC3\xA9");
    EXPECT_EQ(session.Text(2), "no \xC3\xA9 \xC2\x81 \xE2\x82\xAC");
#endif
}

TEST(ParseDebugLine, CutsASurrogatePairAtTheTextColumn) {
#ifndef _WIN32
    // The text column is 11; the pair of U+1F69A takes columns 10 and 11.
    const TestSession session(
        std::vector<std::string>{"0123456 89 Entering JDB_X", "a b 0:0:1 \xF0\x9F\x9A\x9A rest"});
    ASSERT_EQ(session.m_doc.m_nTextColumn, 11);
    EXPECT_EQ(session.Last().m_strText, "\xED\xBA\x9A rest");
#endif
}

} // namespace carvelot::test
