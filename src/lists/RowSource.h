// The rows of PaneRows.h as a list shows them.
#pragma once

#include "lists/PaneRows.h"
#include "text/ListSource.h"
#include "text/Release.h"

#include <utility>

namespace carvelot {

// Rows that have their texts.
template <class TRow> class CRowSource final : public CListSource {
public:
    std::size_t RowCount() const override { return m_listRows.size(); }
    std::string Text(std::size_t nRow, int nColumn) const override { return m_listRows[nRow].Text(nColumn); }
    void Sort(std::vector<std::size_t>& listOrder, int nColumn, bool bDescending) const override {
        SortByKey(listOrder, bDescending, [&](std::size_t nRow) { return m_listRows[nRow].Key(nColumn); });
    }

    void Clear() { Release(m_listRows); }

    std::vector<TRow> m_listRows;
};

// Rows of a session's records. They must be cleared before the records go.
template <class TRow> class CRecordSource final : public CListSource {
public:
    void Show(const CCarvelotDoc& session, std::vector<TRow> listRows) {
        m_pSession = &session;
        m_listRows = std::move(listRows);
    }
    void Clear() {
        m_pSession = nullptr;
        Release(m_listRows);
    }
    // Whose records the rows are; null when there are none.
    const CCarvelotDoc* Session() const { return m_pSession; }

    std::size_t RowCount() const override { return m_listRows.size(); }
    std::string Text(std::size_t nRow, int nColumn) const override {
        return m_listRows[nRow].Text(*m_pSession, nColumn);
    }
    void Sort(std::vector<std::size_t>& listOrder, int nColumn, bool bDescending) const override {
        if (m_pSession != nullptr)
            SortOrder(*m_pSession, m_listRows, listOrder, nColumn, bDescending);
    }

    std::vector<TRow> m_listRows;

private:
    const CCarvelotDoc* m_pSession = nullptr;
};

// The columns of a row type for a list control.
template <class TRow> std::vector<CColumnSpec> ColumnsOf() {
    std::vector<CColumnSpec> listColumns;
    for (const PaneColumn& column : TRow::Columns())
        listColumns.push_back({column.title.data(), column.width}); // titles are literals
    return listColumns;
}

} // namespace carvelot
