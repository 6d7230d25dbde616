#include "explore/Cut.h"
#include "explore/ExploredLog.h"
#include "explore/FrameNames.h"
#include "parse/Classifier.h"

#include <gtest/gtest.h>

#include <random>

namespace carvelot::test {

namespace {

using Texts = std::vector<std::string>;

Texts FramesOf(std::initializer_list<std::string> lines) { return ExploredLog(DebugLog(lines)).FrameTexts(); }
Texts UserFramesOf(std::initializer_list<std::string> lines) {
    return ExploredLog(JASLog(lines)).FrameTexts();
}

} // namespace

TEST(ExploreFrames, SpanACallAndTheReturnOfItsNameAndLevel) {
    EXPECT_EQ(FramesOf({At(0, CallText("F", 1)), At(1, CallText("G", 2)), At(3, ReturnText("G", 2, 1)),
                        At(7, ReturnText("F", 1, 0))}),
              (Texts{"function F 0+7 closed 0", "  function G 1+2 closed 1"}));
}

TEST(ExploreFrames, AreOfOneStreamEach) {
    EXPECT_EQ(FramesOf({At(0, CallText("F", 1), "1/2"), At(1, CallText("G", 2), "1/3"),
                        At(3, ReturnText("F", 1), "1/3"), At(4, ReturnText("F", 1), "1/2")}),
              (Texts{"function F 0+4 closed 0", "function G 1+2 unclosed"}));
}

TEST(ExploreFrames, EndUnclosedFromTheLowestOfTheLevelOrAHigherOneAtACall) {
    EXPECT_EQ(FramesOf({At(0, CallText("F", 1)), At(1, CallText("G", 3)), At(2, EventText("E")),
                        At(3, CallText("H", 0)), At(4, CallText("I", 5)), At(6, CallText("J", 2)),
                        At(7, kEventEnd), At(8, ReturnText("H", 0)), At(9, ReturnText("F", 1))}),
              (Texts{"function F 0+9 closed 0", "  function G 1+5 unclosed", "    event E 2+4 unclosed",
                     "      function H 3+3 unclosed", "        function I 4+2 unclosed",
                     "  function J 6+3 unclosed"}));
}

TEST(ExploreFrames, OfLevel0EndNothingAtTheirCall) {
    EXPECT_EQ(FramesOf({At(0, CallText("F", 1)), At(1, CallText("G", 0)), At(2, CallText("G", 0)),
                        At(3, CallText("G", -1)), At(4, ReturnText("F", 1))}),
              (Texts{"function F 0+4 closed 0", "  function G 1+3 unclosed", "    function G 2+2 unclosed",
                     "      function G 3+1 unclosed"}));
}

TEST(ExploreFrames, AreClosedByTheTopmostOfNameAndLevelAndOfAnyLevelForLevel0) {
    EXPECT_EQ(FramesOf({At(0, CallText("F", 1)), At(1, CallText("F", 2)), At(2, CallText("F", 3)),
                        At(3, ReturnText("F", 2)), At(4, ReturnText("F", 0, 2))}),
              (Texts{"function F 0+4 closed 2", "  function F 1+2 closed 0", "    function F 2+1 unclosed"}));
    EXPECT_EQ(FramesOf({At(0, CallText("F", 0)), At(1, CallText("F", 3)), At(2, ReturnText("F", 0))}),
              (Texts{"function F 0+2 unclosed", "  function F 1+1 closed 0"}));
}

TEST(ExploreFrames, LeaveAReturnWithoutItsCallAnOrphan) {
    const ExploredLog log(
        DebugLog({At(0, CallText("F", 1)), At(1, ReturnText("F", 2)), At(2, ReturnText("G", 1)),
                  At(3, ReturnText("F", 1)), At(4, ReturnText("F", 1)), At(5, "Return value is 1 for")}));
    EXPECT_EQ(log.FrameTexts(), Texts{"function F 0+3 closed 0"});
    Texts orphans;
    for (const OrphanReturn& orphan : log.m_frames.OrphanReturns()) {
        orphans.push_back(std::to_string(Number(orphan.record)) + " " + log.KeyText(orphan.key));
    }
    EXPECT_EQ(orphans, (Texts{"2 function F", "3 function G", "5 function F"}));
}

TEST(ExploreFrames, AreNotMadeByACallWithoutAName) {
    EXPECT_EQ(FramesOf({At(0, "Calling something else"), At(1, "Calling Business function F"),
                        At(2, CallText("G", 1))}),
              Texts{"function G 0+0 unclosed"});
}

TEST(ExploreFrames, OfEventsAreClosedByTheTopmostFirst) {
    EXPECT_EQ(FramesOf({At(0, kEventEnd), At(1, EventText("E")), At(2, EventText("E2")),
                        At(3, CallText("F", 1)), At(4, kEventEnd), At(6, kEventEnd), At(7, kEventEnd)}),
              (Texts{"event E 0+5 closed", "  event E2 1+2 closed", "    function F 2+1 unclosed"}));
}

TEST(ExploreFrames, EndAtTheirStreamsLastTimeWhereNothingEndsThem) {
    EXPECT_EQ(FramesOf({At(0, CallText("F", 1)), At(2, EventText("E")), At(9, "a b"), At(60, "a b", "1/1")}),
              (Texts{"function F 0+9 unclosed", "  event E 2+7 unclosed"}));
}

TEST(ExploreFrames, UseATimeThatNeverFalls) {
    EXPECT_EQ(FramesOf({At(100, "a b"), At(50, CallText("F", 1)), At(90, "a b"), At(40, ReturnText("F", 1)),
                        At(60, CallText("G", 1)), At(130, ReturnText("G", 1))}),
              (Texts{"function F 0+0 closed 0", "function G 0+30 closed 0"}));
}

TEST(ExploreFrames, OfADebugLogsStatementEndAtTheEndOfItsRequest) {
    EXPECT_EQ(FramesOf({At(0, CallText("F", 1)), At(1, "SELECT * FROM PRODDTA.F0101 WHERE A=1"), At(2, "x y"),
                        At(3, kSqlDone), At(4, kSqlDone), At(5, ReturnText("F", 1))}),
              (Texts{"function F 0+5 closed 0", "  statement SELECT PRODDTA.F0101 1+2 closed"}));
    // Of another stream's end nothing is known.
    EXPECT_EQ(FramesOf({At(1, "DROP TABLE X"), At(3, kSqlDone, "1/1")}),
              Texts{"statement DROP 0+0 unclosed"});
}

TEST(ExploreFrames, OfADebugLogsStatementHaveNoEndBehindAnotherStart) {
    for (const std::string other : {"UPDATE F0101 SET A=1", "Calling x", "Return value is 1 for",
                                    "RT: >>>Beginning ER:\tE\t", "RT: <<<Finished  ER:\t"}) {
        EXPECT_EQ(FramesOf({At(1, "DELETE FROM F0101"), At(2, other), At(3, kSqlDone)})[0],
                  "statement DELETE F0101 0+0 unclosed")
            << other;
    }
}

TEST(ExploreFrames, OfAnOLEDBStatementBearTheWordThatTheClassifierFinds) {
    EXPECT_EQ(FramesOf({At(1, "[JDBOLEDB] INSERT x SELECT y"), At(2, kSqlDone)}),
              Texts{"statement SELECT 0+1 closed"});
}

TEST(ExploreFrames, OfAJASLogEndAtTheirUsersNextRecord) {
    EXPECT_EQ(UserFramesOf({UserAt(0, "SELECT * FROM F0101"), UserAt(1, "x", "BOB"),
                            UserAt(2, "Object Called: F4211.Open"), UserAt(5, "x", "ANNE", "WARN"),
                            UserAt(6, "INSERT INTO F0101(A) VALUES(1)")}),
              (Texts{"statement SELECT F0101 0+2 closed", "object Open 2+3 closed",
                     "statement INSERT F0101 6+0 unclosed"}));
}

TEST(ExploreFrames, OfAJASLogKnowCallsReturnsAndEventsToo) {
    EXPECT_EQ(UserFramesOf({UserAt(0, "P4210 , Event Starts : Dialog is Initialized"),
                            UserAt(1, CallText("F", 1)), UserAt(2, "SELECT * FROM F0101"),
                            UserAt(4, ReturnText("F", 1, 2)), UserAt(5, "x Event Ends: y")}),
              (Texts{"event P4210 Dialog is Initialized 0+5 closed", "  function F 1+3 closed 2",
                     "    statement SELECT F0101 2+2 closed"}));
}

TEST(ExploreFrames, TellTheRecordThatEndsThemAndWhetherTheyStandWithinTheirKey) {
    const ExploredLog log(DebugLog({At(0, CallText("F", 1)), At(1, EventText("F")), At(2, CallText("F", 2)),
                                    At(3, EventText("F")), At(4, "DROP x"), At(5, ReturnText("F", 2)),
                                    At(6, CallText("F", 2))}));
    std::vector<std::uint32_t> ended;
    std::vector<bool> within;
    for (std::uint32_t i = 0; i < log.m_frames.Count(); ++i) {
        ended.push_back(Number(log.m_frames[i].ended));
        within.push_back(log.m_frames[i].withinItsKey);
    }
    const std::uint32_t none = Number(kNoRecord);
    EXPECT_EQ(ended, (std::vector<std::uint32_t>{none, none, 6, 6, 5, none}));
    EXPECT_EQ(within, (std::vector<bool>{false, false, true, true, false, true}));
}

TEST(ExploreFrames, HaveTheirOwnTimeWithoutThatDirectlyBelow) {
    const ExploredLog log(DebugLog({At(0, CallText("F", 1)), At(1, CallText("G", 2)), At(2, CallText("H", 3)),
                                    At(5, ReturnText("H", 3)), At(6, ReturnText("G", 2)),
                                    At(6, CallText("G", 2)), At(9, ReturnText("F", 1))}));
    Texts selfs;
    for (const std::int64_t self : CCut(log.m_frames, log.m_streams, {}, {}).SelfTimes()) {
        selfs.push_back(ExploredLog::Seconds(self));
    }
    EXPECT_EQ(selfs, (Texts{"1", "2", "3", "3"}));
}

TEST(ExploreFrames, OfDeepCallsWithReturnsOfOthersTakeNoWalkOfTheirStack) {
    // A walk of the stack at each line would take minutes.
    constexpr int depth = 100'000;
    std::vector<std::string> lines = DebugLog({});
    for (int i = 0; i < depth; ++i) {
        lines.push_back(At(i / 1000, i % 3 == 0 ? EventText("E") : CallText("F", i % 3 == 1 ? 0 : i)));
    }
    for (int i = 0; i < depth; ++i) {
        lines.push_back(At(200, ReturnText("F", depth + i)));
        lines.push_back(At(200, CallText("G", depth + 1)));
    }
    lines.push_back(At(300, CallText("H", 1)));
    const ExploredLog log(lines);
    EXPECT_EQ(log.m_frames.Count(), 2U * depth + 1);
    EXPECT_EQ(log.m_frames.OrphanReturns().size(), static_cast<std::size_t>(depth));
    const Frame& last = log.m_frames[2 * depth];
    EXPECT_EQ(last.parent, 1U); // the event and the call of level 0 below the lowest of level 1 or more
    EXPECT_EQ(log.m_frames[2].ended, last.record);
}

TEST(ExploreFrames, AreTheSameAsByAWalkOfTheStackAtEachRecord) {
    struct Open {
        std::uint32_t frame;
        bool function;
        std::string name;
        int level;
    };
    std::mt19937 random(7);
    const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
    for (int round = 0; round < 200; ++round) {
        std::vector<std::string> lines = DebugLog({});
        std::vector<Open> stack;
        std::vector<std::uint32_t> ended;
        std::vector<bool> closed;
        std::vector<std::uint32_t> parents;
        const auto endFrom = [&](std::size_t place, std::uint32_t record, bool isClosed) {
            closed[stack[place].frame] = isClosed;
            for (std::size_t i = place; i < stack.size(); ++i) {
                ended[stack[i].frame] = record;
            }
            stack.resize(place);
        };
        for (int i = 0; i < 60; ++i) {
            const auto record = static_cast<std::uint32_t>(lines.size());
            const std::string name(1, static_cast<char>('F' + below(3)));
            const int level = below(6) - 1;
            const int what = below(8);
            const auto open = [&](bool function) {
                parents.push_back(stack.empty() ? kNoFrame : stack.back().frame);
                stack.push_back({static_cast<std::uint32_t>(ended.size()), function, name, level});
                ended.push_back(Number(kNoRecord));
                closed.push_back(false);
            };
            if (what < 4) {
                lines.push_back(At(i, CallText(name, level)));
                for (std::size_t place = 0; level > 0 && place < stack.size(); ++place) {
                    if (stack[place].function && stack[place].level >= level) {
                        endFrom(place, record, false);
                    }
                }
                open(true);
            } else if (what < 6) {
                lines.push_back(At(i, ReturnText(name, level)));
                for (std::size_t place = stack.size(); place-- > 0;) {
                    if (stack[place].function && stack[place].name == name &&
                        (level == 0 || stack[place].level == level)) {
                        endFrom(place, record, true);
                        break;
                    }
                }
            } else if (what == 6) {
                lines.push_back(At(i, EventText(name)));
                open(false);
            } else {
                lines.push_back(At(i, kEventEnd));
                for (std::size_t place = stack.size(); place-- > 0;) {
                    if (!stack[place].function) {
                        endFrom(place, record, true);
                        break;
                    }
                }
            }
        }
        const ExploredLog log(lines);
        ASSERT_EQ(log.m_frames.Count(), ended.size());
        for (std::uint32_t i = 0; i < ended.size(); ++i) {
            ASSERT_EQ(Number(log.m_frames[i].ended), ended[i]) << TestSession::Joined(lines);
            ASSERT_EQ(log.m_frames[i].closed, closed[i]) << TestSession::Joined(lines);
            ASSERT_EQ(log.m_frames[i].parent, parents[i]) << TestSession::Joined(lines);
        }
    }
}

TEST(ExploreFrameNames, AreAnEventsDisplayNameOrItsTextWithoutTheWordsOfItsStart) {
    std::string scratch;
    EXPECT_EQ(EventName("Form: W - E", "Event Starts : x", scratch), "Form: W - E");
    EXPECT_EQ(EventName("", "P4210 , ,Event Starts :  Grid , x", scratch), "P4210 Grid , x");
    EXPECT_EQ(EventName("", " , Event Starts :  Grid", scratch), "Grid");
    EXPECT_EQ(EventName("", "P4210, Event Starts :  ", scratch), "P4210");
    EXPECT_EQ(EventName("", "a Event Starts :b Event Starts :c", scratch), "a b Event Starts :c");
    EXPECT_EQ(EventName("", "  as it stands ", scratch), "  as it stands ");
    EXPECT_EQ(EventName("", "Event Starts :", scratch), "");
    EXPECT_EQ(EventName("", "a,\tEvent Starts :\tb", scratch), "a,\t \tb");
}

TEST(ExploreFrameNames, AreAStatementsOperationAndTable) {
    std::string scratch;
    EXPECT_EQ(StatementName("SELECT", "PRODDTA.F4211", scratch), "SELECT PRODDTA.F4211");
    EXPECT_EQ(StatementName("ALTER", "", scratch), "ALTER");
}

TEST(ExploreFrameNames, TellTheOperationWordOfEveryStatement) {
    const std::vector<std::string> texts{"SELECT x", "UPDATE x", "INSERT x",
                                         "DELETE x", "ALTER x",  "[JDBOLEDB] a DROP"};
    for (const std::string& text : texts) {
        const TestSession session(DebugLog({At(0, text)}));
        const std::string_view word = OperationWordOf(session.m_doc.m_listDetails, RecordIndex{1});
        EXPECT_EQ(word, FindOperationWord(text));
        EXPECT_FALSE(word.empty());
    }
}

TEST(ExploreFrameKeys, AreOrderedByKindAndThenByName) {
    CFrameKeys keys;
    const std::uint32_t statement = keys.Number(FrameKind::Statement, "A");
    const std::uint32_t functionB = keys.Number(FrameKind::Function, "B");
    const std::uint32_t functionA = keys.Number(FrameKind::Function, "A");
    const std::uint32_t event = keys.Number(FrameKind::Event, "Z");
    EXPECT_EQ(keys.Number(FrameKind::Function, "B"), functionB);
    const std::vector<std::uint32_t> order{kNoKey, event, functionA, functionB, statement};
    for (std::size_t i = 0; i < order.size(); ++i) {
        for (std::size_t j = 0; j < order.size(); ++j) {
            EXPECT_EQ(keys.Less(order[i], order[j]), i < j) << i << ' ' << j;
        }
    }
}

} // namespace carvelot::test
