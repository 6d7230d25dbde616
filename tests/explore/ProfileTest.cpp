#include "explore/Profile.h"
#include "explore/ExploredLog.h"
#include "explore/GroupedTimes.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

using Texts = std::vector<std::string>;

class Profiled : public ExploredLog {
public:
    using ExploredLog::ExploredLog;

    // Seconds behind the first frame.
    static constexpr int kOpen = -1000;
    CProfile Profile(const Selection& scope = {}, int from = kOpen, int to = kOpen) const {
        ClockRange range;
        if (from != kOpen) {
            range.from = m_frames[0].start + from * 1'000'000LL;
        }
        if (to != kOpen) {
            range.to = m_frames[0].start + to * 1'000'000LL;
        }
        return CProfile(CCut(m_frames, m_streams, scope, range));
    }
    // "function F 3 calls 9 self 4" in seconds, then what else there is.
    Texts Functions(const CProfile& profile) const {
        Texts texts;
        for (const FunctionProfile& function : profile.m_functions) {
            std::string& text = texts.emplace_back(KeyText(function.key));
            Append(text, {function.calls}, 1);
            Append(text,
                   {function.total, function.self, function.shortest, function.longest, function.p50,
                    function.p95},
                   1'000'000);
        }
        return texts;
    }
    Texts Edges(const CProfile& profile) const {
        Texts texts;
        for (const CallEdge& edge : profile.m_edges) {
            std::string& text = texts.emplace_back(KeyText(edge.caller) + " > " + KeyText(edge.callee));
            Append(text, {edge.calls}, 1);
            Append(text, {edge.total}, 1'000'000);
        }
        return texts;
    }
    // Siblings in their order, each followed by what stands below it.
    Texts Tree(const CProfile& profile) const {
        Texts texts;
        if (!profile.m_tree.empty()) {
            AddNodes(profile, 0, 0, texts);
        }
        return texts;
    }

private:
    static void Append(std::string& text, std::initializer_list<std::int64_t> values, std::int64_t unit) {
        for (const std::int64_t value : values) {
            text += ' ' + std::to_string(value / unit);
        }
    }
    void AddNodes(const CProfile& profile, std::uint32_t first, std::size_t depth, Texts& texts) const {
        for (std::uint32_t i = first; i != CallTreeNode::kNone; i = profile.m_tree[i].nextSibling) {
            const CallTreeNode& node = profile.m_tree[i];
            std::string& text = texts.emplace_back(std::string(2 * depth, ' ') + KeyText(node.key));
            Append(text, {node.calls}, 1);
            Append(text, {node.total, node.self}, 1'000'000);
            if (node.firstChild != CallTreeNode::kNone) {
                AddNodes(profile, node.firstChild, depth + 1, texts);
            }
        }
    }
};

std::vector<std::string> Recursion() {
    return DebugLog({At(0, CallText("F", 1)), At(1, CallText("G", 2)), At(2, CallText("F", 3)),
                     At(4, ReturnText("F", 3, 1)), At(5, ReturnText("G", 2)), At(6, CallText("G", 2)),
                     At(8, ReturnText("G", 2, 2)), At(10, ReturnText("F", 1, 3)), At(20, CallText("F", 1)),
                     At(21, "x y")});
}

} // namespace

TEST(ExploreProfile, CountsATotalOfAFunctionOnceWhereItCallsItself) {
    const Profiled log(Recursion());
    EXPECT_EQ(log.Functions(log.Profile()),
              (Texts{"function F 3 11 7 1 10 2 10", "function G 2 6 4 2 4 2 4"}));
}

TEST(ExploreProfile, CountsUnclosedFailedAndWarned) {
    const Profiled log(Recursion());
    const CProfile profile = log.Profile();
    const FunctionProfile& f = profile.m_functions[0];
    const FunctionProfile& g = profile.m_functions[1];
    EXPECT_EQ((std::vector<std::uint32_t>{f.unclosed, f.failed, f.warned}),
              (std::vector<std::uint32_t>{1, 1, 1}));
    EXPECT_EQ((std::vector<std::uint32_t>{g.unclosed, g.failed, g.warned}),
              (std::vector<std::uint32_t>{0, 1, 0}));
}

TEST(ExploreProfile, SumsEveryCallOfACallerAndCallee) {
    const Profiled log(Recursion());
    EXPECT_EQ(log.Edges(log.Profile()), (Texts{"none > function F 2 11", "function F > function G 2 6",
                                               "function G > function F 1 2"}));
}

TEST(ExploreProfile, MergesFramesOfAKeyBelowTheirParents) {
    const Profiled log(Recursion());
    EXPECT_EQ(log.Tree(log.Profile()),
              (Texts{"function F 2 11 5", "  function G 2 6 4", "    function F 1 2 2"}));
}

TEST(ExploreProfile, OrdersByTotalThenKindThenNameAndNoCallerFirst) {
    const Profiled log(DebugLog({At(0, CallText("B", 1)), At(2, ReturnText("B", 1)), At(2, EventText("Z")),
                                 At(4, kEventEnd), At(4, CallText("A", 1)), At(6, ReturnText("A", 1)),
                                 At(7, CallText("L", 1)), At(7, CallText("A", 2)), At(9, ReturnText("A", 2)),
                                 At(9, ReturnText("L", 1)), At(9, ReturnText("Orphan", 1))}));
    const CProfile profile = log.Profile();
    EXPECT_EQ(log.Functions(profile), (Texts{"function A 2 4 4 2 2 2 2", "event Z 1 2 2 2 2 2 2",
                                             "function B 1 2 2 2 2 2 2", "function L 1 2 0 2 2 2 2"}));
    EXPECT_EQ(log.Edges(profile),
              (Texts{"none > event Z 1 2", "none > function A 1 2", "none > function B 1 2",
                     "none > function L 1 2", "function L > function A 1 2"}));
    EXPECT_EQ(log.Tree(profile), (Texts{"function B 1 2 2", "event Z 1 2 2", "function A 1 2 2",
                                        "function L 1 2 0", "  function A 1 2 2"}));
}

