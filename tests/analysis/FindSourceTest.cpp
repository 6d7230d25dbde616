#include "analysis/panes/FindSource.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

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

} // namespace carvelot::test
