// Lines that begin as earlier ones did take a short cut: what it reads is what the long way reads. A blank
// ahead of a line sends it the long way.
#include "logcore/Columns.h"
#include "logcore/NumberMap.h"

#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

void ExpectSame(const std::string& log, const std::string& longWay) {
    const TestSession a(log);
    const TestSession b(longWay);
    ASSERT_EQ(a.Count(), b.Count());
    for (std::uint32_t i = 0; i < a.Count(); ++i) {
        const CLogDetail x = a.Record(i);
        const CLogDetail y = b.Record(i);
        EXPECT_EQ(x.m_strText, y.m_strText) << i;
        EXPECT_EQ(x.m_strThreadLabel.Joined(), y.m_strThreadLabel.Joined()) << i;
        EXPECT_EQ(std::tie(x.m_nKind, x.m_nTime, x.m_nDay, x.m_strMonth, x.m_nProcessID, x.m_nThreadID),
                  std::tie(y.m_nKind, y.m_nTime, y.m_nDay, y.m_strMonth, y.m_nProcessID, y.m_nThreadID))
            << i;
        EXPECT_EQ(std::tie(x.m_strLevel, x.m_strUser, x.m_strSource, x.m_bUBE, x.m_nReturnCode, x.m_fGap),
                  std::tie(y.m_strLevel, y.m_strUser, y.m_strSource, y.m_bUBE, y.m_nReturnCode, y.m_fGap))
            << i;
    }
    EXPECT_EQ(a.m_doc.m_listProcesses.size(), b.m_doc.m_listProcesses.size());
}

} // namespace

TEST(LineHead, ReadsTabbedLinesAsTheLongWayDoes) {
    const std::string first = "Jan 15 08:00:00.000001 - 12/34 Worker\tEntering JDB_OpenTable\n";
    std::string log = first;
    std::string longWay = first;
    for (const char* line :
         {"Jan 15 08:00:00.000002 - 12/34 Worker\tCalling Business function F on 1 BSFNLevel = 1",
          "Jan 15 08:00:00.000003 - 12/34 Worker\t SELECT A FROM T ",
          "Jan 15 08:00:00.000004 - 12/34 Worker\t",
          "Jan 15 08:00:00.000005 - 12/34 Worker\tReturn value is 2 for F. (BSFNLevel = 1)",
          "Feb 15 08:00:00.000006 - 12/34 Worker\tOn another month",
          "Jan 15 08:00:01.000007 - 12/34 Worker\tOn another second",
          "Jan 15 08:00:01.00007 - 12/34 Worker\tOn five digits",
          "Jan 15 08:00:01.000007 - 12/35 Worker\tOn another thread",
          "Jan 15 08:00:01.000007 - 12/34 Worker\xE9\tOn another label",
          "Jan 15 08:00:01.000008 ** 12/34 Worker\tOn the old form",
          "Jan 15 08:00:01.000010 - 12/34 Worker\t\tOn a tab",
          "Jan 15 38:00:01.000011 - 12/34 Worker\tOn no clock",
          "Jan 15 38:00:01.000012 - 12/34 Worker\tOn again"}) {
        log.append(line).append("\n");
        longWay.append(" ").append(line).append("\n");
    }
    ExpectSame(log, longWay);
}

TEST(LineHead, IsNoneWhereASearchForATabStartedOver) {
    // The text stands behind the third tab. With one tab the search finds that one once more, with two none.
    const std::string head = "Jan 15 08:00:00.000001 - 12/34 WRK:Starting jdeCallObject\t";
    std::string log = "Jan 15 08:00:00.000001 - 1/1 Worker\tx\ty\tEntering JDB_OpenTable\n";
    for (const char* rest : {"On x", "On\tx", "On\tx\ty", "On x\ty\tz\tv", "On\tx", "On y"}) {
        log.append(head).append(rest).append("\n");
    }
    EXPECT_EQ(TestSession(log).Texts(),
              (std::vector<std::string>{"Entering JDB_OpenTable", "On x", "", "y", "z\tv", "", "On y"}));
}

TEST(LineHead, LeavesALineOfAUBEToTheLongWay) {
    const std::string head = "Jan 15 08:00:00.000001 - 12/34 Worker\t";
    const TestSession session(head + "Entering JDB_OpenTable\n" + head + "On x\n" + head + "x --UBE-- y\n");
    EXPECT_EQ(session.Kind(2), LOG_UBE);
    EXPECT_EQ(session.Text(2), head + "x --UBE-- y");
    EXPECT_EQ(session.Record(2).m_nProcessID, 0U);
}

