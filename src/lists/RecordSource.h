// The rows of a session's records (PaneRows.h) as a list shows them.
#pragma once

#include "lists/PaneRows.h"
#include "text/Release.h"

#include <utility>

namespace carvelot {

// The rows must be cleared before the records go.
template <class TRow> class CRecordSource final : public CListSource {
public:
    void Show(const CCarvelotDoc& session, std::vector<TRow> rows) {
        m_pSession = &session;
        m_listRows = std::move(rows);
    }
    void Clear() {
        m_pSession = nullptr;
        Release(m_listRows);
    }
    // Whose records the rows are; null when there are none.
    const CCarvelotDoc* Session() const { return m_pSession; }

    std::size_t RowCount() const override { return m_listRows.size(); }
    std::string Text(std::size_t row, int column) const override {
        return CellText(m_listRows[row], column, *m_pSession);
    }
    void Sort(std::vector<std::size_t>& order, int column, bool descending) const override {
        if (m_pSession != nullptr) {
            SortOrder(*m_pSession, m_listRows, order, column, descending);
        }
    }

    std::vector<TRow> m_listRows;

private:
    const CCarvelotDoc* m_pSession = nullptr;
};

} // namespace carvelot
