// ColumnTable.h - the columns of a list as one table, a line a column. What a list shows, what it is sorted
// by, what it copies and what is exported of it are all made from that line.
#pragma once

#include "text/ListSource.h"
#include "text/SortKey.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// A column of rows of one type. Its functions get a row and what all rows belong to, if they belong to
// something.
template <class TRow, class... TOf> struct CListColumn {
    std::string_view m_strTitle;
    int m_nWidth; // device-independent pixels
    EAlign m_nAlign;
    std::string (*m_pfnText)(const TRow&, const TOf&...);
    SortKey (*m_pfnKey)(const TRow&, const TOf&...) = nullptr;  // null: the rows do not sort by it
    double (*m_pfnShare)(const TRow&, const TOf&...) = nullptr; // null: no bars; else see CListSource::Share
    bool m_bSigned = false;                                     // bars run from the middle to either side
};

template <class TRow, class... TOf> using CColumnTable = std::span<const CListColumn<TRow, TOf...>>;

// A cell's text; empty for a column that is not there.
template <class TRow, class... TOf>
std::string CellText(CColumnTable<TRow, TOf...> columns, const TRow& row, int column, const TOf&... of) {
    const auto at = static_cast<std::size_t>(column);
    return at < columns.size() ? columns[at].m_pfnText(row, of...) : std::string();
}

// What a row is sorted by in a column.
template <class TRow, class... TOf>
SortKey CellKey(CColumnTable<TRow, TOf...> columns, const TRow& row, int column, const TOf&... of) {
    const auto at = static_cast<std::size_t>(column);
    return at < columns.size() && columns[at].m_pfnKey != nullptr ? columns[at].m_pfnKey(row, of...)
                                                                  : SortKey();
}

// How long the bar of a cell is.
template <class TRow, class... TOf>
double CellShare(CColumnTable<TRow, TOf...> columns, const TRow& row, int column, const TOf&... of) {
    const auto at = static_cast<std::size_t>(column);
    return at < columns.size() && columns[at].m_pfnShare != nullptr ? columns[at].m_pfnShare(row, of...) : 0;
}

// The same for rows whose type has a table of its own.
template <class TRow, class... TOf> std::string CellText(const TRow& row, int column, const TOf&... of) {
    return CellText<TRow, TOf...>(TRow::Columns(), row, column, of...);
}
template <class TRow, class... TOf> SortKey CellKey(const TRow& row, int column, const TOf&... of) {
    return CellKey<TRow, TOf...>(TRow::Columns(), row, column, of...);
}

// The columns for a list control.
template <class TRow, class... TOf>
std::vector<CColumnSpec> SpecsOf(std::span<const CListColumn<TRow, TOf...>> columns) {
    std::vector<CColumnSpec> specs;
    for (const CListColumn<TRow, TOf...>& column : columns) {
        specs.push_back({std::string(column.m_strTitle), column.m_nWidth, column.m_nAlign,
                         column.m_pfnKey != nullptr, column.m_bSigned});
    }
    return specs;
}

// For tables: the text of a member that is one, the digits of a number, and either of them as what is sorted
// by.
template <auto kMember, class TRow> std::string TextOf(const TRow& row) { return row.*kMember; }
template <auto kMember, class TRow> std::string DigitsOf(const TRow& row) {
    return std::to_string(row.*kMember);
}
template <auto kMember, class TRow> SortKey KeyOf(const TRow& row) { return SortKey(row.*kMember); }

} // namespace carvelot
