#include "lists/PaneRows.h"

#include "lists/GapExport.h"
#include "lists/RecordSource.h"
#include "platform/CodePage.h"
#include "support/Sanitizer.h"
#include "support/TestLog.h"
#include "text/RowSource.h"

#include <gtest/gtest.h>

#include <numeric>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace carvelot::test {

namespace {

using Strings = std::vector<std::string>;

template <class Row> Strings Column(const std::vector<Row>& rows, int column) {
    Strings texts;
    for (const Row& row : rows) {
        texts.push_back(CellText(row, column));
    }
    return texts;
}

template <class Row> Strings Column(const TestSession& session, const std::vector<Row>& rows, int column) {
    Strings texts;
    for (const Row& row : rows) {
        texts.push_back(CellText(row, column, session.m_doc));
    }
    return texts;
}

// A column's texts after a click on the header of another one, or the same.
template <class Source> Strings Sorted(const Source& source, int column, bool descending, int shown) {
    std::vector<std::size_t> order(source.RowCount());
    std::iota(order.begin(), order.end(), std::size_t{0});
    source.Sort(order, column, descending);
    Strings texts;
    for (const std::size_t row : order) {
        texts.push_back(source.Text(row, shown));
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
    EXPECT_EQ(CellText(row, 1), "3");
    EXPECT_EQ(CellText(row, 2), "0.500000");
    EXPECT_EQ(CellText(row, 4), "12.500000");
    EXPECT_EQ(CellText(row, 5), "16.777216"); // beyond 2^24 microseconds the last digit is lost
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
        EXPECT_EQ(CellText(rows[1], column), "0.000000"); // never closed
    }
}

TEST(RowSource, SortsTextsWithoutCaseAndNumbersByValueAndKeepsTheOrderOfEqualRows) {
    CRowSource<BSFNRow> source;
    source.m_listRows = {{"b", 10, 9, 2, 1, 5}, {"A", 9, 10, 2, 3, 4}, {"c", 9, 1, 2, 2, 6}};
    EXPECT_EQ(Sorted(source, 0, false, 0), (Strings{"A", "b", "c"}));
    EXPECT_EQ(Sorted(source, 0, true, 0), (Strings{"c", "b", "A"}));
    EXPECT_EQ(Sorted(source, 1, false, 0), (Strings{"A", "c", "b"}));
    EXPECT_EQ(Sorted(source, 1, true, 0), (Strings{"b", "A", "c"}));
    EXPECT_EQ(Sorted(source, 2, false, 0), (Strings{"c", "b", "A"}));
    EXPECT_EQ(Sorted(source, 3, false, 0), (Strings{"b", "c", "A"})); // shortest
    EXPECT_EQ(Sorted(source, 4, false, 0), (Strings{"b", "A", "c"})); // longest: all equal
    EXPECT_EQ(Sorted(source, 4, true, 0), (Strings{"b", "A", "c"}));
    EXPECT_EQ(Sorted(source, 5, false, 0), (Strings{"A", "b", "c"}));
    EXPECT_EQ(Sorted(source, 6, true, 0), (Strings{"b", "A", "c"}));
}

TEST(ErrorRows, SortProcessAndThreadAsText) {
    const TestSession session(DebugLog({DebugLine("10:00:00.000000", "ERROR 1", "9/2"),
                                        DebugLine("10:00:00.000001", "ERROR 2", "10/2"),
                                        DebugLine("10:00:00.000002", "ERROR 3", "9/10")}));
    CRecordSource<ErrorRow> source;
    source.Show(session.m_doc, MakeErrorRows(std::vector{RecordIndex{3}, RecordIndex{2}, RecordIndex{1}}));
    EXPECT_EQ(Sorted(source, 0, false, 0), (Strings{"10/2", "9/10", "9/2"}));
    EXPECT_EQ(Sorted(source, 0, true, 0), (Strings{"9/2", "9/10", "10/2"}));
    EXPECT_EQ(Sorted(source, 2, true, 2), (Strings{"ERROR 3", "ERROR 2", "ERROR 1"}));
}

TEST(ErrorRows, SortByTheErrorType) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000000", "Calling Business function F from X (BSFNLevel = 1)"),
        DebugLine("10:00:00.000001", "Return value is 1 for F. (BSFNLevel = 1)"),
        DebugLine("10:00:00.000002", "ERROR 1"),
        DebugLine("10:00:00.000003", "Calling Business function F from X (BSFNLevel = 1)"),
        DebugLine("10:00:00.000004", "Return value is 2 for F. (BSFNLevel = 1)"),
    }));
    CRecordSource<ErrorRow> source;
    source.Show(session.m_doc, MakeErrorRows(session.Process(4120).m_listErrors));
    EXPECT_EQ(Sorted(source, 1, false, 1), (Strings{"BSFN Error", "BSFN Warning", "GBR Error"}));
    EXPECT_EQ(Sorted(source, 1, true, 1), (Strings{"GBR Error", "BSFN Warning", "BSFN Error"}));
}

