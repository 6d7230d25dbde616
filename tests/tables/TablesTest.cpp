#include "tables/Tables.h"

#include "explore/ExploredLog.h"
#include "explore/StrictShape.h"
#include "tables/RowWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

namespace carvelot::test {

namespace {

using testing::ElementsAre;

std::string TextOf(const Cell& cell) {
    if (const auto* const number = std::get_if<std::int64_t>(&cell)) {
        return std::to_string(*number);
    }
    if (const auto* const real = std::get_if<double>(&cell)) {
        std::ostringstream text;
        text << *real;
        return text.str();
    }
    const auto* const text = std::get_if<std::string_view>(&cell);
    return text == nullptr ? "none" : std::string(*text);
}

// The tables of a log, as texts.
class TabledLog {
public:
    explicit TabledLog(const std::vector<std::string>& lines, TableOptions options = {},
                       AnalysisSettings settings = {})
        : m_session(lines, settings), m_source(m_session.m_doc, m_session.m_settings, std::move(options)) {}

    // A column of all rows.
    std::vector<std::string> Column(std::string_view tableName, std::string_view name) const {
        const Table& table = *FindTable(tableName);
        const auto found = std::find_if(table.columns.begin(), table.columns.end(),
                                        [name](const TableColumn& column) { return column.name == name; });
        EXPECT_NE(found, table.columns.end()) << name;
        std::vector<std::string> texts;
        ForEachRow(table, m_source, [&](std::span<const Cell> cells) {
            texts.push_back(TextOf(cells[static_cast<std::size_t>(found - table.columns.begin())]));
            return true;
        });
        return texts;
    }
    std::string Printed(std::string_view tableName, RowFormat format) const {
        std::ostringstream out;
        CRowWriter(out, *FindTable(tableName), format).WriteRows(m_source);
        return out.str();
    }

    TestSession m_session;
    CTableSource m_source;
};

// A log whose first record, of a thread of its own, tells its format.
std::vector<std::string> LogOf(std::vector<std::string> lines) {
    lines.insert(lines.begin(), At(0, "Entering JDB_OpenTable", "1/1"));
    return lines;
}

// F runs for 5 s, 2 of them in a statement; G runs in it and fails.
std::vector<std::string> CallsLog() {
    return LogOf({At(0, CallText("F", 1)),
                  At(1, "SELECT A FROM PRODDTA.F4211 WHERE B = 'SECRET' AND C = 4711"), At(3, kSqlDone),
                  At(3, CallText("G", 2)), At(4, "ERROR: no such order, SECRET"),
                  At(4, ReturnText("G", 2, 2)), At(5, ReturnText("F", 1))});
}

} // namespace

TEST(Tables, TheirPageTellsEachColumnAsItIs) {
    std::ifstream page(std::string(CARVELOT_SOURCE_FOLDER) + "/docs/tables.md");
    std::map<std::string, std::vector<std::string>> told;
    std::string table;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("### ")) {
            table = line.substr(4);
        } else if (line.starts_with("#")) {
            table.clear();
        } else if (!table.empty() && !line.empty()) {
            told[table].push_back(line);
        }
    }
    EXPECT_EQ(told.size(), Tables().size());
    for (const Table& one : Tables()) {
        std::vector<std::string> lines{std::string(one.meaning), "| Column | Type | Unit | Meaning |",
                                       "|---|---|---|---|"};
        for (const TableColumn& column : one.columns) {
            std::string& line = lines.emplace_back("|");
            for (const std::string_view cell :
                 {column.name, NameOf(column.type), column.unit, column.meaning}) {
                line.append(" ").append(cell).append(" |");
            }
        }
        EXPECT_EQ(told[std::string(one.name)], lines) << one.name;
    }
}

TEST(Tables, HaveCellsOfTheTypesTheyTell) {
    for (const auto& lines : {CallsLog(), JASLog({UserAt(1, "SELECT A FROM T WHERE B = ?"),
                                                  UserAt(1, "SQL statement parameter marker values are :"),
                                                  UserAt(2, "Param1: X_Types.VARCHAR,"),
                                                  UserAt(9, "trouble", "ANNE", "SEVERE")})}) {
        const TabledLog log(lines);
        for (const Table& table : Tables()) {
            EXPECT_EQ(table.columns[0].name, "log");
            EXPECT_EQ(table.columns[1].name, "host");
            ForEachRow(table, log.m_source, [&](std::span<const Cell> cells) {
                for (std::size_t i = 0; i < cells.size(); ++i) {
                    const TableColumn& column = table.columns[i];
                    const bool fits =
                        std::holds_alternative<std::monostate>(cells[i]) ||
                        (column.type == ColumnType::Integer &&
                         std::holds_alternative<std::int64_t>(cells[i])) ||
                        (column.type == ColumnType::Real && std::holds_alternative<double>(cells[i])) ||
                        (column.type == ColumnType::Text &&
                         std::holds_alternative<std::string_view>(cells[i]));
                    EXPECT_TRUE(fits) << table.name << '.' << column.name;
                }
                return true;
            });
        }
    }
}

