#include "report/RunTool.h"

#include "report/ReportOptions.h"
#include "support/TestFolder.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <fstream>
#include <sstream>

namespace carvelot::test {

TEST(Report, EndsWith2OnWrongUsage) {
    const std::vector<std::vector<std::string>> wrong = {
        {},
        {"--nonsense", kSample},
        {"--tree", "process:1", "--find", "x", kSample},
        {"--find", "x", "--export-gaps", "g.csv", kSample},
        {"--export-profile", "p.folded", "--tree", "process:1", kSample},
        {"--export-profile", "p.folded", "--find", "x", kSample},
        {"--export-profile", "p.folded", "--export-gaps", "g.csv", kSample},
        {"--export-profile", "p.folded", "--explore", kSample},
        {"--export-profile", "p.folded", "--from", "x", kSample},
        {"--export-profile", kSample},
        {"--threshold", "-1", kSample},
        {"--threshold", "abc", kSample},
        {"--threshold", "nan", kSample},
        {"--threshold", "inf", kSample},
        {"--threshold", "", kSample},
        {"--threshold", "1e99", kSample},
        {"--process", "x", kSample},
        {"--process", "", kSample},
        {"--threshold"},
        {"--dialect", "month", kSample},
        {"--dialect", "", kSample},
        {"--dialect", "months", "--dialect", "Auto", kSample},
        {"--dialect", "months"},
        {kSample, "--dialect"},
    };
    for (const auto& arguments : wrong) {
        const Outcome outcome = RunTool(arguments);
        EXPECT_EQ(outcome.status, 2) << ::testing::PrintToString(arguments);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err.find("Usage: carvelot-report"), std::string::npos) << outcome.err;
    }
}

TEST(Report, ReadsALogWithTheDialectsThatAreAskedFor) {
    std::vector<std::string> lines = JASLog({"15 janv. 2024 09:12:03,250 [APP   ] ANNE - [12345][JAS] x y"});
    const TestFile log(TestSession::Joined(lines));
    const auto hits = [&](std::vector<std::string> options) {
        options.insert(options.end(), {"--find", "x y", log.Path()});
        return RunTool(options);
    };
    const auto said = [&](const char* what) { return log.Path() + ": " + what + "\n"; };
    EXPECT_EQ(hits({}).out, "");
    EXPECT_EQ(hits({"--dialect", "numbered"}).out, "");
    EXPECT_NE(hits({"--dialect", "months"}).out.find("[JAS] x y"), std::string::npos);
    EXPECT_EQ(hits({"--dialect", "months"}).err, "");
    const Outcome both = hits({"--dialect", "months", "--dialect", "numbered"});
    EXPECT_EQ(both.out.find("[JAS]"), std::string::npos);
    EXPECT_NE(both.out.find("x y"), std::string::npos);
    EXPECT_EQ(both.err, "");
    // What one dialect reads asks for the other.
    const Outcome found = hits({"--dialect", "auto"});
    EXPECT_EQ(found.out, both.out);
    EXPECT_EQ(found.err, said("read with the dialect months, numbered"));
    const Outcome other = hits({"--dialect=auto", "--dialect=months"});
    EXPECT_EQ(other.out, both.out);
    EXPECT_EQ(other.err, said("read with the dialect numbered"));
    EXPECT_EQ(hits({"--dialect", "months", "--dialect", "auto", "--dialect", "numbered"}).err,
              said("no dialect reads more of it"));
}

TEST(Report, TakesNoDialectForALogThatNeedsNone) {
    for (const char* option : {"--json", "--explore"}) {
        const Outcome without = RunTool({option, kSample});
        const Outcome found = RunTool({option, "--dialect", "auto", kSample});
        EXPECT_EQ(found.status, 0);
        EXPECT_EQ(found.out, without.out);
        EXPECT_EQ(found.err, kSample + ": no dialect reads more of it\n");
        EXPECT_EQ(RunTool({option, "--dialect", "months", "--dialect", "numbered", kSample}).out,
                  without.out);
    }
}

