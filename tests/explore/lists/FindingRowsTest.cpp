#include "explore/lists/FindingRows.h"

#include "explore/lists/FindingSentence.h"
#include "explore/lists/FindingWalk.h"
#include "explore/lists/ListedRows.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

using Orders = std::vector<std::size_t>;

// Findings of any log of ten records.
std::vector<Finding> SomeFindings() {
    return {
        {FindingRule::FirstCause, "Zeta", 1, 100, {RecordIndex{4}, RecordIndex{3}}},
        {FindingRule::RolledBack, "", 1, 0, {RecordIndex{9}}},
        {FindingRule::RepeatedStatement, "Alpha > SELECT", 12, 400, {RecordIndex{5}}},
        {FindingRule::CallWithoutReturn, "Gamma", 3, 200, {}},
        {FindingRule::CursorNotClosed, "0931", 1, 0, {RecordIndex{7}}, "Prices"},
        {FindingRule::UnreadLines, "no time", 20, 0, {}},
    };
}

Texts TenLines() {
    Texts lines = DebugLog({});
    for (int i = 1; i < 10; ++i) {
        lines.push_back(At(i, "ERROR " + std::to_string(i)));
    }
    return lines;
}

Texts Shown(const CFindingSource& source, const Orders& order) {
    Texts subjects;
    for (const std::size_t row : order) {
        subjects.push_back(source.Text(row, FindingRow::SENTENCE));
    }
    return subjects;
}

// "finding.record" of where a walk stands.
std::string PlaceText(std::optional<CFindingWalk::Place> place) {
    return place ? std::to_string(place->finding).append(".").append(std::to_string(place->record)) : "none";
}

Texts Steps(CFindingWalk& walk, bool forward, int count) {
    Texts places;
    for (int i = 0; i < count; ++i) {
        places.push_back(PlaceText(walk.Step(forward)));
    }
    return places;
}

} // namespace

TEST(FindingRows, ARowTellsSeveritySubjectCountCostAndMeaning) {
    const Listed log(TenLines());
    const std::vector<Finding> findings = SomeFindings();
    CFindingSource source;
    source.Show(log.explored, MakeFindingRows(findings));
    const Texts rows = RowTexts(source, FindingRow::Columns().size());
    EXPECT_EQ(rows[0], "\u25CF error|Zeta failed: ERROR 4|1|0.000100|" +
                           std::string(MeaningOf(FindingRule::FirstCause)));
    EXPECT_EQ(rows[1], "\u25CF error|Rolled back|1||" + std::string(MeaningOf(FindingRule::RolledBack)));
    EXPECT_EQ(rows[2], "\u25B2 warning|Alpha > SELECT|12|0.000400|" +
                           std::string(MeaningOf(FindingRule::RepeatedStatement)));
    EXPECT_EQ(rows[4], "\u25A0 note|Cursor 0931 of cache Prices was never closed|1||" +
                           std::string(MeaningOf(FindingRule::CursorNotClosed)));
}

TEST(FindingRows, SignsOfSeveritiesDiffer) {
    EXPECT_NE(SignOf(Severity::Error), SignOf(Severity::Warning));
    EXPECT_NE(SignOf(Severity::Warning), SignOf(Severity::Note));
    EXPECT_NE(SignOf(Severity::Error), SignOf(Severity::Note));
}

TEST(FindingRows, BarsAreSharesOfTheLargestCost) {
    const std::vector<FindingRow> rows = MakeFindingRows(SomeFindings());
    EXPECT_DOUBLE_EQ(rows[0].m_fShare, 0.25);
    EXPECT_DOUBLE_EQ(rows[2].m_fShare, 1);
    EXPECT_DOUBLE_EQ(rows[5].m_fShare, 0);
}

