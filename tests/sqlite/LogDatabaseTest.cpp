#include "sqlite/LogDatabase.h"

#include "explore/ExploredLog.h"
#include "sqlite/Schema.h"
#include "support/TestFolder.h"
#include "tables/Tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>

namespace carvelot::test {

namespace {

using testing::ElementsAre;

using Rows = std::vector<std::string>; // the cells of a row with a bar between each two

std::string CellText(const Cell& cell) {
    if (const auto* const number = std::get_if<std::int64_t>(&cell)) {
        return std::to_string(*number);
    }
    if (const auto* const real = std::get_if<double>(&cell)) {
        char text[64];
        std::snprintf(text, sizeof text, "%.15g", *real);
        return text;
    }
    std::string scratch;
    const auto* const text = std::get_if<std::string_view>(&cell);
    return text == nullptr ? "none" : std::string(ValidText(*text, scratch));
}

// What a query answers; one that fails fails the test.
Rows Ask(const std::string& path, const std::string& sql) {
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr), SQLITE_OK)
        << sql << ": " << sqlite3_errmsg(database);
    Rows rows;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        std::string& row = rows.emplace_back();
        for (int i = 0; i < sqlite3_column_count(statement); ++i) {
            row.append(i == 0 ? "" : "|");
            switch (sqlite3_column_type(statement, i)) {
            case SQLITE_NULL:
                row.append("none");
                break;
            case SQLITE_FLOAT:
                row.append(CellText(sqlite3_column_double(statement, i)));
                break;
            default:
                row.append(reinterpret_cast<const char*>(sqlite3_column_text(statement, i)));
            }
        }
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return rows;
}

void Change(const std::string& path, const char* sql) {
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
    sqlite3_close(database);
}

// A log file that a session has read with the numbers of its lines.
class StoredSource {
public:
    explicit StoredSource(const std::string& path, TableOptions options = {}) {
        m_doc.m_bNumberLines = true;
        m_doc.m_strLogPath = path;
        EXPECT_TRUE(m_doc.LoadLog()) << path;
        m_source.emplace(m_doc, m_settings, std::move(options));
    }
    const CTableSource& operator*() const { return *m_source; }

private:
    AnalysisSettings m_settings;
    PendingStatement m_pending;
    RecordingHost m_host;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
    std::optional<CTableSource> m_source;
};

Rows RowsOf(const Table& table, const CTableSource& source) {
    Rows rows;
    ForEachRow(table, source, [&](std::span<const Cell> cells) {
        std::string& row = rows.emplace_back();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            row.append(i == 0 ? "" : "|").append(CellText(cells[i]));
        }
        return true;
    });
    return rows;
}

// Why it failed; empty when it did not.
std::string WriteTo(const std::string& path, bool append, const std::vector<const CTableSource*>& sources) {
    CLogDatabase database;
    std::string problem;
    bool isDone = database.Create(path, append, problem);
    for (const CTableSource* const source : sources) {
        isDone = isDone && database.Add(*source, problem);
    }
    isDone = isDone && database.Commit(problem);
    EXPECT_EQ(isDone, problem.empty());
    return problem;
}

void ExpectWhole(const std::string& path) {
    EXPECT_THAT(Ask(path, "PRAGMA integrity_check"), ElementsAre("ok"));
    EXPECT_THAT(Ask(path, "PRAGMA foreign_key_check"), ElementsAre());
}

std::string OrderOf(const Table& table) {
    const std::string name(table.name);
    return name == "records" || name == "gaps" || name == "errors" ? " ORDER BY record"
           : name == "frames"                                      ? " ORDER BY frame"
           : name == "findings"                                    ? " ORDER BY finding"
                                                                   : "";
}

// Each view holds the rows of its table.
void ExpectSameRows(const std::string& path, const CTableSource& source) {
    for (const Table& table : Tables()) {
        const std::string name(table.name);
        Rows names;
        for (const TableColumn& column : table.columns) {
            names.emplace_back(column.name);
        }
        EXPECT_EQ(Ask(path, "SELECT name FROM pragma_table_info('" + name + "')"), names) << name;
        Rows expected = RowsOf(table, source);
        Rows stored = Ask(path, "SELECT * FROM " + name + OrderOf(table));
        if (OrderOf(table).empty()) {
            std::sort(expected.begin(), expected.end());
            std::sort(stored.begin(), stored.end());
        }
        ASSERT_EQ(stored.size(), expected.size()) << name;
        for (std::size_t i = 0; i < stored.size(); ++i) {
            ASSERT_EQ(stored[i], expected[i]) << name << ' ' << i;
        }
    }
}

