#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

const std::string kDebugLine = "Jan 15 09:12:03.250000 - 4120/3388 Worker\tEntering JDB_OpenTable";
const std::string kJASShape = "15 Jan 2024 09:12:03,250 [INFO  ] USER1 - [RUNTIME] x";
const std::string kUnknown = "Error: Cannot determine tracing log format";

std::vector<std::string> Repeated(std::size_t count, const std::string& line) {
    return std::vector<std::string>(count, line);
}

std::vector<std::string> With(std::vector<std::string> lines, const std::string& more) {
    lines.push_back(more);
    return lines;
}

} // namespace

TEST(DetectLogFormat, CountsTheTabsAheadOfEnteringJDB) {
    const TestSession session(std::vector<std::string>{"a\tb\tEntering JDB_X", "a\tb\tc\tEntering JDB_Y"});
    EXPECT_TRUE(session.m_bLoaded);
    EXPECT_EQ(session.m_doc.m_nTabCount, 3); // the last such line wins
    EXPECT_EQ(session.m_doc.m_nTextColumn, 0);
}

TEST(DetectLogFormat, TakesTheColumnOfEnteringJDBInALineWithoutATab) {
    const TestSession session(std::vector<std::string>{"0123456789 Entering JDB_X"});
    EXPECT_TRUE(session.m_bLoaded);
    EXPECT_EQ(session.m_doc.m_nTabCount, 0);
    EXPECT_EQ(session.m_doc.m_nTextColumn, 11);
}

TEST(DetectLogFormat, SetsNoColumnWhenATabStandsBehindEnteringJDB) {
    const TestSession session(std::vector<std::string>{"0123456789 Entering JDB_X\tmore"});
    EXPECT_TRUE(session.m_bLoaded);
    EXPECT_EQ(session.m_doc.m_nTabCount, 0);
    EXPECT_EQ(session.m_doc.m_nTextColumn, 0);
}

#ifndef _WIN32 // where the log's bytes are in the machine's own code page
TEST(DetectLogFormat, CountsColumnsInUTF16Units) {
    const TestSession session(std::vector<std::string>{"\xC3\xA9\xF0\x9F\x9A\x9A Entering JDB_X"});
    EXPECT_EQ(session.m_doc.m_nTextColumn, 4);
}
#endif

TEST(DetectLogFormat, HasNoHitFromLinesThatStartWithEnteringJDB) {
    const TestSession session(Repeated(20, "Entering JDB_OpenTable"));
    EXPECT_FALSE(session.m_bLoaded);
    EXPECT_EQ(session.m_host.m_messages, std::vector{kUnknown});
}

TEST(DetectLogFormat, TakesAFileOfOneUBELineForADebugLogWithoutStatementTexts) {
    const TestSession session(std::vector<std::string>{"--UBE--[1] Started", kJASShape});
    EXPECT_TRUE(session.m_bLoaded);
    EXPECT_EQ(session.m_doc.m_nTabCount, 0);
    EXPECT_EQ(session.m_doc.m_nTextColumn, 0);
    EXPECT_EQ(session.m_doc.m_nLogFormat, LOG_FORMAT_DEBUG);
    EXPECT_EQ(session.Text(0), "--UBE--[1] Started");
}

TEST(DetectLogFormat, LooksAt5001LinesAndNotAtOneMore) {
    EXPECT_TRUE(TestSession(With(Repeated(5000, "x y z"), kDebugLine)).m_bLoaded);
    EXPECT_FALSE(TestSession(With(Repeated(5001, "x y z"), kDebugLine)).m_bLoaded);
}

TEST(DetectLogFormat, CountsTheEmptyLinesOfACarriageReturnFile) {
    const auto crLf = [](const std::vector<std::string>& lines) {
        std::string content;
        for (const std::string& line : lines) {
            content.append(line).append("\r\n");
        }
        return content;
    };
    // Text line 2501 is the 5001st line.
    EXPECT_TRUE(TestSession(crLf(With(Repeated(2500, "x y z"), kDebugLine))).m_bLoaded);
    EXPECT_FALSE(TestSession(crLf(With(Repeated(2501, "x y z"), kDebugLine))).m_bLoaded);
}

TEST(DetectLogFormat, NeedsSixLinesOfJASShape) {
    const TestSession five(Repeated(5, kJASShape));
    EXPECT_FALSE(five.m_bLoaded);
    EXPECT_EQ(five.m_host.m_messages, std::vector{kUnknown});
    const TestSession six(Repeated(6, kJASShape));
    EXPECT_TRUE(six.m_bLoaded);
    EXPECT_EQ(six.m_doc.m_nLogFormat, LOG_FORMAT_JAS);
}

TEST(DetectLogFormat, FindsJASLinesAmongTheFirst5001NonEmptyLinesOnly) {
    std::vector<std::string> lines = Repeated(4995, "x");
    lines.insert(lines.begin() + 100, 3000, "");
    const std::vector<std::string> six = Repeated(6, kJASShape);
    lines.insert(lines.end(), six.begin(), six.end());
    EXPECT_TRUE(TestSession(lines).m_bLoaded);
    lines.insert(lines.begin(), "one more");
    EXPECT_FALSE(TestSession(lines).m_bLoaded);
}

TEST(DetectLogFormat, CutsJASLinesAtBlanksOnly) {
    EXPECT_FALSE(TestSession(Repeated(6, "15 Jan\t2024 09:12:03,250 [INFO  ] x")).m_bLoaded);
    EXPECT_TRUE(TestSession(Repeated(6, "any   four  words here [INFO")).m_bLoaded);
}

TEST(DetectLogFormat, TakesAMixedFileForADebugLog) {
    const TestSession session(With(Repeated(50, kJASShape), kDebugLine));
    EXPECT_TRUE(session.m_bLoaded);
    EXPECT_EQ(session.m_doc.m_nLogFormat, LOG_FORMAT_DEBUG);
}

TEST(DetectLogFormat, FailsOnAnEmptyFileAndOnOneLineWithoutAnEnd) {
    for (const std::string& content : {std::string(), kDebugLine}) {
        const TestSession session{std::string_view(content)};
        EXPECT_FALSE(session.m_bLoaded);
        EXPECT_EQ(session.m_host.m_messages, std::vector{kUnknown});
        EXPECT_EQ(session.Count(), 0U);
    }
}

TEST(DetectLogFormat, KeepsAColumnThatAnEarlierLoadLearnt) {
    TestSession session(std::vector<std::string>{"0123456789 Entering JDB_X"});
    session.m_file.Write("nothing of a debug log\n");
    EXPECT_TRUE(session.m_doc.LoadLog());
    EXPECT_EQ(session.m_doc.m_nTextColumn, 11);
}

TEST(DetectLogFormat, LeavesAJASSessionOneOfJAS) {
    TestSession session(Repeated(6, kJASShape));
    session.m_file.Write(kDebugLine + "\n");
    EXPECT_TRUE(session.m_doc.LoadLog());
    EXPECT_EQ(session.m_doc.m_nLogFormat, LOG_FORMAT_JAS);
    EXPECT_EQ(session.Count(), 0U); // "15" is no month
}

} // namespace carvelot::test
