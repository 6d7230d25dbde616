// Logs as rows and as a database, from the command line.
#include "explore/ExploredLog.h"
#include "report/RunTool.h"
#include "support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace carvelot::test {

namespace {

const std::string kSamples = std::string(CARVELOT_SOURCE_FOLDER) + "/samples/";

std::string FirstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

} // namespace

TEST(Rows, SeveralLogsAreALogEachBelowOneHeader) {
    const TestFolder folder;
    const std::string a = folder.Write("a.log", TestSession::Joined(DebugLog({At(1, "ERROR: a")})));
    const std::string b = folder.Write("b.log", TestSession::Joined(DebugLog({At(0, "ERROR: b")})));
    const Outcome run = RunTool({"--rows", "errors", "--host", "jde01", b, a});
    EXPECT_EQ(run.status, REPORT_DONE);
    EXPECT_EQ(run.err, "");
    const std::string header =
        "log,host,record,line,clock,day,time,process,thread,stream,user,kind,type,return_code,text\r\n";
    EXPECT_EQ(run.out, header + b +
                           ",jde01,1,2,7199999999,--01-15,36000000000,4120,3388,thread:4120/3388,,ERROR,GBR "
                           "Error,0,ERROR: b\r\n" +
                           a +
                           ",jde01,1,2,7200999999,--01-15,36001000000,4120,3388,thread:4120/3388,,ERROR,GBR "
                           "Error,0,ERROR: a\r\n");
    EXPECT_EQ(RunTool({"--rows", "errors", "--format", "csv", "--host", "jde01", b, a}).out, run.out);
}

TEST(Rows, ALogThatCannotBeReadLeavesTheOthers) {
    const std::string good = kSamples + "order-slow.log";
    const Outcome run = RunTool({"--rows", "gaps", kSamples + "no-such.log", good});
    EXPECT_EQ(run.status, REPORT_FAILED);
    EXPECT_NE(run.err, "");
    EXPECT_EQ(run.out, RunTool({"--rows", "gaps", good}).out);
    const Outcome none = RunTool({"--rows", "gaps", kSamples + "no-such.log"});
    EXPECT_EQ(none.status, REPORT_FAILED);
    EXPECT_EQ(none.out, "");
}

TEST(Rows, WrongUsageNamesWhatThereIs) {
    struct Wrong {
        std::vector<std::string> arguments;
        std::string line;
    };
    for (const Wrong& wrong : std::initializer_list<Wrong>{
             {{"--rows", "tables"},
              "--rows takes records, frames, functions, shapes, findings, gaps or errors"},
             {{"--rows", "gaps", "--format", "xml"}, "--format takes csv or ndjson"},
             {{"--rows", "gaps", "--year", "24"}, "--year takes a year, 1980 to 9999"},
             {{"--rows", "gaps", "--append"}, "--append requires --sqlite"},
             {{"--sqlite", "x.db", "--format", "csv"}, "--format requires --rows"},
             {{"--host", "jde01"}, "--host requires --rows or --sqlite"},
             {{"--shapes-only", "--explore"}, "--shapes-only requires --rows or --sqlite"},
             {{"--rows", "gaps", "--sqlite", "x.db"}, "--sqlite excludes --rows"},
             {{"--rows", "gaps", "--find", "x"}, "--rows excludes --find"}}) {
        std::vector<std::string> arguments = wrong.arguments;
        arguments.push_back(kSamples + "order-slow.log");
        const Outcome run = RunTool(arguments);
        EXPECT_EQ(run.status, REPORT_USAGE) << wrong.line;
        EXPECT_EQ(FirstLine(run.err), wrong.line);
        EXPECT_EQ(run.out, "");
    }
}

TEST(Rows, AnEmptyLogHasNone) {
    const TestFolder folder;
    const Outcome run = RunTool({"--rows", "records", folder.Write("a.log", "")});
    EXPECT_EQ(run.status, REPORT_FAILED);
    EXPECT_EQ(run.out, "");
}

TEST(Rows, ADatabaseIsWrittenWithAllLogsOrNone) {
    const TestFolder folder;
    const std::string database = folder.Path("x.db");
    const std::string one = kSamples + "order-slow.log";
    const Outcome run = RunTool({"--sqlite", database, one, kSamples + "jas-slow.log"});
    EXPECT_EQ(run.status, REPORT_DONE);
    EXPECT_EQ(run.out + run.err, "");
    const std::string before = folder.Read("x.db");
    EXPECT_TRUE(before.starts_with("SQLite format 3"));
    EXPECT_EQ(RunTool({"--sqlite", database, one, kSamples + "no-such.log"}).status, REPORT_FAILED);
    EXPECT_TRUE(folder.Read("x.db") == before);
    EXPECT_EQ(folder.Names().size(), 1U);
}

TEST(Rows, ADatabaseThatCannotBeWrittenIsToldInOneLine) {
    const TestFolder folder;
    const std::string path = folder.Write("x.db", "no database");
    const Outcome run = RunTool({"--sqlite", path, kSamples + "order-slow.log"});
    EXPECT_EQ(run.status, REPORT_FAILED);
    EXPECT_EQ(run.err, path + ": This is no database of logs, and is left as it is.\n");
    EXPECT_EQ(folder.Read("x.db"), "no database");
}

} // namespace carvelot::test
