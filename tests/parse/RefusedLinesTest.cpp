#include "parse/RefusedLines.h"

#include "sources/MemorySource.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace carvelot::test {

namespace {

// "records noTime noMonth filtered" of a log read in either way, which must tell the same.
std::string Counts(const std::vector<std::string>& lines, std::uint32_t filter = 0) {
    const std::string content = TestSession::Joined(lines);
    std::string texts[2];
    for (const bool plain : {false, true}) {
        AnalysisSettings settings;
        PendingStatement pending;
        RecordingHost host;
        CCarvelotDoc doc(settings, pending, host);
        doc.m_nProcessFilter = filter;
        doc.m_bPlainParse = plain;
        CMemorySource source(content);
        EXPECT_TRUE(doc.LoadFrom(source));
        const RefusedLines& refused = doc.Refused();
        EXPECT_EQ(refused.Count(), refused.noTime + refused.noMonth + refused.filtered);
        for (const std::uint64_t count :
             {std::uint64_t{doc.m_listDetails.Size()}, refused.noTime, refused.noMonth, refused.filtered}) {
            std::string& text = texts[plain ? 1 : 0];
            text.append(text.empty() ? "" : " ").append(std::to_string(count));
        }
    }
    EXPECT_EQ(texts[0], texts[1]);
    return texts[0];
}

// "number text" of those that are kept to look at, of a log read in either way.
std::vector<std::string> Kept(const std::string& content, std::uint32_t filter = 0) {
    std::vector<std::string> kept[2];
    for (const bool plain : {false, true}) {
        AnalysisSettings settings;
        PendingStatement pending;
        RecordingHost host;
        CCarvelotDoc doc(settings, pending, host);
        doc.m_nProcessFilter = filter;
        doc.m_bPlainParse = plain;
        CMemorySource source(content);
        EXPECT_TRUE(doc.LoadFrom(source));
        for (const RefusedLine& line : doc.Refused().first) {
            kept[plain ? 1 : 0].push_back(std::to_string(line.number) + ' ' + line.text);
        }
    }
    EXPECT_EQ(kept[0], kept[1]);
    return kept[0];
}

} // namespace

TEST(RefusedLines, KeepTheFirstThreeOfEachReasonAndWhereTheyStand) {
    const std::string content = TestSession::Joined(
        DebugLog({"", "a stack trace", DebugLine("10:00:00.000001", "x y"), "b stack trace",
                  DebugLine("10:00:00.000001", "x y", "5/1"), "c stack trace", "d stack trace"}));
    const std::vector<std::string> unread{"3 a stack trace", "5 b stack trace", "7 c stack trace"};
    EXPECT_EQ(Kept(content), unread);
    std::vector<std::string> filtered = Kept(content, 4120);
    ASSERT_EQ(filtered.size(), 5U);
    EXPECT_TRUE(filtered[0].starts_with("1 Jan 15")) << filtered[0];
    EXPECT_TRUE(filtered[3].starts_with("6 Jan 15")) << filtered[3];
    filtered.erase(filtered.begin() + 3);
    filtered.erase(filtered.begin());
    EXPECT_EQ(filtered, unread);
}

TEST(RefusedLines, StandWhereAnEditorShowsThem) {
    std::string content;
    for (const std::string& line : JASLog({"", "java.lang.Exception: no such thing", "", "at a.b(c:1)"})) {
        content.append(line).append("\r\n");
    }
    EXPECT_EQ(Kept(content),
              (std::vector<std::string>{"8 java.lang.Exception: no such thing", "10 at a.b(c:1)"}));
}

TEST(RefusedLines, AreCutToWhatAWindowCanShow) {
    const std::string start = "at \xC3\x9C b ";
#ifdef _WIN32
    const std::string bytes = "at \xDC b "; // in the code page
#else
    const std::string& bytes = start;
#endif
    const std::vector<std::string> kept =
        Kept(TestSession::Joined(DebugLog({bytes + std::string(193, 'x'), bytes + std::string(194, 'x')})));
    EXPECT_EQ(kept, (std::vector<std::string>{"2 " + start + std::string(193, 'x'),
                                              "3 " + start + std::string(193, 'x') + "\xE2\x80\xA6"}));
}