TEST(TaskRows, StandTwiceWhereTheListsHoldThemTwiceAndSortedLongestFirst) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000000", "SELECT A FROM T"),
        DebugLine("10:00:02.000000", "Exiting DBPerformRequest"),
        DebugLine("10:00:03.000000", "Exiting DBPerformRequest"),
        DebugLine("10:00:03.000000", "Calling Business function F from X (BSFNLevel = 1)"),
        DebugLine("10:00:08.000000", "Return value is 0 for F. (BSFNLevel = 1)"),
    }));
    const CProcess& process = session.Process(4120);
    std::vector<TaskRow> rows = MakeTaskRows(session.m_doc, process.m_pBSFNAnalysis, process.m_pSQLAnalysis);
    SortRows(session.m_doc, rows, 2, true);
    EXPECT_EQ(Column(session, rows, 2), (Strings{"5.000000", "3.000000", "3.000000"}));
    EXPECT_EQ(Column(session, rows, 1), (Strings{"BSFN", "SQL", "SQL"}));
    EXPECT_EQ(CellText(rows[0], 0, session.m_doc), "4120/3388");
    EXPECT_EQ(CellText(rows[1], 3, session.m_doc), "SELECT A FROM T");
}

TEST(TaskRows, ShowTheUserOfAJASSessionButSortByTheHiddenIds) {
    const TestSession session(
        JASLog({JASLine("08:00:01,000", "B", "SELECT A FROM T"), JASLine("08:00:03,000", "B", "x"),
                JASLine("08:00:04,000", "A", "SELECT A FROM U"), JASLine("08:00:06,000", "A", "x")}));
    std::vector<TaskRow> rows;
    for (const char* user : {"B", "A"}) {
        const CJASUser& owner = session.User(user);
        const std::vector<TaskRow> more =
            MakeTaskRows(session.m_doc, owner.m_pBSFNAnalysis, owner.m_pSQLAnalysis);
        rows.insert(rows.end(), more.begin(), more.end());
    }
    EXPECT_EQ(Column(session, rows, 0), (Strings{"B", "A"}));
    EXPECT_EQ(CellKey(rows[0], 0, session.m_doc).Text(), "0/0");
    CRecordSource<TaskRow> source;
    source.Show(session.m_doc, rows);
    EXPECT_EQ(Sorted(source, 0, false, 0), (Strings{"B", "A"}));
    EXPECT_EQ(Sorted(source, 0, true, 0), (Strings{"B", "A"}));
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
    EXPECT_EQ(Column(debug, MakeErrorRows(debug.Process(4120).m_listErrors), 2),
              (Strings{"ERROR 2", "ERROR 1"}));
    const TestSession jas(
        JASLog({JASLine("08:00:00,001", "A", "one", "WARN"), JASLine("08:00:00,002", "A", "two", "WARN")}));
    const std::vector<ErrorRow> rows = MakeErrorRows(jas.User("A").m_listErrors);
    EXPECT_EQ(Column(jas, rows, 2), (Strings{"one", "two"}));
    EXPECT_EQ(CellText(rows[0], 0, jas.m_doc), "A");
}