TEST(Tables, FramesPointToTheirRecordAndTheirParent) {
    const TabledLog log(CallsLog());
    EXPECT_THAT(log.Column("frames", "kind"), ElementsAre("function", "statement", "function"));
    EXPECT_THAT(log.Column("frames", "record"), ElementsAre("1", "2", "4"));
    EXPECT_THAT(log.Column("frames", "parent"), ElementsAre("none", "0", "0"));
    EXPECT_THAT(log.Column("frames", "total"), ElementsAre("5000000", "2000000", "1000000"));
    EXPECT_THAT(log.Column("frames", "self"), ElementsAre("2000000", "2000000", "1000000"));
    EXPECT_THAT(log.Column("frames", "start_clock"), ElementsAre("0", "1000000", "3000000"));
    EXPECT_THAT(log.Column("frames", "end_clock"), ElementsAre("5000000", "3000000", "4000000"));
    EXPECT_THAT(log.Column("frames", "result"), ElementsAre("0", "none", "2"));
    EXPECT_EQ(log.Column("frames", "function_key")[0], log.Column("functions", "function_key")[0]);
    EXPECT_EQ(log.Column("frames", "shape_key")[1], log.Column("shapes", "shape_key")[0]);
    EXPECT_EQ(log.Column("records", "shape_key")[2], log.Column("shapes", "shape_key")[0]);
}

TEST(Tables, KeysAreTheSameInEveryLog) {
    const TabledLog one(CallsLog());
    const TabledLog other(LogOf({At(0, "SELECT A FROM PRODDTA.F4211 WHERE B = 'OTHER' AND C = 1"),
                                 At(1, kSqlDone), At(2, CallText("G", 1)), At(3, ReturnText("G", 1))}));
    EXPECT_EQ(one.Column("shapes", "shape_key")[0], other.Column("shapes", "shape_key")[0]);
    const std::vector<std::string> names = one.Column("functions", "name");
    const auto g = static_cast<std::size_t>(std::find(names.begin(), names.end(), "G") - names.begin());
    EXPECT_EQ(one.Column("functions", "function_key")[g], other.Column("frames", "function_key")[1]);
    EXPECT_NE(one.Column("functions", "function_key")[g], other.Column("frames", "function_key")[0]);
}

TEST(Tables, FindingsPointToTheirRecords) {
    const TabledLog log(CallsLog());
    EXPECT_THAT(log.Column("findings", "rule"), ElementsAre("first-cause", "silence-in-call"));
    EXPECT_THAT(log.Column("findings", "record"), ElementsAre("5", "3"));
    EXPECT_THAT(log.Column("findings", "records"), ElementsAre("5 4", "3"));
    EXPECT_THAT(log.Column("findings", "cost"), ElementsAre("1000000", "2000000"));
    EXPECT_THAT(log.Column("errors", "record"), ElementsAre("5", "6"));
    EXPECT_THAT(log.Column("errors", "type"), ElementsAre("GBR Error", "BSFN Error"));
}

