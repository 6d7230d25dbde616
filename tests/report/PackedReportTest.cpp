#include "report/RunTool.h"
#include "support/Archives.h"
#include "support/TestFolder.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <sstream>

namespace carvelot::test {

namespace {

// Two logs of which the second alone has no sign of a debug log, but for its lines.
const std::string kFirstLog = TestSession::Joined(DebugLog({DebugLine("10:00:00.000001", "On x", "5/6")}));
const std::string kSecondLog = DebugLine("10:00:01.000001", "On y", "5/6") + "\n";

} // namespace

TEST(PackedReport, IsThatOfTheBytesInside) {
    const TestFolder folder;
    const std::string path = folder.Write("log", kFirstLog);
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{}, {"--json"}, {"--explore"}, {"--explore", "--json"}, {"--find", "on"}}) {
        std::vector<std::string> arguments = options;
        arguments.push_back(path);
        folder.Write("log", kFirstLog);
        const Outcome plain = RunTool(arguments);
        ASSERT_EQ(plain.status, 0) << plain.err;
        for (const std::string& archive : {Gzip(kFirstLog), Zstd(kFirstLog), Zip({{"a.log", kFirstLog}})}) {
            folder.Write("log", archive);
            const Outcome packed = RunTool(arguments);
            EXPECT_EQ(packed.status, 0);
            EXPECT_EQ(packed.out, plain.out);
            EXPECT_EQ(packed.err, "");
        }
    }
}

TEST(PackedReport, ListsSeveralMembersOrTakesThemInTheOrderGiven) {
    const TestFolder folder;
    const std::string both = folder.Write("both.log", kFirstLog + kSecondLog);
    const std::string path = folder.Write(
        "logs.zip", Zip({{"b.log", kSecondLog}, {"a.log", kFirstLog}, {"c\x1B[2J\n.log", kSecondLog}}));
    const Outcome asked = RunTool({path});
    EXPECT_EQ(asked.status, 1);
    EXPECT_EQ(asked.out, "");
    EXPECT_EQ(asked.err, path + " holds several members, of which --member takes one or more:\n  b.log, " +
                             std::to_string(kSecondLog.size()) + " bytes\n  a.log, " +
                             std::to_string(kFirstLog.size()) + " bytes\n  c?[2J?.log, " +
                             std::to_string(kSecondLog.size()) + " bytes\n");
    const Outcome one = RunTool({"--find", "on", "--member", "a.log", path});
    EXPECT_EQ(one.status, 0) << one.err;
    EXPECT_EQ(one.out, RunTool({"--find", "on", folder.Write("a.log", kFirstLog)}).out);
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--find", "on", "--member", "a.log", "--member", "b.log", path},
          {"--member=a.log", "--find", "on", path, "--member=b.log"}}) {
        const Outcome two = RunTool(arguments);
        EXPECT_EQ(two.status, 0) << two.err;
        EXPECT_EQ(two.out, RunTool({"--find", "on", both}).out);
    }
    const Outcome none = RunTool({"--member", "d.log", path});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "The archive has no member d.log.\n");
    EXPECT_EQ(RunTool({"--member", "a.log", both}).err, "Only a zip archive has members.\n");
}

TEST(PackedReport, TakesPackedPiecesInTheOrderOfTheirTimes) {
    const TestFolder folder;
    const std::string first = folder.Write("b.log", kFirstLog);
    const std::string second = folder.Write("a.log", kSecondLog);
    const std::string plain = RunTool({"--find", "on", first, second}).out;
    ASSERT_NE(plain, "");
    folder.Write("b.log", Gzip(kFirstLog));
    folder.Write("a.log", Zip({{"x.log", kSecondLog}}));
    const Outcome packed = RunTool({"--find", "on", second, first});
    EXPECT_EQ(packed.status, 0) << packed.err;
    EXPECT_EQ(packed.out, plain);
    folder.Write("a.log", Zip({{"x.log", kSecondLog}, {"y.log", kSecondLog}}));
    EXPECT_EQ(RunTool({first, second}).err, "The archive holds several members.\n");
    folder.Write("a.log", Gzip(kSecondLog).substr(0, Gzip(kSecondLog).size() - 4));
    const Outcome damaged = RunTool({"--find", "on", first, second});
    EXPECT_EQ(damaged.status, 1);
    EXPECT_EQ(damaged.out, plain);
    EXPECT_EQ(RunTool({"--member", "x.log", first, second}).status, 2);
}

TEST(PackedReport, OfADamagedLogIsPrintedAndEndsWith1) {
    const TestFolder folder;
    const std::string archive = Gzip(kFirstLog + kSecondLog);
    const std::string path = folder.Write("log.gz", archive.substr(0, archive.size() - 4));
    const std::string plain = folder.Write("log", kFirstLog + kSecondLog);
    const std::string message =
        "The archive is damaged: " + std::to_string(kFirstLog.size() + kSecondLog.size()) +
        " bytes were read.\n";
    for (const char* option : {"--find=on", "--explore", "--tree=process:5"}) {
        const Outcome outcome = RunTool({option, path});
        EXPECT_EQ(outcome.status, 1) << option;
        EXPECT_EQ(outcome.err, message);
        folder.Write("same.gz", Gzip(kFirstLog + kSecondLog));
        std::string expected = RunTool({option, folder.Path("same.gz")}).out;
        EXPECT_NE(expected, "");
        for (std::size_t at = expected.find("same.gz"); at != std::string::npos;
             at = expected.find("same.gz")) {
            expected.replace(at, 7, "log.gz");
        }
        EXPECT_EQ(outcome.out, expected) << option;
    }
    EXPECT_EQ(RunTool({"--compare", path, plain}).status, 1);
    EXPECT_EQ(RunTool({"--compare", plain, path}).status, 1);
    EXPECT_EQ(RunTool({"--compare", plain, plain}).status, 0);
}

TEST(PackedReport, HelpNamesTheKinds) {
    const std::string help = RunTool({"--help"}).out;
    for (const char* word : {"gzip", "zstd", "zip", "--member", "standard", "pipe"}) {
        EXPECT_NE(help.find(word), std::string::npos) << word;
    }
}

} // namespace carvelot::test