TEST(GapRows, StandLatestFirst) {
    const TestSession session = GapSession();
    const std::vector<GapRow> rows = MakeGapRows(session.m_doc);
    EXPECT_EQ(Column(session, rows, 1), (Strings{"10:00:13.000000    ", "10:00:02.500000    "}));
    EXPECT_EQ(Column(session, rows, 2), (Strings{"10.500000", "2.500000"}));
    EXPECT_EQ(Column(session, rows, 0), (Strings{"4120/3388", "4120/3388"}));
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
    EXPECT_EQ(ExportGaps(session.m_doc, rows, GapExportFormat::Csv),
              "Proc/Thread,Timestamp,Gap Duration,Message\n"
              "\"4120/3388\",10:00:13.000000    ,10.500000,\"On c\"\n"
              "\"4120/3388\",10:00:02.500000    ,2.500000,\"On \"b\"\"\n");
}

TEST(GapExport, TrimsTheStoredTimeStampsInATextExport) {
    const TestSession session = GapSession();
    std::vector<GapRow> rows = MakeGapRows(session.m_doc);
    EXPECT_EQ(ExportGaps(session.m_doc, rows, GapExportFormat::Text),
              "Proc/Thread   Timestamp          Gap Duration     Message\n"
              "4120/3388     10:00:13.000000    10.500000        On c\n"
              "4120/3388     10:00:02.500000    2.500000         On \"b\"\n");
    EXPECT_EQ(ExportGaps(session.m_doc, rows, GapExportFormat::Csv).substr(43, 45),
              "\"4120/3388\",10:00:13.000000,10.500000,\"On c\"\n");
    EXPECT_EQ(CellText(rows[0], 1, session.m_doc), "10:00:13.000000    "); // what is shown stays
}

TEST(GapExport, WritesOnlyItsHeaderWithoutGaps) {
    const TestSession session(DebugLog({}));
    std::vector<GapRow> none;
    EXPECT_EQ(ExportGaps(session.m_doc, none, GapExportFormat::Csv),
              "Proc/Thread,Timestamp,Gap Duration,Message\n");
}

TEST(GapExport, PadsByCharacters) {
    const TestSession session(JASLog({JASLine("08:00:01,000", platform::Utf8ToBytes("M\xC3\xBCller"), "x")}));
    std::vector<GapRow> rows = {{RecordIndex{kJASLead}, 2.5F}};
    EXPECT_EQ(ExportGaps(session.m_doc, rows, GapExportFormat::Text).substr(58),
              "M\xC3\xBCller        08:00:01.000000    2.500000         x\n");
}

TEST(GapRows, SortByTheirTimeStampsAsTextBeforeAndAfterATextExport) {
    // A fraction of seven digits is no later second.
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000000", "On a"), DebugLine("10:00:02.5000001", "On b"),
                  DebugLine("10:00:13.500000", "On c"), DebugLine("09:00:00.000000", "On d")}));
    CRecordSource<GapRow> source;
    source.Show(session.m_doc, MakeGapRows(session.m_doc));
    const Strings up = {"09:00:00.000000    ", "10:00:02.5000001    ", "10:00:13.500000    "};
    EXPECT_EQ(Sorted(source, 1, false, 1), up);
    EXPECT_EQ(Sorted(source, 1, true, 1), (Strings{up[2], up[1], up[0]}));
    (void)ExportGaps(session.m_doc, source.m_listRows, GapExportFormat::Text);
    EXPECT_EQ(source.m_listRows[0].TimeStamp(session.m_doc), "09:00:00.000000");
    EXPECT_EQ(Sorted(source, 1, false, 1), up);
}