std::vector<std::string> SampleLogs() {
    std::vector<std::string> logs;
    for (const char* const folder : {"/samples", "/tests/golden"}) {
        for (const auto& entry :
             std::filesystem::directory_iterator(std::string(CARVELOT_SOURCE_FOLDER) + folder)) {
            if (entry.path().extension() == ".log") {
                logs.push_back(entry.path().generic_string());
            }
        }
    }
    return logs;
}

} // namespace

TEST(LogDatabase, HoldsTheRowsOfEachTableOfEverySample) {
    for (const std::string& log : SampleLogs()) {
        for (const TableOptions& options : {TableOptions{.host = "jde01", .year = 2024},
                                            TableOptions{.host = {}, .year = {}, .shapesOnly = true}}) {
            SCOPED_TRACE(log);
            const TestFolder folder;
            const StoredSource source(log, options);
            EXPECT_EQ(WriteTo(folder.Path("a.db"), false, {&*source}), "");
            ExpectWhole(folder.Path("a.db"));
            ExpectSameRows(folder.Path("a.db"), *source);
        }
    }
}

TEST(LogDatabase, HoldsTheRowsOfALogOfManyRecords) {
    // More than are prepared at once, with texts that come again near and far, labels of their own, and
    // stamps that jump.
    std::vector<std::string> lines = DebugLog({});
    for (int i = 0; i < 12000; ++i) {
        const std::string number = std::to_string(i % 5 == 0 ? i : i % 300);
        lines.push_back(i % 7 == 0    ? "a line that goes on"
                        : i % 11 == 0 ? At(i, "SELECT A FROM F" + number + " WHERE B = " + number)
                        : i % 13 == 0 ? At(9000 - i % 8000, "Entering step " + number)
                        : i % 17 == 0 ? "Feb 30 10:00:00.000000 - 7/7 no tab here " + number
                                      : At(i, "Entering step " + number));
    }
    const TestFolder folder;
    const StoredSource source(folder.Write("a.log", TestSession::Joined(lines)), {.host = {}, .year = 2025});
    EXPECT_EQ(WriteTo(folder.Path("a.db"), false, {&*source}), "");
    ExpectWhole(folder.Path("a.db"));
    ExpectSameRows(folder.Path("a.db"), *source);
}

TEST(LogDatabase, HoldsHostileTextsAsTheyAre) {
    const std::vector<std::string> lines = DebugLog(
        {At(1, "ERROR: it's \"quoted\", with a ; DROP TABLE logs; --"), At(2, "ERROR: \xFF\xFE \xC3("),
         At(3, std::string("ERROR: a\0b", 10)), At(4, "ERROR: " + std::string(7000, 'x')),
         At(5, "SELECT A FROM T WHERE B = 'it''s'"), "Jan 15 10:00:06.000000 - 1/1 no tab: ' \" ; --  ",
         "Jan 15 10:00:07.000000 - 1/1 " + std::string(300, 'L') + "\tlabel"});
    const TestFolder folder;
    const StoredSource source(folder.Write("it's a.log", TestSession::Joined(lines)), {.host = "o'host"});
    EXPECT_EQ(WriteTo(folder.Path("it's.db"), false, {&*source}), "");
    ExpectWhole(folder.Path("it's.db"));
    ExpectSameRows(folder.Path("it's.db"), *source);
}

TEST(LogDatabase, ALogThatIsAddedAgainReplacesItself) {
    const TestFolder folder;
    const std::string a = folder.Write("a.log", TestSession::Joined(DebugLog({At(1, "ERROR: a")})));
    const std::string b =
        folder.Write("b.log", TestSession::Joined(JASLog({UserAt(1, "b", "ANNE", "SEVERE")})));
    const std::string database = folder.Path("x.db");
    const StoredSource first(a);
    const StoredSource second(b);
    EXPECT_EQ(WriteTo(database, false, {&*first}), "");
    EXPECT_EQ(WriteTo(database, true, {&*second}), "");
    EXPECT_THAT(Ask(database, "SELECT text FROM errors ORDER BY text"), ElementsAre("ERROR: a", "b"));
    folder.Write("a.log", TestSession::Joined(DebugLog({At(1, "ERROR: a"), At(2, "ERROR: more")})));
    const StoredSource grown(a);
    EXPECT_EQ(WriteTo(database, true, {&*grown}), "");
    EXPECT_THAT(Ask(database, "SELECT text FROM errors ORDER BY text"),
                ElementsAre("ERROR: a", "ERROR: more", "b"));
    EXPECT_THAT(Ask(database, "SELECT count(*) FROM logs"), ElementsAre("2"));
    const StoredSource elsewhere(a, {.host = "other"});
    EXPECT_EQ(WriteTo(database, true, {&*elsewhere}), "");
    EXPECT_THAT(Ask(database, "SELECT count(*) FROM logs"), ElementsAre("3"));
    ExpectWhole(database);
    // Without --append the others go.
    EXPECT_EQ(WriteTo(database, false, {&*second}), "");
    EXPECT_THAT(Ask(database, "SELECT text FROM errors"), ElementsAre("b"));
}

