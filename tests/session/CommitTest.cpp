#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

using Indices = std::vector<std::uint32_t>;

} // namespace

TEST(AddDetail, FindsNoGapOfExactlyTheThreshold) {
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000000", "a b"), DebugLine("10:00:01.000000", "c d")}));
    EXPECT_EQ(session.Kind(1), LOG_NONE);
    EXPECT_TRUE(session.m_doc.m_listGaps.empty());
    EXPECT_EQ(Numbers(session.Thread(4120, 3388).m_listDetails), Indices{2});
}

TEST(AddDetail, MarksBothSidesOfAGapAndListsTheSecond) {
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000000", "a b"), DebugLine("10:00:01.000001", "c d")}));
    EXPECT_EQ(session.Kind(1), LOG_GAP);
    EXPECT_EQ(session.Kind(2), LOG_GAP);
    EXPECT_EQ(session.Record(1).m_fGap, 0.0F);
    EXPECT_EQ(session.Record(2).m_fGap, 1.000001F);
    EXPECT_EQ(Numbers(session.m_doc.m_listGaps), Indices{2});
    EXPECT_EQ(Numbers(session.Thread(4120, 3388).m_listDetails), (Indices{1, 2}));
}

TEST(AddDetail, LetsARecordBehindAGapKeepItsKind) {
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000000", "On x"), DebugLine("10:00:02.000000", "On y")}));
    EXPECT_EQ(session.Kind(1), LOG_ON);
    EXPECT_EQ(session.Kind(2), LOG_ON);
    EXPECT_EQ(session.Record(2).m_fGap, 2.0F);
}

TEST(AddDetail, KeepsOnlyTheLatestOfLinesWithoutInterest) {
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000000", "a b"), DebugLine("10:00:00.000001", "c d"),
                  DebugLine("10:00:00.000002", "e f")}));
    EXPECT_EQ(Numbers(session.Thread(4120, 3388).m_listDetails), Indices{3});
    EXPECT_EQ(session.Count(), 4U); // the session keeps them all
}

TEST(AddDetail, MeasuresEachThreadByItself) {
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000000", "On x", "1/10"), DebugLine("10:00:05.000000", "On y", "1/11"),
                  DebugLine("10:00:05.500000", "On z", "1/11")}));
    EXPECT_TRUE(session.m_doc.m_listGaps.empty());
}

TEST(AddDetail, KnowsNoGapBehindARecordWithoutATime) {
    const TestSession session(
        DebugLog({DebugLine("00:00:00.000000", "a b"), DebugLine("10:00:00.000000", "c d")}));
    EXPECT_TRUE(session.m_doc.m_listGaps.empty());
    // Nor is the record without a time dropped.
    EXPECT_EQ(Numbers(session.Thread(4120, 3388).m_listDetails), (Indices{1, 2}));
}

TEST(AddDetail, ShowsOneHugeGapAcrossMidnight) {
    const TestSession session(
        DebugLog({DebugLine("23:59:59.000000", "On x"), DebugLine("00:00:00.000001", "On y")}));
    EXPECT_GT(session.Record(2).m_fGap, 1.8e13F);
}

TEST(AddDetail, TakesAStepBackAcross0ForOne) {
    // A negative hour is a time shortly below 2^64: the next one is smaller, whatever its distance.
    AnalysisSettings settings;
    settings.m_fThreshold = 46799;
    const TestSession session(
        DebugLog({DebugLine("-1:00:00.000000", "On x"), DebugLine("00:02:03.000000", "On y")}), settings);
    EXPECT_EQ(session.Record(2).m_fGap, 50523.0F);
    EXPECT_EQ(Numbers(session.m_doc.m_listGaps), Indices{2});
}

TEST(AddDetail, TakesEveryMeasuredGapUnderAThresholdOf0) {
    AnalysisSettings settings;
    settings.m_fThreshold = 0;
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000001", "On x"), DebugLine("10:00:00.000002", "On y"),
                  DebugLine("10:00:00.000002", "On z")}),
        settings);
    EXPECT_EQ(Numbers(session.m_doc.m_listGaps), Indices{2});
}

