#include "explore/ProfileExport.h"
#include "explore/ExploredLog.h"
#include "explore/ExportFormats.h"
#include "support/TestFolder.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

// Explored with its lines numbered.
class ExportedLog {
public:
    explicit ExportedLog(const std::vector<std::string>& lines) : m_session(lines) {}

    // What a file of this name holds.
    std::string Export(const std::string& name, const Selection& scope = {},
                       const ClockRange& range = {}) const {
        const TestFolder folder;
        int error = 0;
        const CCut cut(m_frames, m_streams, scope, range);
        EXPECT_TRUE(WriteProfileExport(folder.Path(name), ProfileFormatOf(name).value(),
                                       {m_session.m_doc, m_streams, cut, &m_session.m_doc.m_listLineNumbers},
                                       error))
            << error;
        EXPECT_EQ(folder.Names(), std::vector<std::string>{name});
        return folder.Read(name);
    }

    TestSession m_session;
    CClock m_clock{Numbered(m_session.m_doc).m_listDetails};
    CStreams m_streams{m_session.m_doc};
    CFrames m_frames{m_session.m_doc, m_clock, m_streams};

private:
    static const CCarvelotDoc& Numbered(CCarvelotDoc& session) {
        session.m_bNumberLines = true;
        session.LoadLog();
        return session;
    }
};

// F runs for 5 seconds and, at once, again for 3; in it runs G with a statement that takes no time.
std::vector<std::string> SmallLog() {
    std::vector<std::string> lines =
        DebugLog({At(0, CallText("F", 1)), At(1, CallText("G", 2)), At(2, "DROP x"),
                  At(3, ReturnText("G", 2)), At(5, ReturnText("F", 1)), At(5, CallText("F", 1)),
                  At(6, CallText("G", 2), "4120/7"), At(8, ReturnText("F", 1))});
    lines[0] = At(0, "Entering JDB_OpenTable", "1/1");
    return lines;
}

std::size_t CountOf(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

constexpr const char* kNames[] = {"x.folded", "x.speedscope.json", "x.trace.json", "x.callgrind"};

} // namespace

TEST(ExploreProfileFormat, IsToldByTheEndOfTheFilesNameInAnyCase) {
    EXPECT_EQ(ProfileFormatOf("folder/a.folded"), ProfileFormat::Folded);
    EXPECT_EQ(ProfileFormatOf("A.FOLDED"), ProfileFormat::Folded);
    EXPECT_EQ(ProfileFormatOf("a.b.speedscope.json"), ProfileFormat::Speedscope);
    EXPECT_EQ(ProfileFormatOf("a.SpeedScope.Json"), ProfileFormat::Speedscope);
    EXPECT_EQ(ProfileFormatOf("a.trace.json"), ProfileFormat::Trace);
    EXPECT_EQ(ProfileFormatOf("a.callgrind"), ProfileFormat::Callgrind);
    EXPECT_EQ(ProfileFormatOf(".callgrind"), ProfileFormat::Callgrind);
    for (const char* const other : {"", "folded", "a.json", "a.folded.txt", "a.callgrind/", "speedscope.json",
                                    "a.trace", "a.folded "}) {
        EXPECT_EQ(ProfileFormatOf(other), std::nullopt) << other;
    }
}

TEST(ExploreFolded, IsALineForEachPathOfAStreamWithItsOwnTime) {
    EXPECT_EQ(ExportedLog(SmallLog()).Export("x.folded"), "thread:4120/3388;F 6000000\n"
                                                          "thread:4120/3388;F;G 2000000\n"
                                                          "thread:4120/3388;F;G;DROP 0\n"
                                                          "thread:4120/7;G 0\n");
}

TEST(ExploreSpeedscope, IsAProfileForEachStreamWithTheEventsOfItsFrames) {
    const std::string text = ExportedLog(SmallLog()).Export("x.speedscope.json");
    EXPECT_EQ(text,
              R"({"$schema":"https://www.speedscope.app/file-format-schema.json","exporter":"carvelot",)"
              R"("shared":{"frames":[{"name":"F","file":"function"},{"name":"G","file":"function"},)"
              R"({"name":"DROP","file":"statement"}]},"profiles":[)"
              R"({"type":"evented","name":"thread:4120/3388","unit":"microseconds",)"
              R"("startValue":0,"endValue":8000000,"events":[)"
              R"({"type":"O","frame":0,"at":0},{"type":"O","frame":1,"at":1000000},)"
              R"({"type":"O","frame":2,"at":2000000},{"type":"C","frame":2,"at":2000000},)"
              R"({"type":"C","frame":1,"at":3000000},{"type":"C","frame":0,"at":5000000},)"
              R"({"type":"O","frame":0,"at":5000000},{"type":"C","frame":0,"at":8000000}]},)"
              R"({"type":"evented","name":"thread:4120/7","unit":"microseconds",)"
              R"("startValue":6000000,"endValue":6000000,"events":[)"
              R"({"type":"O","frame":1,"at":6000000},{"type":"C","frame":1,"at":6000000}]}]})"
              "\n");
}

