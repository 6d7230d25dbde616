#include "lists/PaneRows.h"

#include "records/NodeText.h"
#include "text/CaseText.h"
#include "text/TextColumns.h"

#include <algorithm>
#include <numeric>

namespace carvelot {

namespace {

template <auto kMember> std::string SecondsOf(const BSFNRow& row) {
    return SecondsText(SecondsFromMicroseconds(row.*kMember));
}

// What the columns of rows of records show and are sorted by.

std::string IdsText(const CCarvelotDoc& session, RecordIndex record) {
    const RecordContext& context = session.m_listDetails.Context(record);
    return ProcessThreadText(context.processID, context.threadID);
}

template <class Row> std::string OwnerText(const Row& row, const CCarvelotDoc& session) {
    return session.m_nLogFormat == LOG_FORMAT_JAS ? std::string(session.m_listDetails.User(row.m_pRecord))
                                                  : IdsText(session, row.m_pRecord);
}

template <class Row> SortKey OwnerKey(const Row& row, const CCarvelotDoc& session) {
    return SortKey(OwnerText(row, session));
}

template <class Row> std::string MessageText(const Row& row, const CCarvelotDoc& session) {
    return std::string(session.m_listDetails.Text(row.m_pRecord));
}

template <class Row> SortKey MessageKey(const Row& row, const CCarvelotDoc& session) {
    return SortKey(session.m_listDetails.Text(row.m_pRecord),
                   session.m_listDetails.TextIsAscii(row.m_pRecord));
}

template <auto kMember, class Row> std::string DurationText(const Row& row, const CCarvelotDoc&) {
    return SecondsText(row.*kMember);
}

template <auto kMember, class Row> SortKey DurationKey(const Row& row, const CCarvelotDoc&) {
    return SortKey(row.*kMember);
}

SortKey IdsKey(const TaskRow& row, const CCarvelotDoc& session) {
    return SortKey(IdsText(session, row.m_pRecord));
}

std::string_view TypeOf(const TaskRow& row, const CCarvelotDoc&) { return row.m_bStatement ? "SQL" : "BSFN"; }

std::string_view TypeOf(const ErrorRow& row, const CCarvelotDoc& session) {
    return ErrorType(session.m_listDetails.Kind(row.m_pRecord),
                     session.m_listDetails.ReturnCode(row.m_pRecord));
}

template <class Row> std::string TypeText(const Row& row, const CCarvelotDoc& session) {
    return std::string(TypeOf(row, session));
}

template <class Row> SortKey TypeKey(const Row& row, const CCarvelotDoc& session) {
    return SortKey(TypeOf(row, session));
}

std::string WithoutBlanks(std::string_view stamp) { return std::string(TrimRight(stamp, " ")); }

std::string StampText(const GapRow& row, const CCarvelotDoc& session) {
    return TimeStampText(session.m_listDetails[row.m_pRecord]);
}

// An export trims all rows or none, and no character of a time sorts below a blank: the blanks decide
// nothing.
SortKey StampKey(const GapRow& row, const CCarvelotDoc& session) {
    return SortKey(WithoutBlanks(StampText(row, session)));
}

std::string ProcessOrUserText(const FindRow& row, const CCarvelotDoc& session) {
    const CDetailList& details = session.m_listDetails;
    return session.m_nLogFormat == LOG_FORMAT_JAS ? std::string(details.User(row.m_pRecord))
                                                  : IdText(details.Context(row.m_pRecord).processID);
}

std::string ThreadText(const FindRow& row, const CCarvelotDoc& session) {
    return IdText(session.m_listDetails.Context(row.m_pRecord).threadID);
}

} // namespace

// --- BSFN Calls

CColumnTable<BSFNRow> BSFNRow::Columns() {
    using enum EAlign;
    using R = BSFNRow;
    // clang-format off
    static constexpr CListColumn<BSFNRow> columns[] = {
        {"Business Function", 200, Left,  TextOf<&R::m_strName>,      KeyOf<&R::m_strName>},
        {"Calls",              70, Right, DigitsOf<&R::m_nCalls>,     KeyOf<&R::m_nCalls>},
        {"Total Time",        100, Right, SecondsOf<&R::m_nTotal>,    KeyOf<&R::m_nTotal>},
        {"Shortest",          100, Right, SecondsOf<&R::m_nShortest>, KeyOf<&R::m_nShortest>},
        {"Longest",           100, Right, SecondsOf<&R::m_nLongest>,  KeyOf<&R::m_nLongest>},
        {"Average",           100, Right, SecondsOf<&R::m_nAverage>,  KeyOf<&R::m_nAverage>},
    };
    // clang-format on
    return columns;
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

// --- SQL Table Access

CColumnTable<TableRow> TableRow::Columns() {
    using enum EAlign;
    using R = TableRow;
    // clang-format off
    static constexpr CListColumn<TableRow> columns[] = {
        {"Table",   200, Left,  TextOf<&R::m_strTable>,   KeyOf<&R::m_strTable>},
        {"Selects",  70, Right, DigitsOf<&R::m_nSelects>, KeyOf<&R::m_nSelects>},
        {"Inserts",  70, Right, DigitsOf<&R::m_nInserts>, KeyOf<&R::m_nInserts>},
        {"Updates",  70, Right, DigitsOf<&R::m_nUpdates>, KeyOf<&R::m_nUpdates>},
        {"Deletes",  70, Right, DigitsOf<&R::m_nDeletes>, KeyOf<&R::m_nDeletes>},
    };
    // clang-format on
    return columns;
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

// --- Long Tasks

CColumnTable<TaskRow, CCarvelotDoc> TaskRow::Columns() {
    using enum EAlign;
    using R = TaskRow;
    // clang-format off
    static constexpr CListColumn<TaskRow, CCarvelotDoc> columns[] = {
        {"Process/Thread", 100, Left,  OwnerText<R>,                  IdsKey},
        {"Task Type",       70, Left,  TypeText<R>,                   TypeKey<R>},
        {"Duration",       100, Right, DurationText<&R::m_fDuration>, DurationKey<&R::m_fDuration>},
        {"Message",        600, Left,  MessageText<R>,                MessageKey<R>},
    };
    // clang-format on
    return columns;
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

// --- Errors/Warnings

CColumnTable<ErrorRow, CCarvelotDoc> ErrorRow::Columns() {
    using enum EAlign;
    using R = ErrorRow;
    // clang-format off
    static constexpr CListColumn<ErrorRow, CCarvelotDoc> columns[] = {
        {"Process/Thread", 100, Left, OwnerText<R>,   OwnerKey<R>},
        {"Error Type",      70, Left, TypeText<R>,    TypeKey<R>},
        {"Message",        600, Left, MessageText<R>, MessageKey<R>},
    };
    // clang-format on
    return columns;
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

// --- Timing Gaps

CColumnTable<GapRow, CCarvelotDoc> GapRow::Columns() {
    using enum EAlign;
    using R = GapRow;
    // clang-format off
    static constexpr CListColumn<GapRow, CCarvelotDoc> columns[] = {
        {"Process/Thread", 100, Left,  OwnerText<R>,             OwnerKey<R>},
        {"Time Stamp",     120, Left,  StampText,                StampKey},
        {"Gap Duration",   100, Right, DurationText<&R::m_fGap>, DurationKey<&R::m_fGap>},
        {"Message",        600, Left,  MessageText<R>,           MessageKey<R>},
    };
    // clang-format on
    return columns;
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

std::string GapRow::TimeStamp(const CCarvelotDoc& session) const {
    std::string stamp = StampText(*this, session);
    return m_bTrimmed ? WithoutBlanks(stamp) : stamp;
}

// --- Find

CColumnTable<FindRow, CCarvelotDoc> FindRow::Columns() {
    using enum EAlign;
    using R = FindRow;
    // No column sorts: the hits stay in log order.
    // clang-format off
    static constexpr CListColumn<FindRow, CCarvelotDoc> columns[] = {
        {"Process",  60, Left, ProcessOrUserText},
        {"Thread",   60, Left, ThreadText},
        {"Message", 500, Left, MessageText<R>},
    };
    // clang-format on
    return columns;
}

// --- Sorting

namespace {

constexpr int kOwnerColumn = 0;

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
    const auto keyOf = [&](std::size_t owner) { return CellKey(rows[owners[owner]], kOwnerColumn, session); };
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
    return column == GapRow::STAMP && std::ranges::all_of(rows, [&](const GapRow& row) {
               return IsOrdinaryStamp(session.m_listDetails[row.m_pRecord]);
           });
}
template <class Row> bool SortsByTime(const CCarvelotDoc&, const std::vector<Row>&, int) { return false; }

} // namespace

template <class Row>
void SortOrder(const CCarvelotDoc& session, const std::vector<Row>& rows, std::vector<std::size_t>& order,
               int column, bool descending) {
    if (column == kOwnerColumn) {
        const std::vector<std::uint32_t> numbers = OwnerNumbers(session, rows);
        SortByKey(order, descending, [&](std::size_t row) { return SortKey(std::uint64_t{numbers[row]}); });
    } else if (SortsByTime(session, rows, column)) {
        SortByKey(order, descending,
                  [&](std::size_t row) { return SortKey(session.m_listDetails.Time(rows[row].m_pRecord)); });
    } else {
        SortByKey(order, descending, [&](std::size_t row) { return CellKey(rows[row], column, session); });
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
