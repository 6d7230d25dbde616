#include "session/LogFacts.h"

#include "platform/CodePage.h"
#include "sources/MemorySource.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

// A session of a log in memory.
struct Load {
    explicit Load(std::string content, CDialects dialects = {}, std::uint32_t filter = 0)
        : m_content(std::move(content)) {
        m_doc.m_dialects = dialects;
        m_doc.m_nProcessFilter = filter;
        CMemorySource source(m_content);
        EXPECT_TRUE(m_doc.LoadFrom(source));
    }

    std::string m_content;
    AnalysisSettings m_settings;
    PendingStatement m_pending;
    RecordingHost m_host;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
};

std::vector<std::string> Times(std::size_t count, const std::string& line) {
    return std::vector<std::string>(count, line);
}

// A debug log of so many records and lines that are none.
std::string Mixed(std::size_t records, std::size_t unread) {
    return TestSession::Joined(DebugLog({})) +
           TestSession::Joined(Times(records - 1, DebugLine("10:00:00.000001", "x y"))) +
           TestSession::Joined(Times(unread, "a stack trace"));
}

} // namespace

TEST(LogFacts, TellOfADebugLog) {
    const std::string content =
        TestSession::Joined(DebugLog({"", "a stack trace", "one two", DebugLine("10:00:00.5", "x y"),
                                      DebugLine("11:00:00.250000", "x y", "5/1"), "b stack trace", "c",
                                      "d stack trace", "e stack trace"}));
    const Load load(content, {Dialect::Numbered});
    const LogFacts facts = FactsOf(load.m_doc);
    EXPECT_EQ(facts.bytes, content.size());
    EXPECT_EQ(facts.lines, 10U);
    EXPECT_EQ(facts.records, 5U);
    ASSERT_EQ(facts.refused.size(), 1U);
    EXPECT_EQ(facts.refused[0].reason, "the third word is no time");
    EXPECT_EQ(facts.refused[0].count, 4U);
    ASSERT_EQ(facts.refused[0].first.size(), 3U);
    EXPECT_EQ(facts.refused[0].first[1].number, 7U);
    EXPECT_EQ(facts.refused[0].first[1].text, "b stack trace");
    EXPECT_EQ(facts.format, "debug log");
    EXPECT_EQ(facts.columns, "text behind 1 tab");
    EXPECT_EQ(facts.codePage, "ASCII");
    EXPECT_EQ(facts.from, "Jan 15 08:00:00.000001");
    EXPECT_EQ(facts.to, "Jan 15 11:00:00.250000");
    EXPECT_EQ(facts.pieces, 1U);
    EXPECT_EQ(facts.dialects, CDialects{Dialect::Numbered});
    EXPECT_TRUE(facts.offered.Empty());
}

TEST(LogFacts, TellOfAJASLog) {
    const Load load(
        TestSession::Joined(JASLog({"15 Mär 2024 09:12:03,250 [APP   ] ANNE - [BASE] x y", "at a.b(c:1)"})));
    const LogFacts facts = FactsOf(load.m_doc);
    ASSERT_EQ(facts.refused.size(), 1U);
    EXPECT_EQ(facts.refused[0].reason, "the second word is no month");
    EXPECT_EQ(facts.refused[0].count, 2U);
    EXPECT_EQ(facts.format, "JAS log");
    EXPECT_EQ(facts.columns, "text behind the source");
    EXPECT_EQ(facts.offered, CDialects{Dialect::Months});
    EXPECT_EQ(facts.from, "Jan 15 08:00:00.000000");
    EXPECT_EQ(facts.to, facts.from);
}

