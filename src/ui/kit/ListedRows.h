// ListedRows.h - rows behind a table of columns and the list control that shows them.
#pragma once

#include "text/RowSource.h"
#include "ui/kit/ListCtrl.h"

#include <utility>

namespace carvelot {

// The columns are those of the row's own table. TSource is what holds the rows and makes their cells.
template <class TRow, class TSource = CRowSource<TRow>> class CListedRows {
public:
    CListCtrl& List() { return *m_pList; }
    // The row of the source that a row of the list shows.
    std::size_t SourceRow(int row) const { return m_pList->Model().SourceRow(row); }
    const TRow& RowAt(int row) const { return m_rows.m_listRows[SourceRow(row)]; }
    void ClearRows() {
        m_pList->Fill(nullptr);
        m_rows.Clear();
    }
    // In the place of all rows.
    template <class... TRows> void ShowRows(TRows&&... rows) {
        ClearRows();
        m_rows.Show(std::forward<TRows>(rows)...);
        m_pList->Fill(&m_rows);
    }

protected:
    template <class... TArguments>
    explicit CListedRows(TArguments&&... arguments) : m_rows(std::forward<TArguments>(arguments)...) {}
    ~CListedRows() = default;

    TSource m_rows;
    CListCtrl* m_pList = nullptr;
};

// A list control with its rows, for a window that is no pane.
template <class TRow, class TSource = CRowSource<TRow>>
class CRowList : public CListedRows<TRow, TSource>, public CListCtrl {
public:
    // What follows the parent is for the source of the rows.
    template <class... TArguments>
    CRowList(const QString& accessibleName, QWidget* parent, TArguments&&... arguments)
        : CListedRows<TRow, TSource>(std::forward<TArguments>(arguments)...),
          CListCtrl(SpecsOf(TRow::Columns()), accessibleName, parent) {
        this->m_pList = this;
    }
};

} // namespace carvelot
