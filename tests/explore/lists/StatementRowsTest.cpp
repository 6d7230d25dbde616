#include "explore/lists/StatementRows.h"

#include "explore/lists/ExploredSource.h"
#include "explore/lists/ListTexts.h"
#include "explore/lists/ListedRows.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

constexpr const char* kOther = "4120/77";

// Three runs of one shape, by two functions and by nobody, and one of another shape.
Texts Statements() {
    return DebugLog({
        At(0, CallText("Alpha", 1)),
        At(1, "SELECT A FROM T WHERE B = 1"),
        At(3, kSqlDone),
        At(4, ReturnText("Alpha", 1)),
        At(5, CallText("Beta", 1), kOther),
        At(6, "SELECT A  FROM T WHERE B = 22", kOther),
        At(7, kSqlDone, kOther),
        At(8, ReturnText("Beta", 1), kOther),
        At(9, "SELECT A FROM T WHERE B = 3", kOther),
        At(13, kSqlDone, kOther),
        At(14, "UPDATE U SET C = 'x'", kOther),
        At(15, kSqlDone, kOther),
    });
}

Texts ShapeTexts(const Listed& log) {
    CExploredSource<ShapeRow> source;
    source.Show(log.explored, MakeShapeRows(log.scope));
    return RowTexts(source, ShapeRow::Columns().size());
}

Texts ExecutionTexts(const Listed& log, std::vector<ExecutionRow> rows) {
    CExploredSource<ExecutionRow> source;
    source.Show(log.explored, std::move(rows));
    return RowTexts(source, ExecutionRow::Columns().size());
}

ShapeRuns WorstRuns(const Listed& log) { return {log.explored, log.scope, log.scope.shapes.front().shape}; }

} // namespace

TEST(StatementRows, ShapesShowTheirNumbersAndWhoRanThemMostTheLargestTotalFirst) {
    EXPECT_EQ(ShapeTexts(Listed(Statements())),
              (Texts{"7.000000|3|4.000000|4.000000|F  Alpha|SELECT A FROM T WHERE B = ?",
                     "1.000000|1|1.000000|1.000000|(top)|UPDATE U SET C = ?"}));
}

TEST(StatementRows, ShapesAreThoseOfTheRange) {
    // The clock begins with the log's first line, two hours ahead of second 0.
    constexpr std::int64_t first = 7'199'999'999;
    const Listed log(Statements(), {first + 6'500'000, first + 11'000'000});
    EXPECT_EQ(ShapeTexts(log), (Texts{"2.500000|2|2.000000|2.000000|F  Beta|SELECT A FROM T WHERE B = ?"}));
    EXPECT_EQ(ExecutionTexts(log, WorstRuns(log).m_listExecutions),
              (Texts{"10:00:06.000000|4120/77|0.500000|F  Beta|SELECT A  FROM T WHERE B = 22",
                     "10:00:09.000000|4120/77|2.000000|(top)|SELECT A FROM T WHERE B = 3"}));
}

TEST(StatementRows, BarsAreLongAsTheirShareOfTheLargest) {
    const Listed log(Statements());
    const std::vector<ShapeRow> shapes = MakeShapeRows(log.scope);
    EXPECT_DOUBLE_EQ(shapes[0].m_fShare, 1);
    EXPECT_DOUBLE_EQ(shapes[1].m_fShare, 1.0 / 7);
    CExploredSource<ShapeRow> source;
    source.Show(log.explored, shapes);
    EXPECT_DOUBLE_EQ(source.Share(1, ShapeRow::TOTAL), 1.0 / 7);
    EXPECT_DOUBLE_EQ(source.Share(1, ShapeRow::COUNT), 0);
    const ShapeRuns runs = WorstRuns(log);
    EXPECT_FLOAT_EQ(runs.m_listExecutions[0].m_fShare, 0.5F);
    EXPECT_FLOAT_EQ(runs.m_listExecutions[2].m_fShare, 1);
    EXPECT_DOUBLE_EQ(runs.m_listCallers[1].m_fShare, 0.5);
}

TEST(StatementRows, BarsOfStatementsThatTookNoTimeAreNone) {
    const Listed log(DebugLog({At(0, "SELECT A FROM T")}));
    EXPECT_DOUBLE_EQ(MakeShapeRows(log.scope).front().m_fShare, 0);
    EXPECT_FLOAT_EQ(WorstRuns(log).m_listExecutions.front().m_fShare, 0);
}

