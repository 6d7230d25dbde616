#include "analysis/CacheAnalysis.h"

#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

using Strings = std::vector<std::string>;

// A log of cache lines of process 7, a microsecond apart, each on a thread of its own: the pending operation
// belongs to the process.
TestSession CacheSession(std::initializer_list<const char*> texts) {
    std::vector<std::string> lines = DebugLog({});
    int number = 0;
    for (const char* text : texts) {
        ++number;
        lines.push_back(
            DebugLine("10:00:00.00000" + std::to_string(number), text, "7/" + std::to_string(number)));
    }
    return TestSession(lines);
}

const CCacheAnalysis& Caches(const TestSession& session) { return session.Process(7).m_pCacheAnalysis; }

Strings Operations(const TestSession& session, std::size_t cache) {
    Strings texts;
    for (const auto& operation : Caches(session).m_caches.at(cache).m_operations) {
        texts.push_back(CCacheAnalysis::OperationText(session.m_doc.m_listDetails, operation).substr(15) +
                        " " + std::to_string(operation.Image()));
    }
    return texts;
}

} // namespace

TEST(CacheAddLine, ConfirmsANewCacheWithoutRegardToCase) {
    const TestSession session =
        CacheSession({"Entering jdeCacheInit - Name:[WorkFile]", "Created new cache - hCache:[1A]",
                      "hCache:[1a] Nm:[9WorkFile] Recs:0"});
    ASSERT_EQ(Caches(session).m_caches.size(), 1U);
    const auto& cache = Caches(session).m_caches[0];
    EXPECT_EQ(cache.m_strName, "WorkFile");
    EXPECT_EQ(cache.m_strHandle, "1A");
    EXPECT_EQ(cache.m_strInstance, "9WorkFile");
    EXPECT_EQ(cache.m_processId, 7U);
    EXPECT_EQ(cache.m_instanceCount, 1);
    ASSERT_EQ(cache.m_operations.size(), 1U);
    // The time is that of the line that announced it.
    EXPECT_EQ(CCacheAnalysis::OperationText(session.m_doc.m_listDetails, cache.m_operations[0]),
              "10:00:00.000002    Cache Init (New)");
    EXPECT_EQ(CCacheAnalysis::CacheText(cache), "WorkFile Handle:[1A] Instance:[9WorkFile]");
}

TEST(CacheAddLine, NamesACacheThatItMeetsFirstByItsHandle) {
    const TestSession session =
        CacheSession({"Found existing cache, total references:[2]", "hCache:[77] Nm:[x]"});
    const auto& cache = Caches(session).m_caches.at(0);
    EXPECT_EQ(CCacheAnalysis::CacheText(cache), "77 Handle:[77] Instance:[x]");
    EXPECT_EQ(Operations(session, 0), Strings{"    Cache Init (Existing) 4"});
}

TEST(CacheAddLine, RecordsEachOperationWithItsTextAndImage) {
    const TestSession session = CacheSession({
        "jdeCacheAdd",
        "hCache:[1] Nm:[x]",
        "jdeCacheDelete",
        "hCache:[1] Nm:[x]",
        "jdeCacheDeleteAll",
        "hCache:[1] Nm:[x]",
        "jdeCacheUpdate",
        "hCache:[1] Nm:[x]",
        "jdeCacheTerminate",
        "hCache:[1] Nm:[x]",
    });
    EXPECT_EQ(Operations(session, 0),
              (Strings{"    Cache Add 1", "    Cache Delete 2", "    Cache Delete All 2",
                       "    Cache Terminate 10"})); // an update is never recorded
    EXPECT_EQ(Caches(session).m_caches[0].m_instanceCount, 0);
    const TestSession cursors = CacheSession({
        "Open Cursor Success hCursor:[c1]",
        "hCache:[1] Nm:[x]",
        "jdeCacheResetCursor hCursor:[c1]",
        "hCache:[1] Nm:[x]",
        "jdeCacheFetch hCursor:[c1]",
        "hCache:[1] Nm:[x]",
        "jdeCacheCloseCursor hCursor:[c1]",
        "hCache:[1] Nm:[x]",
        "jdeCacheTerminateAll hCache:[1] Nm:[x]",
    });
    EXPECT_EQ(Operations(cursors, 0), (Strings{"    Open Cursor [c1] 9", "    Reset Cursor [c1] 8",
                                               "    Cache Fetch. Cursor [c1] 5", "    Close Cursor [c1] 8"}));
    const auto& cursor = Caches(cursors).m_caches[0].m_cursors.at(0);
    EXPECT_EQ(Number(cursor.m_pOpen), 1U);
    EXPECT_EQ(Number(cursor.m_pClose), 7U); // the reset closed nothing
}