TEST(ExploreProfile, CutsFramesToTheRangeBeforeItTakesTheirOwnTime) {
    const Profiled log(Recursion());
    EXPECT_EQ(log.Tree(log.Profile({}, 3, 7)),
              (Texts{"function F 1 4 1", "  function G 2 3 2", "    function F 1 1 1"}));
    EXPECT_EQ(log.Tree(log.Profile({}, 8)), (Texts{"function F 2 3 3"})); // G ends at 8, outside
    EXPECT_EQ(log.Tree(log.Profile({}, Profiled::kOpen, 1)), (Texts{"function F 1 1 1"})); // G starts at 1
    EXPECT_TRUE(log.Profile({}, 11, 20).m_functions.empty());
}

TEST(ExploreProfile, HoldsNothingOfAnEmptyRange) {
    const Profiled log(Recursion());
    for (const int to : {3, 2}) {
        const CProfile profile = log.Profile({}, 3, to);
        EXPECT_TRUE(profile.m_functions.empty() && profile.m_edges.empty() && profile.m_tree.empty()) << to;
    }
}

TEST(ExploreProfile, KeepsAFrameOfNoTimeAtTheRangesStartAndAllThatItStandsIn) {
    const Profiled log(
        DebugLog({At(0, CallText("F", 1)), At(5, "DROP x"), At(5, ReturnText("F", 1)), At(9, "x y")}));
    EXPECT_EQ(log.Tree(log.Profile({}, 5, 9)), (Texts{"function F 1 0 0", "  statement DROP 1 0 0"}));
    EXPECT_EQ(log.Tree(log.Profile({}, 0, 5)), (Texts{"function F 1 5 5"}));
    EXPECT_TRUE(log.Profile({}, 6, 9).m_tree.empty());
}

TEST(ExploreProfile, IsOfAProcessThreadOrUser) {
    const Profiled log(DebugLog({At(0, CallText("F", 1), "1/1"), At(1, CallText("F", 1), "1/2"),
                                 At(2, CallText("F", 1), "2/1"), At(4, "x y", "1/1"), At(4, "x y", "1/2"),
                                 At(4, "x y", "2/1")}));
    EXPECT_EQ(log.Tree(log.Profile(Selection(log.m_session.Process(1)))), Texts{"function F 2 7 7"});
    EXPECT_EQ(log.Tree(log.Profile(Selection(log.m_session.Thread(2, 1)))), Texts{"function F 1 2 2"});
    EXPECT_EQ(log.Tree(log.Profile()), Texts{"function F 3 9 9"});
    const Profiled jas(JASLog({UserAt(0, "Object Called: x.A"), UserAt(1, "Object Called: x.B", "BOB"),
                               UserAt(3, "x"), UserAt(5, "x", "BOB")}));
    EXPECT_EQ(jas.Tree(jas.Profile(Selection(jas.m_session.User("BOB")))), Texts{"object B 1 4 4"});
}

TEST(ExploreProfile, OfAHundredThousandNestedCallsIsMadeWithoutAWalkOfTheirDepth) {
    constexpr int depth = 100'000;
    std::vector<std::string> lines = DebugLog({});
    for (int i = 0; i < depth; ++i) {
        lines.push_back(At(i / 1000, CallText(i % 2 == 0 ? "F" : "G", 0)));
    }
    lines.push_back(At(depth / 1000, "x y"));
    const Profiled log(lines);
    const CProfile profile = log.Profile({}, 1, 99);
    EXPECT_EQ(profile.m_tree.size(), 99'000U);
    std::int64_t selfs = 0;
    for (const FunctionProfile& function : profile.m_functions) {
        selfs += function.self;
    }
    EXPECT_EQ(selfs, 98'000'000);
    EXPECT_EQ(profile.m_functions[0].total, 98'000'000);
    EXPECT_EQ(profile.m_edges.size(), 3U);
}

TEST(ExploreGroupedTimes, TellTheSmallestThatEnoughOfAGroupDoNotExceed) {
    CGroupedTimes times({1, 0, 20, 21});
    times.Add(0, 7);
    for (int i = 20; i > 0; --i) {
        times.Add(2, i * 10);
    }
    for (int i = 0; i < 21; ++i) {
        times.Add(3, (i * 8) % 21);
    }
    EXPECT_EQ(times.Percentile(0, 50), 7);
    EXPECT_EQ(times.Percentile(0, 95), 7);
    EXPECT_EQ(times.Percentile(2, 50), 100); // the 10th of 20
    EXPECT_EQ(times.Percentile(2, 95), 190); // the 19th
    EXPECT_EQ(times.Percentile(3, 50), 10);  // 10.5: the 11th of 0 to 20
    EXPECT_EQ(times.Percentile(3, 95), 19);  // 19.95: the 20th
    for (const std::uint32_t percent : {95U, 50U, 50U, 10U, 1U, 95U, 100U}) {
        EXPECT_EQ(times.Percentile(3, percent), (21 * percent + 99) / 100 - 1) << "in any order: " << percent;
    }
}

} // namespace carvelot::test
