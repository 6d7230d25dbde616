#include "explore/lists/ComparedRows.h"

#include "explore/lists/ListedRows.h"
#include "text/RowSource.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

ComparedSide SideOf(const Listed& log) { return {log.explored, log.scope, log.findings}; }

const char* const kStatement = "SELECT A FROM T WHERE B = 1";

Texts Base() {
    return DebugLog({At(0, CallText("Alpha", 1)), At(1, kStatement), At(3, kSqlDone),
                     At(4, ReturnText("Alpha", 1)), At(5, CallText("Gone", 1)),
                     At(6, ReturnText("Gone", 1))});
}
Texts ComparedLog() {
    return DebugLog({At(0, CallText("Alpha", 1)), At(1, kStatement), At(2, kSqlDone),
                     At(3, ReturnText("Alpha", 1)), At(4, CallText("New", 1)), At(4, "UPDATE U SET C = 1"),
                     At(8, ReturnText("New", 1, 2))});
}

} // namespace

TEST(ComparedRows, FunctionsShowBothSidesWithSignedDifferences) {
    const Listed base(Base());
    const Listed log(ComparedLog());
    const Comparison comparison(SideOf(base), SideOf(log));
    EXPECT_EQ(ListedTexts(MakeComparedFunctionRows(comparison)),
              (Texts{
                  "+4.000000|0.000000|4.000000|log alone|function|New|+1|0|1|+4.000000|0.000000|4.000000",
                  "-1.000000|4.000000|3.000000|both|function|Alpha|0|1|1|0.000000|2.000000|2.000000",
                  "-1.000000|1.000000|0.000000|base alone|function|Gone|-1|1|0|-1.000000|1.000000|0.000000",
                  "-1.000000|2.000000|1.000000|both|statement|SELECT T|0|1|1|-1.000000|2.000000|1.000000",
                  "0.000000|0.000000|0.000000|log alone|statement|UPDATE U|+1|0|1|0.000000|0.000000|0.000000",
              }));
}

TEST(ComparedRows, BarsRunToEitherSide) {
    const Listed base(Base());
    const Listed log(ComparedLog());
    const Comparison comparison(SideOf(base), SideOf(log));
    const std::vector<ComparedFunctionRow> rows = MakeComparedFunctionRows(comparison);
    EXPECT_DOUBLE_EQ(rows[0].m_fShare, 1);
    EXPECT_DOUBLE_EQ(rows[1].m_fShare, -0.25);
    EXPECT_DOUBLE_EQ(rows[4].m_fShare, 0);
}

TEST(ComparedRows, ShapesAndFindingsShowBothSides) {
    const Listed base(Base());
    const Listed log(ComparedLog());
    const Comparison comparison(SideOf(base), SideOf(log));
    EXPECT_EQ(ListedTexts(MakeComparedShapeRows(comparison)),
              (Texts{"-1.000000|2.000000|1.000000|both|0|1|1|-1.000000|SELECT A FROM T WHERE B = ?",
                     "0.000000|0.000000|0.000000|log alone|+1|0|1|0.000000|UPDATE U SET C = ?"}));
    EXPECT_EQ(ListedTexts(MakeComparedFindingRows(comparison)),
              (Texts{"+4.000000|0.000000|4.000000|log alone|+1|0|1|\u25CF error|New|" +
                         std::string(MeaningOf(FindingRule::FirstCause)),
                     "+4.000000|0.000000|4.000000|log alone|+1|0|1|\u25A0 note|New|" +
                         std::string(MeaningOf(FindingRule::SilenceInCall)),
                     "-2.000000|2.000000|0.000000|base alone|-1|1|0|\u25A0 note|Alpha|" +
                         std::string(MeaningOf(FindingRule::SilenceInCall))}));
}

