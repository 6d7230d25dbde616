// The rows of the analysis lists: what sorting and export use, apart from any window. A row of a record holds
// numbers and the record's index; its texts are made when asked for, from the session, whose records must
// live as long as the rows do.
#pragma once

#include "session/CarvelotDoc.h"
#include "text/ColumnTable.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// The title of the first column of rows of records: that of their table, or "User" in a JAS log.
template <class Row> std::string_view OwnerTitle(LogFormat format) {
    return format == LOG_FORMAT_JAS ? "User" : Row::Columns()[0].m_strTitle;
}

// --- BSFN Calls

struct BSFNRow {
    std::string m_strName;
    std::int64_t m_nCalls = 0;
    std::uint64_t m_nTotal = 0; // microseconds, as all below
    std::uint64_t m_nLongest = 0;
    std::uint64_t m_nShortest = 0;
    std::uint64_t m_nAverage = 0;

    static CColumnTable<BSFNRow> Columns();
};
std::vector<BSFNRow> MakeBSFNRows(const CBSFNAnalysis& analysis);

// --- SQL Table Access

struct TableRow {
    std::string m_strTable;
    std::int32_t m_nSelects = 0;
    std::int32_t m_nInserts = 0;
    std::int32_t m_nUpdates = 0;
    std::int32_t m_nDeletes = 0;

    static CColumnTable<TableRow> Columns();
};
std::vector<TableRow> MakeTableRows(const CSQLAnalysis& analysis);

// --- Long Tasks

struct TaskRow {
    RecordIndex m_pRecord = kNoRecord;
    bool m_bStatement = false; // task type "SQL", else "BSFN"
    float m_fDuration = 0;

    enum { OWNER, TYPE, DURATION, MESSAGE };
    // The first column sorts by "process/thread" also in a JAS session, where it is hidden behind the user
    // shown.
    static CColumnTable<TaskRow, CCarvelotDoc> Columns();
};
// Function calls, then statements, each in the order of their list: a list of them starts sorted by duration,
// the longest first.
std::vector<TaskRow> MakeTaskRows(const CCarvelotDoc& session, const CBSFNAnalysis& functions,
                                  const CSQLAnalysis& statements);

// --- Errors/Warnings

struct ErrorRow {
    RecordIndex m_pRecord = kNoRecord;

    static CColumnTable<ErrorRow, CCarvelotDoc> Columns();
};
// The error type by kind and return code.
std::string_view ErrorType(LogKind kind, std::int32_t returnCode);
// Each record goes above the earlier ones, so the rows stand in the list's reverse order.
template <class List> std::vector<ErrorRow> MakeErrorRows(const List& errors);

// --- Timing Gaps

struct GapRow {
    RecordIndex m_pRecord = kNoRecord;
    float m_fGap = 0;
    bool m_bTrimmed = false; // a text export has cut the blanks off the time stamp; what is shown stays

    enum { OWNER, STAMP, GAP, MESSAGE };
    static CColumnTable<GapRow, CCarvelotDoc> Columns();
    // What an export writes.
    std::string TimeStamp(const CCarvelotDoc& session) const;
};
// The latest gap of the log first.
std::vector<GapRow> MakeGapRows(const CCarvelotDoc& session);

// --- Find

struct FindRow {
    RecordIndex m_pRecord = kNoRecord;

    enum { OWNER, THREAD, MESSAGE };
    static CColumnTable<FindRow, CCarvelotDoc> Columns();
};

// --- Sorting

// Brings the numbers of rows of records into their order by a column, or into exactly its reverse. Rows that
// compare equal either way keep their order.
template <class Row>
void SortOrder(const CCarvelotDoc& session, const std::vector<Row>& rows, std::vector<std::size_t>& order,
               int column, bool descending);

// Sorts rows of records as a click on a column's header does.
template <class Row>
void SortRows(const CCarvelotDoc& session, std::vector<Row>& rows, int column, bool descending);

} // namespace carvelot