TEST(LogFacts, TellTheReasonsOfAFilterApart) {
    const Load load(TestSession::Joined(DebugLog({"a stack trace", DebugLine("10:00:00.5", "x y", "5/1")})),
                    {}, 5);
    const LogFacts facts = FactsOf(load.m_doc);
    ASSERT_EQ(facts.refused.size(), 2U);
    EXPECT_EQ(facts.refused[0].count, 1U);
    EXPECT_EQ(facts.refused[0].first.size(), 1U);
    EXPECT_EQ(facts.refused[1].reason, "of another process");
    EXPECT_EQ(facts.refused[1].first.at(0).number, 1U);
}

TEST(LogFacts, TellTheCodePageOfTheLinesBeyondASCII) {
    const std::string lead = TestSession::Joined(DebugLog({}));
    const std::string utf8 = DebugLine("10:00:00.000001", "Grün\n");
    const std::string other = DebugLine("10:00:00.000001", "Gr\xFCn\n");
    const std::string own = platform::CodePageName();
    EXPECT_EQ(FactsOf(Load(lead).m_doc).codePage, "ASCII");
    EXPECT_EQ(FactsOf(Load(lead + other).m_doc).codePage, own);
#if !defined(_WIN32)
    EXPECT_EQ(own, "Windows-1252");
    EXPECT_EQ(FactsOf(Load(lead + utf8).m_doc).codePage, "UTF-8");
    EXPECT_EQ(FactsOf(Load(lead + utf8 + other).m_doc).codePage, "UTF-8 and Windows-1252, line by line");
#endif
}

TEST(LogFacts, HaveNoSpanWithoutATime) {
    const Load load("--UBE--[1] Started\n--UBE--[2] Ended\n");
    const LogFacts facts = FactsOf(load.m_doc);
    EXPECT_EQ(facts.records, 2U);
    EXPECT_EQ(facts.from, "");
    EXPECT_EQ(facts.to, "");
    EXPECT_EQ(facts.columns, "no text column");
}

TEST(LogFacts, CallMoreThanATenthUnreadMany) {
    EXPECT_FALSE(ManyLinesAreUnread(Load(Mixed(9, 1)).m_doc));
    EXPECT_TRUE(ManyLinesAreUnread(Load(Mixed(17, 2)).m_doc));
    EXPECT_FALSE(ManyLinesAreUnread(Load(Mixed(18, 2)).m_doc));
    EXPECT_FALSE(ManyLinesAreUnread(Load(Mixed(9, 0)).m_doc));
    // Empty lines are no lines with a word, and other processes' lines are not unread.
    EXPECT_FALSE(ManyLinesAreUnread(Load(Mixed(9, 0) + std::string(100, '\n')).m_doc));
    EXPECT_FALSE(ManyLinesAreUnread(Load(Mixed(100, 0), {}, 4120).m_doc));
    EXPECT_FALSE(ManyLinesAreUnread(Load(Mixed(100, 0), {}, 77).m_doc));
}

TEST(LogFacts, CountThePieces) {
    const TestFile one(TestSession::Joined(DebugLog({})));
    const TestFile other(TestSession::Joined(DebugLog({"a stack trace"})));
    AnalysisSettings settings;
    PendingStatement pending;
    RecordingHost host;
    CCarvelotDoc doc(settings, pending, host);
    ASSERT_TRUE(doc.OnOpenPieces({{one.Path()}, {other.Path()}}));
    const LogFacts facts = FactsOf(doc);
    EXPECT_EQ(facts.pieces, 2U);
    EXPECT_EQ(facts.lines, 3U);
    ASSERT_EQ(facts.refused.size(), 1U);
    EXPECT_EQ(facts.refused[0].first.at(0).number, 3U);
}

TEST(LogFacts, AreNoneAheadOfALoad) {
    AnalysisSettings settings;
    PendingStatement pending;
    RecordingHost host;
    const CCarvelotDoc doc(settings, pending, host);
    const LogFacts facts = FactsOf(doc);
    EXPECT_EQ(facts.lines, 0U);
    EXPECT_TRUE(facts.refused.empty());
    EXPECT_FALSE(ManyLinesAreUnread(doc));
}

} // namespace carvelot::test
