#include "explore/Streams.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

std::vector<std::string> NamesByRecord(const CCarvelotDoc& session) {
    const CStreams streams(session);
    std::vector<std::string> names;
    for (std::uint32_t i = 0; i < session.m_listDetails.Size(); ++i) {
        names.push_back(streams.Name(streams.Of(RecordIndex{i})));
    }
    return names;
}

} // namespace

TEST(ExploreStreams, AreTheThreadsOfADebugLogWithRecordsOfEveryKind) {
    const TestSession session(
        DebugLog({DebugLine("10:00:00", "a b", "-1/7"), DebugLine("10:00:01", "On x", "1/1"),
                  DebugLine("10:00:02", "--UBE--[1] x", "5/6")}));
    EXPECT_EQ(NamesByRecord(session.m_doc),
              (std::vector<std::string>{"thread:1/1", "thread:4294967295/7", "thread:1/1", "thread:0/0"}));
    EXPECT_EQ(CStreams(session.m_doc).Count(), 3U);
}

TEST(ExploreStreams, AreTheUsersOfAJASLogUnderTheNameThatTheyAreFiledBy) {
    const TestSession session(JASLog({JASLine("10:00:00,000", "ANNE", "a"), JASLine("10:00:00,000", "", "b"),
                                      JASLine("10:00:00,000", "ANNE", "c", "WARN")}));
    const auto names = NamesByRecord(session.m_doc);
    EXPECT_EQ(std::vector<std::string>(names.begin() + kJASLead, names.end()),
              (std::vector<std::string>{"user:ANNE", "user:SYSTEM LEVEL", "user:ANNE"}));
}

TEST(ExploreStreams, BelongToWhatIsSelected) {
    const TestSession session(
        DebugLog({DebugLine("10:00:00", "a", "2/1"), DebugLine("10:00:00", "a", "2/2")}));
    const CStreams streams(session.m_doc);
    const auto in = [&](const Selection& scope) {
        std::vector<bool> are;
        for (std::uint32_t i = 0; i < streams.Count(); ++i) {
            are.push_back(streams.IsIn(i, scope));
        }
        return are;
    };
    EXPECT_EQ(in(Selection()), (std::vector<bool>{true, true, true}));
    EXPECT_EQ(in(Selection(session.Process(2))), (std::vector<bool>{false, true, true}));
    EXPECT_EQ(in(Selection(session.Thread(2, 1))), (std::vector<bool>{false, true, false}));
    const TestSession jas(JASLog({JASLine("10:00:00,000", "ANNE", "a")}));
    EXPECT_TRUE(CStreams(jas.m_doc).IsIn(1, Selection(jas.User("ANNE"))));
    EXPECT_FALSE(CStreams(jas.m_doc).IsIn(0, Selection(jas.User("ANNE"))));
}

} // namespace carvelot::test
