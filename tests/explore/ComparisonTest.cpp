#include "explore/Comparison.h"

#include "explore/ExploredLog.h"
#include "platform/CodePage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace carvelot::test {

namespace {

using Texts = std::vector<std::string>;

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

struct Side {
    explicit Side(const Texts& lines, const ClockRange& range = {})
        : session(lines), explored(session.m_doc, session.m_settings), scope(explored, {}, range),
          findings(FindAll(explored)) {}

    ComparedSide Compared() const { return {explored, scope, findings}; }

    TestSession session;
    ExploredSession explored;
    ExploredScope scope;
    std::vector<Finding> findings;
};

// "base log difference".
std::string Of(const ComparedNumber& number) {
    return std::to_string(number.base)
        .append(" ")
        .append(std::to_string(number.log))
        .append(" ")
        .append(std::to_string(number.Difference()));
}
std::vector<ComparedNumber> NumbersOf(const ComparedFunction& row) {
    return {row.calls, row.unclosed, row.failed,  row.warned, row.total,
            row.self,  row.shortest, row.longest, row.p50,    row.p95};
}
std::vector<ComparedNumber> NumbersOf(const ComparedShape& row) {
    return {row.count, row.total, row.longest, row.p95};
}
std::vector<ComparedNumber> NumbersOf(const ComparedFinding& row) { return {row.count, row.cost}; }

std::string KeyOf(const ComparedFunction& row) {
    return std::string(NameOf(row.kind)).append(" ").append(row.name);
}
std::string KeyOf(const ComparedShape& row) { return std::string(row.text); }
std::string KeyOf(const ComparedFinding& row) {
    return std::string(NameOf(row.rule)).append(" ").append(row.subject);
}

// "key in: numbers", and of each function calls, total and self alone.
std::string TextOf(const ComparedFunction& row) {
    return KeyOf(row) + " " + std::string(NameOf(row.in)) + ": " + Of(row.calls) + ", " + Of(row.total) +
           ", " + Of(row.self);
}
template <class Row> std::string TextOf(const Row& row) {
    std::string text = KeyOf(row) + " " + std::string(NameOf(row.in)) + ":";
    for (const ComparedNumber& number : NumbersOf(row)) {
        text.append(text.back() == ':' ? " " : ", ").append(Of(number));
    }
    return text;
}
template <class Row> Texts TextsOf(const std::vector<Row>& rows) {
    Texts texts;
    for (const Row& row : rows) {
        texts.push_back(TextOf(row));
    }
    return texts;
}
template <class Row> Texts KeysOf(const std::vector<Row>& rows) {
    Texts keys;
    for (const Row& row : rows) {
        keys.push_back(KeyOf(row));
    }
    return keys;
}

void Append(Texts& lines, const Texts& more) { lines.insert(lines.end(), more.begin(), more.end()); }

// A call from one second to another with a statement of a second in it, and what it returned.
Texts Call(int from, int to, const std::string& name, int code = 0) {
    return {At(from, CallText(name, 1)),
            At(from, "SELECT A FROM T" + name + " WHERE B=" + std::to_string(from)), At(from + 1, kSqlDone),
            At(to, ReturnText(name, 1, code))};
}
Texts LogOf(const std::vector<Texts>& parts) {
    Texts lines = DebugLog({});
    for (const Texts& part : parts) {
        Append(lines, part);
    }
    return lines;
}

Texts GoodRun() { return LogOf({Call(0, 2, "F"), Call(3, 6, "G"), Call(7, 9, "H", 1)}); }
Texts BadRun() {
    return LogOf({Call(0, 12, "F"),
                  Call(13, 15, "F", 2),
                  Call(16, 19, "G"),
                  Call(20, 22, "K"),
                  {At(23, ReturnText("X", 1))}});
}

Finding OfCost(FindingRule rule, const std::string& subject, std::int64_t cost) {
    return {rule, subject, 1, cost, {}};
}
std::vector<ComparedFinding> FindingsOf(const std::vector<Finding>& base, const std::vector<Finding>& log) {
    static const Side empty(DebugLog({}));
    return Comparison({empty.explored, empty.scope, base}, {empty.explored, empty.scope, log}).findings;
}

} // namespace