TEST(ExploreTrace, IsACompleteEventForEachFrameInANamedThread) {
    const std::string text = ExportedLog(SmallLog()).Export("x.trace.json");
    EXPECT_EQ(text,
              R"({"displayTimeUnit":"ms","traceEvents":[)"
              R"({"ph":"M","name":"process_name","cat":"__metadata","pid":4120,"tid":3388,"ts":0,)"
              R"("args":{"name":"process:4120"}},)"
              R"({"ph":"M","name":"thread_name","cat":"__metadata","pid":4120,"tid":3388,"ts":0,)"
              R"("args":{"name":"thread:4120/3388"}},)"
              R"({"ph":"X","name":"F","cat":"function","pid":4120,"tid":3388,"ts":0,"dur":5000000,)"
              R"("args":{"record":1,"line":2}},)"
              R"({"ph":"X","name":"G","cat":"function","pid":4120,"tid":3388,"ts":1000000,"dur":2000000,)"
              R"("args":{"record":2,"line":3}},)"
              R"({"ph":"X","name":"DROP","cat":"statement","pid":4120,"tid":3388,"ts":2000000,"dur":0,)"
              R"("args":{"record":3,"line":4}},)"
              R"({"ph":"X","name":"F","cat":"function","pid":4120,"tid":3388,"ts":5000000,"dur":3000000,)"
              R"("args":{"record":6,"line":7}},)"
              R"({"ph":"M","name":"thread_name","cat":"__metadata","pid":4120,"tid":7,"ts":0,)"
              R"("args":{"name":"thread:4120/7"}},)"
              R"({"ph":"X","name":"G","cat":"function","pid":4120,"tid":7,"ts":6000000,"dur":0,)"
              R"("args":{"record":7,"line":8}}]})"
              "\n");
}

TEST(ExploreCallgrind, TellsOwnTimesAndCallsWithWhatNothingCalledCalledByTheTop) {
    EXPECT_EQ(ExportedLog(SmallLog()).Export("x.callgrind"), "# callgrind format\n"
                                                             "version: 1\n"
                                                             "creator: carvelot\n"
                                                             "positions: line\n"
                                                             "event: us : Microseconds\n"
                                                             "events: us\n"
                                                             "summary: 8000000\n"
                                                             "\n"
                                                             "fl=(top)\n"
                                                             "fn=(top)\n"
                                                             "0 0\n"
                                                             "cfl=function\n"
                                                             "cfn=(1) F\n"
                                                             "calls=2 0\n"
                                                             "0 8000000\n"
                                                             "cfl=function\n"
                                                             "cfn=(2) G\n"
                                                             "calls=1 0\n"
                                                             "0 0\n"
                                                             "\n"
                                                             "fl=function\n"
                                                             "fn=(1)\n"
                                                             "0 6000000\n"
                                                             "cfl=function\n"
                                                             "cfn=(2)\n"
                                                             "calls=1 0\n"
                                                             "0 2000000\n"
                                                             "\n"
                                                             "fl=function\n"
                                                             "fn=(2)\n"
                                                             "0 2000000\n"
                                                             "cfl=statement\n"
                                                             "cfn=(3) DROP\n"
                                                             "calls=1 0\n"
                                                             "0 0\n"
                                                             "\n"
                                                             "fl=statement\n"
                                                             "fn=(3)\n"
                                                             "0 0\n"
                                                             "\n"
                                                             "totals: 8000000\n");
}

TEST(ExploreExports, HoldWhatTheScopeAndTheRangeHold) {
    const ExportedLog log(SmallLog());
    const Selection thread(log.m_session.Thread(4120, 3388));
    const ClockRange range{2'500'000, 6'000'000};
    EXPECT_EQ(log.Export("x.folded", thread, range), "thread:4120/3388;F 3000000\n"
                                                     "thread:4120/3388;F;G 500000\n");
    EXPECT_NE(log.Export("x.speedscope.json", thread, range)
                  .find(R"("startValue":2500000,"endValue":6000000,"events":[)"
                        R"({"type":"O","frame":0,"at":2500000},{"type":"O","frame":1,"at":2500000},)"
                        R"({"type":"C","frame":1,"at":3000000},{"type":"C","frame":0,"at":5000000},)"
                        R"({"type":"O","frame":0,"at":5000000},{"type":"C","frame":0,"at":6000000}]})"),
              std::string::npos);
    const std::string trace = log.Export("x.trace.json", thread, range);
    EXPECT_NE(trace.find(R"("ts":2500000,"dur":500000,)"), std::string::npos) << trace;
    EXPECT_EQ(CountOf(trace, R"("ph":"X")"), 3U);
    EXPECT_EQ(CountOf(trace, "thread:4120/7"), 0U);
    EXPECT_NE(log.Export("x.callgrind", thread, range).find("totals: 3500000\n"), std::string::npos);
}

