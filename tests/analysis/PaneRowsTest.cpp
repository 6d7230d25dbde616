#include "analysis/panes/PaneRows.h"

#include "analysis/panes/GapExport.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace carvelot::test {

namespace {

using Strings = std::vector<std::string>;

template <class Row> Strings Column(const std::vector<Row>& rows, int column) {
    Strings texts;
    for (const Row& row : rows) {
        texts.push_back(row.Text(column));
    }
    return texts;
}

TestSession GapSession() {
    return TestSession(
        DebugLog({DebugLine("10:00:00.000000", "On a"), DebugLine("10:00:02.500000", "On \"b\""),
                  DebugLine("10:00:13.000000", "On c")}));
}

} // namespace

TEST(BSFNRows, PrintSinglePrecisionSeconds) {
    BSFNRow row{"F", 3, 500'000, 12'500'000, 0, 16'777'217};
    EXPECT_EQ(row.Text(1), "3");
    EXPECT_EQ(row.Text(2), "0.500000");
    EXPECT_EQ(row.Text(4), "12.500000");
    EXPECT_EQ(row.Text(5), "16.777216"); // beyond 2^24 microseconds the last digit is lost
}

TEST(BSFNRows, AverageDropsTheRemainderAndCountsOpenCalls) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000000", "Calling Business function F from X (BSFNLevel = 1)"),
        DebugLine("10:00:00.000007", "Return value is 0 for F. (BSFNLevel = 1)"),
        DebugLine("10:00:00.000008", "Calling Business function F from X (BSFNLevel = 1)"),
        DebugLine("10:00:00.000009", "Calling Business function G from X (BSFNLevel = 1)"),
    }));
    const std::vector<BSFNRow> rows = MakeBSFNRows(session.Process(4120).m_pBSFNAnalysis);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].m_nCalls, 2);
    EXPECT_EQ(rows[0].m_nAverage, 3U);
    for (int column = 2; column <= 5; ++column) {
        EXPECT_EQ(rows[1].Text(column), "0.000000"); // never closed
    }
}

TEST(OnCompareItems, CallsEqualNumbersOneAndEqualTextsZero) {
    const BSFNRow a{"alpha", 5, 1, 2, 3, 4};
    const BSFNRow b{"ALPHA", 5, 1, 2, 3, 4};
    EXPECT_EQ(OnCompareItems(a, b, 0), 0);
    for (int column = 1; column <= 5; ++column) {
        EXPECT_EQ(OnCompareItems(a, b, column), 1);
        EXPECT_EQ(OnCompareItems(b, a, column), 1);
    }
    EXPECT_EQ(OnCompareItems(a, b, 6), 0);
    const BSFNRow less{"b", 4, 0, 1, 2, 3};
    for (int column = 1; column <= 5; ++column) {
        EXPECT_EQ(OnCompareItems(less, a, column), -1);
    }
    EXPECT_EQ(OnCompareItems(a, less, 0), -1);
}

TEST(OnCompareItems, OrdersProcessAndThreadAsText) {
    EXPECT_EQ(OnCompareItems(ErrorRow{"10/2", "", "", kNoRecord}, ErrorRow{"9/2", "", "", kNoRecord}, 0), -1);
}

TEST(TaskRows, StandLongestFirstAndTwiceWhereTheListsHoldThemTwice) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000000", "SELECT A FROM T"),
        DebugLine("10:00:02.000000", "Exiting DBPerformRequest"),
        DebugLine("10:00:03.000000", "Exiting DBPerformRequest"),
        DebugLine("10:00:03.000000", "Calling Business function F from X (BSFNLevel = 1)"),
        DebugLine("10:00:08.000000", "Return value is 0 for F. (BSFNLevel = 1)"),
    }));
    const CProcess& process = session.Process(4120);
    const std::vector<TaskRow> rows =
        MakeTaskRows(session.m_doc, process.m_pBSFNAnalysis, process.m_pSQLAnalysis);
    EXPECT_EQ(Column(rows, 2), (Strings{"5.000000", "3.000000", "3.000000"}));
    EXPECT_EQ(Column(rows, 1), (Strings{"BSFN", "SQL", "SQL"}));
    EXPECT_EQ(rows[0].Text(0), "4120/3388");
    EXPECT_EQ(rows[1].Text(3), "SELECT A FROM T");
}

