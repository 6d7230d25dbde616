// What each sample that tells a story is told to be about: the finding, how often, and its cost.
#include "report/ReportRun.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace carvelot::test {

namespace {

class Story {
public:
    explicit Story(const std::string& sample) {
        std::ostringstream out;
        std::ostringstream err;
        EXPECT_EQ(RunReport({"--explore", "--json",
                             std::string(CARVELOT_SOURCE_FOLDER) + "/samples/" + sample + ".log"},
                            out, err),
                  0)
            << err.str();
        m_json.Parse(out.str().c_str());
        EXPECT_FALSE(m_json.HasParseError());
    }

    // "first-cause F4211FSEndDoc 1 12127711", in their order.
    std::vector<std::string> Findings() const {
        std::vector<std::string> findings;
        for (const auto& finding : m_json["findings"].GetArray()) {
            findings.push_back(std::string(finding["rule"].GetString()) + " " +
                               finding["subject"].GetString() + " " +
                               std::to_string(finding["count"].GetUint64()) + " " +
                               std::to_string(finding["cost"].GetInt64()));
        }
        return findings;
    }
    std::vector<std::uint32_t> Records(std::size_t finding) const {
        std::vector<std::uint32_t> records;
        for (const auto& record :
             m_json["findings"].GetArray()[static_cast<rapidjson::SizeType>(finding)]["records"].GetArray()) {
            records.push_back(record.GetUint());
        }
        return records;
    }
    // The numbers of a function, or an empty object.
    const rapidjson::Value& Function(const std::string& kind, const std::string& name) const {
        static const rapidjson::Value none(rapidjson::kObjectType);
        for (const auto& function : m_json["functions"].GetArray()) {
            if (function["kind"].GetString() == kind && function["name"].GetString() == name) {
                return function;
            }
        }
        ADD_FAILURE() << "no " << kind << " " << name;
        return none;
    }
    std::int64_t Total(const std::string& name) const {
        return Function("function", name)["total"].GetInt64();
    }

    rapidjson::Document m_json;
};

using Texts = std::vector<std::string>;

} // namespace

TEST(SampleStories, OfTheSlowOrderIsOneStatementRun400Times) {
    const Story story("order-slow");
    EXPECT_EQ(story.Findings(),
              Texts{"repeated-statement B5542110SumOpenWeight > SELECT IMITM, IMLITM, IMUWUM FROM "
                    "PRODDTA.F4101 WHERE ( IMITM = ? ) 400 5702505"});
    EXPECT_EQ(story.Records(0).size(), 100U);
    // Nearly all of what the order's end took.
    EXPECT_EQ(story.Total("B5542110SumOpenWeight"), 6495044);
    EXPECT_EQ(story.Total("F4211FSEndDoc"), 6733006);
    const auto& shape = story.m_json["shapes"][0];
    EXPECT_EQ(shape["count"].GetUint(), 400U);
    EXPECT_EQ(shape["total"].GetInt64(), 5702505);
    EXPECT_STREQ(shape["topCaller"]["name"].GetString(), "B5542110SumOpenWeight");
}

TEST(SampleStories, OfTheSameOrderRunWellHaveNothingToFind) {
    const Story well("order-well");
    EXPECT_EQ(well.Findings(), Texts{});
    EXPECT_EQ(well.Total("F4211FSEndDoc"), 302760);
    // All but the one function takes what it took.
    const Story slow("order-slow");
    EXPECT_EQ(well.m_json["functions"].Size(), slow.m_json["functions"].Size());
    EXPECT_EQ(well.Total("F4211FSEditLine"), slow.Total("F4211FSEditLine"));
    EXPECT_EQ(well.Total("F4211FSBeginDoc"), slow.Total("F4211FSBeginDoc"));
}

TEST(SampleStories, OfTheFailingOrderTellTheLockAndAllThatItLeftBehind) {
    const Story story("order-fails");
    EXPECT_EQ(story.Findings(),
              (Texts{"first-cause F4211FSEndDoc 1 12127711", "rolled-back  1 0",
                     "call-without-return F4211FSCancelDoc 1 2558052",
                     "call-without-return F4211ClearWorkFile 1 2553743",
                     "cache-not-terminated 98191560F4211WorkFile e0997ed9 1 0",
                     "silence-in-call B4200520RebuildCommitments 1 52700602",
                     "silence-in-call F41021LockLocation 1 12042129", "unread-lines third word no time 2 0",
                     "cursor-not-closed 09312D40 1 0"}));
    // Failed from the deepest call up; the cause is the database's message and not a return code.
    for (const char* name :
         {"F41021LockLocation", "F41021UpdateCommitment", "F4211WriteLine", "F4211FSEndDoc"}) {
        EXPECT_EQ(story.Function("function", name)["failed"].GetUint(), 1U) << name;
    }
    EXPECT_EQ(story.Function("function", "F4211FSCancelDoc")["unclosed"].GetUint(), 1U);
}

