// CacheDataView.h - the rows of a live cache, on the right of a cache browser window.
#pragma once

#include "cachebrowser/CacheDoc.h"
#include "ui/kit/ListCtrl.h"

namespace carvelot {

// Shows the document's rows in the columns that its structure makes: a cell is decoded when it is asked for.
class CCacheDataView : public CListCtrl, public ICacheDataView {
    Q_OBJECT

public:
    // Registers itself in the document and shows its columns.
    explicit CCacheDataView(CCacheDoc& cache);
    ~CCacheDataView() override;

    void SetColumns(std::vector<CColumnSpec> columns) override;
    void DeleteAllItems() override;
    void ShowNewItems() override;

private:
    CCacheDoc& m_cache;
    bool m_bNumbers = false; // rows without columns show their number in one
};

} // namespace carvelot