TEST(TaskRows, ShowTheUserOfAJASSessionButSortByTheHiddenIds) {
    const TestSession session(
        JASLog({JASLine("08:00:01,000", "B", "SELECT A FROM T"), JASLine("08:00:03,000", "B", "x")}));
    const CJASUser& user = session.User("B");
    const std::vector<TaskRow> rows = MakeTaskRows(session.m_doc, user.m_pBSFNAnalysis, user.m_pSQLAnalysis);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].Text(0), "B");
    EXPECT_EQ(rows[0].m_strProcessThread, "0/0");
    TaskRow other = rows[0];
    other.m_strShownOwner = "A";
    EXPECT_EQ(OnCompareItems(other, rows[0], 0), 0);
}

TEST(ErrorRows, NameTheErrorByKindAndReturnCode) {
    EXPECT_EQ(ErrorType(LOG_RETURN, 1), "BSFN Warning");
    EXPECT_EQ(ErrorType(LOG_RETURN, 2), "BSFN Error");
    EXPECT_EQ(ErrorType(LOG_ERROR, 0), "GBR Error");
    EXPECT_EQ(ErrorType(LOG_JDB_ERROR, 0), "ERROR");
    EXPECT_EQ(ErrorType(LOG_SEVERE, 0), "ERROR");
    EXPECT_EQ(ErrorType(LOG_WARN, 0), "ERROR");
}

TEST(ErrorRows, StandNewestFirstInADebugLogAndOldestFirstInAJASLog) {
    const TestSession debug(
        DebugLog({DebugLine("10:00:00.000000", "ERROR 1"), DebugLine("10:00:00.000001", "ERROR 2")}));
    EXPECT_EQ(Column(MakeErrorRows(debug.m_doc, debug.Process(4120).m_listErrors), 2),
              (Strings{"ERROR 2", "ERROR 1"}));
    const TestSession jas(
        JASLog({JASLine("08:00:00,001", "A", "one", "WARN"), JASLine("08:00:00,002", "A", "two", "WARN")}));
    const std::vector<ErrorRow> rows = MakeErrorRows(jas.m_doc, jas.User("A").m_listErrors);
    EXPECT_EQ(Column(rows, 2), (Strings{"one", "two"}));
    EXPECT_EQ(rows[0].Text(0), "A");
}

TEST(GapRows, StandLatestFirst) {
    const TestSession session = GapSession();
    const std::vector<GapRow> rows = MakeGapRows(session.m_doc);
    EXPECT_EQ(Column(rows, 1), (Strings{"10:00:13.000000    ", "10:00:02.500000    "}));
    EXPECT_EQ(Column(rows, 2), (Strings{"10.500000", "2.500000"}));
    EXPECT_EQ(Column(rows, 0), (Strings{"4120/3388", "4120/3388"}));
}

TEST(GapExport, TakesItsFormatFromTheExtension) {
    EXPECT_EQ(GapExportFormatOf("/x/TimingGaps.csv"), GapExportFormat::Csv);
    EXPECT_EQ(GapExportFormatOf("a.b.TXT"), GapExportFormat::Text);
    EXPECT_EQ(GapExportFormatOf("report.log"), std::nullopt);
    EXPECT_EQ(GapExportFormatOf("csv"), std::nullopt);
    EXPECT_EQ(GapExportFormatOf("folder.csv/gaps"), std::nullopt);
}

TEST(GapExport, WritesCommaSeparatedRowsWithoutEscapingAnything) {
    const TestSession session = GapSession();
    std::vector<GapRow> rows = MakeGapRows(session.m_doc);
    EXPECT_EQ(ExportGaps(rows, GapExportFormat::Csv),
              "Proc/Thread,Timestamp,Gap Duration,Message\n"
              "\"4120/3388\",10:00:13.000000    ,10.500000,\"On c\"\n"
              "\"4120/3388\",10:00:02.500000    ,2.500000,\"On \"b\"\"\n");
}