TEST(ExploreComparison, TellsEachNumberOfBothSidesAndItsDifference) {
    const Side base(GoodRun());
    const Side log(BadRun());
    const Comparison comparison(base.Compared(), log.Compared());
    EXPECT_EQ(TextsOf(comparison.functions),
              (Texts{"function F both: 1 2 1, 2000000 14000000 12000000, 1000000 12000000 11000000",
                     "function H base: 1 0 -1, 2000000 0 -2000000, 1000000 0 -1000000",
                     "function K log: 0 1 1, 0 2000000 2000000, 0 1000000 1000000",
                     "statement SELECT TF both: 1 2 1, 1000000 2000000 1000000, 1000000 2000000 1000000",
                     "statement SELECT TH base: 1 0 -1, 1000000 0 -1000000, 1000000 0 -1000000",
                     "statement SELECT TK log: 0 1 1, 0 1000000 1000000, 0 1000000 1000000",
                     "function G both: 1 1 0, 3000000 3000000 0, 2000000 2000000 0",
                     "statement SELECT TG both: 1 1 0, 1000000 1000000 0, 1000000 1000000 0"}));
    const ComparedFunction& function = comparison.functions[0];
    EXPECT_EQ(Of(function.unclosed), "0 0 0");
    EXPECT_EQ(Of(function.failed), "0 1 1");
    EXPECT_EQ(Of(function.warned), "0 0 0");
    EXPECT_EQ(Of(function.shortest), "2000000 2000000 0");
    EXPECT_EQ(Of(function.longest), "2000000 12000000 10000000");
    EXPECT_EQ(Of(function.p50), "2000000 2000000 0");
    EXPECT_EQ(Of(function.p95), "2000000 12000000 10000000");
    EXPECT_EQ(Of(comparison.functions[1].warned), "1 0 -1");

    EXPECT_EQ(TextsOf(comparison.shapes),
              (Texts{"SELECT A FROM TF WHERE B=? both: 1 2 1, 1000000 2000000 1000000, 1000000 1000000 0, "
                     "1000000 1000000 0",
                     "SELECT A FROM TH WHERE B=? base: 1 0 -1, 1000000 0 -1000000, 1000000 0 -1000000, "
                     "1000000 0 -1000000",
                     "SELECT A FROM TK WHERE B=? log: 0 1 1, 0 1000000 1000000, 0 1000000 1000000, "
                     "0 1000000 1000000",
                     "SELECT A FROM TG WHERE B=? both: 1 1 0, 1000000 1000000 0, 1000000 1000000 0, "
                     "1000000 1000000 0"}));

    EXPECT_EQ(TextsOf(comparison.findings), (Texts{"silence-in-call F log: 0 1 1, 0 11000000 11000000",
                                                   "first-cause F log: 0 1 1, 0 2000000 2000000",
                                                   "silence-in-call G both: 1 1 0, 2000000 2000000 0",
                                                   "orphan-return X log: 0 1 1, 0 0 0"}));
}

TEST(ExploreComparison, GivesOnlyZerosOfALogAndItself) {
    const Side side(BadRun());
    const Comparison comparison(side.Compared(), side.Compared());
    const auto expectZeros = [](const auto& rows) {
        EXPECT_FALSE(rows.empty());
        for (const auto& row : rows) {
            EXPECT_EQ(NameOf(row.in), "both") << KeyOf(row);
            for (const ComparedNumber& number : NumbersOf(row)) {
                EXPECT_EQ(number.Difference(), 0) << KeyOf(row);
                EXPECT_EQ(number.base, number.log) << KeyOf(row);
            }
        }
    };
    expectZeros(comparison.functions);
    expectZeros(comparison.shapes);
    expectZeros(comparison.findings);
    // What doesn't differ stands by name.
    EXPECT_EQ(KeysOf(comparison.functions),
              (Texts{"function F", "function G", "function K", "statement SELECT TF", "statement SELECT TG",
                     "statement SELECT TK"}));
}

TEST(ExploreComparison, NegatesEveryDifferenceWhenTheTwoAreSwapped) {
    const Side good(GoodRun());
    const Side bad(BadRun());
    const Comparison one(good.Compared(), bad.Compared());
    const Comparison other(bad.Compared(), good.Compared());
    const auto expectNegated = [](const auto& rows, const auto& swapped) {
        ASSERT_EQ(KeysOf(rows), KeysOf(swapped));
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const auto numbers = NumbersOf(rows[i]);
            const auto negated = NumbersOf(swapped[i]);
            for (std::size_t k = 0; k < numbers.size(); ++k) {
                EXPECT_EQ(numbers[k].Difference(), -negated[k].Difference()) << KeyOf(rows[i]);
                EXPECT_EQ(numbers[k].base, negated[k].log) << KeyOf(rows[i]);
            }
        }
    };
    expectNegated(one.functions, other.functions);
    expectNegated(one.shapes, other.shapes);
    expectNegated(one.findings, other.findings);
    EXPECT_EQ(NameOf(one.functions[1].in), "base");
    EXPECT_EQ(NameOf(other.functions[1].in), "log");
}

TEST(ExploreComparison, OrdersByTheSizeOfTheDifferenceThenNameAndKind) {
    // An event of a function's name, and a name that stands behind all of ASCII, as the code page has it.
    std::string scratch;
    const std::string last(platform::BytesToUtf8("\xC3\x84", scratch));
    const Texts event{At(30, "RT: >>>Beginning ER:\tF\t"), At(31, kEventEnd)};
    const Side base(LogOf({Call(0, 4, "\xC3\x84"), Call(5, 9, "b"), Call(10, 14, "B")}));
    const Side log(LogOf({Call(0, 9, "Z"), Call(10, 14, "F"), event}));
    std::vector<std::string> functions;
    for (const ComparedFunction& function : Comparison(base.Compared(), log.Compared()).functions) {
        if (function.kind != FrameKind::Statement) {
            functions.push_back(KeyOf(function) + " " + std::to_string(function.total.Difference()));
        }
    }
    EXPECT_EQ(functions, (Texts{"function Z 9000000", "function B -4000000", "function F 4000000",
                                "function b -4000000", "function " + last + " -4000000", "event F 1000000"}));
    // Of one name and one difference the kinds stand by their names.
    const Side both(LogOf({{At(0, CallText("F", 1)), At(1, ReturnText("F", 1))}, event}));
    EXPECT_EQ(KeysOf(Comparison(both.Compared(), both.Compared()).functions),
              (Texts{"event F", "function F"}));
}

