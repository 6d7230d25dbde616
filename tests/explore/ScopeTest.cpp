#include "explore/Scope.h"

#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

TEST(Scope, IdsStandInEitherForm) {
    EXPECT_EQ(ParseId("4294967290"), 4294967290U);
    EXPECT_EQ(ParseId("-6"), 4294967290U);
    EXPECT_EQ(ParseId("4294967296"), std::nullopt);
    EXPECT_EQ(ParseId("-2147483649"), std::nullopt);
    EXPECT_EQ(ParseId("1x"), std::nullopt);
}

TEST(Scope, ANameLeadsBackToWhatItIsTheNameOf) {
    const TestSession log(DebugLog({DebugLine("10:00:00.000001", "On x", "5/-6")}));
    const Selection process(log.Process(5));
    EXPECT_EQ(ScopeName(process), "process:5");
    EXPECT_EQ(FindScope(log.m_doc, ScopeName(process))->Process(), process.Process());
    const Selection thread(log.Thread(5, 4294967290U));
    EXPECT_EQ(ScopeName(thread), "thread:5/4294967290");
    EXPECT_EQ(FindScope(log.m_doc, ScopeName(thread))->Thread(), thread.Thread());

    const TestSession jas(JASLog({JASLine("10:00:00,000", "ANNE", "On x")}));
    const Selection user(jas.User("ANNE"));
    EXPECT_EQ(ScopeName(user), "user:ANNE");
    EXPECT_EQ(FindScope(jas.m_doc, ScopeName(user))->User(), user.User());
    EXPECT_EQ(FindScope(jas.m_doc, "user:OTTO"), std::nullopt);
    EXPECT_EQ(FindScope(log.m_doc, "user:ANNE"), std::nullopt);

    EXPECT_EQ(ScopeName(Selection()), "");
}

TEST(Scope, WhatASessionLacksHoldsNothing) {
    const TestSession log(DebugLog({DebugLine("10:00:00.000001", "SELECT A FROM T")}));
    const ExploredSession explored(log.m_doc, log.m_settings);
    EXPECT_EQ(ExploreIfThere(explored, Selection(), {}).shapes.size(), 1U);
    const ExploredScope lacking = ExploreIfThere(explored, std::nullopt, {});
    EXPECT_TRUE(lacking.shapes.empty());
    EXPECT_TRUE(lacking.profile.m_functions.empty());
}

} // namespace carvelot::test