TEST(LogDatabase, HasItsVersionAndItsMark) {
    const TestFolder folder;
    const StoredSource source(SampleLogs().front());
    const std::string database = folder.Path("x.db");
    for (const bool append : {false, true, true}) {
        EXPECT_EQ(WriteTo(database, append, {&*source}), "");
        EXPECT_THAT(Ask(database, "PRAGMA application_id"), ElementsAre(std::to_string(kApplicationId)));
        EXPECT_THAT(Ask(database, "PRAGMA user_version"), ElementsAre(std::to_string(kSchemaVersion)));
        EXPECT_THAT(
            Ask(database,
                "SELECT name FROM sqlite_schema WHERE type = 'index' AND sql IS NOT NULL ORDER BY name"),
            ElementsAre("finding_by_rule", "function_by_key", "shape_by_key"));
        EXPECT_THAT(folder.Names(), ElementsAre("x.db"));
    }
}

TEST(LogDatabase, ALineOfLogsTellsWhatALogIs) {
    const TestFolder folder;
    const std::string content =
        TestSession::Joined({At(0, "Entering JDB_OpenTable"), "a line that goes on", At(90, "Entering B")});
    const StoredSource source(folder.Write("a.log", content), {.host = "jde01", .year = 2025});
    EXPECT_EQ(WriteTo(folder.Path("x.db"), false, {&*source}), "");
    EXPECT_THAT(Ask(folder.Path("x.db"),
                    "SELECT path, host, format, size, lines, records, unread, begin_day, begin_time, "
                    "length, threshold, shapes_only, length(hash) FROM logs"),
                ElementsAre(folder.Path("a.log") + "|jde01|debug|" + std::to_string(content.size()) +
                            "|3|2|1|2025-01-15|36000000000|90000000|1|0|16"));
}

TEST(LogDatabase, ItsViewsAnswerWhatIsAsked) {
    const TestFolder folder;
    std::vector<std::string> lines{At(0, "Entering JDB_OpenTable", "1/1"), At(0, CallText("F", 1))};
    for (int i = 0; i < 12; ++i) {
        lines.push_back(At(i, "SELECT A FROM T WHERE B = " + std::to_string(i)));
        lines.push_back(At(i + 1, kSqlDone));
    }
    lines.push_back(At(20, "ERROR: a"));
    lines.push_back(At(20, ReturnText("F", 1, 2)));
    lines.push_back(At(3700, "ERROR: b"));
    const StoredSource source(folder.Write("a.log", TestSession::Joined(lines)));
    const std::string database = folder.Path("x.db");
    EXPECT_EQ(WriteTo(database, false, {&*source}), "");
    EXPECT_THAT(
        Ask(database, "SELECT kind, name, logs, calls, failed, total, self, longest FROM slowest_functions"),
        ElementsAre("statement|SELECT T|1|12|0|12000000|12000000|1000000",
                    "function|F|1|1|1|20000000|8000000|20000000"));
    EXPECT_THAT(Ask(database, "SELECT subject, count, cost, record FROM repeated_statements"),
                ElementsAre("F > SELECT A FROM T WHERE B = ?|12|12000000|2"));
    EXPECT_THAT(Ask(database, "SELECT severity, rule, findings, logs, count, cost FROM findings_by_severity"),
                ElementsAre("error|first-cause|1|1|1|20000000", "warning|repeated-statement|1|1|12|12000000",
                            "note|silence-in-call|1|1|1|8000000"));
    EXPECT_THAT(Ask(database, "SELECT function, cost, count, record, line, day, text FROM silences"),
                ElementsAre("F|8000000|1|26|27|--01-15|ERROR: a"));
    EXPECT_THAT(
        Ask(database, "SELECT host, day, hour, type, errors, logs FROM errors_by_hour"),
        ElementsAre("|--01-15|10|BSFN Error|1|1", "|--01-15|10|GBR Error|1|1", "|--01-15|11|GBR Error|1|1"));
}