TEST(FindingRows, SortingKeepsErrorsAheadOfWarningsAndThoseAheadOfNotes) {
    const Listed log(TenLines());
    const std::vector<Finding> findings = SomeFindings();
    CFindingSource source;
    source.Show(log.explored, MakeFindingRows(findings));
    const std::string rolledBack = "Rolled back";
    const std::string failed = "Zeta failed: ERROR 4";
    const std::string never = "Gamma never returned";
    const std::string again = "Alpha > SELECT";
    const std::string cursor = "Cursor 0931 of cache Prices was never closed";
    const std::string unread = "Lines that were not read (no time)";
    EXPECT_EQ(Shown(source, Sorted(source, FindingRow::SENTENCE)),
              (Texts{rolledBack, failed, again, never, cursor, unread}));
    EXPECT_EQ(Shown(source, Sorted(source, FindingRow::SENTENCE, true)),
              (Texts{failed, rolledBack, never, again, unread, cursor}));
    EXPECT_EQ(Sorted(source, FindingRow::COST), (Orders{1, 0, 3, 2, 4, 5}));
    EXPECT_EQ(Sorted(source, FindingRow::COUNT, true), (Orders{0, 1, 2, 3, 5, 4}));
}

TEST(FindingRows, SortingBySeverityTurnsTheGroupsRound) {
    const Listed log(TenLines());
    const std::vector<Finding> findings = SomeFindings();
    CFindingSource source;
    source.Show(log.explored, MakeFindingRows(findings));
    EXPECT_EQ(Sorted(source, FindingRow::SEVERITY), (Orders{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(Sorted(source, FindingRow::SEVERITY, true), (Orders{4, 5, 2, 3, 0, 1}));
}

TEST(FindingRows, SortingByMeaningIsByItsText) {
    const Listed log(TenLines());
    const std::vector<Finding> findings = SomeFindings();
    CFindingSource source;
    source.Show(log.explored, MakeFindingRows(findings));
    EXPECT_EQ(Sorted(source, FindingRow::MEANING), (Orders{1, 0, 3, 2, 5, 4}));
    EXPECT_EQ(Sorted(source, FindingRow::MEANING, true), (Orders{0, 1, 2, 3, 4, 5}));
}

TEST(FindingRows, RecordsOfAFindingSortByTimeThreadAndText) {
    const Listed log(DebugLog({At(3, "b", "4120/7"), At(1, "C", "4120/5"), At(2, "a", "4120/6")}));
    CExploredSource<FindingRecordRow> source;
    source.Show(log.explored,
                MakeFindingRecordRows(
                    {FindingRule::FirstCause, "A", 1, 0, {RecordIndex{1}, RecordIndex{2}, RecordIndex{3}}}));
    EXPECT_EQ(source.Text(1, FindingRecordRow::OWNER), "4120/5");
    EXPECT_EQ(Sorted(source, FindingRecordRow::STAMP), (Orders{1, 2, 0}));
    EXPECT_EQ(Sorted(source, FindingRecordRow::OWNER), (Orders{1, 2, 0}));
    EXPECT_EQ(Sorted(source, FindingRecordRow::OWNER, true), (Orders{0, 2, 1}));
    EXPECT_EQ(Sorted(source, FindingRecordRow::MESSAGE), (Orders{2, 0, 1}));
}

TEST(FindingRows, CountsOfSeveritiesNameOnlyThoseThatThereAre) {
    EXPECT_EQ(SeverityCounts(SomeFindings()), "\u25CF 2 errors   \u25B2 2 warnings   \u25A0 2 notes");
    EXPECT_EQ(SeverityCounts({{FindingRule::OrphanReturn, "A", 1, 0, {}}}), "\u25A0 1 note");
    EXPECT_EQ(SeverityCounts({}), "");
}

TEST(FindingRows, RecordsOfAFindingStandInItsOrder) {
    const Listed log(SampleBytes("order-fails.log"));
    ASSERT_FALSE(log.findings.empty());
    const Finding& worst = log.findings.front();
    ASSERT_EQ(worst.rule, FindingRule::FirstCause);
    CExploredSource<FindingRecordRow> source;
    source.Show(log.explored, MakeFindingRecordRows(worst));
    ASSERT_EQ(source.RowCount(), worst.records.size());
    const Texts rows = RowTexts(source, FindingRecordRow::Columns().size());
    // The cause, then the call that it failed in.
    EXPECT_NE(rows[1].find("|Calling Business function " + worst.subject), std::string::npos) << rows[1];
    for (std::size_t row = 0; row < rows.size(); ++row) {
        EXPECT_EQ(source.m_listRows[row].m_pRecord, worst.records[row]);
    }
}

TEST(FindingWalk, GoesThroughAllRecordsRoundAndRound) {
    const std::vector<Finding> findings = SomeFindings();
    CFindingWalk walk;
    walk.Begin(findings);
    EXPECT_EQ(walk.Standing(), std::nullopt);
    EXPECT_EQ(Steps(walk, true, 7), (Texts{"0.0", "0.1", "1.0", "2.0", "4.0", "0.0", "0.1"}));
    EXPECT_EQ(walk.RecordAt(*walk.Standing()), RecordIndex{3});
}

TEST(FindingWalk, GoesBackFromTheLastOne) {
    const std::vector<Finding> findings = SomeFindings();
    CFindingWalk walk;
    walk.Begin(findings);
    EXPECT_EQ(Steps(walk, false, 6), (Texts{"4.0", "2.0", "1.0", "0.1", "0.0", "4.0"}));
}

TEST(FindingWalk, TurnsRoundWhereItStands) {
    const std::vector<Finding> findings = SomeFindings();
    CFindingWalk walk;
    walk.Begin(findings);
    EXPECT_EQ(Steps(walk, true, 3).back(), "1.0");
    EXPECT_EQ(Steps(walk, false, 1).back(), "0.1");
    EXPECT_EQ(Steps(walk, true, 1).back(), "1.0");
}

TEST(FindingWalk, WithinAFindingGoesRoundInIt) {
    const std::vector<Finding> findings = SomeFindings();
    CFindingWalk walk;
    walk.Begin(findings);
    EXPECT_EQ(PlaceText(walk.StepWithin(0)), "0.0");
    EXPECT_EQ(PlaceText(walk.StepWithin(0)), "0.1");
    EXPECT_EQ(PlaceText(walk.StepWithin(0)), "0.0");
    EXPECT_EQ(PlaceText(walk.StepWithin(2)), "2.0");
    EXPECT_EQ(PlaceText(walk.StepWithin(0)), "0.0");
    EXPECT_EQ(PlaceText(walk.StepWithin(3)), "none"); // it has no record
    EXPECT_EQ(PlaceText(walk.StepWithin(99)), "none");
    EXPECT_EQ(PlaceText(walk.Standing()), "0.0");
}

TEST(FindingWalk, GoesOnFromWhereTheUserWent) {
    const std::vector<Finding> findings = SomeFindings();
    CFindingWalk walk;
    walk.Begin(findings);
    walk.StandAt({0, 1});
    EXPECT_EQ(PlaceText(walk.StepWithin(0)), "0.0");
    walk.StandAt({2, 0});
    EXPECT_EQ(PlaceText(walk.Step(true)), "4.0");
    walk.StandAt({2, 1}); // there is no such record
    walk.StandAt({6, 0});
    EXPECT_EQ(PlaceText(walk.Standing()), "4.0");
}

TEST(FindingWalk, StandsNowhereWithoutFindingsOrWithoutRecords) {
    CFindingWalk walk;
    EXPECT_EQ(walk.Step(true), std::nullopt);
    EXPECT_EQ(walk.StepWithin(0), std::nullopt);
    const std::vector<Finding> none;
    walk.Begin(none);
    EXPECT_EQ(walk.Step(false), std::nullopt);
    const std::vector<Finding> unread{{FindingRule::UnreadLines, "no time", 2, 0, {}}};
    walk.Begin(unread);
    EXPECT_EQ(walk.Step(true), std::nullopt);
    EXPECT_EQ(walk.Step(false), std::nullopt);
    const std::vector<Finding> findings = SomeFindings();
    walk.Begin(findings);
    EXPECT_NE(walk.Step(true), std::nullopt);
    walk.Drop();
    EXPECT_EQ(walk.Standing(), std::nullopt);
    EXPECT_EQ(walk.Step(true), std::nullopt);
}

} // namespace carvelot::test