TEST(SampleStories, OfTheNightBatchGoOnOverMidnight) {
    const Story story("night-batch");
    EXPECT_EQ(story.Findings(),
              (Texts{"silence-in-call F42800ProcessOrder 52 966904312",
                     "orphan-return B9800100GetJobQueue 1 0", "unread-lines third word no time 1 0"}));
    EXPECT_EQ(story.m_json["span"]["length"].GetInt64(), 1051079158);
    // The first order of the backup's time runs into the next day, and no call takes one.
    const auto& orders = story.Function("function", "F42800ProcessOrder");
    EXPECT_EQ(orders["calls"].GetUint(), 36U);
    EXPECT_EQ(orders["unclosed"].GetUint(), 0U);
    EXPECT_EQ(orders["total"].GetInt64(), 982616692);
    EXPECT_EQ(orders["longest"].GetInt64(), 59587823);
}

TEST(SampleStories, OfTheSlowGridAndTheRestlessChartAreRepeatedStatements) {
    EXPECT_EQ(Story("jas-slow").Findings(),
              (Texts{"repeated-statement P42101_W42101A_EZGUI004 Button Clicked - Find > SELECT IMITM, "
                     "IMLITM, IMUWUM FROM PRODDTA.F4101 WHERE IMITM = ? 120 3581000",
                     "repeated-statement (top) > SELECT COUNT(*) FROM PRODDTA.F4211 WHERE SDNXTR = ? AND "
                     "SDMCU = ? 45 1700000"}));
}

TEST(SampleStories, OfTheWorkedExampleAreReckonedByHand) {
    const Story story("worked-example");
    std::vector<std::string> rows;
    for (const auto& function : story.m_json["functions"].GetArray()) {
        std::string row = function["name"].GetString();
        for (const char* number :
             {"calls", "unclosed", "failed", "total", "self", "shortest", "longest", "p50", "p95"}) {
            row += " " + std::to_string(function[number].GetInt64());
        }
        rows.push_back(row);
    }
    EXPECT_EQ(rows, (Texts{"F4211FSEditLine 2 0 1 220000 40000 20000 200000 20000 200000",
                           "F4211EditLine 1 0 0 100000 30000 100000 100000 100000 100000",
                           "F4211WriteLine 1 1 0 80000 20000 80000 80000 80000 80000",
                           "SELECT PRODDTA.F4101 2 0 0 70000 70000 30000 40000 30000 40000",
                           "INSERT PRODDTA.F4211 1 0 0 60000 60000 60000 60000 60000 60000"}));
    EXPECT_EQ(story.Findings(),
              (Texts{"first-cause F4211FSEditLine 1 200000", "call-without-return F4211WriteLine 1 80000"}));
}

TEST(SampleStories, ShowEveryRule) {
    std::set<std::string> rules;
    for (const char* sample : {"order-slow", "order-fails", "night-batch"}) {
        for (const std::string& finding : Story(sample).Findings()) {
            rules.insert(finding.substr(0, finding.find(' ')));
        }
    }
    EXPECT_EQ(rules, (std::set<std::string>{"repeated-statement", "cache-not-terminated", "cursor-not-closed",
                                            "call-without-return", "orphan-return", "first-cause",
                                            "silence-in-call", "rolled-back", "unread-lines"}));
}

namespace {

// "user month month ..." of each user, in the order of their first records.
std::vector<std::string> MonthsByUser(const std::string& sample, const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"--json",
                                       std::string(CARVELOT_SOURCE_FOLDER) + "/samples/" + sample + ".log"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(RunReport(arguments, out, err), 0) << err.str();
    rapidjson::Document json;
    json.Parse(out.str().c_str());
    std::vector<std::string> users;
    for (const auto& user : json["users"].GetArray()) {
        users.emplace_back(user["name"].GetString());
        for (const auto& record : user["details"].GetArray()) {
            users.back().append(" ").append(
                json["records"].GetArray()[record.GetUint()]["month"].GetString());
        }
    }
    return users;
}

} // namespace

TEST(SampleStories, EveryLanguageHasItsTwelveMonthsOnlyWithTheDialect) {
    // Two words are English months by chance.
    EXPECT_EQ(MonthsByUser("jas-languages", {}), std::vector<std::string>{"TURKISH Mar May"});
    std::vector<std::string> expected;
    for (const char* language : {"CZECH", "DANISH", "DUTCH", "FINNISH", "FRENCH", "GERMAN", "GREEK",
                                 "HUNGARIAN", "ITALIAN", "NORWEGIAN", "POLISH", "PORTUGUESE", "RUSSIAN",
                                 "SPANISH", "SWEDISH", "TURKISH", "CHINESE", "JAPANESE", "KOREAN"}) {
        expected.push_back(std::string(language) + " Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec");
    }
    EXPECT_EQ(MonthsByUser("jas-languages", {"--dialect", "months"}), expected);
    EXPECT_EQ(MonthsByUser("jas-languages", {"--dialect", "auto"}), expected);
    EXPECT_EQ(MonthsByUser("jas-languages", {"--dialect", "numbered"}),
              std::vector<std::string>{"TURKISH Mar May"});
}

TEST(SampleStories, AGermanServersLogIsEmptyWithoutTheDialect) {
    EXPECT_EQ(MonthsByUser("jas-german", {}), std::vector<std::string>{});
    const std::vector<std::string> users = MonthsByUser("jas-german", {"--dialect", "months"});
    ASSERT_EQ(users.size(), 1U);
    EXPECT_TRUE(users[0].starts_with("JOERG Mar Mar")) << users[0];
}

} // namespace carvelot::test
