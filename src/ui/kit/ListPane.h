// ListPane.h - a pane that is a list: rows behind a table of columns, below a caption or below parts of its
// own.
#pragma once

#include "ui/kit/DockablePane.h"
#include "ui/kit/ListedRows.h"

#include <algorithm>
#include <utility>

namespace carvelot {

template <class TRow, class TSource = CRowSource<TRow>>
class CListPane : public CDockablePane, public CListedRows<TRow, TSource> {
    using CRows = CListedRows<TRow, TSource>;

public:
    void ClearList() { CRows::ClearRows(); }
    QWidget* MainControl() const override { return m_pList; }

protected:
    // What follows the pane's title, name and size is for its source.
    template <class... TArguments>
    CListPane(const QString& title, const QString& name, QSize initial, TArguments&&... arguments)
        : CDockablePane(title, name, initial), CRows(std::forward<TArguments>(arguments)...) {}
    // To be called when all that stands above the list is there: the Tab key goes on to it from there.
    void AddList() { m_pList = new CListCtrl(SpecsOf(TRow::Columns()), windowTitle(), Client()); }

    void OnSize(int width, int height) override {
        const int top = LayOutAboveList(width);
        m_pList->setGeometry(0, top, width, std::max(0, height - top));
    }
    // Lays out what stands above the list and says where the list begins.
    virtual int LayOutAboveList(int width) { return LayOutCaption(width); }

    using CRows::m_pList;
    using CRows::m_rows;
};

} // namespace carvelot
