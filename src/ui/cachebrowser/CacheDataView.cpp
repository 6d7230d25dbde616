#include "ui/cachebrowser/CacheDataView.h"

#include "text/TextColumns.h"
#include "ui/kit/Text.h"
#include "ui/kit/TreeCtrl.h"

#include <QHeaderView>

#include <utility>

namespace carvelot {

namespace {

constexpr qsizetype kMostDrawn = 260; // of a cell that may be as long as the row

} // namespace

CCacheDataView::CCacheDataView(CCacheDoc& cache)
    : CListCtrl({}, tr("Cache rows"), nullptr, kMostDrawn), m_cache(cache) {
    m_cache.m_pDataView = this;
    setObjectName(QStringLiteral("CacheRows"));
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    header()->setSectionsClickable(false);
    m_cache.m_cacheDS.BuildDataColumns(*this);
}

CCacheDataView::~CCacheDataView() {
    if (m_cache.m_pDataView == this) {
        m_cache.m_pDataView = nullptr;
    }
    Fill(nullptr); // the rows go before the list
}

void CCacheDataView::SetColumns(std::vector<CColumnSpec> columns) {
    m_bNumbers = false;
    for (CColumnSpec& column : columns) {
        column.m_strTitle = ToUtf8(NodeDisplayText(WithReplacements(column.m_strTitle)));
    }
    CListCtrl::SetColumns(columns);
}

void CCacheDataView::DeleteAllItems() {
    Model().DropRows();
    if (std::exchange(m_bNumbers, false)) {
        CListCtrl::SetColumns({});
    }
}

void CCacheDataView::ShowNewItems() {
    if (Model().columnCount() == 0 && m_cache.ListRows().RowCount() != 0) {
        const CColumnSpec number{{}, 100};
        CListCtrl::SetColumns({&number, 1});
        m_bNumbers = true;
    }
    Model().TakeNewRows(m_cache.ListRows());
}

} // namespace carvelot
