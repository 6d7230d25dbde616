// RowSource.h - rows that hold all that they show, behind a table of columns.
#pragma once

#include "text/ColumnTable.h"
#include "text/Release.h"

#include <utility>

namespace carvelot {

template <class TRow> class CRowSource : public CListSource {
public:
    explicit CRowSource(CColumnTable<TRow> columns = TRow::Columns()) : m_columns(columns) {}

    void Show(std::vector<TRow> rows) { m_listRows = std::move(rows); }
    void Clear() { Release(m_listRows); }

    std::size_t RowCount() const override { return m_listRows.size(); }
    std::string Text(std::size_t row, int column) const override {
        return CellText(m_columns, m_listRows[row], column);
    }
    double Share(std::size_t row, int column) const override {
        return CellShare(m_columns, m_listRows[row], column);
    }
    void Sort(std::vector<std::size_t>& order, int column, bool descending) const override {
        SortByKey(order, descending,
                  [&](std::size_t row) { return CellKey(m_columns, m_listRows[row], column); });
    }

    std::vector<TRow> m_listRows;

private:
    CColumnTable<TRow> m_columns;
};

} // namespace carvelot