TEST(ComparedRows, EachColumnSortsByWhatItShows) {
    using Orders = std::vector<std::vector<std::size_t>>;
    const Listed base(Base());
    const Listed log(ComparedLog());
    const Comparison comparison(SideOf(base), SideOf(log));
    EXPECT_EQ(SortedByEach(MakeComparedFunctionRows(comparison)), (Orders{
                                                                      {1, 2, 3, 4, 0},
                                                                      {0, 4, 2, 3, 1},
                                                                      {2, 4, 3, 1, 0},
                                                                      {2, 1, 3, 0, 4},
                                                                      {0, 1, 2, 3, 4},
                                                                      {1, 2, 0, 3, 4},
                                                                      {2, 1, 3, 0, 4},
                                                                      {0, 4, 1, 2, 3},
                                                                      {2, 0, 1, 3, 4},
                                                                      {2, 3, 1, 4, 0},
                                                                      {0, 4, 2, 1, 3},
                                                                      {2, 4, 3, 1, 0},
                                                                  }));
    EXPECT_EQ(SortedByEach(MakeComparedShapeRows(comparison)),
              (Orders{{0, 1}, {1, 0}, {1, 0}, {0, 1}, {0, 1}, {1, 0}, {0, 1}, {0, 1}, {0, 1}}));
    EXPECT_EQ(SortedByEach(MakeComparedFindingRows(comparison)), (Orders{
                                                                     {2, 0, 1},
                                                                     {0, 1, 2},
                                                                     {2, 0, 1},
                                                                     {2, 0, 1},
                                                                     {2, 0, 1},
                                                                     {0, 1, 2},
                                                                     {2, 0, 1},
                                                                     {0, 1, 2},
                                                                     {2, 0, 1},
                                                                     {1, 2, 0},
                                                                 }));
}

TEST(ComparedRows, TheColumnsOfTheBaseAreKnown) {
    const auto columnsOfBase = [](auto row) {
        using Row = decltype(row);
        Texts titles;
        for (std::size_t column = 0; column < Row::Columns().size(); ++column) {
            if (Row::IsOfBase(static_cast<int>(column))) {
                titles.emplace_back(Row::Columns()[column].m_strTitle);
            }
        }
        return titles;
    };
    EXPECT_EQ(columnsOfBase(ComparedFunctionRow()), (Texts{"Base Total (s)", "Base Calls", "Base Self (s)"}));
    EXPECT_EQ(columnsOfBase(ComparedShapeRow()), (Texts{"Base Total (s)", "Base Count"}));
    EXPECT_EQ(columnsOfBase(ComparedFindingRow()), (Texts{"Base Cost (s)", "Base Count"}));
}

TEST(ComparedRows, ALogAgainstItselfHasOnlyZerosAndNoBars) {
    const Listed log(SampleBytes("order-slow.log"));
    const Comparison comparison(SideOf(log), SideOf(log));
    ASSERT_FALSE(comparison.functions.empty());
    for (const ComparedFunctionRow& row : MakeComparedFunctionRows(comparison)) {
        EXPECT_EQ(CellText(row, ComparedFunctionRow::DIFFERENCE), "0.000000");
        EXPECT_EQ(CellText(row, ComparedFunctionRow::CALLS), "0");
        EXPECT_EQ(CellText(row, ComparedFunctionRow::SELF), "0.000000");
        EXPECT_EQ(CellText(row, ComparedFunctionRow::IN), "both");
        EXPECT_DOUBLE_EQ(row.m_fShare, 0);
    }
}

TEST(ComparedRows, ARowLeadsToTheFirstRecordOfEitherSide) {
    const Listed base(Base());
    const Listed log(ComparedLog());
    const Comparison comparison(SideOf(base), SideOf(log));
    EXPECT_EQ(RecordOn(SideOf(log), comparison.functions[0]), RecordIndex{5}); // New
    EXPECT_EQ(RecordOn(SideOf(base), comparison.functions[0]), std::nullopt);
    EXPECT_EQ(RecordOn(SideOf(base), comparison.functions[2]), RecordIndex{5}); // Gone
    EXPECT_EQ(RecordOn(SideOf(log), comparison.functions[3]), RecordIndex{2});  // SELECT T
    EXPECT_EQ(RecordOn(SideOf(base), comparison.shapes[0]), RecordIndex{2});
    EXPECT_EQ(RecordOn(SideOf(base), comparison.shapes[1]), std::nullopt);
    EXPECT_EQ(RecordOn(SideOf(log), comparison.findings[0]), log.findings[0].records[0]);
    EXPECT_EQ(RecordOn(SideOf(base), comparison.findings[0]), std::nullopt);
}

TEST(ComparedRows, ARowLeadsToTheFirstRecordWithinTheRange) {
    const Texts lines = DebugLog({At(0, CallText("Alpha", 1)), At(1, ReturnText("Alpha", 1)),
                                  At(10, CallText("Alpha", 1)), At(12, ReturnText("Alpha", 1))});
    const Listed whole(lines);
    const Listed part(lines, {whole.explored.clock[RecordIndex{3}], ClockRange::kOpenTo});
    const Comparison comparison(SideOf(whole), SideOf(part));
    EXPECT_EQ(RecordOn(SideOf(whole), comparison.functions[0]), RecordIndex{1});
    EXPECT_EQ(RecordOn(SideOf(part), comparison.functions[0]), RecordIndex{3});
}

} // namespace carvelot::test