TEST(LineHead, KeepsALabelThatRunsOnIntoTheText) {
    // Without a tab the label goes on to the line's end, whatever the text is trimmed of.
    const std::string head = "Jan 15 08:00:00.000001 - 12/34 Worker      ";
    std::string log = head + "Entering JDB_OpenTable\n";
    const std::vector<std::string> texts = {"On x",      "On y",    " On z", "  On z",   "       On far",
                                            "On x ",     "On x   ", "On\tx", "On x\ty ", "\tOn x",
                                            " \tOn tab", "On x\t ", "",      " ",        "On x\t\ty"};
    for (int round = 0; round < 2; ++round) {
        for (const std::string& text : texts) {
            log.append(head).append(text).append("\n");
        }
    }
    const TestSession session(log);
    ASSERT_EQ(session.Count(), 1 + 2 * texts.size());
    for (std::uint32_t i = 1; i < session.Count(); ++i) {
        const std::string& text = texts[(i - 1) % texts.size()];
        const std::string whole = "Worker      " + text;
        EXPECT_EQ(session.Record(i).m_strThreadLabel.Joined(), whole.substr(0, whole.find('\t'))) << i;
        EXPECT_EQ(session.Record(i).m_strText, TrimStatement(text)) << i;
    }
}

TEST(LineHead, ReadsJASLinesAsTheLongWayDoes) {
    std::string log;
    for (int i = 0; i < 8; ++i) {
        log += "15 Jan 2024 08:00:00,001 [APP   ] SMITH - [JDBJ]   started\n";
    }
    std::string longWay = log;
    for (const char* line :
         {"15 Jan 2024 08:00:00,002 [APP   ] SMITH - [JDBJ]   SELECT A FROM T WHERE B = ? AND C = ?",
          "15 Jan 2024 08:00:00,003 [APP   ] SMITH - [JDBJ]   Param1: 1_Types.DECIMAL,",
          "15 Jan 2024 08:00:00,004 [APP   ] SMITH - [JDBJ]   Param2: x_Types.VARCHAR,",
          "15 Jan 2024 08:00:00,005 [WARN  ] SMITH - [JDBJ] SELECT A FROM T",
          "15 Jan 2024 08:00:00,006 [WARN  ] SMITH - [JDBJ] again",
          "15 Jan 2024 08:00:00,007 [APP   ] - [BASE] a", "15 Jan 2024 08:00:00,008 [APP   ] - [BASE] b",
          "15 Jan 2024 08:00:00,009 [APP   ] - [BASE]",
          "5 Jan 2024 08:00:00,010 [APP   ] SMITH - [JDBJ]   one digit",
          "5 Jan 2024 08:00:00,011 [APP   ] SMITH - [JDBJ]   Object Called: F4211.F",
          "5 Feb 2024 08:00:00,012 [APP   ] SMITH - [JDBJ]   another month",
          "5 Feb 2024 08:00:00,12 [APP   ] SMITH - [JDBJ]   two digits",
          "5 Feb 2024 08:00:00,013 [APP   ] SMITH\xE9 - [JDBJ]   no ASCII"}) {
        log.append(line).append("\n");
        longWay.append(" ").append(line).append("\n");
    }
    ExpectSame(log, longWay);
}

TEST(NumberMap, FindsWhatWasEntered) {
    CNumberMap map;
    EXPECT_EQ(map.Find(0), CNumberMap::kNone);
    // Keys that differ in their low half only, in their high half only, and in both.
    for (std::uint64_t i = 0; i < 1000; ++i) {
        EXPECT_EQ(map.FindOrAdd(i << 32U, static_cast<std::uint32_t>(i)),
                  std::pair(static_cast<std::uint32_t>(i), true));
        EXPECT_EQ(map.FindOrAdd(i * 3 + 1, static_cast<std::uint32_t>(i + 1000)).second, true);
    }
    for (std::uint64_t i = 0; i < 1000; ++i) {
        EXPECT_EQ(map.Find(i << 32U), i);
        EXPECT_EQ(map.FindOrAdd(i * 3 + 1, 5), std::pair(static_cast<std::uint32_t>(i + 1000), false));
    }
    EXPECT_EQ(map.Find(3), CNumberMap::kNone);
    map.At(1, 0) = 7;
    map.At(3, 0) = 8;
    EXPECT_EQ(map.Find(1), 7U);
    EXPECT_EQ(map.Find(3), 8U);
}

} // namespace carvelot::test
