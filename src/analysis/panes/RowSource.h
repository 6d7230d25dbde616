// The rows of PaneRows.h as a list shows them.
#pragma once

#include "analysis/panes/ListSource.h"
#include "analysis/panes/PaneRows.h"
#include "logcore/Release.h"

namespace carvelot {

template <class TRow> class CRowSource final : public CListSource {
public:
    std::size_t RowCount() const override { return m_listRows.size(); }
    std::string Text(std::size_t nRow, int nColumn) const override { return m_listRows[nRow].Text(nColumn); }
    int OnCompareItems(std::size_t nRowA, std::size_t nRowB, int nColumn) const override {
        return carvelot::OnCompareItems(m_listRows[nRowA], m_listRows[nRowB], nColumn);
    }
    void Sort(std::vector<std::size_t>& listOrder, int nColumn, bool bDescending) const override {
        SortByKey(listOrder, bDescending, [&](std::size_t nRow) { return m_listRows[nRow].Key(nColumn); });
    }

    void Clear() { Release(m_listRows); }

    std::vector<TRow> m_listRows;
};

// The columns of a row type for a list control.
template <class TRow> std::vector<CColumnSpec> ColumnsOf() {
    std::vector<CColumnSpec> listColumns;
    for (const PaneColumn& column : TRow::Columns())
        listColumns.push_back({column.title.data(), column.width}); // titles are literals
    return listColumns;
}

} // namespace carvelot