TEST(FindRows, ShowSignedIdsOrTheUser) {
    const TestSession session(DebugLog({DebugLine("10:00:00.000000", "On x", "18753/-167733552")}));
    const FindRow row{RecordIndex{1}};
    EXPECT_EQ(CellText(row, 0, session.m_doc), "18753");
    EXPECT_EQ(CellText(row, 1, session.m_doc), "-167733552");
    EXPECT_EQ(CellText(row, 2, session.m_doc), "On x");
    const TestSession jas(JASLog({JASLine("08:00:01,000", "ANNIKA", "x")}));
    EXPECT_EQ(CellText(FindRow{RecordIndex{kJASLead}}, 0, jas.m_doc), "ANNIKA");
}

#ifdef __GLIBC__
// Hundreds of thousands of rows with messages of any length are numbers all the same.
TEST(RecordSource, HoldsNoTexts) {
    if (kSanitized) {
        GTEST_SKIP() << "a sanitizer holds freed memory back";
    }
    const std::string message(2000, 'x');
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000000", "On a"), DebugLine("10:00:09.000000", "ERROR " + message)}));
    const auto held = [] {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    constexpr std::size_t kRows = 100'000;
    constexpr std::size_t kMost = kRows * 12 + 10'000;
    const std::vector<RecordIndex> records(kRows, RecordIndex{2});
    const std::size_t before = held();
    {
        CRecordSource<ErrorRow> errors;
        errors.Show(session.m_doc, MakeErrorRows(records));
        EXPECT_EQ(errors.Text(kRows - 1, 2), "ERROR " + message);
        EXPECT_LT(held(), before + kMost);
    }
    CBSFNAnalysis functions;
    CSQLAnalysis statements;
    for (const RecordIndex record : records) {
        statements.m_listLongTasks.AddHead(record);
    }
    const std::size_t ahead = held();
    CRecordSource<TaskRow> tasks;
    tasks.Show(session.m_doc, MakeTaskRows(session.m_doc, functions, statements));
    EXPECT_EQ(tasks.Text(0, 3), "ERROR " + message);
    EXPECT_LT(held(), ahead + kMost);
    tasks.Clear();
    EXPECT_LT(held(), ahead + 10'000);
    EXPECT_LE(sizeof(GapRow), 12U);
}
#endif

// "R": on the right; "-": the rows do not sort by it.
template <class Row> std::string Printed() {
    std::string text;
    for (const CColumnSpec& column : SpecsOf(Row::Columns())) {
        text.append(column.m_strTitle).append(" ").append(std::to_string(column.m_nWidth));
        text.append(column.m_nAlign == EAlign::Right ? "R" : "").append(column.m_bSorts ? "|" : "-|");
    }
    return text;
}

TEST(PaneColumns, HaveTheirTitlesWidthsAndAlignmentsAndSortOrNot) {
    EXPECT_EQ(Printed<BSFNRow>(),
              "Business Function 200|Calls 70R|Total Time 100R|Shortest 100R|Longest 100R|Average 100R|");
    EXPECT_EQ(Printed<TableRow>(), "Table 200|Selects 70R|Inserts 70R|Updates 70R|Deletes 70R|");
    EXPECT_EQ(Printed<TaskRow>(), "Process/Thread 100|Task Type 70|Duration 100R|Message 600|");
    EXPECT_EQ(Printed<ErrorRow>(), "Process/Thread 100|Error Type 70|Message 600|");
    EXPECT_EQ(Printed<GapRow>(), "Process/Thread 100|Time Stamp 120|Gap Duration 100R|Message 600|");
    EXPECT_EQ(Printed<FindRow>(), "Process 60-|Thread 60-|Message 500-|");
}

TEST(PaneColumns, NameTheUserFirstInAJASLog) {
    EXPECT_EQ(OwnerTitle<ErrorRow>(LOG_FORMAT_JAS), "User");
    EXPECT_EQ(OwnerTitle<ErrorRow>(LOG_FORMAT_DEBUG), "Process/Thread");
    EXPECT_EQ(OwnerTitle<FindRow>(LOG_FORMAT_JAS), "User");
    EXPECT_EQ(OwnerTitle<FindRow>(LOG_FORMAT_DEBUG), "Process");
}

} // namespace carvelot::test
