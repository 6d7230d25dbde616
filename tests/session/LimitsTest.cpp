// The limits of a session, each at its boundary. What stands in docs/limits.md is shown here.
#include "support/TestLog.h"

#include "report/JsonReport.h"
#include "report/TextReport.h"
#include "text/Integers.h"
#include "trees/DetailTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace carvelot::test {

namespace {

using Strings = std::vector<std::string>;

constexpr const char* kTooLarge = "This log is too large: it holds more than a session can.";

constexpr std::size_t kRecordStep = std::size_t{1} << 18U;
constexpr std::size_t kTextStep = std::size_t{1} << 22U;

CLogDetail Detail(std::string_view text) {
    CLogDetail detail;
    detail.m_strText = text;
    return detail;
}

std::string Copies(std::size_t size, char c) { return std::string(size, c); }

} // namespace

static_assert(
    CDetailList::kMost * 3 < CDetailTree::kRoot,
    "a record makes at most three nodes: its own, its group's, and the root of its thread's UBE lines");
static_assert(CDetailList::kMost < static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()),
              "a window counts rows with 31 bits, and a list its calls and statements");
static_assert(CDetailList::kMost < Number(kNoRecord), "no record has the number of none");
static_assert(CTextStore::kMost <= std::size_t{1} << 40U, "a record names its text's place with 40 bits");

TEST(Limits, ALogOfTheMostRecordsLoadsAndOneMoreEndsWithAMessage) {
    const std::string line = DebugLine("10:00:00.000001", "On x", "5/6") + "\n";
    std::string content = TestSession::Joined(DebugLog({}));
    content.reserve(line.size() * (kRecordStep + 1));
    for (std::size_t i = 1; i < kRecordStep; ++i) {
        content += line;
    }
    TestSession session(Strings{});
    session.m_host.m_messages.clear();
    session.m_doc.m_listDetails.LimitTo(kRecordStep, CTextStore::kMost);
    session.m_file.Write(content);
    EXPECT_TRUE(session.m_doc.LoadLog());
    EXPECT_EQ(session.Count(), kRecordStep);
    EXPECT_TRUE(session.m_host.m_messages.empty());

    session.m_file.Write(content + line);
    EXPECT_FALSE(session.m_doc.LoadLog());
    EXPECT_EQ(session.m_host.m_messages, Strings{kTooLarge});
    EXPECT_EQ(session.Count(), 0U);
    EXPECT_TRUE(session.m_doc.m_listProcesses.empty());
}

TEST(Limits, ALogOfTheMostTextLoadsAndMoreEndsWithAMessage) {
    // Texts of 4096 bytes fill a block of the store exactly.
    std::string content = TestSession::Joined(DebugLog({}));
    const auto lines = [&](std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            const std::string number = std::to_string(1000 + i);
            content += DebugLine("10:00:00.000001", number + Copies(4096 - number.size(), 'x'), "5/6") + "\n";
        }
    };
    TestSession session(Strings{});
    session.m_host.m_messages.clear();
    session.m_doc.m_listDetails.LimitTo(CDetailList::kMost, 2 * kTextStep);
    lines(kTextStep / 4096 * 2 - 1); // the first line's text leaves no room for one of them
    session.m_file.Write(content);
    EXPECT_TRUE(session.m_doc.LoadLog());
    EXPECT_EQ(session.Last().m_strText.size(), 4096U);
    lines(1);
    session.m_file.Write(content);
    EXPECT_FALSE(session.m_doc.LoadLog());
    EXPECT_EQ(session.m_host.m_messages, Strings{kTooLarge});
    EXPECT_EQ(session.Count(), 0U);
}

TEST(Limits, AnInternersLastNumberIsGivenAndNoneBehindIt) {
    CInterner words;
    words.LimitTo(4); // the empty text is one
    EXPECT_EQ(words.Id("a"), 1U);
    EXPECT_EQ(words.Id("b"), 2U);
    EXPECT_EQ(words.Id("c"), 3U);
    EXPECT_THROW(words.Id("d"), std::length_error);
    EXPECT_EQ(words.Id("c"), 3U);
    EXPECT_EQ(words.Id(""), 0U);
    EXPECT_EQ(words.Count(), 4U);
}