TEST(Tables, ErrorsOfAllProcessesAndUsersStandInTheLogsOrder) {
    const TabledLog debug(
        LogOf({At(1, "ERROR: a", "2/1"), At(2, "ERROR: b", "1/1"), At(3, "ERROR: c", "2/1")}));
    EXPECT_THAT(debug.Column("errors", "text"), ElementsAre("ERROR: a", "ERROR: b", "ERROR: c"));
    const TabledLog jas(JASLog(
        {UserAt(1, "a", "ANNE", "SEVERE"), UserAt(2, "b", "BOB", "WARN"), UserAt(3, "c", "ANNE", "WARN")}));
    EXPECT_THAT(jas.Column("errors", "text"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(jas.Column("errors", "stream"), ElementsAre("user:ANNE", "user:BOB", "user:ANNE"));
}

TEST(Tables, GapsAreThoseOfTheSessionInSeconds) {
    const TabledLog log(LogOf({At(0, "Entering B"), At(7, "Entering C")}));
    EXPECT_THAT(log.Column("gaps", "record"), ElementsAre("2"));
    EXPECT_THAT(log.Column("gaps", "gap"), ElementsAre("7"));
    EXPECT_THAT(log.Column("records", "gap"), ElementsAre("none", "none", "7"));
}

TEST(Tables, DaysAreDatesOfTheYearThatIsTold) {
    const std::vector<std::string> lines{"Dec 31 23:59:59.000000 - 1/1 W\tEntering JDB_OpenTable",
                                         "Jan  1 00:00:01.000000 - 1/1 W\tEntering B",
                                         "Feb 29 00:00:00.000000 - 1/1 W\tEntering C"};
    const TabledLog dated(lines, {.host = {}, .year = 2023});
    EXPECT_THAT(dated.Column("records", "day"), ElementsAre("2023-12-31", "2024-01-01", "2024-02-29"));
    EXPECT_THAT(dated.Column("records", "time"), ElementsAre("86399000000", "1000000", "0"));
    const TabledLog undated(lines);
    EXPECT_THAT(undated.Column("records", "day"), ElementsAre("--12-31", "--01-01", "--02-29"));
}

TEST(Tables, ADayThatItsYearLacksIsNone) {
    const std::vector<std::string> lines{"Feb 29 00:00:00.000001 - 1/1 W\tEntering JDB_OpenTable",
                                         "Mar  1 00:00:00.000001 - 1/1 W\tEntering B"};
    EXPECT_THAT(TabledLog(lines, {.host = {}, .year = 2023}).Column("records", "day"),
                ElementsAre("none", "2023-03-01"));
}

TEST(Tables, ARecordWithoutAStampHasNoDayAndNoTime) {
    const TabledLog log({"Jan 15 10:00:00.000000 - 1/1 W\tEntering JDB_OpenTable",
                         "Foo 15 10:00:01.000000 - 1/1 W\tEntering B",
                         "Jan 32 10:00:02.000000 - 1/1 W\tEntering C"});
    EXPECT_THAT(log.Column("records", "day"), ElementsAre("--01-15", "none", "none"));
    EXPECT_THAT(log.Column("records", "time"), ElementsAre("36000000000", "none", "none"));
}

TEST(Tables, LabelsEndWithoutBlanks) {
    const TabledLog log({"Jan 15 10:00:00.000000 - 1/1 WRK:Call Object  \tEntering JDB_OpenTable"});
    EXPECT_THAT(log.Column("records", "label"), ElementsAre("WRK:Call Object"));
}

// --- As text

TEST(RowWriter, QuotesWhatCSVMustQuote) {
    const TabledLog log(LogOf({At(1, "ERROR: \"a\", b"), At(2, "ERROR: plain")}), {.host = "h,1"});
    const std::string csv = log.Printed("errors", RowFormat::Csv);
    const std::string path = log.m_session.m_file.Path();
    EXPECT_EQ(
        csv.substr(0, csv.find('\n') + 1),
        "log,host,record,line,clock,day,time,process,thread,stream,user,kind,type,return_code,text\r\n");
    EXPECT_NE(csv.find(",ERROR,GBR Error,0,\"ERROR: \"\"a\"\", b\"\r\n"), std::string::npos) << csv;
    EXPECT_NE(csv.find(",ERROR,GBR Error,0,ERROR: plain\r\n"), std::string::npos) << csv;
    EXPECT_NE(csv.find("\r\n" + path + ",\"h,1\",1,"), std::string::npos) << csv;
}

TEST(RowWriter, WritesAnObjectALine) {
    const TabledLog log(LogOf({At(1, "ERROR: \"a\"\t\xE2\x82\xAC"), At(2, "ERROR: b")}));
    const std::string json = log.Printed("errors", RowFormat::Ndjson);
    EXPECT_EQ(std::count(json.begin(), json.end(), '\n'), 2);
    EXPECT_NE(json.find("\"user\":null,\"kind\":\"ERROR\",\"type\":\"GBR Error\",\"return_code\":0,"
                        "\"text\":\"ERROR: \\\"a\\\""),
              std::string::npos)
        << json;
    EXPECT_TRUE(json.ends_with("\"text\":\"ERROR: b\"}\n"));
}

TEST(RowWriter, WritesAHeaderOfATableWithoutRowsAndNoJSON) {
    const TabledLog log(LogOf({}));
    EXPECT_EQ(log.Printed("findings", RowFormat::Csv),
              "log,host,finding,rule,severity,subject,count,cost,record,records,day,time,text\r\n");
    EXPECT_EQ(log.Printed("findings", RowFormat::Ndjson), "");
}

TEST(RowWriter, WritesValidUTF8WhateverTheLogHolds) {
    // The text of a long line is cut through a character, a NUL ends one, and some bytes are no UTF-8.
    std::string longLine = At(1, "ERROR: ");
    while (longLine.size() < 20000) {
        longLine += "\xF0\x9D\x84\x9E";
    }
    const TabledLog log(LogOf({longLine, At(2, std::string("ERROR: a\0b", 10)),
                               At(3, "ERROR: \xFF\xFE \xC3("), At(4, "ERROR: \xED\xA0\x80 \xC0\xAF")}));
    for (const Table& table : Tables()) {
        for (const RowFormat format : {RowFormat::Csv, RowFormat::Ndjson}) {
            EXPECT_TRUE(platform::IsValidUtf8(log.Printed(table.name, format))) << table.name;
        }
    }
    EXPECT_EQ(log.Column("errors", "text")[1], "ERROR: a");
}

// --- Without data

namespace {

struct StrictCase {
    std::string_view statement;
    std::string_view shape;
};

} // namespace

TEST(StrictShape, OfAStatementThatKeepsToTheRulesIsThePlainOne) {
    CStrictShapeText strict;
    for (const char* const statement :
         {"SELECT A FROM PRODDTA.F4211 WHERE B = 'x' AND C IN ( 1, 2, 3) ORDER BY D",
          "INSERT INTO T (A, B) VALUES ( 'it''s', -1.5E3, N'x', ?1)",
          "UPDATE T SET A = 'x', B='y' WHERE C BETWEEN 'a' AND 'b'",
          "SELECT * FROM T WHERE A LIKE 'x%' ESCAPE '!' AND B = DATE '2024-01-01' FOR UPDATE",
          "SELECT CASE WHEN A = 'x' THEN 'y' ELSE 'z' END FROM T",
          "DELETE FROM T WHERE A = '' OR B <> 'x' ; "}) {
        EXPECT_EQ(strict.Of(statement, {}), ShapeOf(statement, {})) << statement;
    }
}

TEST(StrictShape, ShowsNothingBehindAQuoteThatIsOutOfPlace) {
    CStrictShapeText strict;
    for (const StrictCase& one : std::initializer_list<StrictCase>{
             {"SELECT A FROM T WHERE B = 'O'Brien' AND C = 1", "SELECT A FROM T WHERE B = ? ..."},
             {"INSERT INTO T (A) VALUES ( 'O' Brien', 'D' Arcy' )", "INSERT INTO T (A) VALUES ( ? ..."},
             {"SELECT A FROM T WHERE B = 'never ended", "SELECT A FROM T WHERE B = ? ..."},
             {"SELECT A FROM T WHERE B = 5 AND C = 'x' secret 'y'",
              "SELECT A FROM T WHERE B = ? AND C = ? ..."},
             {"SELECT A FROM T WHERE B = \"secret\"", "SELECT A FROM T WHERE B = \"?\""},
             {"SELECT A FROM T -- secret", "SELECT A FROM T"},
             {"SELECT /* secret */ A FROM T", "SELECT A FROM T"},
             {"SELECT A FROM T WHERE B = 0xABCD AND C = 12AB AND D = 15.01.2026",
              "SELECT A FROM T WHERE B = ? AND C = ? AND D = ?"},
         }) {
        EXPECT_EQ(strict.Of(one.statement, {}), one.shape) << one.statement;
    }
}

TEST(StrictShape, OfAPreparedStatementIsThatOfItsMarks) {
    CPreparedStatement prepared;
    prepared.Prepare("SELECT A FROM T WHERE B = ?1 AND C = ?2");
    EXPECT_EQ(prepared.TakeFor("SELECT A FROM T WHERE B = SECRET AND C = 'O'Brien'"),
              "SELECT A FROM T WHERE B = ?1 AND C = ?2");
    // It is taken once.
    EXPECT_EQ(prepared.TakeFor("SELECT A FROM T WHERE B = X AND C = Y"),
              "SELECT A FROM T WHERE B = X AND C = Y");
    prepared.Prepare("SELECT A FROM T WHERE B = ?1");
    EXPECT_EQ(prepared.TakeFor("SELECT Z FROM T WHERE B = X"), "SELECT Z FROM T WHERE B = X");
}

TEST(StrictShape, NamesLoseNumbersAndWhatStandsInQuotes) {
    EXPECT_EQ(NameWithoutValues("F4211FSEditLine"), "F4211FSEditLine");
    EXPECT_EQ(NameWithoutValues("Form: W42101C - Button Clicked - OK"),
              "Form: W42101C - Button Clicked - OK");
    EXPECT_EQ(NameWithoutValues("order 4711 of 'ACME' [secret] 12.50 2026-01-15"), "order ? of ? ? ? ?");
    EXPECT_EQ(NameWithoutValues("never 'ended"), "never ?");
}

TEST(ShapesOnly, NoLiteralPassesInAnyTable) {
    const std::vector<std::string> debug = LogOf(
        {At(0, CallText("F", 1)), At(1, " IN->[  1] szName                 [LEAKparameter]"),
         At(1,
            "SELECT A FROM PRODDTA.F4211 WHERE B = 'LEAKliteral' AND C = 99887766 AND D = N'LEAKnational'"),
         At(2, kSqlDone), At(2, "INSERT INTO PRODDTA.F4211 (A) VALUES ( 'LEAKo'LEAKbrien' )"),
         At(3, kSqlDone),
         At(3, "SELECT A FROM T WHERE B = 0x99887766LEAK AND C = \"LEAKdouble\" /* LEAKcomment */"),
         At(4, "[JDBOLEDB] LEAKahead SELECT A FROM T WHERE B = 'LEAK"),
         At(4, "OUT->[  1] szName                 [LEAKparameter]"), At(5, "ERROR: order 99887766 LEAKerror"),
         At(6, "JDB9900401 - LEAKjdb"), At(7, EventText("Button of 'LEAKevent' [LEAKbrackets] 99887766")),
         At(8, kEventEnd), At(9, "LEAKnothing of interest"), At(20, "LEAKgap behind a silence"),
         At(21, ReturnText("F", 1, 2))});
    std::vector<std::string> repeated = debug;
    for (int i = 0; i < 12; ++i) {
        repeated.push_back(
            At(30, "SELECT A FROM PRODDTA.F0101 WHERE B = 'LEAKrepeated" + std::to_string(i) + "'"));
        repeated.push_back(At(30, kSqlDone));
    }
    const std::vector<std::string> jas = JASLog(
        {UserAt(1, "SELECT A FROM T WHERE B = ? AND C = ? AND D = 'LEAKliteral'"),
         UserAt(1, "SQL statement parameter marker values are :"), UserAt(1, "Param1: LEAKchar_Types.CHAR,"),
         UserAt(2, "Param2: LEAKo'LEAKbrien_Types.VARCHAR,"),
         UserAt(3, "Event Starts : 'LEAKevent' [LEAKbrackets]"),
         UserAt(4, "LEAKtrouble 99887766", "ANNE", "SEVERE"), UserAt(5, "LEAKwarning", "ANNE", "WARN"),
         UserAt(59, "LEAKgap")});
    for (const auto& lines : {debug, repeated, jas}) {
        const TabledLog log(lines, {.host = "jde01", .shapesOnly = true});
        EXPECT_EQ(log.m_session.Count(), lines.size());
        for (const Table& table : Tables()) {
            for (const RowFormat format : {RowFormat::Csv, RowFormat::Ndjson}) {
                const std::string printed = log.Printed(table.name, format);
                for (const char* const literal : {"LEAK", "99887766"}) {
                    const std::size_t place = printed.find(literal);
                    EXPECT_EQ(place, std::string::npos)
                        << table.name << ": "
                        << printed.substr(place == std::string::npos ? 0 : place - 80, 160);
                }
            }
        }
    }
}

TEST(ShapesOnly, ShowsStatementsByTheirShape) {
    const TabledLog log(CallsLog(), {.shapesOnly = true});
    EXPECT_THAT(log.Column("records", "text"),
                ElementsAre("none", "none", "SELECT A FROM PRODDTA.F4211 WHERE B = ? AND C = ?", "none",
                            "none", "none", "none", "none"));
    EXPECT_THAT(log.Column("errors", "text"), ElementsAre("none", "none"));
    const TabledLog whole(CallsLog());
    for (const char* const column : {"calls", "self", "total", "function_key"}) {
        EXPECT_EQ(log.Column("functions", column), whole.Column("functions", column));
    }
    EXPECT_EQ(log.Column("shapes", "shape_key"), whole.Column("shapes", "shape_key"));
}

} // namespace carvelot::test
