// ListedRows.h - rows behind a table of columns and the list control that shows them.
#pragma once

#include "text/RowSource.h"
#include "ui/kit/ListCtrl.h"

#include <QScrollBar>

#include <algorithm>
#include <functional>
#include <optional>
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
    // Around a fill with these rows and more: the order, the selected row and the one at the top stay. A list
    // that stood at its end stays at its end.
    void RefillInPlace(const std::function<void()>& fill) {
        CListCtrl& list = *m_pList;
        QScrollBar* const down = list.verticalScrollBar();
        const int before = down->value();
        const bool atEnd = before > 0 && before == down->maximum();
        const auto identityAt = [&](int row) {
            return row < 0 ? std::nullopt : std::optional(IdentityOf(RowAt(row)));
        };
        const auto selected = identityAt(list.SelectedRow());
        const auto top = identityAt(before == 0 ? -1 : list.indexAt({0, 0}).row());
        const int column = list.SortColumn();
        const Qt::SortOrder order = list.SortOrder();

        list.setUpdatesEnabled(false);
        fill();
        if (column >= 0) {
            list.SortBy(column, order);
        }
        int selectedRow = -1;
        int topRow = -1;
        for (int row = 0; row < list.Model().rowCount() && (selected || top); ++row) {
            const auto identity = IdentityOf(RowAt(row));
            selectedRow = selectedRow < 0 && selected == identity ? row : selectedRow;
            topRow = topRow < 0 && top == identity ? row : topRow;
        }
        list.ShowAt(selectedRow, atEnd ? list.Model().rowCount() - 1 : std::max(topRow, 0));
        list.setUpdatesEnabled(true);
    }

protected:
    template <class... TArguments>
    explicit CListedRows(TArguments&&... arguments) : m_rows(std::forward<TArguments>(arguments)...) {}
    ~CListedRows() = default;

    // By which a row is known again: its record, or its name.
    static auto IdentityOf(const TRow& row) {
        if constexpr (requires { row.m_pRecord; }) {
            return row.m_pRecord;
        } else if constexpr (requires { row.m_strTable; }) {
            return row.m_strTable;
        } else {
            return row.m_strName;
        }
    }

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