TEST(Limits, APagedArrayThatMayNotGrowStaysAsItIs) {
    CPagedArray<int, 2> array;
    array.LimitTo(8);
    for (int i = 0; i < 8; ++i) {
        array.Add(i);
    }
    EXPECT_THROW(array.Add(8), std::length_error);
    ASSERT_EQ(array.Size(), 8U);
    EXPECT_EQ(array[7], 7);
    array.Clear();
    array.Add(9);
    EXPECT_EQ(array[0], 9);
}

TEST(Limits, TextsAroundTheStoresLongestAreKeptWhole) {
    CDetailList details;
    std::vector<std::string> texts;
    for (const std::size_t size :
         {CTextStore::kLongest - 1, CTextStore::kLongest, CTextStore::kLongest + 1, kTextStep + 1}) {
        texts.push_back(Copies(size, static_cast<char>('a' + texts.size())));
    }
    for (const std::string& text : texts) {
        details.Append(Detail(text), true);
    }
    for (std::uint32_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(details[RecordIndex{i}].m_strText, texts[i]);
    }
}

TEST(Limits, LabelsAroundWhatIsSharedAreKeptWhole) {
    // A label runs on into the text of its line where no tab ends it.
    for (const std::size_t size : {15U, 16U, 17U, 63U, 64U, 65U, 66U, 8000U}) {
        const std::string label = Copies(size, 'L');
        TestSession session(DebugLog(
            {"Jan 15 10:00:00.000001 - 5/6 " + label + "\tOn x", "Jan 15 10:00:00.000001 - 5/6 " + label}));
        EXPECT_EQ(session.Record(1).m_strThreadLabel.Joined(), label) << size;
        EXPECT_EQ(session.Record(2).m_strThreadLabel.Joined(), label) << size;
    }
    TestSession session({"Jan 15 08:00:00.000001 - 1/1 " + Copies(40, 'a') + "Entering JDB_OpenTable",
                         "Jan 15 08:00:00.000001 - 1/1 " + Copies(40, 'b') + "On x",
                         "Jan 15 08:00:00.000001 - 1/1 " + Copies(40, 'b') + "   "});
    EXPECT_EQ(session.Record(1).m_strThreadLabel.Joined(), Copies(40, 'b') + "On x");
    EXPECT_EQ(session.Record(2).m_strThreadLabel.Joined(), Copies(40, 'b') + "   ");
}

TEST(Limits, FieldsOfAStampAroundTheirPackedWidthsAreKept) {
    struct Stamp {
        const char* text;
        std::int32_t day, hour, minute, second, fraction;
    };
    for (const Stamp& stamp : {
             Stamp{"Jan 31 31:63:63.1048575", 31, 31, 63, 63, 1048575},
             Stamp{"Jan 32 32:64:64.1048576", 32, 32, 64, 64, 1048576},
             Stamp{"Jan -1 -1:-1:-1.-1", -1, -1, -1, -1, -1},
             Stamp{"Jan 2147483647 2147483647:2147483647:2147483647.2147483647", 2147483647, 2147483647,
                   2147483647, 2147483647, 2147483647},
             Stamp{"Jan 2147483648 99999999999:2147483648:4294967296.99999999999999999999", 2147483647,
                   2147483647, 2147483647, 2147483647, 2147483647},
             Stamp{"Jan -2147483649 -99999999999:0:0.0", std::numeric_limits<std::int32_t>::min(),
                   std::numeric_limits<std::int32_t>::min(), 0, 0, 0},
         }) {
        TestSession session(DebugLog({std::string(stamp.text) + " - 5/6 W\tOn x"}));
        const CLogDetail detail = session.Record(1);
        EXPECT_EQ(detail.m_nDay, stamp.day) << stamp.text;
        EXPECT_EQ(detail.m_nHour, stamp.hour) << stamp.text;
        EXPECT_EQ(detail.m_nMinute, stamp.minute) << stamp.text;
        EXPECT_EQ(detail.m_nSecond, stamp.second) << stamp.text;
        EXPECT_EQ(detail.m_nMicrosecond, stamp.fraction) << stamp.text;
        EXPECT_EQ(detail.m_nTime, LogTime(stamp.hour, stamp.minute, stamp.second, stamp.fraction));
        EXPECT_EQ(detail.m_nTime, session.m_doc.m_listDetails.Time(RecordIndex{1}));
    }
}

