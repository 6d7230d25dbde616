#include "lists/PaneRows.h"

#include "records/NodeText.h"
#include "text/CaseText.h"
#include "text/Columns.h"

#include <algorithm>
#include <numeric>

namespace carvelot {

namespace {

std::string MicrosecondsText(std::uint64_t microseconds) {
    return SecondsText(SecondsFromMicroseconds(microseconds));
}

std::string ProcessThreadTextOf(const CCarvelotDoc& session, RecordIndex record) {
    const RecordContext& context = session.m_listDetails.Context(record);
    return ProcessThreadText(context.processID, context.threadID);
}

std::string OwnerText(const CCarvelotDoc& session, RecordIndex record) {
    return session.m_nLogFormat == LOG_FORMAT_JAS ? std::string(session.m_listDetails.User(record))
                                                  : ProcessThreadTextOf(session, record);
}

std::string MessageText(const CCarvelotDoc& session, RecordIndex record) {
    return std::string(session.m_listDetails.Text(record));
}

std::string WithoutBlanks(std::string_view stamp) { return std::string(TrimRight(stamp, " ")); }

SortKey MessageKey(const CCarvelotDoc& session, RecordIndex record) {
    return SortKey(session.m_listDetails.Text(record), session.m_listDetails.TextIsAscii(record));
}

std::string_view TaskType(const TaskRow& row) { return row.m_bStatement ? "SQL" : "BSFN"; }

std::string_view ErrorTypeOf(const CCarvelotDoc& session, RecordIndex record) {
    return ErrorType(session.m_listDetails.Kind(record), session.m_listDetails.ReturnCode(record));
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

std::string TaskRow::Text(const CCarvelotDoc& session, int column) const {
    switch (column) {
    case 0:
        return OwnerText(session, m_pRecord);
    case 1:
        return std::string(TaskType(*this));
    case 2:
        return SecondsText(m_fDuration);
    case 3:
        return MessageText(session, m_pRecord);
    default:
        return {};
    }
}

std::vector<TaskRow> MakeTaskRows(const CCarvelotDoc& session, const CBSFNAnalysis& functions,
                                  const CSQLAnalysis& statements) {
    std::vector<TaskRow> rows;
    rows.reserve(functions.m_listLongTasks.size() + statements.m_listLongTasks.size());
    const auto add = [&](const CHeadList<RecordIndex>& tasks, bool statement) {
        for (const RecordIndex record : tasks) {
            rows.push_back({record, statement, session.m_listDetails.Duration(record)});
        }
    };
    add(functions.m_listLongTasks, false);
    add(statements.m_listLongTasks, true);
    return rows;
}

SortKey TaskRow::Key(const CCarvelotDoc& session, int column) const {
    switch (column) {
    case 0:
        return SortKey(ProcessThreadTextOf(session, m_pRecord));
    case 1:
        return SortKey(TaskType(*this));
    case 2:
        return SortKey(m_fDuration);
    case 3:
        return MessageKey(session, m_pRecord);
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

std::string ErrorRow::Text(const CCarvelotDoc& session, int column) const {
    switch (column) {
    case 0:
        return OwnerText(session, m_pRecord);
    case 1:
        return std::string(ErrorTypeOf(session, m_pRecord));
    case 2:
        return MessageText(session, m_pRecord);
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

template <class List> std::vector<ErrorRow> MakeErrorRows(const List& errors) {
    std::vector<ErrorRow> rows;
    rows.reserve(errors.size());
    for (std::size_t n = errors.size(); n-- > 0;) {
        rows.push_back({errors[n]});
    }
    return rows;
}

template std::vector<ErrorRow> MakeErrorRows(const std::vector<RecordIndex>&);
template std::vector<ErrorRow> MakeErrorRows(const CHeadList<RecordIndex>&);

SortKey ErrorRow::Key(const CCarvelotDoc& session, int column) const {
    switch (column) {
    case 0:
        return SortKey(OwnerText(session, m_pRecord));
    case 1:
        return SortKey(ErrorTypeOf(session, m_pRecord));
    case 2:
        return MessageKey(session, m_pRecord);
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

std::string GapRow::Text(const CCarvelotDoc& session, int column) const {
    switch (column) {
    case 0:
        return OwnerText(session, m_pRecord);
    case 1:
        return TimeStampText(session.m_listDetails[m_pRecord]);
    case 2:
        return SecondsText(m_fGap);
    case 3:
        return MessageText(session, m_pRecord);
    default:
        return {};
    }
}

std::vector<GapRow> MakeGapRows(const CCarvelotDoc& session) {
    std::vector<GapRow> rows;
    rows.reserve(session.m_listGaps.size());
    for (std::size_t n = session.m_listGaps.size(); n-- > 0;) {
        const RecordIndex record = session.m_listGaps[n];
        rows.push_back({record, session.m_listDetails.Gap(record)});
    }
    return rows;
}

SortKey GapRow::Key(const CCarvelotDoc& session, int column) const {
    switch (column) {
    case 0:
        return SortKey(OwnerText(session, m_pRecord));
    case 1:
        // An export trims all rows or none, and no character of a time sorts below a blank: the blanks decide
        // nothing.
        return SortKey(WithoutBlanks(Text(session, column)));
    case 2:
        return SortKey(m_fGap);
    case 3:
        return MessageKey(session, m_pRecord);
    default:
        return {};
    }
}

std::string GapRow::TimeStamp(const CCarvelotDoc& session) const {
    std::string stamp = Text(session, 1);
    return m_bTrimmed ? WithoutBlanks(stamp) : stamp;
}

// --- Find
// -----------------------------------------------------------------------------------------------------------

const std::vector<PaneColumn>& FindRow::Columns() {
    static const std::vector<PaneColumn> columns = {{"Process", 60}, {"Thread", 60}, {"Message", 500}};
    return columns;
}

std::string FindRow::Text(const CCarvelotDoc& session, int column) const {
    const CDetailList& details = session.m_listDetails;
    switch (column) {
    case 0:
        return session.m_nLogFormat == LOG_FORMAT_JAS ? std::string(details.User(m_pRecord))
                                                      : IdText(details.Context(m_pRecord).processID);
    case 1:
        return IdText(details.Context(m_pRecord).threadID);
    case 2:
        return MessageText(session, m_pRecord);
    default:
        return {};
    }
}

// --- Sorting
// --------------------------------------------------------------------------------------------------------

namespace {

// The first column of rows of records names owners, of which a session has few: each is sorted once, and what
// a row is sorted by is the number of its owner.
template <class Row>
std::vector<std::uint32_t> OwnerNumbers(const CCarvelotDoc& session, const std::vector<Row>& rows) {
    std::vector<std::size_t> owners; // a row of each
    std::vector<std::uint32_t> numbers;
    std::vector<std::uint32_t> placeOf; // of a context among the owners, and 1 more
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const std::uint32_t context = session.m_listDetails.ContextNumber(rows[row].m_pRecord);
        if (context >= placeOf.size()) {
            placeOf.resize(std::max<std::size_t>(context + 1, placeOf.size() * 2));
        }
        if (placeOf[context] == 0) {
            owners.push_back(row);
            placeOf[context] = static_cast<std::uint32_t>(owners.size());
        }
        numbers.push_back(placeOf[context] - 1);
    }
    std::vector<std::size_t> order(owners.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto keyOf = [&](std::size_t owner) { return rows[owners[owner]].Key(session, 0); };
    SortByKey(order, false, keyOf);
    std::vector<std::uint32_t> ranks(owners.size());
    for (std::size_t n = 1; n < order.size(); ++n) {
        // Contexts differ in more than their owner.
        const bool same = EqualNoCase(keyOf(order[n - 1]).Text(), keyOf(order[n]).Text());
        ranks[order[n]] = ranks[order[n - 1]] + (same ? 0 : 1);
    }
    for (std::uint32_t& number : numbers) {
        number = ranks[number];
    }
    return numbers;
}

// Whether the time stamp is of the length that nearly all have, so that it sorts as its numbers do.
bool IsOrdinaryStamp(const CLogDetail& detail) {
    const auto isUpTo = [](std::int32_t number, std::int32_t most) { return number >= 0 && number <= most; };
    return isUpTo(detail.m_nHour, 99) && isUpTo(detail.m_nMinute, 59) && isUpTo(detail.m_nSecond, 59) &&
           isUpTo(detail.m_nMicrosecond, 999'999);
}

bool SortsByTime(const CCarvelotDoc& session, const std::vector<GapRow>& rows, int column) {
    return column == 1 && std::ranges::all_of(rows, [&](const GapRow& row) {
               return IsOrdinaryStamp(session.m_listDetails[row.m_pRecord]);
           });
}
template <class Row> bool SortsByTime(const CCarvelotDoc&, const std::vector<Row>&, int) { return false; }

} // namespace

template <class Row>
void SortOrder(const CCarvelotDoc& session, const std::vector<Row>& rows, std::vector<std::size_t>& order,
               int column, bool descending) {
    if (column == 0) {
        const std::vector<std::uint32_t> numbers = OwnerNumbers(session, rows);
        SortByKey(order, descending, [&](std::size_t row) { return SortKey(std::uint64_t{numbers[row]}); });
    } else if (SortsByTime(session, rows, column)) {
        SortByKey(order, descending,
                  [&](std::size_t row) { return SortKey(session.m_listDetails.Time(rows[row].m_pRecord)); });
    } else {
        SortByKey(order, descending, [&](std::size_t row) { return rows[row].Key(session, column); });
    }
}

template <class Row>
void SortRows(const CCarvelotDoc& session, std::vector<Row>& rows, int column, bool descending) {
    std::vector<std::size_t> order(rows.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    SortOrder(session, rows, order, column, descending);
    std::vector<Row> sorted;
    sorted.reserve(rows.size());
    for (const std::size_t row : order) {
        sorted.push_back(rows[row]);
    }
    rows = std::move(sorted);
}

template void SortOrder(const CCarvelotDoc&, const std::vector<TaskRow>&, std::vector<std::size_t>&, int,
                        bool);
template void SortOrder(const CCarvelotDoc&, const std::vector<ErrorRow>&, std::vector<std::size_t>&, int,
                        bool);
template void SortOrder(const CCarvelotDoc&, const std::vector<GapRow>&, std::vector<std::size_t>&, int,
                        bool);
template void SortRows(const CCarvelotDoc&, std::vector<TaskRow>&, int, bool);
template void SortRows(const CCarvelotDoc&, std::vector<GapRow>&, int, bool);

} // namespace carvelot
