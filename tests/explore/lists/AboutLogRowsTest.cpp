#include "explore/lists/AboutLogRows.h"

#include "explore/lists/ListedRows.h"
#include "support/TestLog.h"
#include "text/RowSource.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

std::vector<std::string> FactTexts(const LogFacts& facts) {
    std::vector<std::string> texts;
    for (const AboutFact& fact : AboutFacts(facts)) {
        texts.push_back(std::string(fact.name) + ": " + fact.text);
    }
    return texts;
}

} // namespace

TEST(AboutLogRows, SayEachFactInWords) {
    const TestSession session(DebugLog({DebugLine("10:00:00.5", "x y"), "a stack trace"}));
    EXPECT_EQ(FactTexts(FactsOf(session.m_doc)),
              (std::vector<std::string>{
                  "Size: " + std::to_string(session.m_doc.m_nBytes) + " bytes", "Lines: 3", "Records: 2",
                  "Lines that are no records: 1: the third word is no time", "Format: debug log",
                  "Columns: text behind 1 tab", "Code page: ASCII",
                  "Clock: Jan 15 08:00:00.000001 to Jan 15 10:00:00.000005", "Pieces: 1", "Dialect: none"}));
}

TEST(AboutLogRows, SayWhatIsNotThere) {
    LogFacts facts;
    facts.dialects = {Dialect::Numbered, Dialect::Months};
    facts.refused = {{"a", 1200, {}}, {"b", 3, {}}};
    const std::vector<std::string> texts = FactTexts(facts);
    EXPECT_EQ(texts[3], "Lines that are no records: 1,200: a, 3: b");
    EXPECT_EQ(texts[7], "Clock: no record bears a time");
    EXPECT_EQ(texts[9], "Dialect: months, numbered");
    EXPECT_EQ(FactTexts(LogFacts())[3], "Lines that are no records: none");
}

TEST(AboutLogRows, ListTheFirstLinesOfEachReason) {
    LogFacts facts;
    facts.refused = {
        {"no time", 9, {{RefusalReason::NoTime, 1200, "a\tb"}, {RefusalReason::NoTime, 1300, "c"}}},
        {"filtered", 1, {{RefusalReason::Filtered, 7, "d"}}}};
    const std::vector<RefusedRow> rows = MakeRefusedRows(facts);
    std::vector<std::string> texts;
    for (const RefusedRow& row : rows) {
        texts.emplace_back();
        for (int column = 0; column < 3; ++column) {
            texts.back() += CellText(RefusedRow::Columns(), row, column) + '|';
        }
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"1,200|no time|a b|", "1,300|no time|c|", "7|filtered|d|"}));
    EXPECT_EQ(SortedByEach(rows), (std::vector<std::vector<std::size_t>>{{2, 0, 1}, {2, 0, 1}, {0, 1, 2}}));
}

} // namespace carvelot::test