TEST(CommitDetail, FilesProcessesAndThreadsInOrderOfFirstAppearance) {
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000001", "On x", "9/2"), DebugLine("10:00:00.000002", "On y", "7/1"),
                  DebugLine("10:00:00.000003", "On z", "9/1")}));
    ASSERT_EQ(session.m_doc.m_listProcesses.size(), 3U);
    EXPECT_EQ(session.m_doc.m_listProcesses[1]->m_nProcessID, 9U);
    EXPECT_EQ(session.m_doc.m_listProcesses[2]->m_nProcessID, 7U);
    const CProcess& nine = session.Process(9);
    ASSERT_EQ(nine.m_listThreads.size(), 2U);
    EXPECT_EQ(nine.m_listThreads[0]->m_nThreadID, 2U);
    EXPECT_EQ(nine.m_nStartTime, LogTime(10, 0, 0, 1));
    EXPECT_EQ(nine.m_nEndTime, LogTime(10, 0, 0, 3));
    EXPECT_EQ(nine.m_listThreads[1]->m_nStartTime, LogTime(10, 0, 0, 3));
}

TEST(CommitDetail, EndsAProcessAtItsLargestTimeOfDay) {
    const TestSession session(
        DebugLog({DebugLine("23:00:00.000000", "On x", "9/1"), DebugLine("23:59:00.000000", "On y", "9/2"),
                  DebugLine("00:01:00.000000", "On z", "9/1")}));
    EXPECT_EQ(session.Thread(9, 1).m_nEndTime, LogTime(0, 1, 0, 0));
    EXPECT_EQ(session.Process(9).m_nEndTime, LogTime(23, 59, 0, 0));
}

TEST(CommitDetail, ListsErrorsAndReturnCodesOfProcessAndThread) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000001", "ERROR x"),
        DebugLine("10:00:00.000002", "JDB9900401 - x"),
        DebugLine("10:00:00.000003", "Return value is 2 for X"),
        DebugLine("10:00:00.000004", "Return value is 0 for X"),
        DebugLine("10:00:00.000005", "Return value is 1 for X", "4120/7"),
    }));
    EXPECT_EQ(Numbers(session.Process(4120).m_listErrors), (Indices{1, 2, 3, 5}));
    EXPECT_EQ(Numbers(session.Thread(4120, 3388).m_listErrors), (Indices{1, 2, 3}));
    EXPECT_EQ(Numbers(session.Thread(4120, 7).m_listErrors), Indices{5});
}

TEST(CommitDetail, MeasuresAStatementAgainAtEveryEndBehindIt) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000000", "SELECT A FROM T"),
        DebugLine("10:00:02.000000", "Exiting DBPerformRequest"),
        DebugLine("10:00:03.000000", "Exiting DBPerformRequest"),
    }));
    EXPECT_EQ(session.Record(1).m_fDuration, 3.0F);
    EXPECT_EQ(Numbers(session.Process(4120).m_pSQLAnalysis.m_listLongTasks), (Indices{1, 1}));
    EXPECT_EQ(Numbers(session.Thread(4120, 3388).m_pSQLAnalysis.m_listLongTasks), (Indices{1, 1}));
}

TEST(CommitDetail, ListsTheNewestLongStatementFirst) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000000", "SELECT A FROM T"),
        DebugLine("10:00:02.000000", "Exiting DBPerformRequest"),
        DebugLine("10:00:02.000001", "SELECT B FROM T"),
        DebugLine("10:00:05.000000", "Exiting DBPerformRequest"),
    }));
    EXPECT_EQ(Numbers(session.Process(4120).m_pSQLAnalysis.m_listLongTasks), (Indices{3, 1}));
}

