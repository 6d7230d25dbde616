#include "explore/ExploredLog.h"
#include "explore/FindingRules.h"
#include "explore/OpenFunctions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <random>

namespace carvelot::test {

namespace {

using Texts = std::vector<std::string>;

class FindingsLog : public ExploredLog {
public:
    using ExploredLog::ExploredLog;

    // "rule subject: count cost records", the cost in seconds.
    static std::string Text(const Finding& finding) {
        std::string text(NameOf(finding.rule));
        text.append(" ").append(finding.subject).append(": ").append(std::to_string(finding.count));
        text.append(" ").append(Seconds(finding.cost));
        for (const RecordIndex record : finding.records) {
            text.append(" ").append(std::to_string(Number(record)));
        }
        return text;
    }
    static Texts Of(const std::vector<Finding>& findings) {
        Texts texts;
        std::transform(findings.begin(), findings.end(), std::back_inserter(texts), Text);
        return texts;
    }
    // Of one rule, in the order of all.
    Texts Of(FindingRule rule) const {
        std::vector<Finding> all = FindAll(m_explored);
        std::erase_if(all, [rule](const Finding& finding) { return finding.rule != rule; });
        return Of(all);
    }
    Texts All() const { return Of(FindAll(m_explored)); }

    ExploredSession m_explored{m_session.m_doc, m_session.m_settings};
};

std::vector<std::string> With(std::vector<std::string> lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}
std::vector<std::string> Times(int count, const std::string& line) {
    return std::vector<std::string>(static_cast<std::size_t>(count), line);
}
std::string Numbers(std::uint32_t from, std::uint32_t to) {
    std::string text;
    for (; from <= to; ++from) {
        text.append(" ").append(std::to_string(from));
    }
    return text;
}

} // namespace

TEST(ExploreFindings, TellATenthExecutionBelowAFrame) {
    const auto repeated = [](int count) {
        std::vector<std::string> lines = DebugLog({At(0, CallText("F", 1))});
        for (int i = 0; i < count; ++i) {
            lines.push_back(At(10 * i, "DELETE FROM F1 WHERE A=" + std::to_string(i)));
            lines.push_back(At(10 * i + 1, kSqlDone));
        }
        return FindingsLog(lines).Of(FindingRule::RepeatedStatement);
    };
    EXPECT_EQ(repeated(9), Texts{});
    EXPECT_EQ(repeated(10),
              Texts{"repeated-statement F > DELETE FROM F1 WHERE A=?: 10 10 2 4 6 8 10 12 14 16 18 20"});
}

TEST(ExploreFindings, GiveAFrameWhatStandsBelowItsCallsWhereThoseHoldFewerThanTen) {
    // Two calls with five each: the caller's.
    const auto fives = With(Times(5, At(2, "DROP x")), {});
    std::vector<std::string> lines = DebugLog({At(0, CallText("F", 1)), At(1, EventText("E"))});
    lines = With(With(lines, fives), {At(2, kEventEnd), At(2, CallText("G", 2))});
    lines = With(With(lines, fives), {At(3, ReturnText("F", 1))});
    EXPECT_EQ(FindingsLog(lines).Of(FindingRule::RepeatedStatement),
              Texts{"repeated-statement F > DROP x: 10 0" + Numbers(3, 7) + Numbers(10, 14)});
    // A call that holds ten keeps them, and its caller's own five are too few.
    lines = With(DebugLog({At(0, CallText("F", 1)), At(1, CallText("G", 2))}), Times(10, At(2, "DROP x")));
    lines = With(With(lines, {At(2, ReturnText("G", 2))}), fives);
    EXPECT_EQ(FindingsLog(lines).Of(FindingRule::RepeatedStatement),
              Texts{"repeated-statement G > DROP x: 10 0" + Numbers(3, 12)});
}

TEST(ExploreFindings, AddUpTheSharesOfOneFunctionAndShape) {
    std::vector<std::string> lines = DebugLog({});
    for (int i = 0; i < 2; ++i) {
        lines = With(With(With(lines, {At(i, CallText("F", 1))}), Times(60, At(i, "DROP x"))),
                     {At(i, ReturnText("F", 1))});
    }
    EXPECT_EQ(FindingsLog(lines).Of(FindingRule::RepeatedStatement),
              Texts{"repeated-statement F > DROP x: 120 0" + Numbers(2, 61) + Numbers(64, 103)});
}

TEST(ExploreFindings, TellRunsOfWhatNoFrameRepeats) {
    // Nine and one a second behind the last one's end, none a second and a bit behind.
    const auto runs = [](int pause) {
        std::vector<std::string> lines = With(DebugLog({}), Times(8, At(0, "DROP x")));
        lines.push_back(At(0, "DROP x"));
        lines.push_back(At(4, kSqlDone));
        lines.push_back(At(4 + pause, "DROP x"));
        return FindingsLog(lines).Of(FindingRule::RepeatedStatement);
    };
    EXPECT_EQ(runs(1), Texts{"repeated-statement (top) > DROP x: 10 4" + Numbers(1, 9) + " 11"});
    EXPECT_EQ(runs(2), Texts{});
}

TEST(ExploreFindings, AddUpRunsOverAllStreamsAndLeaveOutShortOnes) {
    std::vector<std::string> lines = DebugLog({});
    for (const std::string ids : {"1/1", "1/2", "1/3"}) {
        lines = With(lines, Times(ids == "1/3" ? 9 : 10, At(0, "DROP x", ids)));
    }
    EXPECT_EQ(FindingsLog(lines).Of(FindingRule::RepeatedStatement),
              Texts{"repeated-statement (top) > DROP x: 20 0" + Numbers(1, 20)});
}

TEST(ExploreFindings, OfRepeatedStatementsAreThoseOfAPlainCount) {
    std::mt19937 random(11);
    const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
    std::size_t found = 0;
    for (int round = 0; round < 60; ++round) {
        std::vector<std::string> lines = DebugLog({});
        int level = 1;
        for (int i = 0; i < 400; ++i) {
            const int what = below(10);
            if (what == 0) {
                lines.push_back(
                    At(i / 20, CallText(std::string(1, static_cast<char>('F' + below(3))), level++)));
            } else if (what == 1) {
                level = std::max(1, level - 1 - below(2));
                lines.push_back(At(i / 20, CallText("Z", level++)));
            } else {
                lines.push_back(At(i / 20, below(3) == 0 ? "DROP y" : "DROP x"));
            }
        }
        const FindingsLog log(lines);
        const CFrames& frames = log.m_frames;
        const auto isBelow = [&](std::uint32_t frame, std::uint32_t top) {
            while (frame != kNoFrame && frame != top) {
                frame = frames[frame].parent;
            }
            return frame == top;
        };
        const auto held = [&](std::uint32_t top, std::uint32_t shape) {
            std::vector<std::uint32_t> executions;
            for (std::uint32_t i = 0; i < frames.Count(); ++i) {
                if (log.m_explored.shapes.Of(i) == shape && isBelow(i, top)) {
                    executions.push_back(i);
                }
            }
            return executions;
        };
        std::map<std::string, std::vector<RecordIndex>> expected;
        for (std::uint32_t top = 0; top < frames.Count(); ++top) {
            for (std::uint32_t shape = 1;
                 shape < log.m_explored.shapes.Count() && log.m_explored.shapes.Of(top) == kNoShape;
                 ++shape) {
                std::vector<RecordIndex> share;
                for (std::uint32_t i = 0; i < frames.Count(); ++i) {
                    if (frames[i].parent != top) {
                        continue;
                    }
                    if (log.m_explored.shapes.Of(i) == shape) {
                        share.push_back(frames[i].record);
                    } else if (log.m_explored.shapes.Of(i) == kNoShape) {
                        const auto executions = held(i, shape);
                        for (std::uint32_t execution : executions) {
                            if (executions.size() < 10) {
                                share.push_back(frames[execution].record);
                            }
                        }
                    }
                }
                if (share.size() >= 10) {
                    auto& all = expected[std::string(frames.Keys().Name(frames[top].key)) + " > " +
                                         std::string(log.m_explored.shapes.Text(shape))];
                    all.insert(all.end(), share.begin(), share.end());
                }
            }
        }
        FindingList findings;
        FindRepeatedStatements(log.m_explored, findings);
        std::map<std::string, std::vector<RecordIndex>> actual;
        for (const Finding& finding : findings) {
            if (!finding.subject.starts_with("(top)")) {
                actual[finding.subject] = finding.records;
            }
        }
        for (auto& [subject, records] : expected) {
            std::sort(records.begin(), records.end());
            records.resize(std::min(records.size(), Finding::kMostRecords));
        }
        ASSERT_EQ(actual, expected) << TestSession::Joined(lines);
        found += expected.size();
    }
    EXPECT_GT(found, 100U);
}

TEST(ExploreFindings, OfRepeatedStatementsTakeNoWalkOverDeepCallsForEachShape) {
    // A thousand shapes below 20 000 calls, ten executions each: by a walk for each, two hundred million
    // steps in tables.
    std::vector<std::string> lines = DebugLog({});
    for (int i = 0; i < 20'000; ++i) {
        lines.push_back(At(0, CallText("F", 0)));
    }
    for (int i = 0; i < 10'000; ++i) {
        lines.push_back(At(0, "DROP T" + std::to_string(i % 1000)));
    }
    EXPECT_EQ(FindingsLog(lines).Of(FindingRule::RepeatedStatement).size(), 1000U);
}

TEST(ExploreFindings, TellCachesThatNothingTerminated) {
    const auto cache = [](const std::string& handle) {
        return Texts{At(0, "jdeCacheInit Name:[C" + handle + "]"),
                     At(0, "Created new cache hCache:[" + handle + "]"),
                     At(0, "hCache:[" + handle + "] Nm:[x]")};
    };
    const auto line = [](const std::string& text, const std::string& handle) {
        return Texts{At(1, text), At(1, "hCache:[" + handle + "] Nm:[x]")};
    };
    std::vector<std::string> lines = With(With(With(DebugLog({}), cache("1")), cache("2")), cache("3"));
    lines = With(With(lines, line("jdeCacheTerminate", "2")), line("jdeCacheTerminateAll", "3"));
    EXPECT_EQ(FindingsLog(lines).Of(FindingRule::CacheNotTerminated),
              Texts{"cache-not-terminated C1 1: 1 0 2"});
    // One that was only found is another process's to end.
    EXPECT_TRUE(FindingsLog(With(DebugLog({}), line("Found existing cache", "9"))).All().empty());
}

TEST(ExploreFindings, TellCursorsThatNothingClosedInCachesThatLive) {
    const auto line = [](const std::string& text) { return Texts{At(1, text), At(1, "hCache:[1] Nm:[x]")}; };
    std::vector<std::string> lines = With(DebugLog({}), line("Open Cursor Success hCursor:[A]"));
    lines =
        With(With(lines, line("Open Cursor Success hCursor:[B]")), line("jdeCacheCloseCursor hCursor:[A]"));
    EXPECT_EQ(FindingsLog(lines).Of(FindingRule::CursorNotClosed), Texts{"cursor-not-closed B: 1 0 3"});
    EXPECT_TRUE(FindingsLog(With(lines, line("jdeCacheTerminate"))).All().empty());
}

TEST(ExploreFindings, TellCallsWithoutReturnByFunction) {
    EXPECT_EQ(FindingsLog(DebugLog({At(0, CallText("F", 1)), At(1, EventText("E")), At(3, CallText("F", 1)),
                                    At(4, CallText("G", 2)), At(5, ReturnText("G", 2)), At(5, "x y")}))
                  .Of(FindingRule::CallWithoutReturn),
              Texts{"call-without-return F: 2 5 1 3"});
}

TEST(ExploreFindings, TellOrphanReturnsByName) {
    EXPECT_EQ(FindingsLog(
                  DebugLog({At(0, ReturnText("G", 1)), At(1, ReturnText("F", 1)), At(2, ReturnText("G", 5))}))
                  .Of(FindingRule::OrphanReturn),
              (Texts{"orphan-return G: 2 0 1 3", "orphan-return F: 1 0 2"}));
}

TEST(ExploreFindings, TellWhatWentWrongFirstInTheHighestCallThatFailed) {
    const FindingsLog log(DebugLog(
        {At(0, "ERROR ahead"), At(0, CallText("F", 1)), At(1, CallText("G", 2)), At(2, "ERROR other", "1/1"),
         At(2, ReturnText("H", 7, 1)), At(2, "JDB error"), At(3, ReturnText("G", 2, 2)),
         At(4, ReturnText("F", 1, 3)), At(5, CallText("G", 1)), At(6, ReturnText("G", 1, 2)),
         At(7, CallText("F", 1)), At(7, "ERROR x"), At(8, ReturnText("F", 1, 1)), At(9, CallText("F", 1)),
         At(9, "x holds JDB3100001"), At(9, ReturnText("F", 1, 2))}));
    EXPECT_EQ(log.Of(FindingRule::FirstCause),
              (Texts{"first-cause F: 2 4 6 2 15 14", "first-cause G: 1 1 10 9"}));
    // In a JAS log a SEVERE is one.
    EXPECT_EQ(FindingsLog(JASLog({UserAt(0, CallText("F", 1)), UserAt(1, "x", "ANNE", "WARN"),
                                  UserAt(1, "x", "ANNE", "SEVERE"), UserAt(2, ReturnText("F", 1, 2))}))
                  .Of(FindingRule::FirstCause),
              Texts{"first-cause F: 1 2 8 6"});
}

TEST(ExploreFindings, TellSilencesOfMoreThanTheThresholdByTheInnermostFunction) {
    const FindingsLog log(
        DebugLog({At(0, "x y"), At(9, CallText("F", 1)), At(10, "x y"), At(12, EventText("E")),
                  At(15, CallText("G", 2)), At(16, "x y"), At(20, ReturnText("G", 2)), At(22, "x y"),
                  At(30, ReturnText("F", 1)), At(40, "x y")}));
    // The one ahead of F's call and the one behind its return are in no call; a call's own silence is its
    // caller's.
    EXPECT_EQ(log.Of(FindingRule::SilenceInCall),
              (Texts{"silence-in-call F: 4 15 4 5 8 9", "silence-in-call G: 1 4 7"}));
}

TEST(ExploreFindings, MeasureASilenceInTheStreamsOwnTime) {
    EXPECT_EQ(FindingsLog(
                  DebugLog({At(100, CallText("F", 1)), At(50, "x y"), At(103, "x y"), At(103, "x y", "1/1")}))
                  .Of(FindingRule::SilenceInCall),
              Texts{"silence-in-call F: 1 3 3"});
}

TEST(ExploreFindings, TellRollbacksWithTheLatestTroubleOfTheirTransaction) {
    const std::string begin = "Entering JDB_BeginTransaction";
    const std::string rollback = "Entering JDB_OpenTable Entering JDB_RollbackUser";
    EXPECT_EQ(FindingsLog(DebugLog({At(0, "ERROR a"), At(1, rollback), At(2, rollback), At(3, "ERROR b"),
                                    At(3, begin), At(4, rollback), At(5, CallText("F", 1)), At(5, "ERROR c"),
                                    At(5, "ERROR d"), At(5, "ERROR other", "1/1"), At(6, rollback),
                                    At(7, rollback + " JDB3100001"), At(8, rollback)}))
                  .Of(FindingRule::RolledBack),
              (Texts{"rolled-back : 1 0 1 2", "rolled-back : 1 0 3", "rolled-back : 1 0 6",
                     "rolled-back F: 1 0 9 11", "rolled-back F: 1 0 12", "rolled-back F: 1 0 13"}));
}

TEST(ExploreFindings, AreErrorsThenWarningsThenNotesByCostCountAndSubject) {
    const FindingsLog log(DebugLog(
        {At(0, ReturnText("B", 1)), At(0, ReturnText("A", 1)), At(0, ReturnText("C", 1)),
         At(0, ReturnText("C", 1)), At(1, CallText("U", 1)), At(2, CallText("V", 1)),
         At(4, "Entering JDB_RollbackUser"), At(4, CallText("W", 1)), At(5, ReturnText("W", 1, 2))}));
    EXPECT_EQ(log.All(),
              (Texts{"first-cause W: 1 1 9 8", "rolled-back V: 1 0 7", "call-without-return V: 1 2 6",
                     "call-without-return U: 1 1 5", "silence-in-call V: 1 2 7", "orphan-return C: 2 0 3 4",
                     "orphan-return A: 1 0 2", "orphan-return B: 1 0 1"}));
}

TEST(ExploreFindings, HaveANameASeverityAndAMeaning) {
    EXPECT_EQ(NameOf(FindingRule::RepeatedStatement), "repeated-statement");
    EXPECT_EQ(NameOf(FindingRule::RolledBack), "rolled-back");
    EXPECT_EQ(SeverityOf(FindingRule::CursorNotClosed), Severity::Note);
    EXPECT_EQ(NameOf(Severity::Warning), "warning");
    for (const FindingRule rule : {FindingRule::RepeatedStatement, FindingRule::RolledBack}) {
        EXPECT_TRUE(MeaningOf(rule).ends_with("."));
    }
}

TEST(ExploreOpenFunctions, AreThoseOpenAheadOfARecord) {
    const ExploredLog log(DebugLog({At(0, CallText("F", 1)), At(1, CallText("G", 2)), At(2, EventText("E")),
                                    At(3, CallText("H", 2)), At(4, ReturnText("H", 2)),
                                    At(5, ReturnText("F", 1)), At(6, EventText("E")), At(7, "x y")}));
    COpenFunctions functions(log.m_frames, log.m_streams);
    Texts names;
    for (std::uint32_t i = 0; i < log.m_session.Count(); ++i) {
        const std::uint32_t frame = functions.AheadOf(RecordIndex{i});
        names.push_back(log.KeyText(frame == kNoFrame ? kNoKey : log.m_frames[frame].key));
    }
    EXPECT_EQ(names, (Texts{"none", "none", "function F", "function G", "function G", "function H",
                            "function F", "none", "none"}));
}

TEST(ExploreFindings, AreExplainedInTheDocs) {
    std::ifstream file(std::string(CARVELOT_SOURCE_FOLDER) + "/docs/explore.md");
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    for (int i = 0; i <= static_cast<int>(FindingRule::UnreadLines); ++i) {
        const auto rule = static_cast<FindingRule>(i);
        std::string head = "**";
        head.append(NameOf(rule)).append(SeverityOf(rule) == Severity::Error ? "**, an " : "**, a ");
        head.append(NameOf(SeverityOf(rule))).append(":\n\"").append(MeaningOf(rule)).append("\"\n");
        EXPECT_NE(page.find(head), std::string::npos) << head;
    }
}

} // namespace carvelot::test
