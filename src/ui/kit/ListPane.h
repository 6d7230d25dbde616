// ListPane.h - a pane that is a list: rows behind a table of columns, below a caption or below parts of its
// own.
#pragma once

#include "text/RowSource.h"
#include "ui/kit/DockablePane.h"
#include "ui/kit/ListCtrl.h"

#include <algorithm>
#include <utility>

namespace carvelot {

// The columns are those of the row's own table. TSource is what holds the rows and makes their cells.
template <class TRow, class TSource = CRowSource<TRow>> class CListPane : public CDockablePane {
public:
    CListCtrl& List() { return *m_pList; }
    void ClearList() {
        m_pList->Fill(nullptr);
        m_rows.Clear();
    }
    QWidget* MainControl() const override { return m_pList; }

protected:
    // What follows the pane's title, name and size is for its source.
    template <class... TArguments>
    CListPane(const QString& title, const QString& name, QSize initial, TArguments&&... arguments)
        : CDockablePane(title, name, initial), m_rows(std::forward<TArguments>(arguments)...) {}
    // To be called when all that stands above the list is there: the Tab key goes on to it from there.
    void AddList() { m_pList = new CListCtrl(SpecsOf(TRow::Columns()), windowTitle(), Client()); }

    // In the place of all rows.
    template <class... TRows> void ShowRows(TRows&&... rows) {
        ClearList();
        m_rows.Show(std::forward<TRows>(rows)...);
        m_pList->Fill(&m_rows);
    }
    std::size_t SourceRow(int row) const { return m_pList->Model().SourceRow(row); }

    void OnSize(int width, int height) override {
        const int top = LayOutAboveList(width);
        m_pList->setGeometry(0, top, width, std::max(0, height - top));
    }
    // Lays out what stands above the list and says where the list begins.
    virtual int LayOutAboveList(int width) { return LayOutCaption(width); }

    TSource m_rows;
    CListCtrl* m_pList = nullptr;
};

} // namespace carvelot
