// Lines that begin as earlier ones did take a short cut.

#include "support/TestLog.h"
#include "text/TextColumns.h"

#include <gtest/gtest.h>

namespace carvelot::test {

TEST(LineBeginnings, IsNoneWhereASearchForATabStartedOver) {
    // The text stands behind the third tab. With one tab the search finds that one once more, with two none.
    const std::string beginning = "Jan 15 08:00:00.000001 - 12/34 WRK:Starting jdeCallObject\t";
    std::string log = "Jan 15 08:00:00.000001 - 1/1 Worker\tx\ty\tEntering JDB_OpenTable\n";
    for (const char* rest : {"On x", "On\tx", "On\tx\ty", "On x\ty\tz\tv", "On\tx", "On y"}) {
        log.append(beginning).append(rest).append("\n");
    }
    EXPECT_EQ(TestSession(log).Texts(),
              (std::vector<std::string>{"Entering JDB_OpenTable", "On x", "", "y", "z\tv", "", "On y"}));
}

TEST(LineBeginnings, LeavesALineOfAUBEToTheLongWay) {
    const std::string beginning = "Jan 15 08:00:00.000001 - 12/34 Worker\t";
    const TestSession session(beginning + "Entering JDB_OpenTable\n" + beginning + "On x\n" + beginning +
                              "x --UBE-- y\n");
    EXPECT_EQ(session.Kind(2), LOG_UBE);
    EXPECT_EQ(session.Text(2), beginning + "x --UBE-- y");
    EXPECT_EQ(session.Record(2).m_nProcessID, 0U);
}

TEST(LineBeginnings, KeepsALabelThatRunsOnIntoTheText) {
    // Without a tab the label goes on to the line's end, whatever the text is trimmed of.
    const std::string beginning = "Jan 15 08:00:00.000001 - 12/34 Worker      ";
    std::string log = beginning + "Entering JDB_OpenTable\n";
    const std::vector<std::string> texts = {"On x",      "On y",    " On z", "  On z",   "       On far",
                                            "On x ",     "On x   ", "On\tx", "On x\ty ", "\tOn x",
                                            " \tOn tab", "On x\t ", "",      " ",        "On x\t\ty"};
    for (int round = 0; round < 2; ++round) {
        for (const std::string& text : texts) {
            log.append(beginning).append(text).append("\n");
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

TEST(LineBeginnings, IsNeverOneThatTheProcessFilterRefuses) {
    std::string log;
    for (int i = 0; i < 4; ++i) {
        log.append("Jan 15 08:00:00.000001 - 12/34 Worker\tEntering JDB_OpenTable\n");
        log.append("Jan 15 08:00:00.000001 - 77/34 Worker\tEntering JDB_CloseTable\n");
    }
    TestSession session(log);
    ASSERT_EQ(session.Count(), 8U);
    session.m_doc.m_nProcessFilter = 12;
    ASSERT_TRUE(session.m_doc.LoadLog());
    EXPECT_EQ(session.Texts(), std::vector<std::string>(4, "Entering JDB_OpenTable"));

    // Of a JAS log nothing stays.
    TestSession web(JASLog({JASLine("08:00:00,001", "A", "x"), JASLine("08:00:00,002", "A", "y")}));
    ASSERT_EQ(web.Count(), kJASLead + 2);
    web.m_doc.m_nProcessFilter = 12;
    ASSERT_TRUE(web.m_doc.LoadLog());
    EXPECT_EQ(web.Count(), 0U);
}

TEST(LineBeginnings, EndsBeforeALabelThatEndsWhereTheTextBegins) {
    // The label ends at a tab in the text's column; in another line that begins so it goes on.
    const std::string beginning = "Jan 15 08:00:00.000001 - 12/34 Worker      ";
    const TestSession session(beginning + "Entering JDB_OpenTable\n" +
                              "Jan 15 08:00:00.000001 - 12/35 Worker      \tOn x\n" +
                              "Jan 15 08:00:00.000001 - 12/35 Worker       On y\n");
    EXPECT_EQ(session.Record(1).m_strThreadLabel.Joined(), "Worker      ");
    EXPECT_EQ(session.Record(1).m_strText, "On x");
    EXPECT_EQ(session.Record(2).m_strThreadLabel.Joined(), "Worker       On y");
    EXPECT_EQ(session.Record(2).m_strText, "On y");
}

TEST(LineBeginnings, TellsTheFormOfALineThatBeginsAsAnEarlierOneDid) {
    const std::string usual = "Jan 15 08:00:00.000001 - 12/34 Worker\t";
    const std::string old = "Jan 15 08:00:00.000001 ** 12/34 Worker\tOn x\n";
    const std::string lead = usual + "Entering JDB_OpenTable\n" + usual + "On x\n";
    EXPECT_TRUE(TestSession(lead).m_doc.m_bDashForm);
    EXPECT_FALSE(TestSession(lead + old).m_doc.m_bDashForm);
    EXPECT_TRUE(TestSession(lead + old + usual + "On y\n").m_doc.m_bDashForm);
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
