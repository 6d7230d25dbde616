// The rows of the analysis lists: what sorting and export use, apart from any window. Row texts are made when
// asked for.
#pragma once

#include "analysis/panes/SortKey.h"
#include "logcore/CarvelotDoc.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// A column of a list: its title and its width in device-independent pixels.
struct PaneColumn {
    std::string_view title;
    int width;
};

// The title of the first column of the lists that show records: it goes by the log's format.
std::string_view ProcessOrUserTitle(LogFormat format);

// Every list compares two rows by one column as SortKey::Compare does; SortRows sorts them.
template <class Row> int OnCompareItems(const Row& a, const Row& b, int column) {
    return SortKey::Compare(a.Key(column), b.Key(column));
}

// --- BSFN Calls
// -----------------------------------------------------------------------------------------------------

struct BSFNRow {
    std::string m_strName;
    std::int64_t m_nCalls = 0;
    std::uint64_t m_nTotal = 0; // microseconds, as all below
    std::uint64_t m_nLongest = 0;
    std::uint64_t m_nShortest = 0;
    std::uint64_t m_nAverage = 0;

    static const std::vector<PaneColumn>& Columns();
    std::string Text(int column) const;
    SortKey Key(int column) const;
};
std::vector<BSFNRow> MakeBSFNRows(const CBSFNAnalysis& analysis);

// --- SQL Table Access
// -----------------------------------------------------------------------------------------------

struct TableRow {
    std::string m_strTable;
    std::int32_t m_nSelects = 0;
    std::int32_t m_nInserts = 0;
    std::int32_t m_nUpdates = 0;
    std::int32_t m_nDeletes = 0;

    static const std::vector<PaneColumn>& Columns();
    std::string Text(int column) const;
    SortKey Key(int column) const;
};
std::vector<TableRow> MakeTableRows(const CSQLAnalysis& analysis);

// --- Long Tasks
// -----------------------------------------------------------------------------------------------------

struct TaskRow {
    std::string
        m_strProcessThread; // also in a JAS session, where it is the hidden sort key behind the user shown
    std::string m_strShownOwner;
    std::string m_strType; // "BSFN" or "SQL"
    double m_fDuration = 0;
    std::string m_strMessage;
    RecordIndex m_pRecord = kNoRecord;

    static const std::vector<PaneColumn>& Columns();
    std::string Text(int column) const;
    SortKey Key(int column) const;
};
// Longest first; of equal ones that which the lists held first.
std::vector<TaskRow> MakeTaskRows(const CCarvelotDoc& session, const CBSFNAnalysis& functions,
                                  const CSQLAnalysis& statements);

// --- Errors/Warnings
// ------------------------------------------------------------------------------------------------

struct ErrorRow {
    std::string m_strProcessThread; // the user in a JAS session
    std::string m_strType;
    std::string m_strMessage;
    RecordIndex m_pRecord = kNoRecord;

    static const std::vector<PaneColumn>& Columns();
    std::string Text(int column) const;
    SortKey Key(int column) const;
};
// The error type by kind and return code.
std::string_view ErrorType(LogKind kind, std::int32_t returnCode);
// Each record goes above the earlier ones, so the rows stand in the list's reverse order.
template <class List> std::vector<ErrorRow> MakeErrorRows(const CCarvelotDoc& session, const List& errors);

// --- Timing Gaps
// ----------------------------------------------------------------------------------------------------

struct GapRow {
    std::string m_strProcessThread; // the user in a JAS session
    std::string m_strTimeStamp;     // with its four trailing blanks, until a text export has trimmed it
    std::string m_strShownTimeStamp;
    float m_fGap = 0;
    std::string m_strMessage;
    RecordIndex m_pRecord = kNoRecord;

    static const std::vector<PaneColumn>& Columns();
    std::string Text(int column) const;
    SortKey Key(int column) const;
};
// The latest gap of the log first.
std::vector<GapRow> MakeGapRows(const CCarvelotDoc& session);

// --- Find
// -----------------------------------------------------------------------------------------------------------

struct FindRow {
    std::string m_strProcess; // the user in a JAS session
    std::string m_strThread;
    std::string m_strMessage;
    RecordIndex m_pRecord = kNoRecord;

    static const std::vector<PaneColumn>& Columns();
    std::string Text(int column) const;
};
FindRow MakeFindRow(const CCarvelotDoc& session, RecordIndex record);

// --- Sorting
// --------------------------------------------------------------------------------------------------------

// Sorts rows by a column as a click on its header does. Rows that compare equal either way keep their order.
template <class Row> void SortRows(std::vector<Row>& rows, int column, bool descending);

} // namespace carvelot
