#include "analysis/panes/PaneRows.h"

#include "logcore/NodeText.h"

#include <algorithm>
#include <numeric>

namespace carvelot {

namespace {

std::string MicrosecondsText(std::uint64_t microseconds) {
    return SecondsText(SecondsFromMicroseconds(microseconds));
}

std::string OwnerText(const CCarvelotDoc& session, const CLogDetail& detail) {
    return session.m_nLogFormat == LOG_FORMAT_JAS
               ? std::string(detail.m_strUser)
               : ProcessThreadText(detail.m_nProcessID, detail.m_nThreadID);
}

} // namespace

std::string_view ProcessOrUserTitle(LogFormat format) {
    return format == LOG_FORMAT_JAS ? "User" : "Process/Thread";
}

// --- BSFN Calls
// -----------------------------------------------------------------------------------------------------

const std::vector<PaneColumn>& BSFNRow::Columns() {
    static const std::vector<PaneColumn> columns = {{"Business Function", 200}, {"Calls", 70},
                                                    {"Total Time", 100},        {"Shortest", 100},
                                                    {"Longest", 100},           {"Average", 100}};
    return columns;
}

std::string BSFNRow::Text(int column) const {
    switch (column) {
    case 0:
        return m_strName;
    case 1:
        return std::to_string(m_nCalls);
    case 2:
        return MicrosecondsText(m_nTotal);
    case 3:
        return MicrosecondsText(m_nShortest);
    case 4:
        return MicrosecondsText(m_nLongest);
    case 5:
        return MicrosecondsText(m_nAverage);
    default:
        return {};
    }
}

std::vector<BSFNRow> MakeBSFNRows(const CBSFNAnalysis& analysis) {
    std::vector<BSFNRow> rows;
    rows.reserve(analysis.m_functions.size());
    for (const auto& function : analysis.m_functions) {
        BSFNRow row{std::string(function.m_strName),
                    static_cast<std::int64_t>(function.m_instances.size()),
                    function.m_totalTime,
                    function.m_longest,
                    function.m_shortest,
                    0};
        if (row.m_nCalls > 0 && row.m_nTotal != 0) {
            row.m_nAverage = row.m_nTotal / static_cast<std::uint64_t>(row.m_nCalls);
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

SortKey BSFNRow::Key(int column) const {
    switch (column) {
    case 0:
        return SortKey(m_strName);
    case 1:
        return SortKey(m_nCalls);
    case 2:
        return SortKey(m_nTotal);
    case 3:
        return SortKey(m_nShortest);
    case 4:
        return SortKey(m_nLongest);
    case 5:
        return SortKey(m_nAverage);
    default:
        return {};
    }
}

// --- SQL Table Access
// -----------------------------------------------------------------------------------------------

const std::vector<PaneColumn>& TableRow::Columns() {
    static const std::vector<PaneColumn> columns = {
        {"Table", 200}, {"Selects", 70}, {"Inserts", 70}, {"Updates", 70}, {"Deletes", 70}};
    return columns;
}

std::string TableRow::Text(int column) const {
    switch (column) {
    case 0:
        return m_strTable;
    case 1:
        return std::to_string(m_nSelects);
    case 2:
        return std::to_string(m_nInserts);
    case 3:
        return std::to_string(m_nUpdates);
    case 4:
        return std::to_string(m_nDeletes);
    default:
        return {};
    }
}

std::vector<TableRow> MakeTableRows(const CSQLAnalysis& analysis) {
    std::vector<TableRow> rows;
    rows.reserve(analysis.m_listTables.size());
    const auto count = [](std::uint32_t n) { return static_cast<std::int32_t>(n); };
    for (const auto& table : analysis.m_listTables) {
        rows.push_back({std::string(table.m_strTable), count(table.m_nSelects), count(table.m_nInserts),
                        count(table.m_nUpdates), count(table.m_nDeletes)});
    }
    return rows;
}

SortKey TableRow::Key(int column) const {
    switch (column) {
    case 0:
        return SortKey(m_strTable);
    case 1:
        return SortKey(m_nSelects);
    case 2:
        return SortKey(m_nInserts);
    case 3:
        return SortKey(m_nUpdates);
    case 4:
        return SortKey(m_nDeletes);
    default:
        return {};
    }
}

// --- Long Tasks
// -----------------------------------------------------------------------------------------------------

const std::vector<PaneColumn>& TaskRow::Columns() {
    static const std::vector<PaneColumn> columns = {
        {"Process/Thread", 100}, {"Task Type", 70}, {"Duration", 100}, {"Message", 600}};
    return columns;
}

std::string TaskRow::Text(int column) const {
    switch (column) {
    case 0:
        return m_strShownOwner;
    case 1:
        return m_strType;
    case 2:
        return SecondsText(m_fDuration);
    case 3:
        return m_strMessage;
    default:
        return {};
    }
}

std::vector<TaskRow> MakeTaskRows(const CCarvelotDoc& session, const CBSFNAnalysis& functions,
                                  const CSQLAnalysis& statements) {
    std::vector<TaskRow> rows;
    rows.reserve(functions.m_listLongTasks.size() + statements.m_listLongTasks.size());
    const auto add = [&](const CHeadList<RecordIndex>& tasks, const char* type) {
        for (const RecordIndex record : tasks) {
            const CLogDetail detail = session.m_listDetails[record];
            rows.push_back({ProcessThreadText(detail.m_nProcessID, detail.m_nThreadID),
                            OwnerText(session, detail), type, static_cast<double>(detail.m_fDuration),
                            std::string(detail.m_strText), record});
        }
    };
    add(functions.m_listLongTasks, "BSFN");
    add(statements.m_listLongTasks, "SQL");
    SortRows(rows, 2, true);
    return rows;
}

SortKey TaskRow::Key(int column) const {
    switch (column) {
    case 0:
        return SortKey(m_strProcessThread);
    case 1:
        return SortKey(m_strType);
    case 2:
        return SortKey(m_fDuration);
    case 3:
        return SortKey(m_strMessage);
    default:
        return {};
    }
}

// --- Errors/Warnings
// ------------------------------------------------------------------------------------------------

const std::vector<PaneColumn>& ErrorRow::Columns() {
    static const std::vector<PaneColumn> columns = {
        {"Process/Thread", 100}, {"Error Type", 70}, {"Message", 600}};
    return columns;
}

std::string ErrorRow::Text(int column) const {
    switch (column) {
    case 0:
        return m_strProcessThread;
    case 1:
        return m_strType;
    case 2:
        return m_strMessage;
    default:
        return {};
    }
}

std::string_view ErrorType(LogKind kind, std::int32_t returnCode) {
    if (kind == LOG_RETURN) {
        return returnCode == 1 ? "BSFN Warning" : "BSFN Error";
    }
    return kind == LOG_ERROR ? "GBR Error" : "ERROR";
}

template <class List> std::vector<ErrorRow> MakeErrorRows(const CCarvelotDoc& session, const List& errors) {
    std::vector<ErrorRow> rows;
    rows.reserve(errors.size());
    for (const RecordIndex record : errors) {
        const CLogDetail detail = session.m_listDetails[record];
        rows.push_back({OwnerText(session, detail),
                        std::string(ErrorType(detail.m_nKind, detail.m_nReturnCode)),
                        std::string(detail.m_strText), record});
    }
    std::reverse(rows.begin(), rows.end());
    return rows;
}

template std::vector<ErrorRow> MakeErrorRows(const CCarvelotDoc&, const std::vector<RecordIndex>&);
template std::vector<ErrorRow> MakeErrorRows(const CCarvelotDoc&, const CHeadList<RecordIndex>&);

SortKey ErrorRow::Key(int column) const {
    switch (column) {
    case 0:
        return SortKey(m_strProcessThread);
    case 1:
        return SortKey(m_strType);
    case 2:
        return SortKey(m_strMessage);
    default:
        return {};
    }
}

// --- Timing Gaps
// ----------------------------------------------------------------------------------------------------

const std::vector<PaneColumn>& GapRow::Columns() {
    static const std::vector<PaneColumn> columns = {
        {"Process/Thread", 100}, {"Time Stamp", 120}, {"Gap Duration", 100}, {"Message", 600}};
    return columns;
}

std::string GapRow::Text(int column) const {
    switch (column) {
    case 0:
        return m_strProcessThread;
    case 1:
        return m_strShownTimeStamp;
    case 2:
        return SecondsText(m_fGap);
    case 3:
        return m_strMessage;
    default:
        return {};
    }
}

std::vector<GapRow> MakeGapRows(const CCarvelotDoc& session) {
    std::vector<GapRow> rows;
    rows.reserve(session.m_listGaps.size());
    for (const RecordIndex record : session.m_listGaps) {
        const CLogDetail detail = session.m_listDetails[record];
        const std::string stamp = TimeStampText(detail);
        rows.push_back(
            {OwnerText(session, detail), stamp, stamp, detail.m_fGap, std::string(detail.m_strText), record});
    }
    std::reverse(rows.begin(), rows.end());
    return rows;
}

SortKey GapRow::Key(int column) const {
    switch (column) {
    case 0:
        return SortKey(m_strProcessThread);
    case 1:
        return SortKey(m_strTimeStamp);
    case 2:
        return SortKey(m_fGap);
    case 3:
        return SortKey(m_strMessage);
    default:
        return {};
    }
}

// --- Find
// -----------------------------------------------------------------------------------------------------------

const std::vector<PaneColumn>& FindRow::Columns() {
    static const std::vector<PaneColumn> columns = {{"Process", 60}, {"Thread", 60}, {"Message", 500}};
    return columns;
}

std::string FindRow::Text(int column) const {
    switch (column) {
    case 0:
        return m_strProcess;
    case 1:
        return m_strThread;
    case 2:
        return m_strMessage;
    default:
        return {};
    }
}

FindRow MakeFindRow(const CCarvelotDoc& session, RecordIndex record) {
    const CLogDetail detail = session.m_listDetails[record];
    return {session.m_nLogFormat == LOG_FORMAT_JAS ? std::string(detail.m_strUser)
                                                   : IdText(detail.m_nProcessID),
            IdText(detail.m_nThreadID), std::string(detail.m_strText), record};
}

// --- Sorting
// --------------------------------------------------------------------------------------------------------

template <class Row> void SortRows(std::vector<Row>& rows, int column, bool descending) {
    std::vector<std::size_t> order(rows.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    SortByKey(order, descending, [&](std::size_t row) { return rows[row].Key(column); });
    std::vector<Row> sorted;
    sorted.reserve(rows.size());
    for (const std::size_t row : order) {
        sorted.push_back(std::move(rows[row]));
    }
    rows = std::move(sorted);
}

template void SortRows(std::vector<BSFNRow>&, int, bool);
template void SortRows(std::vector<TableRow>&, int, bool);
template void SortRows(std::vector<TaskRow>&, int, bool);
template void SortRows(std::vector<ErrorRow>&, int, bool);
template void SortRows(std::vector<GapRow>&, int, bool);

} // namespace carvelot
