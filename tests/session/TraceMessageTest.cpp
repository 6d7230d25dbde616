#include "session/TraceMessage.h"

#include "session/CarvelotDoc.h"
#include "support/FileHelper.h"
#include "support/TestFolder.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <regex>

namespace carvelot {
namespace {

using test::TestFolder;

TEST(TraceMessage, TheLineHasTheGrammarOfTheDebugLog) {
    const platform::LocalTime time{2025, 2, 2, 3, 4, 5, 678};
    EXPECT_EQ(TraceLine(TraceStamp(time), 1234, 5678, "hello"),
              "Feb 02 03:04:05.678000 - 1234/5678 [CARVELOT MESSAGE] - \t[CARVELOT MESSAGE]hello\n");
}

TEST(TraceMessage, MonthsAreTheTwelveEnglishThreeLetterNames) {
    const char* const kNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    for (int month = 1; month <= 12; ++month) {
        EXPECT_EQ(TraceStamp({2025, month, 31, 23, 59, 58, 7}),
                  std::string(kNames[month - 1]) + " 31 23:59:58.007000");
    }
}

TEST(TraceMessage, AnEmptyTextStillWritesItsLine) {
    EXPECT_EQ(TraceLine("Feb 02 03:04:05.678000", 1, 2, ""),
              "Feb 02 03:04:05.678000 - 1/2 [CARVELOT MESSAGE] - \t[CARVELOT MESSAGE]\n");
}

TEST(TraceMessage, NumbersOfThreadsPrintSigned) {
    EXPECT_NE(
        TraceLine("S", 18753, static_cast<std::uint32_t>(-167733552), "x").find(" - 18753/-167733552 ["),
        std::string::npos);
}

TEST(TraceMessage, TheTextGoesThroughTheSystemsCodePage) {
#ifdef _WIN32
    EXPECT_EQ(TraceLine("S", 1, 2, "Grün"), "S - 1/2 [CARVELOT MESSAGE] - \t[CARVELOT MESSAGE]Gr\xFCn\n");
#else
    EXPECT_EQ(TraceLine("S", 1, 2, "Grün"), "S - 1/2 [CARVELOT MESSAGE] - \t[CARVELOT MESSAGE]Grün\n");
#endif
}

TEST(TraceMessage, LineBreaksOfTheTextGoIntoTheLogAsTheyAre) {
    EXPECT_TRUE(TraceLine("S", 1, 2, "one\r\ntwo\nthree").ends_with("MESSAGE]one\r\ntwo\nthree\n"));
}

TEST(TraceMessage, ALogThatCannotBeOpenedIsReported) {
    const TestFolder folder;
    CTraceMessage message;
    EXPECT_FALSE(message.Open(folder.Path()));
    EXPECT_FALSE(message.Open(folder.Path("missing/jdedebug.log")));
}

TEST(TraceMessage, OpeningAloneChangesNothing) {
    const TestFolder folder;
    const std::string log = folder.Write("log", "before\n");
    {
        CTraceMessage message;
        ASSERT_TRUE(message.Open(log));
    }
    EXPECT_EQ(folder.Read("log"), "before\n");
}

TEST(TraceMessage, TheLineGoesToTheEndOfALogThatAnotherProcessWritesMeanwhile) {
    const TestFolder folder;
    const std::string log = folder.Write("log", "");
    test::FileHelper helper(log);
    ASSERT_TRUE(helper.Do("open"));
    CTraceMessage message;
    ASSERT_TRUE(message.Open(log));
    ASSERT_TRUE(helper.Do("append first"));
    message.Write(1234, 5678, "hello");
    ASSERT_TRUE(helper.Do("append last"));
    const std::string content = folder.Read("log");
    EXPECT_TRUE(std::regex_match(
        content,
        std::regex("first\n[A-Z][a-z]{2} [0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}000 - 1234/5678 "
                   "\\[CARVELOT MESSAGE\\] - \t\\[CARVELOT MESSAGE\\]hello\nlast\n")))
        << content;
}

TEST(TraceMessage, ItComesBackAsAMessageOfItsThreadAfterAnalyze) {
    const TestFolder folder;
    const std::string log =
        folder.Write("log", "Feb 02 03:04:05.100000 - 1234/5678 WRK:Call Object\tEntering JDB_InitUser\n"
                            "Feb 02 03:04:05.200000 - 1234/9999 WRK:Call Object\tEntering JDB_FreeUser\n");
    AnalysisSettings settings;
    PendingStatement pending;
    test::RecordingHost host;
    CCarvelotDoc session(settings, pending, host);
    ASSERT_TRUE(session.OnOpenDocument(log));
    EXPECT_EQ(session.m_listDetails.Size(), 2U);

    CTraceMessage message;
    ASSERT_TRUE(message.Open(log));
    message.Write(1234, 5678, "hello");
    EXPECT_EQ(session.m_listDetails.Size(), 2U) << "the session in memory stays as it is";
    session.OnAnalyze();
    ASSERT_EQ(session.m_listDetails.Size(), 3U);
    const CLogDetail detail = session.m_listDetails[RecordIndex{2}];
    EXPECT_EQ(detail.m_nKind, LOG_MESSAGE);
    EXPECT_EQ(detail.m_strText, "[CARVELOT MESSAGE]hello");
    EXPECT_EQ(detail.m_nProcessID, 1234U);
    EXPECT_EQ(detail.m_nThreadID, 5678U);
}

} // namespace
} // namespace carvelot