TEST(StatementRows, ExecutionsOfAShapeStandByTimeWithWhoRanThem) {
    const Listed log(Statements());
    EXPECT_EQ(ExecutionTexts(log, WorstRuns(log).m_listExecutions),
              (Texts{"10:00:01.000000|4120/3388|2.000000|F  Alpha|SELECT A FROM T WHERE B = 1",
                     "10:00:06.000000|4120/77|1.000000|F  Beta|SELECT A  FROM T WHERE B = 22",
                     "10:00:09.000000|4120/77|4.000000|(top)|SELECT A FROM T WHERE B = 3"}));
}

TEST(StatementRows, ExecutionsOfStreamsThatWereWrittenOutOfOrderStandByTime) {
    const Listed log(DebugLog({
        At(5, "SELECT A FROM T WHERE B = 5"),
        At(3, "SELECT A FROM T WHERE B = 3", kOther),
        At(4, "SELECT A FROM T WHERE B = 4", kOther),
    }));
    Texts stamps;
    for (const ExecutionRow& row : WorstRuns(log).m_listExecutions) {
        stamps.push_back(
            StampOf(log.explored.session.m_listDetails, log.explored.frames[row.m_nFrame].record));
    }
    EXPECT_EQ(stamps, (Texts{"10:00:03.000000", "10:00:04.000000", "10:00:05.000000"}));
}