TEST(RefusedLines, AreThoseOfADebugLogWhoseThirdWordIsNoTime) {
    EXPECT_EQ(Counts(DebugLog({})), "1 0 0 0");
    EXPECT_EQ(Counts(DebugLog({"a stack trace", DebugLine("10:00:00.000001", "x y"), "at x.y.z here it is",
                               "Jan 15 ten - 1/1 W\tx y"})),
              "2 3 0 0");
}

TEST(RefusedLines, AreNoneThatHoldNoWord) {
    EXPECT_EQ(Counts(DebugLog({"", " ", "      ", ""})), "1 0 0 0");
    EXPECT_EQ(Counts(JASLog({"", " ", "      ", ""})), "6 0 0 0");
}

TEST(RefusedLines, AreNoneThatEndAheadOfWhatTellsThem) {
    // Too few words to be told by are records.
    EXPECT_EQ(Counts(DebugLog({"one", "one two", "one two three"})), "3 1 0 0");
    EXPECT_EQ(Counts(JASLog({"one", "one two"})), "7 0 1 0");
}

TEST(RefusedLines, AreThoseOfAJASLogWhoseSecondWordIsNoMonth) {
    EXPECT_EQ(Counts(JASLog({})), "6 0 0 0");
    EXPECT_EQ(Counts(JASLog({"java.lang.Exception: no such thing", JASLine("10:00:00,000", "ANNE", "x y"),
                             "  at com.x.Y(Y.java:1)", "15 Foo 2024 10:00:00,000 [APP] ANNE - [RUNTIME] x"})),
              "7 0 3 0");
}

TEST(RefusedLines, AreThoseOfOtherProcessesUnderAFilter) {
    const std::vector<std::string> debug =
        DebugLog({DebugLine("10:00:00.000001", "x y", "4120/1"),
                  DebugLine("10:00:00.000002", "x y", "4120/2"), DebugLine("10:00:00.000003", "x y", "5/1"),
                  "a stack trace", "", DebugLine("10:00:00.000004", "x y", "4120/1")});
    EXPECT_EQ(Counts(debug), "5 1 0 0");
    // A line without a time is of no process.
    EXPECT_EQ(Counts(debug, 4120), "3 1 0 2");
    EXPECT_EQ(Counts(debug, 5), "1 1 0 4");
    EXPECT_EQ(Counts(debug, 77), "0 1 0 5");
    // Nothing of a JAS log is of a process.
    EXPECT_EQ(Counts(JASLog({"a stack trace", JASLine("10:00:00,000", "ANNE", "x y"), ""}), 4120), "0 0 1 7");
}

TEST(RefusedLines, AreCountedPieceByPieceOfALineThatIsCut) {
    // 8192 bytes each: the pieces behind the first one hold a word and no time.
    EXPECT_EQ(Counts(DebugLog({DebugLine("10:00:00.000001", "x y z ") + std::string(20000, 'x')})),
              "4 0 0 0");
    std::string words;
    while (words.size() < 20000) {
        words.append("one two three ");
    }
    EXPECT_EQ(Counts(DebugLog({DebugLine("10:00:00.000001", words)})), "2 2 0 0");
}

TEST(RefusedLines, AreThoseOfTheLatestLoad) {
    TestSession session(DebugLog({"a stack trace", "a stack trace"}));
    EXPECT_EQ(session.m_doc.Refused().noTime, 2U);
    session.m_file.Write(TestSession::Joined(DebugLog({"a stack trace"})));
    session.m_doc.OnAnalyze();
    EXPECT_EQ(session.m_doc.Refused().noTime, 1U);
    session.m_file.Write(TestSession::Joined(JASLog({"a stack trace", "a stack trace", "a stack trace"})));
    session.m_doc.OnAnalyze();
    EXPECT_EQ(session.m_doc.Refused().noMonth, 3U);
    EXPECT_EQ(session.m_doc.Refused().Count(), 3U);
    session.m_doc.ClearSession();
    EXPECT_EQ(session.m_doc.Refused().Count(), 0U);
}

} // namespace carvelot::test