TEST(LogDatabase, LeavesAFileThatIsNotItsOwnAsItIs) {
    const TestFolder folder;
    const StoredSource source(SampleLogs().front());
    const std::string text = folder.Write("text.db", "These are the notes of somebody.");
    const std::string foreign = folder.Path("foreign.db");
    Change(foreign, "CREATE TABLE t (a); INSERT INTO t VALUES (1)");
    const std::string newer = folder.Path("newer.db");
    EXPECT_EQ(WriteTo(newer, false, {&*source}), "");
    Change(newer, "PRAGMA user_version = 99");
    const std::string cut = folder.Path("cut.db");
    EXPECT_EQ(WriteTo(cut, false, {&*source}), "");
    std::filesystem::resize_file(ToPath(cut), 50);
    for (const std::string& path : {text, foreign, newer, cut}) {
        const std::string name = path.substr(path.find_last_of("/\\") + 1);
        const std::string before = folder.Read(name);
        for (const bool append : {false, true}) {
            EXPECT_EQ(WriteTo(path, append, {&*source}),
                      path == newer ? "This database was written by a newer version, and is left as it is."
                                    : "This is no database of logs, and is left as it is.")
                << path;
            EXPECT_TRUE(folder.Read(name) == before) << path;
        }
    }
    EXPECT_THAT(folder.Names(), ElementsAre("cut.db", "foreign.db", "newer.db", "text.db"));
}

TEST(LogDatabase, AddsNothingToTablesOfAnOlderVersion) {
    const TestFolder folder;
    const StoredSource source(SampleLogs().front());
    const std::string path = folder.Path("x.db");
    EXPECT_EQ(WriteTo(path, false, {&*source}), "");
    Change(path, "PRAGMA user_version = 1");
    const std::string before = folder.Read("x.db");
    EXPECT_EQ(WriteTo(path, true, {&*source}),
              "This database was written by an older version, and is left as it is: write it anew, without "
              "--append.");
    EXPECT_TRUE(folder.Read("x.db") == before);
    EXPECT_EQ(WriteTo(path, false, {&*source}), "");
    EXPECT_THAT(Ask(path, "PRAGMA user_version"), ElementsAre(std::to_string(kSchemaVersion)));
}

TEST(LogDatabase, LeavesAFileThatAnotherProgramWritesToAsItIs) {
    const TestFolder folder;
    const StoredSource source(SampleLogs().front());
    const std::string path = folder.Path("x.db");
    EXPECT_EQ(WriteTo(path, false, {&*source}), "");
    const std::string before = folder.Read("x.db");
    folder.Write("x.db-wal", "what has not come to the database yet");
    EXPECT_EQ(WriteTo(path, true, {&*source}), "Another program is writing to this database.");
    EXPECT_TRUE(folder.Read("x.db") == before);
}

TEST(LogDatabase, AnEmptyFileIsTaken) {
    const TestFolder folder;
    const StoredSource source(SampleLogs().front());
    EXPECT_EQ(WriteTo(folder.Write("x.db", ""), true, {&*source}), "");
    EXPECT_THAT(Ask(folder.Path("x.db"), "SELECT count(*) FROM logs"), ElementsAre("1"));
}

TEST(LogDatabase, WhatCannotBeWrittenIsRefused) {
    const TestFolder folder;
    CLogDatabase database;
    std::string problem;
    EXPECT_FALSE(database.Create(folder.Path("no folder/x.db"), false, problem));
    EXPECT_NE(problem, "");
    problem.clear();
    EXPECT_FALSE(database.Create(folder.Path(), false, problem));
    EXPECT_NE(problem, "");
    EXPECT_THAT(folder.Names(), ElementsAre());
}

TEST(LogDatabase, ThatIsNotCommittedLeavesNothing) {
    const TestFolder folder;
    const StoredSource source(SampleLogs().front());
    {
        CLogDatabase database;
        std::string problem;
        EXPECT_TRUE(database.Create(folder.Path("x.db"), false, problem));
        EXPECT_TRUE(database.Add(*source, problem));
    }
    EXPECT_THAT(folder.Names(), ElementsAre());
}

} // namespace carvelot::test