TEST(GapExport, TrimsTheStoredTimeStampsInATextExport) {
    const TestSession session = GapSession();
    std::vector<GapRow> rows = MakeGapRows(session.m_doc);
    EXPECT_EQ(ExportGaps(rows, GapExportFormat::Text),
              "Proc/Thread   Timestamp          Gap Duration     Message\n"
              "4120/3388     10:00:13.000000    10.500000        On c\n"
              "4120/3388     10:00:02.500000    2.500000         On \"b\"\n");
    EXPECT_EQ(ExportGaps(rows, GapExportFormat::Csv).substr(43, 45),
              "\"4120/3388\",10:00:13.000000,10.500000,\"On c\"\n");
    EXPECT_EQ(rows[0].Text(1), "10:00:13.000000    "); // what is shown stays
}

TEST(GapExport, WritesOnlyItsHeaderWithoutGaps) {
    std::vector<GapRow> none;
    EXPECT_EQ(ExportGaps(none, GapExportFormat::Csv), "Proc/Thread,Timestamp,Gap Duration,Message\n");
}

TEST(GapExport, PadsByCharacters) {
    std::vector<GapRow> rows(1);
    rows[0].m_strProcessThread = "M\xC3\xBCller";
    rows[0].m_strMessage = "x";
    EXPECT_EQ(ExportGaps(rows, GapExportFormat::Text).substr(58),
              "M\xC3\xBCller        " + std::string(19, ' ') + "0.000000         x\n");
}

TEST(SortRows, ReversesByNegationAndKeepsTheOrderOfEqualRows) {
    std::vector<TableRow> rows = {{"a", 1, 0, 0, 0}, {"b", 2, 0, 0, 0}, {"c", 1, 0, 0, 0}};
    SortRows(rows, 1, false);
    EXPECT_EQ(Column(rows, 0), (Strings{"a", "c", "b"}));
    SortRows(rows, 1, true);
    EXPECT_EQ(Column(rows, 0), (Strings{"b", "a", "c"}));
}

TEST(FindRows, ShowSignedIdsOrTheUser) {
    const TestSession session(DebugLog({DebugLine("10:00:00.000000", "On x", "18753/-167733552")}));
    const FindRow row = MakeFindRow(session.m_doc, RecordIndex{1});
    EXPECT_EQ(row.Text(0), "18753");
    EXPECT_EQ(row.Text(1), "-167733552");
    EXPECT_EQ(row.Text(2), "On x");
}

TEST(PaneColumns, HaveTheirTitlesAndWidths) {
    const auto print = [](const std::vector<PaneColumn>& columns) {
        std::string text;
        for (const PaneColumn& column : columns) {
            text.append(column.title).append(" ").append(std::to_string(column.width)).append("|");
        }
        return text;
    };
    EXPECT_EQ(print(BSFNRow::Columns()),
              "Business Function 200|Calls 70|Total Time 100|Shortest 100|Longest 100|Average 100|");
    EXPECT_EQ(print(TableRow::Columns()), "Table 200|Selects 70|Inserts 70|Updates 70|Deletes 70|");
    EXPECT_EQ(print(TaskRow::Columns()), "Process/Thread 100|Task Type 70|Duration 100|Message 600|");
    EXPECT_EQ(print(ErrorRow::Columns()), "Process/Thread 100|Error Type 70|Message 600|");
    EXPECT_EQ(print(GapRow::Columns()), "Process/Thread 100|Time Stamp 120|Gap Duration 100|Message 600|");
    EXPECT_EQ(print(FindRow::Columns()), "Process 60|Thread 60|Message 500|");
    EXPECT_EQ(ProcessOrUserTitle(LOG_FORMAT_JAS), "User");
    EXPECT_EQ(ProcessOrUserTitle(LOG_FORMAT_DEBUG), "Process/Thread");
}

} // namespace carvelot::test
