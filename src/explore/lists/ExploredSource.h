// Rows of what was explored (a table of columns each) as a list shows them. A row holds numbers; its texts
// are made when they are asked for.
#pragma once

#include "explore/ExploredSession.h"
#include "text/ColumnTable.h"
#include "text/Release.h"

#include <utility>

namespace carvelot {

// The rows must be cleared before what was explored goes.
template <class TRow> class CExploredSource : public CListSource {
public:
    void Show(const ExploredSession& explored, std::vector<TRow> rows) {
        m_pExplored = &explored;
        m_listRows = std::move(rows);
    }
    void Clear() {
        m_pExplored = nullptr;
        Release(m_listRows);
    }

    std::size_t RowCount() const override { return m_listRows.size(); }
    std::string Text(std::size_t row, int column) const override {
        return CellText(TRow::Columns(), m_listRows[row], column, *m_pExplored);
    }
    double Share(std::size_t row, int column) const override {
        return CellShare(TRow::Columns(), m_listRows[row], column, *m_pExplored);
    }
    void Sort(std::vector<std::size_t>& order, int column, bool descending) const override {
        SortByKey(order, descending, [&](std::size_t row) {
            return CellKey(TRow::Columns(), m_listRows[row], column, *m_pExplored);
        });
    }

    std::vector<TRow> m_listRows;

private:
    const ExploredSession* m_pExplored = nullptr;
};

} // namespace carvelot