TEST(StatementRows, ExecutionsSortByTheClockOverMidnight) {
    const Listed log(DebugLog({
        At(13 * 3600 + 3599, "SELECT A FROM T WHERE B = 1"),
        "Jan 16 00:00:01.000000 - 4120/3388 Worker\tSELECT A FROM T WHERE B = 2",
    }));
    CExploredSource<ExecutionRow> source;
    source.Show(log.explored, WorstRuns(log).m_listExecutions);
    EXPECT_EQ(Sorted(source, ExecutionRow::STAMP), (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(Sorted(source, ExecutionRow::STAMP, true), (std::vector<std::size_t>{1, 0}));
}

TEST(StatementRows, EachColumnSortsByWhatItShows) {
    using Orders = std::vector<std::vector<std::size_t>>;
    const Listed log(Statements());
    CExploredSource<ShapeRow> shapes;
    shapes.Show(log.explored, MakeShapeRows(log.scope));
    EXPECT_EQ(SortedByEach(shapes, ShapeRow::Columns().size()),
              (Orders{{1, 0}, {1, 0}, {1, 0}, {1, 0}, {1, 0}, {0, 1}}));
    CExploredSource<ExecutionRow> runs;
    runs.Show(log.explored, WorstRuns(log).m_listExecutions);
    EXPECT_EQ(SortedByEach(runs, ExecutionRow::Columns().size()),
              (Orders{{0, 1, 2}, {0, 1, 2}, {1, 0, 2}, {2, 0, 1}, {1, 0, 2}}));
    EXPECT_EQ(Sorted(runs, ExecutionRow::OWNER, true), (std::vector<std::size_t>{1, 2, 0}));
}

TEST(StatementRows, CallersSortByTheirCount) {
    const Listed log(DebugLog({
        At(0, CallText("Alpha", 1)),
        At(1, "SELECT A FROM T WHERE B = 1"),
        At(2, "SELECT A FROM T WHERE B = 2"),
        At(3, ReturnText("Alpha", 1)),
        At(4, "SELECT A FROM T WHERE B = 3"),
        At(9, kSqlDone),
    }));
    CExploredSource<ShapeCallerRow> source;
    source.Show(log.explored, WorstRuns(log).m_listCallers);
    EXPECT_EQ(source.Text(0, ShapeCallerRow::COUNT), "1");
    EXPECT_EQ(source.Text(1, ShapeCallerRow::COUNT), "2");
    EXPECT_EQ(Sorted(source, ShapeCallerRow::COUNT, true), (std::vector<std::size_t>{1, 0}));
}

TEST(StatementRows, CallersAddUpToTheShape) {
    const Listed log(Statements());
    CExploredSource<ShapeCallerRow> source;
    source.Show(log.explored, WorstRuns(log).m_listCallers);
    EXPECT_EQ(RowTexts(source, ShapeCallerRow::Columns().size()),
              (Texts{"4.000000|1|(top)", "2.000000|1|F  Alpha", "1.000000|1|F  Beta"}));
    EXPECT_EQ(Sorted(source, ShapeCallerRow::CALLER), (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(Sorted(source, ShapeCallerRow::TOTAL), (std::vector<std::size_t>{2, 1, 0}));
}

TEST(StatementRows, ARecordLeadsToItsShape) {
    const Listed log(Statements());
    EXPECT_EQ(ShapeOfRecord(log.explored, RecordIndex{1}), kNoShape); // a call
    EXPECT_EQ(ShapeOfRecord(log.explored, RecordIndex{2}), log.scope.shapes[0].shape);
    EXPECT_EQ(ShapeOfRecord(log.explored, RecordIndex{3}), kNoShape); // no frame
    EXPECT_EQ(ShapeOfRecord(log.explored, RecordIndex{11}), log.scope.shapes[1].shape);
    EXPECT_EQ(ShapeOfRecord(log.explored, RecordIndex{12}), kNoShape); // behind the last frame
}

TEST(StatementRows, TheSlowOrderReadsTheItemMasterFourHundredTimes) {
    const Listed log(SampleBytes("order-slow.log"));
    EXPECT_EQ(ShapeTexts(log).front(), "5.702505|400|0.018285|0.017056|F  B5542110SumOpenWeight|"
                                       "SELECT IMITM, IMLITM, IMUWUM FROM PRODDTA.F4101 WHERE ( IMITM = ? )");
    const ShapeRuns runs = WorstRuns(log);
    ASSERT_EQ(runs.m_listExecutions.size(), 400U);
    std::int64_t total = 0;
    for (const ExecutionRow& row : runs.m_listExecutions) {
        total += row.m_nTotal;
    }
    EXPECT_EQ(total, 5'702'505);
    ASSERT_EQ(runs.m_listCallers.size(), 1U);
    EXPECT_EQ(runs.m_listCallers.front().m_nCount, 400U);
}

TEST(StatementText, ADebugStatementStandsAsItRan) {
    const TestSession log(DebugLog({At(0, "  SELECT  A FROM T  WHERE B = 'it''s  1'  ")}));
    EXPECT_EQ(StatementText(log.m_doc.m_listDetails, RecordIndex{1}),
              "SELECT  A FROM T  WHERE B = 'it''s  1'");
}

TEST(StatementText, WhatStandsAheadOfTheOperationIsCut) {
    const TestSession log(DebugLog({At(0, "[JDBOLEDB] req 4 INSERT INTO T (A) VALUES (1)")}));
    ASSERT_EQ(log.Kind(1), LOG_SQL);
    EXPECT_EQ(StatementText(log.m_doc.m_listDetails, RecordIndex{1}), "INSERT INTO T (A) VALUES (1)");
}

TEST(StatementText, AJASStatementBearsItsParameters) {
    const TestSession log(JASLog({
        UserAt(0, "SELECT A FROM T WHERE B = ? AND C = ?"),
        UserAt(0, "Param1: 540_Types.VARCHAR,"),
        UserAt(1, "Param2: 1000_Types.DECIMAL"),
    }));
    EXPECT_EQ(StatementText(log.m_doc.m_listDetails, RecordIndex{kJASLead + 2}),
              "SELECT A FROM T WHERE B = '540' AND C = 1000");
}

TEST(StatementText, ARecordThatIsNoStatementStandsWhole) {
    const TestSession log(DebugLog({At(0, "ERROR in SELECT")}));
    EXPECT_EQ(StatementText(log.m_doc.m_listDetails, RecordIndex{1}), "ERROR in SELECT");
}

TEST(ListTexts, TheOwnerIsTheThreadOrTheUser) {
    const TestSession debug(DebugLog({At(0, "x", "4120/-5")}));
    EXPECT_EQ(OwnerOf(debug.m_doc, RecordIndex{1}), "4120/-5");
    EXPECT_EQ(OwnersTitle(debug.m_doc.m_nLogFormat), "Proc/Thread");
    const TestSession jas(JASLog({UserAt(0, "x")}));
    EXPECT_EQ(OwnerOf(jas.m_doc, RecordIndex{kJASLead}), "ANNE");
    EXPECT_EQ(OwnersTitle(jas.m_doc.m_nLogFormat), "User");
}

TEST(ListTexts, LineEndsAndTabsBecomeBlanks) { EXPECT_EQ(OnOneLine("a\tb\r\nc"), "a b  c"); }

} // namespace carvelot::test
