#include "analysis/BSFNAnalysis.h"

#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

using Indices = std::vector<std::uint32_t>;
using Function = CBSFNAnalysis::CBSFN;

std::string Call(std::string_view function, int level) {
    return std::string("Calling Business function ")
               .append(function)
               .append(" from Level 1 for JDE. (BSFNLevel = ") +
           std::to_string(level) + ")";
}

std::string Return(std::string_view function, int level, int code = 0) {
    return "Return value is " + std::to_string(code) + " for " + std::string(function) +
           ". (BSFNLevel = " + std::to_string(level) + ")";
}

const Function& Find(const CBSFNAnalysis& analysis, std::string_view name) {
    for (const Function& function : analysis.m_functions) {
        if (function.m_strName == name) {
            return function;
        }
    }
    throw std::runtime_error("no such function");
}

} // namespace

TEST(AddCall, ClosesAllOpenCallsOfAFunctionAndLevelAtOneReturn) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000000", Call("F", 2)),
        DebugLine("10:00:00.100000", Call("F", 2)),
        DebugLine("10:00:00.300000", Call("F", 2)),
        DebugLine("10:00:00.400000", Call("F", 3)),
        DebugLine("10:00:02.000000", Return("F", 2, 1)),
    }));
    const Function& f = Find(session.Thread(4120, 3388).m_pBSFNAnalysis, "F");
    ASSERT_EQ(f.m_instances.size(), 4U);
    EXPECT_EQ(f.m_instances[0].m_duration, 2'000'000U);
    EXPECT_EQ(f.m_instances[1].m_duration, 1'900'000U);
    EXPECT_EQ(f.m_instances[2].m_duration, 1'700'000U);
    EXPECT_EQ(f.m_instances[2].m_result, 1);
    EXPECT_EQ(f.m_instances[3].m_endTime, 0U); // another level stays open
    EXPECT_EQ(f.m_totalTime, 5'600'000U);
    EXPECT_EQ(f.m_shortest, 1'700'000U);
    EXPECT_EQ(f.m_longest, 2'000'000U);
    EXPECT_EQ(f.m_strLocation, "Local");
    // The last one is closed first, so the first one is the newest long task.
    EXPECT_EQ(Numbers(session.Process(4120).m_pBSFNAnalysis.m_listLongTasks), (Indices{1, 2, 3}));
    EXPECT_EQ(session.Record(1).m_fDuration, 2.0F);
}

TEST(AddCall, ClosesTheCallsOfOtherThreadsInTheProcessesAnalysis) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000000", Call("F", 1), "9/1"),
        DebugLine("10:00:00.100000", Call("F", 1), "9/2"),
        DebugLine("10:00:00.500000", Return("F", 1), "9/2"),
    }));
    const Function& ofProcess = Find(session.Process(9).m_pBSFNAnalysis, "F");
    EXPECT_EQ(ofProcess.m_instances[0].m_endTime, LogTime(10, 0, 0, 500000));
    EXPECT_EQ(ofProcess.m_instances[1].m_endTime, LogTime(10, 0, 0, 500000));
    EXPECT_EQ(Find(session.Thread(9, 1).m_pBSFNAnalysis, "F").m_instances[0].m_endTime, 0U);
    EXPECT_EQ(Find(session.Thread(9, 2).m_pBSFNAnalysis, "F").m_instances[0].m_endTime,
              LogTime(10, 0, 0, 500000));
    EXPECT_EQ(session.Record(1).m_fDuration, 0.5F); // by the process's closing
}

TEST(AddCall, AddsItsOwnConstantToATimeThatFell) {
    const TestSession session(DebugLog({
        DebugLine("23:59:59.000000", Call("F", 1)),
        DebugLine("00:00:01.000000", Return("F", 1)),
    }));
    const Function& f = Find(session.Process(4120).m_pBSFNAnalysis, "F");
    const std::uint64_t expected = 1'000'000ULL - 86'399'000'000ULL + 3'850'327'039ULL;
    EXPECT_EQ(f.m_instances[0].m_duration, expected);
    EXPECT_EQ(f.m_totalTime, expected);
    EXPECT_GT(SecondsFromMicroseconds(f.m_totalTime), 1.8e13F);
    EXPECT_EQ(Numbers(session.Process(4120).m_pBSFNAnalysis.m_listLongTasks), Indices{1});
}

TEST(AddCall, ClosesOnlyLevel0WhereAReturnNamesNoLevel) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000000", Call("F", 1)),
        DebugLine("10:00:00.100000", "Calling Business function F from Level 1"),
        DebugLine("10:00:00.200000", "Return value is 0 for F. "),
    }));
    const Function& f = Find(session.Process(4120).m_pBSFNAnalysis, "F");
    EXPECT_EQ(f.m_instances[0].m_endTime, 0U);
    // "for F." is followed by nothing, as the text is trimmed: the name is empty, and the call stays open.
    EXPECT_EQ(f.m_instances[1].m_endTime, 0U);
    EXPECT_EQ(Find(session.Process(4120).m_pBSFNAnalysis, "").m_instances.size(), 0U);
}

TEST(AddCall, LeavesACallWithoutATimeUnmeasured) {
    const TestSession session(DebugLog({
        DebugLine("00:00:00.000000", Call("F", 1)),
        DebugLine("00:00:09.000000", Return("F", 1)),
    }));
    const Function& f = Find(session.Process(4120).m_pBSFNAnalysis, "F");
    EXPECT_EQ(f.m_instances[0].m_duration, ~std::uint64_t{0});
    EXPECT_EQ(f.m_instances[0].m_endTime, 9'000'000U);
    EXPECT_EQ(f.m_totalTime, 0U);
    EXPECT_TRUE(session.Process(4120).m_pBSFNAnalysis.m_listLongTasks.empty());
}

