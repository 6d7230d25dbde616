// How far exploring has come, and its early end.
#include "explore/Findings.h"
#include "support/TestLog.h"

#include "ExploredLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {
namespace {

using Lines = std::vector<std::string>;

Lines SomeLog() {
    Lines lines;
    for (int i = 0; i < 12; ++i) {
        lines.push_back(At(10 * i, CallText("F" + std::to_string(i % 3), 1)));
        lines.push_back(At(10 * i + 1, "SELECT A FROM B WHERE C = " + std::to_string(i)));
        lines.push_back(At(10 * i + 8, ReturnText("F" + std::to_string(i % 3), 1, i % 3)));
    }
    lines.push_back(At(200, "Entering JDB_RollbackUser"));
    return lines;
}

struct Answers {
    explicit Answers(const TestSession& session, CExploreProgress* progress = nullptr)
        : explored(session.m_doc, session.m_settings, progress), findings(FindAll(explored, progress)),
          scope(explored, {}, {}, progress) {}

    const ExploredSession explored;
    const std::vector<Finding> findings;
    const ExploredScope scope;
};

TEST(ExploreProgress, ReachesTheWholeWithTheLastPartAndChangesNothing) {
    const TestSession session(SomeLog());
    const Answers alone(session);
    CExploreProgress progress;
    EXPECT_EQ(progress.Percent(), 0);
    const ExploredSession explored(session.m_doc, session.m_settings, &progress);
    EXPECT_EQ(progress.Percent(), 56);
    const std::vector<Finding> findings = FindAll(explored, &progress);
    EXPECT_EQ(progress.Percent(), 76);
    const ExploredScope scope(explored, {}, {}, &progress);
    EXPECT_EQ(progress.Percent(), 100);

    ASSERT_EQ(findings.size(), alone.findings.size());
    ASSERT_FALSE(findings.empty());
    for (std::size_t i = 0; i < findings.size(); ++i) {
        EXPECT_EQ(findings[i].subject, alone.findings[i].subject);
        EXPECT_EQ(findings[i].cost, alone.findings[i].cost);
        EXPECT_EQ(findings[i].records, alone.findings[i].records);
    }
    ASSERT_EQ(scope.profile.m_tree.size(), alone.scope.profile.m_tree.size());
    EXPECT_EQ(scope.profile.m_functions.size(), 4U);
    EXPECT_EQ(scope.shapes.size(), 1U);
}

TEST(ExploreProgress, OfAScopeAloneReachesTheWholeToo) {
    const TestSession session(SomeLog());
    const ExploredSession explored(session.m_doc, session.m_settings);
    for (const ClockRange range : {ClockRange{}, ClockRange{0, 30'000'000}, ClockRange{5, 5}}) {
        CExploreProgress progress(ExploreParts::kScope);
        const ExploredScope scope(explored, {}, range, &progress);
        EXPECT_EQ(progress.Percent(), 100);
    }
}

TEST(ExploreProgress, EndsAtWhicheverCheckItIsToldTo) {
    const TestSession session(SomeLog());
    CExploreProgress counted;
    const Answers whole(session, &counted);
    ASSERT_GT(counted.Checks(), 20);
    for (std::int64_t check = 1; check <= counted.Checks(); ++check) {
        CExploreProgress progress;
        progress.EndAtCheck(check);
        EXPECT_THROW(Answers(session, &progress), ExploringEnded) << check;
        EXPECT_LT(progress.Percent(), 100) << check;
    }
}

TEST(ExploreProgress, OfWhatIsEndedAheadOfItsStartNothingRuns) {
    const TestSession session(SomeLog());
    CExploreProgress progress;
    progress.End();
    EXPECT_THROW(ExploredSession(session.m_doc, session.m_settings, &progress), ExploringEnded);
    EXPECT_EQ(progress.Percent(), 0);
    const ExploredSession explored(session.m_doc, session.m_settings);
    EXPECT_THROW(FindAll(explored, &progress), ExploringEnded);
    EXPECT_THROW(ExploredScope(explored, {}, {}, &progress), ExploringEnded);
}

TEST(ExploreProgress, LooksForItsEndAllAlongALongLog) {
    const auto checksOf = [](int lines) {
        Lines log;
        for (int i = 0; i < lines; ++i) {
            log.push_back(At(i / 100, "Entering JDB_OpenTable"));
        }
        const TestSession session(log);
        CExploreProgress progress;
        const ExploredSession explored(session.m_doc, session.m_settings, &progress);
        return progress.Checks();
    };
    // Twice in each of the four walks over all records: stamps, clock, frames, shapes.
    EXPECT_EQ(checksOf(140'000), checksOf(100) + 8);
}

} // namespace
} // namespace carvelot::test
