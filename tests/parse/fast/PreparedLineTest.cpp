// What is told of a line before its turn.
#include "parse/LogReader.h"
#include "parse/fast/FastDebugLines.h"
#include "parse/fast/FastJASLines.h"
#include "sources/MemorySource.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace carvelot::test {

namespace {

// What becomes of each line: "taken apart" or, of one that begins as an earlier one did, the kind, name, time
// and text of its record; with "ahead: " before it where the line was prepared.
class CTold {
public:
    void AddUsual(const UsualLine& line) {
        m_told.push_back(std::to_string(line.kind) + " <" + std::string(line.name) + "> " +
                         std::to_string(line.stamp.time + line.fraction) + " " + std::string(line.stored));
    }
    std::uint32_t Add(const CLogDetail&, bool) {
        m_told.emplace_back("taken apart");
        return static_cast<std::uint32_t>(m_told.size());
    }
    std::vector<std::string> m_told;
};

// The log comes in blocks of so many bytes.
template <class Lines, class Parse>
std::vector<std::string> Told(const std::string& log, std::size_t block, Lines& lines, Parse parse) {
    CMemorySource source(log);
    const BlockReading reading{.way = BlockReading::Way::Here, .bytes = block, .prepareAlways = true};
    ReadingBesides besides;
    besides.prepare = [&lines](CBlockLines block, PreparedLines& prepared) {
        lines.PrepareLines(block, prepared);
    };
    CLogReader reader(source, lines.Scan(), reading, {}, besides);
    CTold records;
    LogLine line;
    while (reader.ReadLogLine(line)) {
        const bool prepared = line.prepared != nullptr;
        parse(line, records);
        if (prepared) {
            records.m_told.back().insert(0, "ahead: ");
        }
    }
    return records.m_told;
}

std::vector<std::string> ToldOfDebug(const std::string& log, std::size_t block) {
    CDebugLineParser parser;
    parser.m_nTabCount = 1;
    CFastDebugLines lines(parser, ParseWay::Fast);
    return Told(log, block, lines,
                [&](const LogLine& line, CTold& records) { lines.ParseDebugLine(line, 0, records); });
}

std::vector<std::string> ToldOfJAS(const std::string& log, std::size_t block) {
    PendingStatement pending;
    CJASLineParser parser(pending);
    CFastJASLines lines(parser, ParseWay::Fast);
    return Told(log, block, lines,
                [&](const LogLine& line, CTold& records) { lines.ParseJASLine(line, 0, records); });
}

const std::string kDebug = "Jan 15 00:00:01.000002 - 12/34 WRK:Starting jdeCallObject\t";
const std::string kWarning = "15 Jan 2024 00:00:01,002 [WARN  ] SMITH - [JDBJ]   ";
const std::string kJAS = "15 Jan 2024 00:00:01,002 [APP   ] SMITH - [JDBJ]   ";

} // namespace

TEST(PreparedLine, IsOneOfALaterBlockThatBeginsAsAnEarlierLineDid) {
    const std::string first = kDebug + "On x\n" + kDebug + "On y\n";
    const std::string log = first + kDebug + "  SELECT A FROM T \n" +
                            "Jan 15 00:00:01.000002 - 1/1 W\tOn z\n" + kDebug +
                            "RT: >>>Beginning ER:\tOK\tForm:W1\t\n" + kDebug + "x --UBE-- y\n" + kDebug +
                            "Return value is 2 for A\n";
    EXPECT_EQ(ToldOfDebug(log, first.size()),
              (std::vector<std::string>{"taken apart", "3 <> 1000002 On y",
                                        "ahead: 1 <T> 1000002 SELECT A FROM T", "taken apart",
                                        // A name that is no slice of the line is made in its turn.
                                        "ahead: 7 <Form: W1 - OK> 1000002 "
                                        "RT: >>>Beginning ER:\tOK\tForm:W1\t",
                                        "taken apart", "ahead: 4 <> 1000002 Return value is 2 for A"}));
}

TEST(PreparedLine, OfAJASLogAwaitsTheParametersOfTheStatementAheadOfIt) {
    const std::string first = kJAS + "started\n" + kJAS + "On y\n";
    const std::string log = first + kJAS + "SELECT A FROM T WHERE B = ? AND C = ?\n" + kJAS + "Calling B\n" +
                            kJAS + "Param1: 1_Types.DECIMAL,\n" + kJAS + "Param2: 2_Types.DECIMAL,\n" + kJAS +
                            "Calling B\n" + kWarning + "Calling B\n";
    EXPECT_EQ(ToldOfJAS(log, first.size()),
              (std::vector<std::string>{"taken apart", "3 <> 1002000 On y",
                                        "ahead: 0 <> 1002000 SELECT A FROM T WHERE B = ?1 AND C = ?2",
                                        "ahead: 0 <> 1002000 Calling B",
                                        "ahead: 0 <> 1002000 Param1: 1_Types.DECIMAL,",
                                        "ahead: 1 <T> 1002000 SELECT A FROM T WHERE B = 1 AND C = 2",
                                        "ahead: 2 <> 1002000 Calling B", "taken apart"}));
}

TEST(PreparedLine, IsTakenApartBehindALineThatFixesTheColumn) {
    const std::string first = kDebug + "On x\n" + kDebug + "On y\n";
    const std::string log = first + kDebug + "On 1\n" + kDebug + " - On 2\n" + kDebug + "On 3\n";
    EXPECT_EQ(ToldOfDebug(log, first.size()),
              (std::vector<std::string>{"taken apart", "3 <> 1000002 On y", "ahead: 3 <> 1000002 On 1",
                                        "taken apart", "ahead: taken apart"}));
}

TEST(PreparedLine, IsNoneThatHoldsMoreThanASCII) {
    const std::string first = kDebug + "On x\n" + kDebug + "On y\n";
    const std::string log = first + kDebug + "On \xC3\xA9\n" + kDebug + "On z" + std::string(1, '\0') + "z\n";
    EXPECT_EQ(ToldOfDebug(log, first.size()),
              (std::vector<std::string>{"taken apart", "3 <> 1000002 On y", "taken apart",
                                        "ahead: 3 <> 1000002 On z"}));
}

TEST(PreparedLine, IsNoneWithoutTheShortWay) {
    CDebugLineParser parser;
    parser.m_nTabCount = 1;
    CFastDebugLines lines(parser, ParseWay::Plain);
    const std::string first = kDebug + "On x\n";
    EXPECT_EQ(Told(first + first, first.size(), lines,
                   [&](const LogLine& line, CTold& records) { lines.ParseDebugLine(line, 0, records); }),
              (std::vector<std::string>{"taken apart", "taken apart"}));
}

} // namespace carvelot::test