TEST(Report, FindsTheDialectOfEitherLogThatItCompares) {
    const TestFile french(
        TestSession::Joined(JASLog({"15 janv. 2024 09:12:03,250 [APP   ] ANNE - [BASE] x y"})));
    const TestFile english(
        TestSession::Joined(JASLog({"15 Jan 2024 09:12:03,250 [APP   ] ANNE - [BASE] x y"})));
    const Outcome outcome = RunTool({"--compare", french.Path(), "--dialect", "auto", english.Path()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, french.Path() + ": read with the dialect months\n" + english.Path() +
                               ": no dialect reads more of it\n");
}

TEST(Report, PrintsItsHelpAndItsVersion) {
    const Outcome help = RunTool({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--export-gaps FILE"), std::string::npos);
    const Outcome version = RunTool({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "carvelot-report 2.0.0.0\n");
}

TEST(Report, EndsWith1AndTheWindowsMessage) {
    EXPECT_EQ(RunTool({"no such file"}).status, 1);
    EXPECT_EQ(RunTool({"no such file"}).err, "Failed to open file.\n");
    const TestFile unknown("a\nb\n");
    const Outcome outcome = RunTool({"--json", unknown.Path()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "Error: Cannot determine tracing log format\n");
    EXPECT_EQ(outcome.out, "");
    const Outcome scope = RunTool({"--tree", "process:99", kSample});
    EXPECT_EQ(scope.status, 1);
    EXPECT_EQ(scope.err, "No such scope: process:99\n");
    for (const char* name : {"process", "process:", "process:x", "thread:1", "thread:1/", "thread:/1",
                             "user:JDE", "", "PROCESS:1"}) {
        EXPECT_EQ(RunTool({"--tree", name, kSample}).err, std::string("No such scope: ") + name + "\n");
    }
    EXPECT_EQ(RunTool({"--export-gaps", "gaps.log", kSample}).err, "Invalid file type\n");
}

TEST(Report, TakesIdsInEitherForm) {
    const TestFile log(TestSession::Joined(DebugLog({DebugLine("10:00:00.000001", "On x", "5/-6")})));
    for (const char* scope : {"thread:5/-6", "thread:5/4294967290", "process:5"}) {
        const Outcome outcome = RunTool({"--tree", scope, "--json", log.Path()});
        EXPECT_EQ(outcome.status, 0) << scope;
        rapidjson::Document tree;
        tree.Parse(outcome.out.c_str());
        EXPECT_STREQ(tree["scope"].GetString(), scope);
        ASSERT_EQ(tree["nodes"].Size(), 1U);
        EXPECT_EQ(tree["nodes"][0]["record"].GetInt(), 1);
        EXPECT_TRUE(tree["nodes"][0]["children"].Empty());
    }
}

TEST(Report, WritesTheWholeModelAsJson) {
    const TestFile log(TestSession::Joined(DebugLog({
        DebugLine("10:00:00.000001", "SELECT A FROM F0101", "5/6"),
        DebugLine("10:00:02.500001", "Exiting DBPerformRequest", "5/6"),
    })));
    const Outcome outcome = RunTool({"--json", log.Path()});
    ASSERT_EQ(outcome.status, 0);
    rapidjson::Document json;
    json.Parse(outcome.out.c_str());
    ASSERT_FALSE(json.HasParseError());
    EXPECT_STREQ(json["format"].GetString(), "debug");
    EXPECT_EQ(json["tabCount"].GetInt(), 1);
    EXPECT_EQ(json["dashForm"].GetInt(), 1);
    EXPECT_FALSE(json["ube"].GetBool());
    ASSERT_EQ(json["records"].Size(), 3U);
    const auto& sql = json["records"][1];
    EXPECT_EQ(sql["kind"].GetInt(), 1);
    EXPECT_EQ(sql["sqlOperation"].GetInt(), 1);
    EXPECT_STREQ(sql["table"].GetString(), "F0101");
    EXPECT_STREQ(sql["label"].GetString(), "Worker");
    EXPECT_EQ(sql["duration"].GetFloat(), 2.5F);
    EXPECT_EQ(sql["time"].GetUint64(), 36'000'000'001U);
    EXPECT_EQ(json["processes"][1]["sql"]["longTasks"][0].GetInt(), 1);
    EXPECT_EQ(json["gaps"][0].GetInt(), 2);
    EXPECT_TRUE(json["users"].Empty());
}

TEST(Report, KeepsTheThresholdAndTheFilter) {
    const TestFile log(TestSession::Joined(DebugLog({
        DebugLine("10:00:00.000001", "On x", "5/6"),
        DebugLine("10:00:02.500001", "On y", "5/6"),
    })));
    rapidjson::Document json;
    json.Parse(RunTool({"--json", "--threshold", "2.5", log.Path()}).out.c_str());
    EXPECT_TRUE(json["gaps"].Empty());
    json.Parse(RunTool({"--json", "--threshold=2.49", "--process", "5", log.Path()}).out.c_str());
    EXPECT_EQ(json["gaps"].Size(), 1U);
    EXPECT_EQ(json["records"].Size(), 2U);
}

TEST(Report, FindsAsLinesOrAsJson) {
    const TestFile log(TestSession::Joined(DebugLog({DebugLine("10:00:00.000001", "On Xyz", "5/6")})));
    EXPECT_EQ(RunTool({"--find", "xYZ", log.Path()}).out, "1\t10:00:00.000001\t5/6\tOn Xyz\n");
    EXPECT_EQ(RunTool({"--find", "xYZ", "--json", log.Path()}).out, "{\"hits\":[1]}\n");
    EXPECT_EQ(RunTool({"--find", "nothing", log.Path()}).out, "");
    EXPECT_EQ(RunTool({"--find", "", "--json", log.Path()}).out, "{\"hits\":[1]}\n");
}

TEST(Report, ExportsTheGapsToAFile) {
    const TestFile log(TestSession::Joined(DebugLog(
        {DebugLine("10:00:00.000001", "On x", "5/6"), DebugLine("10:00:02.500001", "On y", "5/6")})));
    const TestFile folder;
    const std::string path = folder.Path() + ".csv";
    EXPECT_EQ(RunTool({"--export-gaps", path, log.Path()}).status, 0);
    std::ifstream in(path);
    std::string header;
    std::string row;
    std::getline(in, header);
    std::getline(in, row);
    EXPECT_EQ(row, "\"5/6\",10:00:02.500001    ,2.500000,\"On y\"");
    in.close();
    platform::DeleteFileAt(path);
    const Outcome failed = RunTool({"--export-gaps", folder.Path() + "/below-a-file.csv", log.Path()});
    EXPECT_EQ(failed.status, 1);
    EXPECT_NE(failed.err, "");
}

TEST(Report, ExportsTheProfileOfAScopeAndARangeToAFile) {
    const TestFile log(TestSession::Joined(
        DebugLog({DebugLine("08:00:01.000001", "Calling Business function F from (BSFNLevel = 1)", "5/6"),
                  DebugLine("08:00:03.000001", "Calling Business function G from (BSFNLevel = 1)", "5/7"),
                  DebugLine("08:00:09.000001", "x y", "5/6"), DebugLine("08:00:09.000001", "x y", "5/7")})));
    const TestFolder folder;
    for (const char* const name : {"p.folded", "p.speedscope.json", "p.trace.json", "p.callgrind"}) {
        const Outcome outcome = RunTool({"--export-profile", folder.Path(name), log.Path()});
        EXPECT_EQ(outcome.status, 0) << name;
        EXPECT_EQ(outcome.out + outcome.err, "") << name;
    }
    EXPECT_EQ(folder.Read("p.folded"), "thread:5/6;F 8000000\nthread:5/7;G 6000000\n");
    EXPECT_NE(folder.Read("p.trace.json").find(R"("args":{"record":2,"line":3})"), std::string::npos);
    EXPECT_EQ(RunTool({"--export-profile", folder.Path("p.folded"), "--scope", "thread:5/6", "--from", "2.5",
                       "--to", "4", log.Path()})
                  .status,
              0);
    EXPECT_EQ(folder.Read("p.folded"), "thread:5/6;F 1500000\n");
}

TEST(Report, RefusesAProfileInAnotherFormatInOneLineWithoutAFile) {
    const TestFolder folder;
    for (const char* const name : {"p.txt", "p", "folded", "p.json", "p.folded.bak"}) {
        const Outcome outcome = RunTool({"--export-profile", folder.Path(name), kSample});
        EXPECT_EQ(outcome.status, 1) << name;
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err,
                  "The name of a profile's file ends with .folded, .speedscope.json, .trace.json or "
                  ".callgrind\n");
    }
    EXPECT_EQ(folder.Names(), std::vector<std::string>{});
}

TEST(Report, TellsThatAProfileCannotBeWrittenAndMakesNoFile) {
    const TestFolder folder;
    const std::string path = folder.Write("file", "earlier") + "/p.trace.json";
    const Outcome failed = RunTool({"--export-profile", path, kSample});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.out, "");
    EXPECT_TRUE(failed.err.starts_with(path + ": ") && failed.err.size() > path.size() + 3) << failed.err;
    const Outcome noScope =
        RunTool({"--export-profile", folder.Path("p.folded"), "--scope", "thread:1/31337", kSample});
    EXPECT_EQ(noScope.status, 1);
    EXPECT_EQ(noScope.err, "No such scope: thread:1/31337\n");
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"file"});
}

TEST(Report, PrintsTheSummaryWorstFirst) {
    const Outcome outcome = RunTool({kSample});
    ASSERT_EQ(outcome.status, 0);
    const std::vector<std::string> sections = {
        "Long tasks, longest first", "Errors and warnings", "Timing gaps", "Business functions", "Tables",
        "Processes and threads",     "Records by kind"};
    std::size_t at = 0;
    for (const std::string& section : sections) {
        const std::size_t place = outcome.out.find("\n" + section, at);
        ASSERT_NE(place, std::string::npos) << section;
        at = place;
    }
}

} // namespace carvelot::test
