// Functions, their callers and callees, and the call tree as rows.
#include "explore/lists/FunctionRows.h"
#include "explore/lists/CallTreeRows.h"
#include "explore/lists/EdgeRows.h"
#include "text/RowSource.h"

#include "ListedRows.h"

#include <gtest/gtest.h>

namespace carvelot::test {
namespace {

// Outer calls Inner twice, for 2 and 3 seconds, and a statement that never ends; Last fails.
Texts SomeCalls() {
    return DebugLog({At(0, CallText("Outer", 1)), At(1, CallText("Inner", 2)),
                     At(3, ReturnText("Inner", 2, 0)), At(3, "SELECT A FROM B"), At(4, CallText("Inner", 2)),
                     At(7, ReturnText("Inner", 2, 1)), At(9, ReturnText("Outer", 1, 0)),
                     At(10, CallText("Last", 1)), At(11, ReturnText("Last", 1, 2))});
}

TEST(FunctionRows, StandBySelfTimeWithAllThatIsCounted) {
    const Listed log(SomeCalls());
    const auto rows = MakeFunctionRows(log.explored.frames.Keys(), log.scope.profile);
    EXPECT_EQ(ListedTexts(rows),
              (Texts{"F  Inner|5.000000|5.000000|2|0|1|0|2.000000|3.000000|2.000000|3.000000",
                     "F  Outer|4.000000|9.000000|1|0|0|0|9.000000|9.000000|9.000000|9.000000",
                     "F  Last|1.000000|1.000000|1|1|0|0|1.000000|1.000000|1.000000|1.000000",
                     "S  SELECT B|0.000000|0.000000|1|0|0|1|0.000000|0.000000|0.000000|0.000000"}));
    // Bars are parts of the column's largest.
    EXPECT_DOUBLE_EQ(CellShare(FunctionRow::Columns(), rows[0], 1), 1);
    EXPECT_DOUBLE_EQ(CellShare(FunctionRow::Columns(), rows[1], 1), 0.8);
    EXPECT_DOUBLE_EQ(CellShare(FunctionRow::Columns(), rows[1], 2), 1);
    EXPECT_DOUBLE_EQ(CellShare(FunctionRow::Columns(), rows[0], 2), 5.0 / 9);
    EXPECT_DOUBLE_EQ(CellShare(FunctionRow::Columns(), rows[3], 1), 0);
}

TEST(FunctionRows, SortByNumbersAsNumbers) {
    const Listed log(SomeCalls());
    CRowSource<FunctionRow> source;
    source.Show(MakeFunctionRows(log.explored.frames.Keys(), log.scope.profile));
    EXPECT_EQ(Sorted(source, 2, true), (std::vector<std::size_t>{1, 0, 2, 3}));
    EXPECT_EQ(Sorted(source, 0), (std::vector<std::size_t>{0, 2, 1, 3}));
    EXPECT_EQ(Sorted(source, 3, true), (std::vector<std::size_t>{0, 1, 2, 3}));
}

TEST(FunctionRows, LeadToTheFirstOfTheLongestFramesInTheCut) {
    const Listed log(SomeCalls());
    const std::uint32_t inner = log.explored.frames[1].key;
    EXPECT_EQ(LongestRecord(log.scope.cut, inner), log.explored.frames[3].record);
    const Listed early(SomeCalls(), {0, 7'205'500'000});
    EXPECT_EQ(LongestRecord(early.scope.cut, inner),
              early.explored.frames[1].record); // the later one is cut to 1.5 seconds
    const Listed none(SomeCalls(), {5, 5});
    EXPECT_EQ(LongestRecord(none.scope.cut, inner), kNoRecord);
}

TEST(EdgeRows, TellWhoCallsAndWhoIsCalled) {
    const Listed log(SomeCalls());
    const CFrames& frames = log.explored.frames;
    const auto callees = MakeCalleeRows(frames.Keys(), log.scope.profile, frames[0].key);
    EXPECT_EQ(ListedTexts(callees), (Texts{"F  Inner|2|5.000000", "S  SELECT B|1|0.000000"}));
    EXPECT_DOUBLE_EQ(callees[0].share, 1);
    EXPECT_DOUBLE_EQ(callees[1].share, 0);
    EXPECT_EQ(ListedTexts(MakeCallerRows(frames.Keys(), log.scope.profile, frames[1].key)),
              (Texts{"F  Outer|2|5.000000"}));
    EXPECT_EQ(ListedTexts(MakeCallerRows(frames.Keys(), log.scope.profile, frames[0].key)),
              (Texts{"(top)|1|9.000000"}));
    EXPECT_TRUE(MakeCalleeRows(frames.Keys(), log.scope.profile, frames[1].key).empty());
}

// The nodes below one, those below them indented.
void AddTexts(const CCallTreeRows& rows, CCallTreeRows::Node parent, int depth, Texts& texts) {
    for (std::uint32_t row = 0; row < rows.ChildCount(parent); ++row) {
        const CCallTreeRows::Node node = rows.Child(parent, row);
        EXPECT_EQ(rows.Parent(node), parent);
        EXPECT_EQ(rows.Row(node), row);
        std::string text(static_cast<std::size_t>(depth) * 2, ' ');
        const CallTreeRow cells = rows.Cells(node);
        for (int column = 0; column < 4; ++column) {
            text.append(column == 0 ? "" : "|").append(CellText(cells, column));
        }
        texts.push_back(text);
        AddTexts(rows, node, depth + 1, texts);
    }
}

TEST(CallTreeRows, StandByTotalBelowTheirCallers) {
    Texts lines = SomeCalls();
    lines.push_back(At(20, CallText("Longest", 1)));
    lines.push_back(At(40, ReturnText("Longest", 1, 0)));
    const Listed log(lines);
    const CCallTreeRows rows(log.explored.frames.Keys(), log.scope.profile);
    Texts texts;
    AddTexts(rows, CCallTreeRows::kRoot, 0, texts);
    EXPECT_EQ(texts, (Texts{"F  Longest|20.000000|20.000000|1", "F  Outer|9.000000|4.000000|1",
                            "  F  Inner|5.000000|5.000000|2", "  S  SELECT B|0.000000|0.000000|1",
                            "F  Last|1.000000|1.000000|1"}));
    EXPECT_DOUBLE_EQ(rows.Cells(rows.Child(CCallTreeRows::kRoot, 0)).share, 20.0 / 30);
}

TEST(CallTreeRows, TooDeepOnesStandOneBelowTheOther) {
    Texts lines = DebugLog({});
    constexpr int depth = 1200;
    for (int i = 1; i <= depth; ++i) {
        lines.push_back(At(i, CallText("F" + std::to_string(i), i)));
    }
    const Listed log(lines);
    const CCallTreeRows rows(log.explored.frames.Keys(), log.scope.profile);
    CCallTreeRows::Node node = CCallTreeRows::kRoot;
    std::uint32_t levels = 0;
    while (rows.ChildCount(node) == 1) {
        node = rows.Child(node, 0);
        ++levels;
    }
    EXPECT_EQ(levels, CCallTreeRows::kDeepest - 1);
    ASSERT_EQ(rows.ChildCount(node), depth - levels);
    for (std::uint32_t row = 0; row < rows.ChildCount(node); ++row) {
        const CCallTreeRows::Node child = rows.Child(node, row);
        ASSERT_EQ(rows.Cells(child).name, "F  F" + std::to_string(levels + row + 1));
        ASSERT_EQ(rows.ChildCount(child), 0U);
        ASSERT_EQ(rows.Parent(child), node);
        ASSERT_EQ(rows.Row(child), row);
    }
}

TEST(CallTreeRows, OfNothingAreNone) {
    const Listed log(DebugLog({At(0, "Entering JDB_OpenTable")}));
    const CCallTreeRows rows(log.explored.frames.Keys(), log.scope.profile);
    EXPECT_EQ(rows.ChildCount(CCallTreeRows::kRoot), 0U);
}

} // namespace
} // namespace carvelot::test