TEST(CommitDetail, TakesNoStatementForLongWithoutAnEnd) {
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000000", "Exiting DBPerformRequest"),
                  DebugLine("10:00:00.000001", "SELECT A FROM T"), DebugLine("10:00:09.000000", "On x")}));
    EXPECT_EQ(session.Record(2).m_fDuration, 0.0F);
    EXPECT_TRUE(session.Process(4120).m_pSQLAnalysis.m_listLongTasks.empty());
}

TEST(CommitDetail, MeasuresNothingFromARecordAtMidnight) {
    const TestSession session(DebugLog({DebugLine("00:00:00.000000", "SELECT A FROM T"),
                                        DebugLine("00:00:09.000000", "Exiting DBPerformRequest")}));
    EXPECT_EQ(session.Record(1).m_fDuration, 0.0F);
}

TEST(CommitDetail, KeepsCacheRecordsInTheTreeWhenTheirAnalysisIsOff) {
    AnalysisSettings settings;
    settings.m_bCacheAnalysis = false;
    const TestSession session(DebugLog({DebugLine("10:00:00.000001", "Created new cache - hCache:[1]"),
                                        DebugLine("10:00:00.000002", "hCache:[1] Nm:[x]")}),
                              settings);
    EXPECT_TRUE(session.Process(4120).m_pCacheAnalysis.m_caches.empty());
    EXPECT_EQ(Numbers(session.Thread(4120, 3388).m_listDetails), (Indices{1, 2}));
    EXPECT_EQ(session.Kind(1), LOG_CACHE);
}

TEST(CommitToUser, EndsAStatementAndAnObjectCallAtTheUsersNextLine) {
    const TestSession session(JASLog({
        JASLine("08:00:01,000", "A", "SELECT X FROM F0101"),
        JASLine("08:00:02,000", "B", "something else"),
        JASLine("08:00:04,000", "A", "Object Called: F4211.F4211_CURRENCY"),
        JASLine("08:00:04,500", "A", "nothing"),
        JASLine("08:00:09,000", "A", "nothing"),
    }));
    EXPECT_EQ(session.Record(6).m_fDuration, 3.0F);
    EXPECT_EQ(session.Record(8).m_fDuration, 0.5F);
    const CJASUser& user = session.User("A");
    EXPECT_EQ(Numbers(user.m_pSQLAnalysis.m_listLongTasks), Indices{6});
    EXPECT_TRUE(user.m_pBSFNAnalysis.m_listLongTasks.empty());
    EXPECT_EQ(Numbers(user.m_listDetails), (Indices{6, 8, 9, 10})); // no record is dropped here
    ASSERT_EQ(user.m_pBSFNAnalysis.m_functions.size(), 1U);
    EXPECT_EQ(user.m_pBSFNAnalysis.m_functions[0].m_strName, "F4211_CURRENCY");
    EXPECT_EQ(user.m_pBSFNAnalysis.m_functions[0].m_totalTime, 500'000U);
}

TEST(CommitToUser, ListsTheNewestWarningFirst) {
    const TestSession session(
        JASLog({JASLine("08:00:00,001", "A", "one", "WARN  "), JASLine("08:00:00,002", "A", "two", "SEVERE"),
                JASLine("08:00:00,003", "A", "ERROR three")}));
    EXPECT_EQ(Numbers(session.User("A").m_listErrors), (Indices{7, 6}));
    // As records of process 0 only the ERROR line counts.
    EXPECT_EQ(Numbers(session.Process(0).m_listErrors), Indices{8});
}

TEST(CommitToUser, FilesEveryRecordUnderProcess0AndThread0Too) {
    const TestSession session(
        JASLog({JASLine("08:00:05,000", "A", "x y"), JASLine("08:00:08,000", "B", "x y")}));
    ASSERT_EQ(session.m_doc.m_listProcesses.size(), 1U);
    ASSERT_EQ(session.Process(0).m_listThreads.size(), 1U);
    // A gap is a silence of the whole log.
    EXPECT_EQ(Numbers(session.m_doc.m_listGaps), (Indices{6, 7}));
}

} // namespace carvelot::test
