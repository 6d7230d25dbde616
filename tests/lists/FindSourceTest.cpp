#include "lists/FindSource.h"
#include "support/Sanitizer.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace carvelot::test {

namespace {

std::string Row(const CFindSource& source, std::size_t row) {
    return source.Text(row, 0) + "|" + source.Text(row, 1) + "|" + source.Text(row, 2);
}

} // namespace

TEST(FindSource, MakesItsTextsFromTheRecordsWhileTheyLive) {
    const TestSession session(DebugLog({DebugLine("10:00:00.000001", "SELECT A FROM B", "5/6")}));
    CFindSource source;
    source.Show(session.m_doc, {RecordIndex{1}, RecordIndex{0}});
    ASSERT_EQ(source.RowCount(), 2U);
    EXPECT_EQ(Row(source, 0), "5|6|SELECT A FROM B");
    EXPECT_EQ(Row(source, 1), "1|1|Entering JDB_OpenTable");
    EXPECT_EQ(source.Session(), &session.m_doc);
    EXPECT_EQ(source.Record(1), RecordIndex{0});
}

TEST(FindSource, KeepsItsTextsWhenTheSessionGoesAndLeadsNowhere) {
    CFindSource source;
    {
        const TestSession session(DebugLog({DebugLine("10:00:00.000001", "SELECT A FROM B", "5/6")}));
        source.Show(session.m_doc, {RecordIndex{1}, RecordIndex{0}});
        source.LetGo(session.m_doc);
    }
    ASSERT_EQ(source.RowCount(), 2U);
    EXPECT_EQ(Row(source, 0), "5|6|SELECT A FROM B");
    EXPECT_EQ(Row(source, 1), "1|1|Entering JDB_OpenTable");
    EXPECT_EQ(source.Session(), nullptr);
}

TEST(FindSource, CaresOnlyForItsOwnSession) {
    const TestSession session(DebugLog({}));
    const TestSession other(DebugLog({}));
    CFindSource source;
    source.Show(session.m_doc, {RecordIndex{0}});
    source.LetGo(other.m_doc);
    EXPECT_EQ(source.Session(), &session.m_doc);
}

TEST(FindSource, LeadsNowhereAfterTheSessionWasReadAgain) {
    TestSession session(DebugLog({}));
    CFindSource source;
    source.Show(session.m_doc, {RecordIndex{0}});
    ASSERT_TRUE(session.m_doc.LoadLog());
    EXPECT_EQ(source.Session(), nullptr);
    EXPECT_EQ(source.RowCount(), 1U);
    EXPECT_EQ(source.Text(0, 2), "");
}

TEST(FindSource, IsEmptyAfterClear) {
    const TestSession session(DebugLog({}));
    CFindSource source;
    source.Show(session.m_doc, {RecordIndex{0}});
    source.LetGo(session.m_doc);
    source.Clear();
    EXPECT_EQ(source.RowCount(), 0U);
}

TEST(FindSource, RowsOfSeveralThreadsAndUsersKeepTheirOwn) {
    CFindSource source;
    {
        const TestSession session(DebugLog({DebugLine("10:00:00.000001", "SELECT A FROM B", "5/6"),
                                            DebugLine("10:00:00.000002", "", "5/7"),
                                            DebugLine("10:00:00.000003", "SELECT C FROM D", "5/6")}));
        source.Show(session.m_doc, {RecordIndex{0}, RecordIndex{1}, RecordIndex{2}, RecordIndex{3}});
        source.LetGo(session.m_doc);
    }
    ASSERT_EQ(source.RowCount(), 4U);
    EXPECT_EQ(Row(source, 0), "1|1|Entering JDB_OpenTable");
    EXPECT_EQ(Row(source, 1), "5|6|SELECT A FROM B");
    EXPECT_EQ(Row(source, 2), "5|7|");
    EXPECT_EQ(Row(source, 3), "5|6|SELECT C FROM D");
    {
        const TestSession session(JASLog({JASLine("09:00:01,000", "ANNIKA", "first", "WARN  "),
                                          JASLine("09:00:02,000", "TOMAS", "second", "WARN  ")}));
        source.Show(session.m_doc, {RecordIndex{kJASLead}, RecordIndex{kJASLead + 1}});
        source.LetGo(session.m_doc);
    }
    ASSERT_EQ(source.RowCount(), 2U);
    EXPECT_EQ(Row(source, 0), "ANNIKA|0|first");
    EXPECT_EQ(Row(source, 1), "TOMAS|0|second");
}

#ifdef __GLIBC__
// Millions of hits are hundreds of megabytes: with the rows their memory goes.
TEST(FindSource, GivesItsMemoryBack) {
    if (kSanitized) {
        GTEST_SKIP() << "a sanitizer holds freed memory back";
    }
    const TestSession session(DebugLog({DebugLine("10:00:00.000001", "SELECT A FROM B", "5/6")}));
    const auto held = [] {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    constexpr std::size_t kRows = 200'000;
    CFindSource source;
    const std::size_t before = held();
    source.Show(session.m_doc, std::vector<RecordIndex>(kRows, RecordIndex{1}));
    EXPECT_GT(held(), before + kRows * sizeof(RecordIndex) - 1);
    source.Clear();
    EXPECT_LT(held(), before + 10'000);
    source.Show(session.m_doc, std::vector<RecordIndex>(kRows, RecordIndex{1}));
    source.LetGo(session.m_doc);
    EXPECT_GT(held(), before + kRows * 15);
    EXPECT_LT(held(), before + kRows * 30) << "a message of 15 bytes, where it ends, whose it is";
    source.Clear();
    EXPECT_LT(held(), before + 10'000);
}
#endif

} // namespace carvelot::test