TEST(AddCall, ClosesACallOnceMoreThatEndedWithoutATime) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000000", Call("F", 1)),
        DebugLine("00:00:00.000000", Return("F", 1)),
        DebugLine("10:00:01.000000", Return("F", 1)),
        DebugLine("10:00:02.000000", Return("F", 1)),
    }));
    const Function& f = Find(session.Process(4120).m_pBSFNAnalysis, "F");
    EXPECT_EQ(f.m_instances[0].m_endTime, LogTime(10, 0, 1, 0));
    EXPECT_EQ(f.m_totalTime, 0ULL - LogTime(10, 0, 0, 0) + 3'850'327'039ULL + 1'000'000ULL);
}

TEST(AddCall, NeverKeepsACallOf0AsTheShortest) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000000", Call("F", 1)),
        DebugLine("10:00:00.000000", Return("F", 1)),
        DebugLine("10:00:00.000010", Call("F", 1)),
        DebugLine("10:00:00.000015", Return("F", 1)),
        DebugLine("10:00:00.000020", Call("F", 1)),
        DebugLine("10:00:00.000023", Return("F", 1)),
    }));
    const Function& f = Find(session.Process(4120).m_pBSFNAnalysis, "F");
    EXPECT_EQ(f.m_shortest, 3U);
    EXPECT_EQ(f.m_longest, 5U);
}

TEST(AddCall, TakesNoCallOfExactlyTheThresholdForLong) {
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000000", Call("F", 1)), DebugLine("10:00:01.000000", Return("F", 1))}));
    EXPECT_TRUE(session.Process(4120).m_pBSFNAnalysis.m_listLongTasks.empty());
    EXPECT_EQ(session.Record(1).m_fDuration, 1.0F);
}

TEST(AddCall, MakesAFunctionOfAReturnThatNoCallStarted) {
    const TestSession session(DebugLog({DebugLine("10:00:00.000000", Return("Lonely", 1))}));
    const Function& f = Find(session.Process(4120).m_pBSFNAnalysis, "Lonely");
    EXPECT_EQ(f.m_instances.size(), 0U);
    EXPECT_EQ(f.m_strLocation, "");
}

TEST(ReadCallLine, ReadsNameAndLevel) {
    CDetailList names;
    const auto read = [&](LogKind kind, std::string_view text) {
        const CallLine line = ReadCallLine(names, kind, text);
        return std::string(names.Name(line.function)) + "/" + std::to_string(line.level);
    };
    EXPECT_EQ(read(LOG_CALL, "Calling Business function F4111EditLine from X for JDE. (BSFNLevel = 2)"),
              "F4111EditLine/2");
    EXPECT_EQ(read(LOG_CALL, "Calling Business function F4111EditLine"), "/0"); // nothing follows the name
    EXPECT_EQ(read(LOG_CALL, "Calling something else (BSFNLevel = 3)"), "/3");
    EXPECT_EQ(read(LOG_CALL, "Calling Business function X y BSFNLevel = 12"), "X/12");
    EXPECT_EQ(read(LOG_CALL, "Calling Business function X y BSFNLevel =  -3)"), "X/-3");
    EXPECT_EQ(read(LOG_RETURN, "Return value is 0 for F4111EditLine... (BSFNLevel = 2)"), "F4111EditLine/2");
    EXPECT_EQ(read(LOG_RETURN, "Return value is 0 for F4111EditLine"), "/0");
    EXPECT_EQ(read(LOG_RETURN, "Return value is 0"), "/0");
}

TEST(AddObjectCall, TakesTheNameBehindTheFirstDotFromColumn15) {
    const TestSession session(JASLog({
        JASLine("08:00:00,001", "A", "Object Called: a.b.c"),
        JASLine("08:00:00,002", "A", "Object Called: nodot"),
        JASLine("08:00:00,003", "A", "x Object Called: F.G"),
        JASLine("08:00:00,004", "A", "nothing"),
    }));
    const auto& functions = session.User("A").m_pBSFNAnalysis.m_functions;
    ASSERT_EQ(functions.size(), 3U);
    EXPECT_EQ(functions[0].m_strName, "b.c");
    EXPECT_EQ(functions[1].m_strName, "nodot");
    EXPECT_EQ(functions[2].m_strName, "G"); // column 15 is the colon's
    EXPECT_EQ(functions[0].m_instances[0].m_level, 1);
    EXPECT_EQ(functions[0].m_totalTime, 1000U);
    EXPECT_EQ(functions[0].m_strLocation, "");
}

TEST(EndObjectCall, DecidesByItsOwnConstantWhatElapsedSecondsThenMeasures) {
    const TestSession session(
        JASLog({JASLine("08:00:02,000", "A", "Object Called: F.G"), JASLine("08:00:01,000", "A", "x")}));
    // One second back: 3850 seconds less one by the call's rule, 46,799 by the other.
    EXPECT_EQ(session.User("A").m_pBSFNAnalysis.m_functions[0].m_totalTime, 3'850'327'039ULL - 1'000'000ULL);
    EXPECT_EQ(session.Record(kJASLead).m_fDuration, 46798.999999F);
}

} // namespace carvelot::test