TEST(Limits, ProcessAndThreadNumbersSaturateToSigned32BitsAndNegativeOnesWrap) {
    struct Ids {
        const char* text;
        std::uint32_t process, thread;
    };
    for (const Ids& ids : {
             Ids{"2147483647/2147483647", 2147483647U, 2147483647U},
             Ids{"2147483648/4294967296", 2147483647U, 2147483647U},
             Ids{"999999999/1000000000", 999999999U,
                 1000000000U}, // the last of nine digits, the first of ten
             Ids{"-1/-167733552", 4294967295U, 4127233744U},
             Ids{"-2147483648/-2147483649", 2147483648U, 2147483648U},
             Ids{"0/0", 0U, 0U},
         }) {
        TestSession session(DebugLog({DebugLine("10:00:00.000001", "On x", ids.text)}));
        EXPECT_EQ(session.Record(1).m_nProcessID, ids.process) << ids.text;
        EXPECT_EQ(session.Record(1).m_nThreadID, ids.thread) << ids.text;
        EXPECT_EQ(session.Process(ids.process).m_mapThreads.count(ids.thread), 1U) << ids.text;
    }
}

TEST(Limits, NumbersSaturateAtBothEndsHoweverManyDigitsTheyHave) {
    EXPECT_EQ(ReadInteger("2147483647"), 2147483647);
    EXPECT_EQ(ReadInteger("2147483648"), 2147483647);
    EXPECT_EQ(ReadInteger("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ReadInteger("-2147483649"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ReadInteger(Copies(8000, '9')), 2147483647);
    EXPECT_EQ(ReadInteger("-" + Copies(8000, '9')), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ReadInteger(Copies(8000, '0') + "7"), 7);
}

TEST(Limits, LevelsOfBusinessFunctionsSaturateAndStillFindTheirCalls) {
    for (const char* level : {"2147483647", "2147483648", "-1", "-2147483648", "-99999999999"}) {
        const std::string suffix = " (BSFNLevel = " + std::string(level) + ")";
        TestSession session(
            DebugLog({DebugLine("10:00:00.000000", "Calling Business function F from X." + suffix, "5/6"),
                      DebugLine("10:00:02.000000", "Return value is 0 for F." + suffix, "5/6")}));
        const auto& instance = session.Process(5).m_pBSFNAnalysis.m_functions.front().m_instances.front();
        EXPECT_EQ(instance.m_level, ReadInteger(level)) << level;
        EXPECT_EQ(instance.m_duration, 2'000'000U) << level;
    }
}

TEST(Limits, MillisecondsOfAJASLogSaturateAsMicroseconds) {
    for (const auto& [text, microseconds] : std::initializer_list<std::pair<const char*, std::int32_t>>{
             {"999", 999'000},
             {"2147483", 2'147'483'000},
             {"2147484", 2'147'483'647},
             {"-2147484", std::numeric_limits<std::int32_t>::min()},
             {"99999999999", 2'147'483'647},
         }) {
        TestSession session(JASLog({JASLine("10:00:00," + std::string(text), "U", "x")}));
        EXPECT_EQ(session.Record(kJASLead).m_nMicrosecond, microseconds) << text;
    }
}

TEST(Limits, AParametersNumberSaturatesAndAMarkOfItsNumberAloneIsReplaced) {
    TestSession session(JASLog({JASLine("10:00:00,000", "U", "SELECT A FROM T WHERE B = ?"),
                                JASLine("10:00:00,001", "U", "Param99999999999: 5_Types.DECIMAL,")}));
    EXPECT_EQ(session.Last().m_strText, "SELECT A FROM T WHERE B = ?1");
    std::string scratch;
    EXPECT_EQ(ParseJASParam("Param99999999999: 5_Types.DECIMAL,", scratch).index, 2147483647);
    EXPECT_EQ(ParseJASParam("Param-99999999999: 5_Types.DECIMAL,", scratch).index,
              std::numeric_limits<std::int32_t>::min());
}

TEST(Limits, AStatementWithAMarkInEveryPlaceOfALineTakesAParameterForEach) {
    // As many marks as a line of 8192 bytes holds; the finished statement is longer than any line.
    constexpr std::size_t marks = 8000;
    std::vector<std::string> lines{JASLine("10:00:00,000", "U", "SELECT " + Copies(marks, '?'))};
    for (std::size_t i = 1; i <= marks; ++i) {
        lines.push_back(JASLine("10:00:00,001", "U",
                                "Param" + std::to_string(i) + ": " + Copies(20, 'v') + "_Types.DECIMAL,"));
    }
    std::vector<std::string> log = JASLog({});
    log.insert(log.end(), lines.begin(), lines.end());
    TestSession session(log);
    EXPECT_EQ(session.Last().m_nKind, LOG_SQL);
    EXPECT_GT(session.Last().m_strText.size(), CTextStore::kLongest);
    EXPECT_EQ(session.m_pending.parameters, 0);
}

TEST(Limits, TheReadersPiecesOfALongLineAreLinesOfTheirOwn) {
    const std::string stamp = "Jan 15 10:00:00.000001 - 5/6 W\t";
    const std::string text = Copies(CLogReader::kLongestLine - stamp.size(), 'x');
    TestSession session(
        DebugLog({stamp + text, stamp + text + "a piece without a stamp", stamp + text + "word"}));
    // Behind 8192 bytes an empty line follows, or what is left: no record, unless it is a single word.
    ASSERT_EQ(session.Count(), 5U);
    for (const std::uint32_t record : {1U, 2U, 3U}) {
        EXPECT_EQ(session.Text(record), text);
    }
    EXPECT_EQ(session.Record(4).m_strMonth, "MONTH");
    EXPECT_EQ(session.Text(4), "");
}

TEST(Limits, WordsAreFoundHoweverManyPlacesCouldHoldOne) {
    for (const std::size_t count : {0U, 1U, 25U, 2700U}) {
        std::string text;
        for (std::size_t i = 0; i < count; ++i) {
            text += "Ca ";
        }
        TestSession session(DebugLog({DebugLine("10:00:00.000001", text + "hCache:[1]")}));
        EXPECT_EQ(session.Kind(1), LOG_CACHE) << count;
    }
}

TEST(Limits, FormatIsToldByTheFirst5001LinesAlone) {
    const auto log = [](std::size_t before) {
        Strings lines(before, "x");
        lines.push_back(DebugLine("08:00:00.000001", "Entering JDB_OpenTable"));
        return lines;
    };
    EXPECT_TRUE(TestSession(log(5000)).m_bLoaded);
    EXPECT_FALSE(TestSession(log(5001)).m_bLoaded);
}

TEST(Limits, ATreeAsDeepAsItsLogIsLongIsLaidOut) {
    constexpr std::size_t depth = 20'000;
    std::vector<std::string> lines = DebugLog({});
    for (std::size_t i = 0; i < depth; ++i) {
        lines.push_back(
            DebugLine("10:00:00.000001", "Calling Business function F from X (BSFNLevel = 1)", "5/6"));
    }
    const TestSession session(lines);
    CDetailTree tree(session.m_doc);
    tree.FillDetails(true, session.Thread(5, 6).m_listDetails);
    CDetailTree::Node node = CDetailTree::kRoot;
    std::size_t levels = 0;
    while (tree.ChildCount(node) > 0) {
        ASSERT_EQ(tree.ChildCount(node), 1U);
        node = tree.Child(node, 0);
        ++levels;
    }
    EXPECT_EQ(levels, depth);
    std::ostringstream text;
    WriteTree(tree, text);
    EXPECT_EQ(std::ranges::count(text.str(), '\n'), static_cast<std::ptrdiff_t>(depth));
    std::ostringstream json;
    WriteTreeJson(tree, "thread:5/6", json);
    EXPECT_EQ(std::ranges::count(json.str(), '['), static_cast<std::ptrdiff_t>(depth) + 1);
}

TEST(Limits, AListOfLongTasksEndsBeforeTheMemory) {
    // A return at midnight sharp has no time: it leaves its calls open, and the next one lists them all
    // again, so that such a list grows by the square of its log.
    std::vector<std::string> lines = DebugLog({});
    lines.insert(lines.end(), 1000,
                 DebugLine("10:00:00.000001", "Calling Business function F from X (BSFNLevel = 1)", "5/6"));
    lines.insert(lines.end(), 50,
                 DebugLine("00:00:00.000000", "Return value is 0 for F. (BSFNLevel = 1)", "5/6"));
    const TestSession session(lines);
    EXPECT_EQ(session.Thread(5, 6).m_pBSFNAnalysis.m_listLongTasks.size(), 50'000U);

    CHeadList<int, 3> list;
    for (const int value : {1, 2, 3}) {
        list.AddHead(value);
    }
    EXPECT_THROW(list.AddHead(4), std::length_error);
    EXPECT_EQ(list.size(), 3U);
    EXPECT_EQ(list[0], 3);
}

TEST(Limits, ATabCountBeyondALinesTabsGoesRoundAndRoundTheLine) {
    // The format's line stands behind eleven tabs. A search that finds none makes the next one start over: in
    // a line of one tab every second search is in vain and the eleventh finds it, in one of two the second,
    // of three the third.
    std::vector<std::string> lines = {"Jan 15 08:00:00.000001 - 1/1 W" + std::string(11, '\t') +
                                      "Entering JDB_OpenTable"};
    for (const char* tail : {"\tOn a", "\tOn a\tOn b", "\tOn a\tOn b\tOn c", ""}) {
        lines.push_back("Jan 15 10:00:00.000001 - 5/6 W" + std::string(tail));
    }
    const TestSession session(lines);
    EXPECT_EQ(session.m_doc.m_nTabCount, 11);
    EXPECT_EQ(session.Texts(), (Strings{"Entering JDB_OpenTable", "On a", "On b", "On c", ""}));
}

TEST(Limits, TheSummaryShows15RowsOfAListAndSaysHowManyThereAre) {
    for (const int count : {15, 16}) {
        std::vector<std::string> lines = DebugLog({});
        for (int i = 0; i < count; ++i) {
            lines.push_back(DebugLine("10:00:00.000001", "SELECT A FROM T" + std::to_string(100 + i), "5/6"));
        }
        const TestSession session(lines);
        std::ostringstream out;
        WriteSummary(session.m_doc, "log", out);
        EXPECT_EQ(out.str().find("Tables, by statements (" + std::to_string(count) + ")") !=
                      std::string::npos,
                  true);
        EXPECT_EQ(out.str().find("... and 1 more") != std::string::npos, count == 16) << out.str();
    }
}

TEST(Limits, TimesOfDayThatNoClockHasWrapIn64Bits) {
    // The one place where wrapping is the rule; a difference of two such times is one of theirs.
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(LogTime(most, most, most, most),
              ((2147483647ULL * 60 + 2147483647) * 60 + 2147483647) * 1'000'000 + 2147483647);
    EXPECT_EQ(LogTime(least, 0, 0, 0), std::uint64_t{0} - 2147483648ULL * 3'600'000'000);
    EXPECT_EQ(ElapsedSeconds(LogTime(0, 0, 1, 0), LogTime(0, 0, -1, 0)), 2.0F + 46799.999999F);
}

} // namespace carvelot::test
