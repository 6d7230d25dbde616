// carvelot-report on a log in several files.
#include "report/ReportRun.h"
#include "support/TestFolder.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <fstream>
#include <sstream>

namespace carvelot::test {

namespace {

std::string Sample(const std::string& name) {
    std::ifstream file(std::string(CARVELOT_SOURCE_FOLDER) + "/samples/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string Report(const std::vector<std::string>& arguments, int expected = REPORT_DONE) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(RunReport(arguments, out, err), expected) << err.str();
    return out.str();
}

rapidjson::Document Json(const std::vector<std::string>& arguments) {
    rapidjson::Document document;
    document.Parse(Report(arguments).c_str());
    return document;
}

} // namespace

TEST(ReportOfPieces, IsThatOfTheWholeLogWhenTheyAreReadAsGiven) {
    for (const std::string name : {"order-fails.log", "jas-web.log", "ube-batch.log"}) {
        const std::string log = Sample(name);
        const TestFolder folder;
        // The report names the first file: one of that name, elsewhere, is the whole log.
        const std::string first = folder.Write("first", log);
        const std::string expected = Report({"--json", first});
        for (const std::size_t cut : {std::size_t{1}, log.size() / 3, log.size() / 2, log.size() - 1}) {
            folder.Write("first", log.substr(0, cut));
            const std::string middle = folder.Write("middle", log.substr(cut, 100));
            const std::string last =
                folder.Write("last", cut + 100 < log.size() ? log.substr(cut + 100) : std::string());
            EXPECT_EQ(Report({"--as-given", "--json", first, middle, last}), expected)
                << name << " at " << cut;
        }
    }
}

TEST(ReportOfPieces, OrdersThemByTheirTimesAndTellsWhereEachBegins) {
    const TestFolder folder;
    const auto line = [](std::string_view time) { return DebugLine(time, "Entering JDB_InitEnv") + "\n"; };
    const std::string later = folder.Write("a", line("11:00:00.000000") + line("11:00:01.000000"));
    // Without the end of its last line, which is no part of the other file's first one.
    const std::string early = line("10:00:00.000000") + line("10:00:01.000000") + line("10:00:02.000000");
    const std::string earlier = folder.Write("b", early.substr(0, early.size() - 1));
    const rapidjson::Document explored = Json({"--explore", "--json", later, earlier});
    EXPECT_EQ(explored["log"].GetString(), earlier);
    ASSERT_EQ(explored["pieces"].Size(), 2U);
    EXPECT_EQ(explored["pieces"][0]["path"].GetString(), earlier);
    EXPECT_EQ(explored["pieces"][0]["firstRecord"].GetInt(), 0);
    EXPECT_EQ(explored["pieces"][1]["path"].GetString(), later);
    EXPECT_EQ(explored["pieces"][1]["firstRecord"].GetInt(), 3);
    EXPECT_EQ(explored["lines"]["records"].GetInt(), 5);
    EXPECT_EQ(explored["span"]["length"].GetInt64(), 3'601'000'000);

    const rapidjson::Document given = Json({"--explore", "--json", "--as-given", later, earlier});
    EXPECT_EQ(given["log"].GetString(), later);
    EXPECT_EQ(given["lines"]["records"].GetInt(), 4) << "a last line without its end is none";
}

TEST(ReportOfPieces, HasNoPiecesWhereItIsOfOneFile) {
    const rapidjson::Document explored =
        Json({"--explore", "--json", std::string(CARVELOT_SOURCE_FOLDER) + "/samples/order-well.log"});
    EXPECT_FALSE(explored.HasMember("pieces"));
}

TEST(ReportOfPieces, PutsTheFilesOfManyProcessesOnOneClock) {
    const TestFolder folder;
    std::vector<std::string> arguments{"--explore", "--json"};
    // All run at the same time, each for three minutes.
    for (int process = 1; process <= 40; ++process) {
        const std::string ids = std::to_string(process) + "/7";
        const std::string second = std::to_string(10 + process);
        std::string log = DebugLine("10:00:" + second + ".000000", "Entering JDB_InitEnv", ids) + "\n";
        log += DebugLine("10:01:" + second + ".000000",
                         "Calling Business function F from Level 1 (BSFNLevel = 1)", ids) +
               "\n";
        log +=
            DebugLine("10:03:" + second + ".000000", "Return value is 0 for F. (BSFNLevel = 1)", ids) + "\n";
        arguments.push_back(folder.Write("jdedebug_" + std::to_string(process) + ".log", log));
    }
    const rapidjson::Document explored = Json(arguments);
    ASSERT_EQ(explored["pieces"].Size(), 40U);
    ASSERT_EQ(explored["frames"].Size(), 40U);
    for (rapidjson::SizeType i = 0; i < 40; ++i) {
        const auto& frame = explored["frames"][i];
        EXPECT_EQ(explored["pieces"][i]["firstRecord"].GetUint(), 3 * i);
        EXPECT_EQ(frame["stream"].GetString(), "thread:" + std::to_string(i + 1) + "/7");
        EXPECT_EQ(frame["start"].GetInt64(), 60'000'000 + std::int64_t{i} * 1'000'000);
        EXPECT_EQ(frame["end"].GetInt64(), 180'000'000 + std::int64_t{i} * 1'000'000);
    }
}

TEST(ReportOfPieces, FailsWhereOneCannotBeRead) {
    const TestFolder folder;
    const std::string log = folder.Write("a", TestSession::Joined(DebugLog({})));
    EXPECT_EQ(Report({log, folder.Path("missing")}, REPORT_FAILED), "");
}

} // namespace carvelot::test
