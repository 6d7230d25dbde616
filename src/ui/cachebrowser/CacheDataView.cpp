#include "ui/cachebrowser/CacheDataView.h"

#include "text/Columns.h"
#include "ui/kit/Text.h"
#include "ui/kit/TreeCtrl.h"

#include <QHeaderView>

#include <algorithm>
#include <limits>

namespace carvelot {

namespace {

constexpr int kNumberColumnWidth = 100;
constexpr qsizetype kMostDrawn = 260; // of a cell that may be as long as the row

} // namespace

void CCacheDataModel::SetColumns(std::vector<CListColumn> listColumns) {
    beginResetModel();
    m_nRows = 0;
    m_bNumbers = false;
    m_listColumns = std::move(listColumns);
    endResetModel();
}

void CCacheDataModel::DeleteAllItems() {
    if (m_nRows == 0)
        return;
    beginRemoveRows({}, 0, m_nRows - 1);
    m_nRows = 0;
    endRemoveRows();
    if (m_bNumbers) {
        beginRemoveColumns({}, 0, 0);
        m_bNumbers = false;
        endRemoveColumns();
    }
}

void CCacheDataModel::ShowNewItems() {
    const auto nRows =
        static_cast<int>(std::min<std::size_t>(m_cache.Rows().Size(), std::numeric_limits<int>::max()));
    if (nRows <= m_nRows)
        return;
    if (m_listColumns.empty() && !m_bNumbers) {
        beginInsertColumns({}, 0, 0);
        m_bNumbers = true;
        endInsertColumns();
    }
    beginInsertRows({}, m_nRows, nRows - 1);
    m_nRows = nRows;
    endInsertRows();
}

int CCacheDataModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_nRows; }

int CCacheDataModel::columnCount(const QModelIndex& parent) const {
    if (parent.isValid())
        return 0;
    return m_bNumbers ? 1 : static_cast<int>(m_listColumns.size());
}

QVariant CCacheDataModel::data(const QModelIndex& index, int nRole) const {
    if (!index.isValid() || nRole != Qt::DisplayRole)
        return {};
    return ToQString(WithReplacements(m_cache.CellText(static_cast<std::size_t>(index.row()),
                                                       static_cast<std::size_t>(index.column()),
                                                       m_cache.m_pfnFormatMathNumeric)));
}

QVariant CCacheDataModel::headerData(int nSection, Qt::Orientation nOrientation, int nRole) const {
    if (nOrientation != Qt::Horizontal || nSection < 0 || nSection >= columnCount())
        return {};
    if (nRole == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter));
    if (nRole != Qt::DisplayRole || m_bNumbers)
        return {};
    return NodeDisplayText(WithReplacements(m_listColumns[static_cast<std::size_t>(nSection)].m_strTitle));
}

CCacheDataView::CCacheDataView(CCacheDoc& cache)
    : CReportView(tr("Cache rows"), nullptr, kMostDrawn), m_cache(cache), m_model(cache) {
    m_cache.m_pDataView = this;
    setObjectName(QStringLiteral("CacheRows"));
    setModel(&m_model);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    header()->setDefaultSectionSize(kNumberColumnWidth);
    m_cache.m_cacheDS.BuildDataColumns(*this);
}

CCacheDataView::~CCacheDataView() {
    if (m_cache.m_pDataView == this)
        m_cache.m_pDataView = nullptr;
    setModel(nullptr); // the model goes before the view
}

void CCacheDataView::SetColumns(std::vector<CListColumn> listColumns) {
    std::vector<int> listWidths;
    for (const CListColumn& column : listColumns)
        listWidths.push_back(column.m_nWidth);
    m_model.SetColumns(std::move(listColumns));
    for (std::size_t n = 0; n < listWidths.size(); ++n)
        header()->resizeSection(static_cast<int>(n), listWidths[n]);
}

} // namespace carvelot
