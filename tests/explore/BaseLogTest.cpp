#include "explore/BaseLog.h"

#include "explore/ExploredLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

std::vector<std::string> OneCall() {
    return DebugLog({At(0, CallText("Alpha", 1)), At(2, ReturnText("Alpha", 1, 2))});
}

} // namespace

TEST(BaseLog, IsReadAndExplored) {
    const TestFile file(TestSession::Joined(OneCall()));
    CBaseLog base(file.Path(), {});
    EXPECT_EQ(base.Percent(), 0);
    ASSERT_TRUE(base.Load()) << base.Failure();
    EXPECT_EQ(base.Path(), file.Path());
    EXPECT_EQ(base.Percent(), 100);
    EXPECT_EQ(base.Explored().frames.Count(), 1U);
    ASSERT_FALSE(base.Findings().empty());
    EXPECT_EQ(base.Findings().front().rule, FindingRule::FirstCause);
    EXPECT_EQ(base.Failure(), "");
}

TEST(BaseLog, TellsWhatTheLoadOfASessionTells) {
    CBaseLog lacking("/no/such/folder/a.log", {});
    EXPECT_FALSE(lacking.Load());
    EXPECT_EQ(lacking.Failure(), "Failed to open file.");
    const TestFile text("no log\n");
    CBaseLog odd(text.Path(), {});
    EXPECT_FALSE(odd.Load());
    EXPECT_EQ(odd.Failure(), "Error: Cannot determine tracing log format");
}

TEST(BaseLog, EndsWithoutAComplaint) {
    const TestFile file(TestSession::Joined(OneCall()));
    CBaseLog base(file.Path(), {});
    base.End();
    EXPECT_FALSE(base.Load());
    EXPECT_EQ(base.Failure(), "");
}

TEST(BaseLog, EndsInTheMiddleOfItsFile) {
    // The load tells how far it is every few million bytes.
    std::string content = TestSession::Joined(OneCall());
    const std::string line = At(3, std::string(1000, 'x')) + "\n";
    while (content.size() < 5'000'000) {
        content += line;
    }
    const TestFile file(content);
    CBaseLog base(file.Path(), {});
    base.End();
    EXPECT_FALSE(base.Load());
    EXPECT_EQ(base.Failure(), "");
    EXPECT_LT(base.Percent(), 50);
}

TEST(BaseLog, AStatementThatAwaitsItsParametersIsNotForTheNextLog) {
    const auto lines = [](const std::string& text) {
        return TestSession::Joined(JASLog({UserAt(0, text), UserAt(1, "Param1: 7_Types.DECIMAL")}));
    };
    const TestFile awaiting(TestSession::Joined(JASLog({UserAt(0, "SELECT A FROM T WHERE B = ?")})));
    const TestFile next(lines("nothing"));
    CBaseLog one(awaiting.Path(), {});
    ASSERT_TRUE(one.Load());
    CBaseLog other(next.Path(), {});
    ASSERT_TRUE(other.Load());
    EXPECT_EQ(other.Explored().frames.Count(), 0U);
}

} // namespace carvelot::test