TEST(CacheAddLine, TakesAFetchThatIsNotConfirmedForAFailedOne) {
    const TestSession session = CacheSession({
        "Open Cursor Success hCursor:[c1]",
        "hCache:[1] Nm:[x]",
        "Open Cursor Success hCursor:[c1]",
        "hCache:[2] Nm:[y]",
        "jdeCacheFetch hCursor:[c1]",
        "jdeCacheAdd",
        "hCache:[1] Nm:[x]",
        "jdeCacheFetch hCursor:[none]",
        "jdeCacheAdd",
    });
    // On the cache of the newest open cursor with that handle; the cache line is then read for its own words.
    EXPECT_EQ(Operations(session, 1),
              (Strings{"    Open Cursor [c1] 9", "    Fetch Failed.  Cursor [c1] 5"}));
    EXPECT_EQ(Operations(session, 0), (Strings{"    Open Cursor [c1] 9", "    Cache Add 1"}));
}

TEST(CacheAddLine, LosesAnyOtherOperationThatIsNotConfirmed) {
    const TestSession session = CacheSession({"jdeCacheAdd", "jdeCacheCommit", "hCache:[1] Nm:[x]"});
    EXPECT_TRUE(Caches(session).m_caches.empty()); // nothing was pending any more
}

TEST(CacheAddLine, ClosesTheOlderOfTwoCursorsWithOneHandleTwice) {
    const TestSession session = CacheSession({
        "Open Cursor Success hCursor:[c]",
        "hCache:[1] Nm:[x]",
        "Open Cursor Success hCursor:[c]",
        "hCache:[1] Nm:[x]",
        "jdeCacheCloseCursor hCursor:[c]",
        "hCache:[1] Nm:[x]",
        "jdeCacheCloseCursor hCursor:[c]",
        "hCache:[1] Nm:[x]",
    });
    const auto& cursors = Caches(session).m_caches.at(0).m_cursors;
    ASSERT_EQ(cursors.size(), 2U);
    EXPECT_EQ(Number(cursors[0].m_pClose), 7U);
    EXPECT_EQ(cursors[1].m_pClose, kNoRecord);
}

TEST(CacheAddLine, ClosesACursorOfItsOwnCacheWhereAnotherHasOneWithTheSameHandle) {
    const TestSession session = CacheSession({
        "Open Cursor Success hCursor:[c]",
        "hCache:[1] Nm:[x]",
        "Open Cursor Success hCursor:[c]",
        "hCache:[2] Nm:[y]",
        "Open Cursor Success hCursor:[c]",
        "hCache:[2] Nm:[y]",
        "jdeCacheCloseCursor hCursor:[c]",
        "hCache:[2] Nm:[y]",
    });
    const auto& first = Caches(session).m_caches.at(0).m_cursors;
    const auto& second = Caches(session).m_caches.at(1).m_cursors;
    ASSERT_EQ(first.size(), 1U);
    ASSERT_EQ(second.size(), 2U);
    EXPECT_EQ(first[0].m_pClose, kNoRecord);
    EXPECT_EQ(Number(second[0].m_pClose), 7U);
    EXPECT_EQ(second[1].m_pClose, kNoRecord);
}

TEST(CacheAddLine, LetsTheLaterWordsOfALineDecide) {
    const TestSession session = CacheSession({"jdeCacheFetch jdeCacheAdd hCursor:[c9]", "hCache:[1] Nm:[x]",
                                              "jdeCacheFetch", "hCache:[1] Nm:[x]"});
    // The add is what is pending, but the cursor was read. A fetch without "hCursor:[" reads from column 8
    // on, finds no bracket, and shows none.
    EXPECT_EQ(Operations(session, 0), (Strings{"    Cache Add 1", "    Cache Fetch. Cursor [] 5"}));
}

TEST(CacheAddLine, ReadsAMissingHandleFromColumn7On) {
    const TestSession session = CacheSession({"jdeCacheAdd", "1234567handle] jdeCache Nm:[x]"});
    EXPECT_EQ(Caches(session).m_caches.at(0).m_strHandle, "handle");
}

TEST(CacheAddLine, LandsOnTheNewestCacheOfAHandleAlsoAfterItsEnd) {
    const TestSession session = CacheSession({
        "Created new cache - hCache:[1]",
        "hCache:[1] Nm:[x]",
        "jdeCacheTerminate",
        "hCache:[1] Nm:[x]",
        "jdeCacheAdd",
        "hCache:[1] Nm:[x]",
        "Created new cache - hCache:[1]",
        "hCache:[1] Nm:[y]",
    });
    ASSERT_EQ(Caches(session).m_caches.size(), 2U);
    EXPECT_EQ(Operations(session, 0),
              (Strings{"    Cache Init (New) 4", "    Cache Terminate 10", "    Cache Add 1"}));
    EXPECT_EQ(Operations(session, 1), Strings{"    Cache Init (New) 4"});
    EXPECT_EQ(Caches(session).m_caches[1].m_strInstance, "y");
}

} // namespace carvelot::test