TEST(ExploreExports, HoldAFrameOfNoTimeAtTheStartOfTheRange) {
    const ExportedLog log(SmallLog());
    const ClockRange range{2'000'000, 2'000'001};
    EXPECT_EQ(log.Export("x.folded", {}, range), "thread:4120/3388;F 0\n"
                                                 "thread:4120/3388;F;G 1\n"
                                                 "thread:4120/3388;F;G;DROP 0\n");
    EXPECT_NE(log.Export("x.speedscope.json", {}, range)
                  .find(R"({"type":"O","frame":2,"at":2000000},{"type":"C","frame":2,"at":2000000},)"
                        R"({"type":"C","frame":1,"at":2000001},{"type":"C","frame":0,"at":2000001}])"),
              std::string::npos);
}

TEST(ExploreExports, OfALogWithoutFramesAreFilesWithoutAny) {
    for (const std::vector<std::string>& lines : {DebugLog({}), JASLog({})}) {
        const ExportedLog log(lines);
        EXPECT_EQ(log.Export("x.folded"), "");
        EXPECT_EQ(log.Export("x.speedscope.json"),
                  R"({"$schema":"https://www.speedscope.app/file-format-schema.json","exporter":"carvelot",)"
                  R"("shared":{"frames":[]},"profiles":[]})"
                  "\n");
        EXPECT_EQ(log.Export("x.trace.json"), R"({"displayTimeUnit":"ms","traceEvents":[]})"
                                              "\n");
        EXPECT_EQ(log.Export("x.callgrind"), "# callgrind format\nversion: 1\ncreator: carvelot\n"
                                             "positions: line\nevent: us : Microseconds\nevents: us\n"
                                             "summary: 0\n\ntotals: 0\n");
    }
}

TEST(ExploreExports, GiveHostileNamesToOtherToolsSafely) {
    const ExportedLog log(
        DebugLog({At(0, CallText("(2)a;b", 1)), At(1, EventText(" \"lead\x01\x1F\\")),
                  At(2, CallText("a b", 2)), At(3, kEventEnd), At(4, ReturnText("(2)a;b", 1)),
                  At(5, CallText("\xED\xA0\x80", 1)), At(6, "x y")}));
    EXPECT_EQ(log.Export("x.folded"), "thread:4120/3388;(2)a:b 2000000\n"
                                      "thread:4120/3388;(2)a:b; \"lead\x01\x1F\\ 1000000\n"
                                      "thread:4120/3388;(2)a:b; \"lead\x01\x1F\\;a 1000000\n"
                                      "thread:4120/3388;\xC3\xAD\xC2\xA0\xE2\x82\xAC 1000000\n");
    EXPECT_NE(log.Export("x.speedscope.json").find(R"({"name":" \"lead\u0001\u001F\\","file":"event"})"),
              std::string::npos);
    const std::string callgrind = log.Export("x.callgrind");
    // The number stands ahead of a name that looks like one, and no number ahead of blanks.
    EXPECT_NE(callgrind.find("cfn=(1) (2)a;b\n"), std::string::npos) << callgrind;
    EXPECT_EQ(CountOf(callgrind, "fl=event\nfn= \"lead\x01\x1F\\\n"), 1U) << callgrind;
    EXPECT_EQ(CountOf(callgrind, "cfl=event\ncfn= \"lead\x01\x1F\\\n"), 1U) << callgrind;
}

TEST(ExploreExports, NameWhatShowsNothingAndReplaceWhatIsNoUnicode) {
    std::string scratch;
    EXPECT_EQ(ExportedName("", scratch), "(no name)");
    EXPECT_EQ(ExportedName("   ", scratch), "(no name)");
    EXPECT_EQ(ExportedName(" a ", scratch), " a ");
    EXPECT_EQ(ExportedName("\t", scratch), "\t");
    EXPECT_EQ(ExportedName("\xED\xA0\xBDx", scratch), "\xEF\xBF\xBDx"); // half of a pair
}

TEST(ExploreExports, GiveANameToWhatHasNone) {
    const ExportedLog log(JASLog({UserAt(0, "Object Called: x."), UserAt(2, "done")}));
    ASSERT_EQ(log.m_frames.Keys().Name(log.m_frames[0].key), "");
    EXPECT_EQ(log.Export("x.folded"), "user:ANNE;(no name) 2000000\n");
    for (const char* const name : {"x.speedscope.json", "x.trace.json", "x.callgrind"}) {
        EXPECT_EQ(CountOf(log.Export(name), "(no name)"), 1U) << name;
    }
}

