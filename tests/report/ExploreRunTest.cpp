// --explore and --compare from their arguments to what is printed.
#include "explore/ExploredLog.h"
#include "report/ReportOptions.h"
#include "report/RunTool.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <limits>
#include <sstream>

namespace carvelot::test {

namespace {

using Texts = std::vector<std::string>;

rapidjson::Document JsonOf(const Texts& arguments) {
    const Outcome outcome = RunTool(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    rapidjson::Document json;
    json.Parse(outcome.out.c_str());
    EXPECT_FALSE(json.HasParseError());
    return json;
}

// What a text report says behind its first line, which is the log's path.
std::string TextOf(const Texts& arguments, std::size_t width = ReportOptions::kUsualWidth) {
    const Outcome outcome = RunTool(arguments, width);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    return outcome.out.substr(outcome.out.find('\n') + 1);
}

class LogFile {
public:
    explicit LogFile(const Texts& lines) : m_file(TestSession::Joined(lines)) {}
    const std::string& Path() const { return m_file.Path(); }

private:
    TestFile m_file;
};

// "name in: base log difference" of a number of each entry.
Texts Differences(const rapidjson::Document& json, const char* list, const char* name, const char* number) {
    Texts texts;
    for (const auto& entry : json[list].GetArray()) {
        std::string text(entry[name].GetString());
        text.append(" ").append(entry["in"].GetString()).append(":");
        for (const char* side : {"base", "log", "difference"}) {
            text.append(" ").append(std::to_string(entry[number][side].GetInt64()));
        }
        texts.push_back(text);
    }
    return texts;
}

std::string Statement(int number) { return "SELECT A FROM T WHERE B=" + std::to_string(number); }

std::optional<ReportOptions> OptionsOf(Texts arguments, int& status) {
    std::ostringstream out;
    std::ostringstream err;
    arguments.emplace_back("x.log");
    return ReadReportOptions(arguments, out, err, status);
}

// Calls of F and G, the second one failing, and a statement in each.
Texts TwoCalls() {
    return DebugLog({At(0, CallText("F", 1)), At(0, Statement(1)), At(2, kSqlDone), At(3, ReturnText("F", 1)),
                     At(3, CallText("G", 1)), At(4, "ERROR: no such item"), At(4, Statement(2)),
                     At(5, kSqlDone), At(7, ReturnText("G", 1, 2))});
}

} // namespace

TEST(ExploreRun, EndsWith2OnWrongUsage) {
    const std::vector<Texts> wrong = {
        {"--explore", "--tree", "process:1"},
        {"--explore", "--find", "x"},
        {"--explore", "--export-gaps", "g.csv"},
        {"--explore", "--compare", kSample},
        {"--compare", kSample, "--tree", "process:1"},
        {"--compare", kSample, "--find", "x"},
        {"--compare", kSample, "--export-gaps", "g.csv"},
        {"--compare", kSample, "--export-profile", "p.folded"},
        {"--scope", "process:1"},
        {"--from", "1"},
        {"--to", "1"},
        {"--top", "1"},
        {"--scope", "process:1", "--tree", "process:1"},
        {"--from", "1", "--find", "x"},
        {"--top", "3", "--json"},
        {"--explore", "--top", "0"},
        {"--explore", "--top", "-1"},
        {"--explore", "--top", "+1"},
        {"--explore", "--top", "1.5"},
        {"--explore", "--top", "x"},
        {"--explore", "--top", " 1"},
        {"--explore", "--top", ""},
        {"--explore", "--top"},
        {"--compare"},
    };
    for (Texts arguments : wrong) {
        SCOPED_TRACE(::testing::PrintToString(arguments));
        if (arguments.back() != "--top" && arguments.back() != "--compare") {
            arguments.push_back(kSample);
        }
        const Outcome outcome = RunTool(arguments);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err.find("Usage: carvelot-report"), std::string::npos) << outcome.err;
    }
    // The first line names what is wrong.
    const auto firstLine = [](const Texts& arguments) {
        const std::string err = RunTool(arguments).err;
        return err.substr(0, err.find('\n'));
    };
    EXPECT_EQ(firstLine({"--compare", kSample, "--explore", kSample}), "--compare excludes --explore");
    EXPECT_EQ(firstLine({"--from", "1", kSample}),
              "--from requires --explore, --compare or --export-profile");
    EXPECT_EQ(firstLine({"--explore", "--top", "0", kSample}), "--top takes a whole number, 1 or more");
    EXPECT_EQ(firstLine({"--explore", "--to", "x", kSample}), "--to takes a number of seconds");
}

TEST(ExploreRun, TakesTheEndsOfARangeAsDecimalSeconds) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max() / 2;
    const std::vector<std::pair<std::string, std::int64_t>> right = {
        {"0", 0},
        {"1", 1'000'000},
        {"+1", 1'000'000},
        {"-1", -1'000'000},
        {"1.5", 1'500'000},
        {".5", 500'000},
        {"5.", 5'000'000},
        {"-.25", -250'000},
        {"0.000001", 1},
        {"0.0000019", 1}, // cut off behind the sixth place, on either side of 0
        {"-0.0000019", -1},
        {"007", 7'000'000},
        {"12345.678901", 12'345'678'901},
        {"99999999999999999999", most},
        {"-99999999999999999999", -most},
    };
    for (const auto& [text, clock] : right) {
        int status = REPORT_USAGE;
        for (const char* option : {"--from", "--to"}) {
            const std::optional<ReportOptions> options = OptionsOf({"--explore", option, text}, status);
            ASSERT_TRUE(options && options->explore) << text;
            const ClockRange& range = options->explore->range;
            const bool isFrom = std::string_view(option) == "--from";
            EXPECT_EQ(isFrom ? range.from : range.to, clock) << text;
            EXPECT_EQ(isFrom ? range.to : range.from, isFrom ? ClockRange::kOpenTo : ClockRange::kOpenFrom);
        }
    }
    for (const char* text : {"", ".", "-", "+", "-.", "x", "1x", "1e3", "1,5", "1.2.3", "--1", "+-1", " 1",
                             "1 ", "inf", "nan", "0x1"}) {
        for (const char* option : {"--from", "--to"}) {
            int status = REPORT_DONE;
            EXPECT_FALSE(OptionsOf({"--explore", std::string(option) + "=" + text}, status))
                << '"' << text << '"';
            EXPECT_EQ(status, REPORT_USAGE) << '"' << text << '"';
        }
    }
}

TEST(ExploreRun, TakesHowManyRowsATableShows) {
    int status = REPORT_DONE;
    EXPECT_EQ(OptionsOf({"--explore"}, status)->explore->top, 10U);
    EXPECT_EQ(OptionsOf({"--explore", "--top", "1"}, status)->explore->top, 1U);
    EXPECT_EQ(OptionsOf({"--compare", "y.log", "--top", "0025"}, status)->explore->top, 25U);
    EXPECT_EQ(OptionsOf({"--explore", "--top", "99999999999999999999"}, status)->explore->top,
              std::numeric_limits<std::size_t>::max());
    EXPECT_EQ(RunTool({"--explore", "--top", "99999999999999999999", kSample}).status, 0);
}

TEST(ExploreRun, EndsWith1AndTheWindowsMessageOfEitherLog) {
    const TestFile unknown("a\nb\n");
    for (const char* json : {"--json", "--no-cache-analysis"}) {
        for (const Texts& arguments :
             {Texts{"--explore", json, "no such file"}, Texts{"--compare", kSample, json, "no such file"},
              Texts{"--compare", "no such file", json, kSample},
              Texts{"--compare", "no such file", json, unknown.Path()},
              Texts{"--compare", "", json, kSample}}) {
            const Outcome outcome = RunTool(arguments);
            EXPECT_EQ(outcome.status, 1) << ::testing::PrintToString(arguments);
            EXPECT_EQ(outcome.err, "Failed to open file.\n");
            EXPECT_EQ(outcome.out, "");
        }
        for (const Texts& arguments :
             {Texts{"--explore", json, unknown.Path()}, Texts{"--compare", kSample, json, unknown.Path()},
              Texts{"--compare", unknown.Path(), json, kSample}}) {
            const Outcome outcome = RunTool(arguments);
            EXPECT_EQ(outcome.status, 1) << ::testing::PrintToString(arguments);
            EXPECT_EQ(outcome.err, "Error: Cannot determine tracing log format\n");
            EXPECT_EQ(outcome.out, "");
        }
    }
}

TEST(ExploreRun, EndsWith1OnAScopeThatNoLogHas) {
    for (const Texts& arguments :
         {Texts{"--explore", "--scope", "process:99", kSample},
          Texts{"--explore", "--json", "--scope", "process:99", kSample},
          Texts{"--compare", kSample, "--scope", "process:99", kSample},
          Texts{"--compare", kSample, "--json", "--scope", "process:99", "--from", "1", kSample}}) {
        const Outcome outcome = RunTool(arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, "No such scope: process:99\n");
        EXPECT_EQ(outcome.out, "");
    }
    EXPECT_EQ(RunTool({"--explore", "--scope", "", kSample}).err, "No such scope: \n");
}

TEST(ExploreRun, ComparesTwoLogsAsJson) {
    const LogFile base(TwoCalls());
    const LogFile log(
        DebugLog({At(0, CallText("F", 1)), At(0, Statement(1)), At(1, kSqlDone), At(2, ReturnText("F", 1))}));
    const rapidjson::Document json = JsonOf({"--compare", base.Path(), "--json", log.Path()});
    EXPECT_EQ(json.MemberCount(), 5U);
    EXPECT_EQ(json["base"].GetString(), base.Path());
    EXPECT_EQ(json["log"].GetString(), log.Path());
    EXPECT_EQ(Differences(json, "functions", "name", "total"),
              (Texts{"G base: 4000000 0 -4000000", "SELECT T both: 3000000 1000000 -2000000",
                     "F both: 3000000 2000000 -1000000"}));
    EXPECT_EQ(Differences(json, "functions", "name", "failed"),
              (Texts{"G base: 1 0 -1", "SELECT T both: 0 0 0", "F both: 0 0 0"}));
    EXPECT_EQ(Differences(json, "shapes", "shape", "count"), Texts{"SELECT A FROM T WHERE B=? both: 2 1 -1"});
    EXPECT_EQ(Differences(json, "findings", "rule", "cost"),
              (Texts{"first-cause base: 4000000 0 -4000000", "silence-in-call base: 2000000 0 -2000000",
                     "silence-in-call base: 2000000 0 -2000000"}));
    EXPECT_STREQ(json["functions"][1]["kind"].GetString(), "statement");
    EXPECT_EQ(json["functions"][0].MemberCount(), 13U);
    EXPECT_EQ(json["shapes"][0].MemberCount(), 6U);
    EXPECT_EQ(json["findings"][0].MemberCount(), 5U);
}

TEST(ExploreRun, CutsBothLogsOfAComparison) {
    const LogFile log(TwoCalls());
    // The frames of the first log start two hours behind its first record.
    const rapidjson::Document json =
        JsonOf({"--compare", log.Path(), "--json", "--from", "7199", "--to", "7201.999999", log.Path()});
    EXPECT_EQ(Differences(json, "functions", "name", "total"),
              (Texts{"F both: 2000000 2000000 0", "SELECT T both: 2000000 2000000 0"}));
    EXPECT_EQ(json["findings"].Size(), 3U);
}

TEST(ExploreRun, LeavesTheSideWithoutTheScopeEmpty) {
    const LogFile base(DebugLog({At(0, CallText("F", 1), "5/6"), At(2, ReturnText("F", 1), "5/6")}));
    const LogFile log(TwoCalls());
    const rapidjson::Document json =
        JsonOf({"--compare", base.Path(), "--json", "--scope", "thread:5/6", log.Path()});
    EXPECT_EQ(Differences(json, "functions", "name", "calls"), Texts{"F base: 1 0 -1"});
    EXPECT_TRUE(json["shapes"].Empty());
    EXPECT_EQ(json["findings"].Size(), 3U); // findings are whole
    const rapidjson::Document swapped =
        JsonOf({"--compare", log.Path(), "--json", "--scope", "thread:5/6", base.Path()});
    EXPECT_EQ(Differences(swapped, "functions", "name", "calls"), Texts{"F log: 0 1 1"});
    EXPECT_NE(TextOf({"--compare", base.Path(), "--scope", "thread:5/6", log.Path()})
                  .find("\n  The log has no thread:5/6\n"),
              std::string::npos);
    EXPECT_NE(TextOf({"--compare", log.Path(), "--scope", "thread:5/6", base.Path()})
                  .find("\n  The base has no thread:5/6\n"),
              std::string::npos);
}

TEST(ExploreRun, LoadsBothLogsOfAComparisonAlike) {
    const LogFile log(
        DebugLog({At(0, CallText("F", 1)), At(3, ReturnText("F", 1)), At(3, CallText("G", 1), "5/6"),
                  At(3, "jdeCacheInit Name:[C]", "5/6"), At(3, "Created new cache hCache:[1A]", "5/6"),
                  At(3, "hCache:[1A] Nm:[x]", "5/6"), At(4, ReturnText("G", 1), "5/6")}));
    const auto findings = [&log](const Texts& more) {
        Texts arguments{"--compare", log.Path(), "--json", log.Path()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Differences(JsonOf(arguments), "findings", "rule", "count");
    };
    const std::string silence = "silence-in-call both: 1 1 0";
    const std::string cache = "cache-not-terminated both: 1 1 0";
    EXPECT_EQ(findings({}), (Texts{cache, silence}));
    EXPECT_EQ(findings({"--threshold", "3"}), Texts{cache});
    EXPECT_EQ(findings({"--no-cache-analysis"}), Texts{silence});
    EXPECT_EQ(findings({"--process", "5"}), (Texts{cache, "unread-lines both: 3 3 0"}));
}

TEST(ExploreRun, CarriesNoPendingStatementFromOneLogToTheOther) {
    // The base's last statement awaits a parameter; nothing else would be read before it came.
    const LogFile base(JASLog({UserAt(0, "SELECT A FROM T WHERE B = ?")}));
    const LogFile log(JASLog({UserAt(0, "Object Called: F4211.Y"), UserAt(2, "x y")}));
    const rapidjson::Document json = JsonOf({"--compare", base.Path(), "--json", log.Path()});
    ASSERT_EQ(json["functions"].Size(), 1U);
    EXPECT_STREQ(json["functions"][0]["kind"].GetString(), "object");
    EXPECT_STREQ(json["functions"][0]["in"].GetString(), "log");
}

TEST(ExploreRun, ComparesLogsOfTwoFormats) {
    const LogFile debug(TwoCalls());
    const LogFile jas(JASLog({UserAt(0, "SELECT A FROM T WHERE B=9"), UserAt(2, "x y")}));
    EXPECT_EQ(
        Differences(JsonOf({"--compare", debug.Path(), "--json", jas.Path()}), "shapes", "shape", "count"),
        Texts{"SELECT A FROM T WHERE B=? both: 2 1 -1"});
}

TEST(ExploreRun, TellsTheWorstFirst) {
    const LogFile log(TwoCalls());
    EXPECT_EQ(TextOf({"--explore", log.Path()}),
              R"(  debug log, 10 records of 2 threads over 7,207.000 s (2:00:07)
  from Jan 15 08:00:00.000001
  10 lines

What asks for a look: 1 error, 2 notes (3)
     cost  times  line
  error: The function failed; the first record names what went wrong first in it.
  4.000 s      1     7  G
      ERROR: no such item
  note: Nothing was written for longer than the threshold inside the function.
  2.000 s      1     4  F
  2.000 s      1    10  G

Where the time went, by self time (3)
     self  share                 total  calls  failed
  3.000 s  ####        42.9 %  4.000 s      1       1  F  G
  3.000 s  ####        42.9 %  3.000 s      2          S  SELECT T
  1.000 s  #           14.3 %  3.000 s      1          F  F
  F function, E event, S statement, O object call

Who called the worst of them (4)
    total  calls
  F  G
  4.000 s      1  from (top)
  S  SELECT T
  2.000 s      1  from F  F
  1.000 s      1  from F  G
  F  F
  3.000 s      1  from (top)

Statements alike but for their values, by total time (1)
    total  share               times  longest      p95  most run by
  3.000 s  ########## 100.0 %      2  2.000 s  2.000 s  F  F
      SELECT A FROM T WHERE B=?
)");
}

TEST(ExploreRun, TellsWhichPartOfALogItTellsOf) {
    const LogFile log(TwoCalls());
    EXPECT_EQ(TextOf({"--explore", "--scope", "process:4120", "--from", "7200", "--to", "7201.5", "--top",
                      "1", log.Path()}),
              R"(  debug log, 10 records of 2 threads over 7,207.000 s (2:00:07)
  from Jan 15 08:00:00.000001
  10 lines
  Only process:4120 from 7,200.000 s up to 7,201.500 s; what asks for a look is of the whole log

What asks for a look: 1 error, 2 notes (3)
     cost  times  line
  error: The function failed; the first record names what went wrong first in it.
  4.000 s      1     7  G
      ERROR: no such item
  ... and 2 more

Where the time went, by self time (2)
     self  share                 total  calls  failed
  1.500 s  ########## 100.0 %  1.500 s      1          S  SELECT T
  ... and 1 more
  F function, E event, S statement, O object call

Who called the worst of them (1)
    total  calls
  S  SELECT T
  1.500 s      1  from F  F

Statements alike but for their values, by total time (1)
    total  share               times  longest      p95  most run by
  1.500 s  ########## 100.0 %      1  1.500 s  1.500 s  F  F
      SELECT A FROM T WHERE B=?
)");
    EXPECT_NE(TextOf({"--explore", "--from", "-1", log.Path()}).find("\n  Only from -1.000 s; what"),
              std::string::npos);
    EXPECT_NE(TextOf({"--explore", "--to", "0.0001", log.Path()}).find("\n  Only up to <0.001 s; what"),
              std::string::npos);
}

TEST(ExploreRun, SaysThatThereIsNothing) {
    const LogFile noCall(DebugLog({At(0, "x y")}));
    EXPECT_EQ(TextOf({"--explore", noCall.Path()}),
              R"(  debug log, 2 records of 2 threads over 7,200.000 s (2:00:00)
  from Jan 15 08:00:00.000001
  2 lines

Nothing asks for a look

No call, no event, no statement
)");
    const LogFile noStatement(DebugLog({At(0, CallText("F", 1)), At(1, ReturnText("F", 1))}));
    const std::string text = TextOf({"--explore", noStatement.Path()});
    EXPECT_TRUE(text.ends_with("\nNo statement\n")) << text;
    EXPECT_NE(text.find("\n  1.000 s  ########## 100.0 %  1.000 s      1          F  F\n"), std::string::npos)
        << text;
    // No record is left, or none has a stamp.
    EXPECT_EQ(TextOf({"--explore", "--process", "9", noCall.Path()}), R"(  debug log, 0 records of 0 threads
  no record bears a time
  2 lines, unread: 2 of another process

What asks for a look: 1 note (1)
  cost  times  line
  note: Lines that hold a word became no record: whatever they say is missing from all that is shown.
            2        filtered

No call, no event, no statement
)");
    // Calls that take no time have no shares, and nobody is the worst.
    const LogFile noTime(DebugLog({At(0, CallText("F", 1)), At(0, ReturnText("F", 1))}));
    const std::string timeless = TextOf({"--explore", noTime.Path()});
    EXPECT_NE(timeless.find("\n  0.000 s               0.0 %  0.000 s      1          F  F\n"),
              std::string::npos);
    EXPECT_EQ(timeless.find("Who called"), std::string::npos);
}

TEST(ExploreRun, CountsWhatIsUnread) {
    const LogFile debug(DebugLog({At(0, "x y"), "a b c", "one word at least"}));
    EXPECT_NE(TextOf({"--explore", debug.Path()}).find("\n  4 lines, unread: 2 without a time\n"),
              std::string::npos);
    const LogFile jas(JASLog({"a stack trace", UserAt(0, "x y")}));
    EXPECT_NE(TextOf({"--explore", jas.Path()})
                  .find("  JAS log, 7 records of 2 users over 7,200.000 s (2:00:00)\n"),
              std::string::npos);
    EXPECT_NE(TextOf({"--explore", jas.Path()}).find("\n  8 lines, unread: 1 without a month\n"),
              std::string::npos);
}

TEST(ExploreRun, ShowsAtMostTheRowsThatAreAskedFor) {
    Texts lines = DebugLog({});
    for (int i = 0; i < 30; ++i) {
        const std::string number = std::to_string(100 + i);
        lines.push_back(At(2 * i, CallText("F" + number, 1)));
        lines.push_back(At(2 * i, "SELECT A FROM T" + number));
        lines.push_back(At(2 * i + 1, kSqlDone));
        lines.push_back(At(2 * i + 1, ReturnText("F" + number, 1, 2)));
    }
    const LogFile log(lines);
    const auto counts = [&log](const Texts& more) {
        Texts arguments{"--explore", log.Path()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        Texts found;
        std::istringstream text(TextOf(arguments));
        for (std::string line; std::getline(text, line);) {
            if (line.starts_with("  ... and ")) {
                found.push_back(line.substr(10));
            }
        }
        return found;
    };
    EXPECT_EQ(counts({}), (Texts{"20 more", "50 more", "20 more"}));
    EXPECT_EQ(counts({"--top", "29"}), (Texts{"1 more", "31 more", "1 more"}));
    EXPECT_EQ(counts({"--top", "60"}), Texts{});
}

TEST(ExploreRun, LetsNoControlCharacterReachTheTerminal) {
    const std::string nasty = "\x1B[31mF\x07\xC2\x9B";
    Texts lines =
        DebugLog({At(0, CallText(nasty, 1)), At(1, "ERROR \x1B]0;title\x07"),
                  At(1, "SELECT \x1B[2J FROM \x1B[31mT"), At(2, kSqlDone), At(9, ReturnText(nasty, 1, 2))});
    const LogFile log(lines);
    const LogFile base(DebugLog({}));
    for (const Texts& arguments :
         {Texts{"--explore", log.Path()}, Texts{"--compare", base.Path(), log.Path()}}) {
        const std::string text = TextOf(arguments);
        EXPECT_NE(text.find("[31mF"), std::string::npos);
        for (const char c : text) {
            EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20) << static_cast<int>(c);
        }
        EXPECT_EQ(text.find("\xC2\x9B"), std::string::npos);
        EXPECT_EQ(text.find('\x7F'), std::string::npos);
    }
}

TEST(ExploreRun, KeepsItsLinesWithinTheWidth) {
    // Names of two bytes a character, and statements of thousands.
    std::string name;
    for (int i = 0; i < 200; ++i) {
        name += "\xC3\xA9";
    }
    Texts lines = DebugLog({At(0, EventText(name)), At(1, CallText(std::string(300, 'F'), 1))});
    for (int i = 0; i < 12; ++i) {
        lines.push_back(At(2, "SELECT " + std::string(5000, 'A') + " FROM T" + name));
        lines.push_back(At(3, kSqlDone));
    }
    lines.push_back(At(9, ReturnText(std::string(300, 'F'), 1, 2)));
    const LogFile log(lines);
    const LogFile base(DebugLog({}));
    for (const std::size_t width : {60U, 80U, 120U, 200U}) {
        for (const Texts& arguments :
             {Texts{"--explore", log.Path()}, Texts{"--compare", base.Path(), log.Path()},
              Texts{"--explore", kSample}}) {
            std::istringstream text(TextOf(arguments, width));
            std::size_t longest = 0;
            bool isCut = false;
            for (std::string line; std::getline(text, line);) {
                if (line.starts_with("compared with ")) {
                    continue;
                }
                longest = std::max(longest,
                                   static_cast<std::size_t>(std::count_if(
                                       line.begin(), line.end(), [](char c) { return (c & 0xC0) != 0x80; })));
                isCut = isCut || line.ends_with("...");
            }
            EXPECT_LE(longest, std::max<std::size_t>(width, 80)) << width;
            EXPECT_TRUE(isCut || arguments.back() == kSample);
        }
    }
}

TEST(ExploreRun, ShowsTheSampleOnTwoScreensAtMost) {
    const std::string text = TextOf({"--explore", kSample});
    EXPECT_LE(std::count(text.begin(), text.end(), '\n'), 80);
}

TEST(ExploreRun, TellsTheLargestDifferencesFirst) {
    const LogFile base(TwoCalls());
    const LogFile log(
        DebugLog({At(0, CallText("F", 1)), At(0, Statement(1)), At(8, kSqlDone), At(8, ReturnText("F", 1)),
                  At(9, CallText("H", 1)), At(10, ReturnText("H", 1))}));
    const std::string text = TextOf({"--compare", base.Path(), log.Path()});
    EXPECT_EQ(text.substr(text.find("\n\n")), R"(

What asks for a look (3)
      cost  times  base  log
  error: The function failed; the first record names what went wrong first in it.
  -4.000 s     -1     1    0  -  G
  note: Nothing was written for longer than the threshold inside the function.
  +6.000 s      0     1    1     F
  -2.000 s     -1     1    0  -  G

Where the time went (4)
     total     base      log      self  calls  failed
  +5.000 s  3.000 s  8.000 s  -1.000 s      0             F  F
  +5.000 s  3.000 s  8.000 s  +5.000 s     -1             S  SELECT T
  -4.000 s  4.000 s  0.000 s  -3.000 s     -1      -1  -  F  G
  +1.000 s  0.000 s  1.000 s  +1.000 s     +1          +  F  H
  F function, E event, S statement, O object call

Statements alike but for their values (1)
     total     base      log  times   longest
  +5.000 s  3.000 s  8.000 s     -1  +6.000 s
      SELECT A FROM T WHERE B=?

Differences: the log less the base. + in the log alone, - in the base alone.
)");
    EXPECT_NE(text.find("\ncompared with " + base.Path() + "\n  debug log, 10 records of 2 threads"),
              std::string::npos);
    const std::string top = TextOf({"--compare", base.Path(), "--top", "1", log.Path()});
    EXPECT_NE(top.find("... and 3 more\n  F function"), std::string::npos);
    EXPECT_EQ(top.find("SELECT T"), std::string::npos);
}

TEST(ExploreRun, SaysThatNothingDiffers) {
    const LogFile log(TwoCalls());
    const std::string text = TextOf({"--compare", log.Path(), log.Path()});
    EXPECT_EQ(text.substr(text.find("\n\n")), R"(

What asks for a look: no difference

Where the time went: no difference

Statements alike but for their values: no difference

Differences: the log less the base. + in the log alone, - in the base alone.
)");
}

} // namespace carvelot::test
