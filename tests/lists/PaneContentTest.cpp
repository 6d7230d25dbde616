#include "lists/PaneContent.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace carvelot::test {

namespace {

using Kind = Selection::Kind;

constexpr SharedPane kAll[] = {SharedPane::SQL,       SharedPane::Cache,  SharedPane::BSFN,
                               SharedPane::LongTasks, SharedPane::Errors, SharedPane::Gaps};

// One letter a pane: cleared, kept, shown; upper case where the caption is set.
std::string Actions(Kind kind) {
    std::string text;
    for (const SharedPane pane : kAll) {
        const char letter = "cks"[static_cast<int>(ActionOf(pane, kind))];
        text.push_back(TakesCaption(pane, kind) ? static_cast<char>(letter - 'a' + 'A') : letter);
    }
    return text;
}

} // namespace

TEST(PaneContent, WithNothingSelectedAllPanesAndCaptionsAreEmptied) {
    EXPECT_EQ(Actions(Kind::Nothing), "CCCCCc");
    EXPECT_EQ(CaptionOf(Selection()), "");
}

TEST(PaneContent, AProcessFillsAllPanes) {
    EXPECT_EQ(Actions(Kind::Process), "SSSSSs");
    EXPECT_EQ(CaptionOf(Selection(CProcess(4120, 0))), " Process: 4120");
}

TEST(PaneContent, AThreadLeavesCachesAndGapsOnWhatWasShownBefore) {
    EXPECT_EQ(Actions(Kind::Thread), "SkSSSk");
    EXPECT_EQ(CaptionOf(Selection(CThread(4120, 4127799743, 0))), " Process: 4120 Thread: -167167553");
}

TEST(PaneContent, AUserHasNoCaches) {
    EXPECT_EQ(Actions(Kind::User), "SCSSSs");
    EXPECT_EQ(CaptionOf(Selection(CJASUser("JDE"))), " User: JDE");
}

TEST(PaneContent, ASelectionLeadsToTheAnalysesOfWhatIsSelected) {
    const CProcess process(1, 0);
    const CThread thread(1, 2, 0);
    const CJASUser user("A");
    EXPECT_EQ(Selection(process).Functions(), &process.m_pBSFNAnalysis);
    EXPECT_EQ(Selection(process).Statements(), &process.m_pSQLAnalysis);
    EXPECT_EQ(Selection(thread).Functions(), &thread.m_pBSFNAnalysis);
    EXPECT_EQ(Selection(thread).Statements(), &thread.m_pSQLAnalysis);
    EXPECT_EQ(Selection(user).Functions(), &user.m_pBSFNAnalysis);
    EXPECT_EQ(Selection(user).Statements(), &user.m_pSQLAnalysis);
    EXPECT_EQ(Selection().Functions(), nullptr);
    EXPECT_EQ(Selection().Statements(), nullptr);
    EXPECT_EQ(Selection(thread).Process(), nullptr);
    EXPECT_EQ(Selection(thread).Thread(), &thread);
}

} // namespace carvelot::test