TEST(ExploreFolded, MergesWhatBearsOneNameOnceItIsWritten) {
    const ExportedLog log(
        JASLog({UserAt(0, "Object Called: x.P;Q", "A;B"), UserAt(1, "Object Called: x.S", "C"),
                UserAt(3, "Object Called: x.P:Q", "A:B"), UserAt(4, "x", "A;B"), UserAt(6, "x", "C"),
                UserAt(9, "x", "A:B")}));
    EXPECT_EQ(log.Export("x.folded"), "user:A:B;P:Q 10000000\n"
                                      "user:C;S 5000000\n");
}

TEST(ExploreTrace, NumbersTheUsersOfTheWebTierByTheirFirstRecords) {
    const ExportedLog log(
        JASLog({UserAt(0, "x", "ANNE"), UserAt(0, "Object Called: x.P", "BOB"),
                UserAt(1, "Object Called: x.Q", "ANNE"), UserAt(2, "x", "BOB"), UserAt(4, "x", "ANNE")}));
    const std::string trace = log.Export("x.trace.json", Selection(log.m_session.User("ANNE")));
    EXPECT_EQ(trace, R"({"displayTimeUnit":"ms","traceEvents":[)"
                     R"({"ph":"M","name":"process_name","cat":"__metadata","pid":1,"tid":2,"ts":0,)"
                     R"("args":{"name":"web tier"}},)"
                     R"({"ph":"M","name":"thread_name","cat":"__metadata","pid":1,"tid":2,"ts":0,)"
                     R"("args":{"name":"user:ANNE"}},)"
                     R"({"ph":"X","name":"Q","cat":"object","pid":1,"tid":2,"ts":7201000000,"dur":3000000,)"
                     R"("args":{"record":8,"line":9}}]})"
                     "\n");
    EXPECT_NE(log.Export("x.trace.json").find(R"("pid":1,"tid":3,"ts":0,"args":{"name":"user:BOB"})"),
              std::string::npos);
}

TEST(ExploreTrace, TellsNoLinesWhereTheyWereNotNumbered) {
    const ExploredLog log(SmallLog());
    const TestFolder folder;
    int error = 0;
    const CCut cut(log.m_frames, log.m_streams, {}, {});
    ASSERT_TRUE(WriteProfileExport(folder.Path("x.trace.json"), ProfileFormat::Trace,
                                   {log.m_session.m_doc, log.m_streams, cut}, error));
    EXPECT_NE(folder.Read("x.trace.json").find(R"("args":{"record":7}}]})"), std::string::npos);
}

TEST(ExploreExports, OfAHundredThousandNestedCallsAreWrittenWithoutRecursion) {
    constexpr int depth = 100'000;
    std::vector<std::string> lines = DebugLog({});
    for (int i = 0; i < depth; ++i) {
        lines.push_back(At(i / 1000, CallText(i % 2 == 0 ? "F" : "G", 0)));
    }
    lines.push_back(At(depth / 1000, "x y"));
    const ExportedLog log(lines);
    const std::string folded = log.Export("x.folded");
    EXPECT_EQ(CountOf(folded, "\n"), 500U);
    // The 999 others of the first second start at once; of the deepest path, at its 500th frame, is the time
    // of all that stands below.
    EXPECT_TRUE(folded.ends_with(";F;G 100000000\n")) << folded.substr(folded.size() - 40);
    EXPECT_EQ(CountOf(folded, " 0\n"), 499U);
    const std::string speedscope = log.Export("x.speedscope.json");
    EXPECT_EQ(CountOf(speedscope, R"({"type":"O")"), 100'000U);
    EXPECT_EQ(CountOf(speedscope, R"({"type":"C")"), 100'000U);
    EXPECT_EQ(CountOf(log.Export("x.trace.json"), R"("ph":"X")"), 100'000U);
    EXPECT_NE(log.Export("x.callgrind").find("totals: 100000000\n"), std::string::npos);
}

TEST(ExploreExports, ThatCannotBeWrittenTellTheSystemsErrorAndLeaveNothing) {
    const ExportedLog log(SmallLog());
    const TestFolder folder;
    folder.Write("file", "");
    const CCut cut(log.m_frames, log.m_streams, {}, {});
    for (const char* const name : kNames) {
        int error = 0;
        EXPECT_FALSE(WriteProfileExport(folder.Path("file") + "/" + name, ProfileFormatOf(name).value(),
                                        {log.m_session.m_doc, log.m_streams, cut}, error));
        EXPECT_NE(error, 0);
        EXPECT_EQ(folder.Names(), std::vector<std::string>{"file"});
    }
}

} // namespace carvelot::test