TEST(ExploreComparison, OrdersFindingsBySubjectThenRule) {
    EXPECT_EQ(KeysOf(FindingsOf(
                  {OfCost(FindingRule::SilenceInCall, "F", 5), OfCost(FindingRule::FirstCause, "G", 9)},
                  {OfCost(FindingRule::FirstCause, "F", 5), OfCost(FindingRule::FirstCause, "G", 1),
                   OfCost(FindingRule::OrphanReturn, "A", 0)})),
              (Texts{"first-cause G", "first-cause F", "silence-in-call F", "orphan-return A"}));
}

TEST(ExploreComparison, AddsFindingsOfOneRuleAndSubjectFirst) {
    const FindingRule rolledBack = FindingRule::RolledBack;
    EXPECT_EQ(TextsOf(FindingsOf(
                  {OfCost(rolledBack, "F", 0), OfCost(rolledBack, "G", 0), OfCost(rolledBack, "F", 0)},
                  {OfCost(rolledBack, "F", 0)})),
              (Texts{"rolled-back F both: 2 1 -1, 0 0 0", "rolled-back G base: 1 0 -1, 0 0 0"}));
}

TEST(ExploreComparison, KeepsSumsAndDifferencesWithin64Bits) {
    const FindingRule silence = FindingRule::SilenceInCall;
    const std::vector<Finding> twice{OfCost(silence, "F", kMost), OfCost(silence, "F", kMost)};
    const std::vector<Finding> once{OfCost(silence, "G", kMost - 1)};
    const std::string most = std::to_string(kMost);
    const std::string nearly = std::to_string(kMost - 1);
    EXPECT_EQ(TextsOf(FindingsOf(twice, once)),
              (Texts{"silence-in-call F base: 2 0 -2, " + most + " 0 -" + most,
                     "silence-in-call G log: 0 1 1, 0 " + nearly + " " + nearly}));
    EXPECT_EQ(TextsOf(FindingsOf({}, twice)), Texts{"silence-in-call F log: 0 2 2, 0 " + most + " " + most});
}

TEST(ExploreComparison, JoinsCachesAndCursorsByTheCachesName) {
    // The same cache has another handle in each run, and each of its cursors too.
    const auto run = [](const std::vector<std::string>& handles, const std::string& cursor) {
        Texts lines = DebugLog({});
        for (const std::string& handle : handles) {
            Append(lines,
                   {At(0, "jdeCacheInit Name:[ORDERS]"), At(0, "Created new cache hCache:[" + handle + "]"),
                    At(0, "hCache:[" + handle + "] Nm:[x]"),
                    At(0, "Open Cursor Success hCursor:[" + cursor + "]"),
                    At(0, "hCache:[" + handle + "] Nm:[x]")});
        }
        return lines;
    };
    const Side base(run({"1A"}, "C1"));
    const Side log(run({"2B", "3C"}, "C2"));
    ASSERT_EQ(base.findings[0].subject, "ORDERS 1A");
    ASSERT_EQ(log.findings[0].subject, "ORDERS 2B");
    ASSERT_EQ(base.findings[1].subject, "C1");
    const Comparison comparison(base.Compared(), log.Compared());
    EXPECT_EQ(TextsOf(comparison.findings), (Texts{"cache-not-terminated ORDERS both: 1 2 1, 0 0 0",
                                                   "cursor-not-closed ORDERS both: 1 2 1, 0 0 0"}));
}

TEST(ExploreComparison, LeavesFunctionsAndShapesOfAnEmptyScopeToTheOtherSide) {
    const Side base(GoodRun(), ClockRange{0, 0});
    const Side log(GoodRun());
    const Comparison comparison(base.Compared(), log.Compared());
    ASSERT_EQ(comparison.functions.size(), 6U);
    ASSERT_EQ(comparison.shapes.size(), 3U);
    EXPECT_TRUE(std::all_of(comparison.functions.begin(), comparison.functions.end(),
                            [](const ComparedFunction& row) { return NameOf(row.in) == "log"; }));
    EXPECT_TRUE(std::all_of(comparison.shapes.begin(), comparison.shapes.end(),
                            [](const ComparedShape& row) { return NameOf(row.in) == "log"; }));
    // Findings are whole.
    EXPECT_EQ(TextsOf(comparison.findings), Texts{"silence-in-call G both: 1 1 0, 2000000 2000000 0"});
}

} // namespace carvelot::test
