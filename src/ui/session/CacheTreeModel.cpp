#include "ui/session/CacheTreeModel.h"

#include "ui/kit/TreeCtrl.h"

namespace carvelot {

void CCacheTreeModel::Show(const CCarvelotDoc& session, const CCacheAnalysis& analysis) {
    beginResetModel();
    m_pSession = &session;
    m_pAnalysis = &analysis;
    endResetModel();
}

void CCacheTreeModel::Clear() {
    beginResetModel();
    m_pSession = nullptr;
    m_pAnalysis = nullptr;
    endResetModel();
}

const CCacheAnalysis::CCache* CCacheTreeModel::Cache(const QModelIndex& index) const {
    if (!index.isValid() || m_pAnalysis == nullptr)
        return nullptr;
    const auto nCache = index.internalId() == 0 ? static_cast<std::size_t>(index.row())
                                                : static_cast<std::size_t>(index.internalId() - 1);
    return &m_pAnalysis->m_caches[nCache];
}

const CCacheAnalysis::CCache::CCacheOperation* CCacheTreeModel::Operation(const QModelIndex& index) const {
    if (!index.isValid() || m_pAnalysis == nullptr || index.internalId() == 0)
        return nullptr;
    return &Cache(index)->m_operations[static_cast<std::size_t>(index.row())];
}

QModelIndex CCacheTreeModel::index(int nRow, int nColumn, const QModelIndex& parent) const {
    if (!hasIndex(nRow, nColumn, parent))
        return {};
    return createIndex(nRow, nColumn,
                       parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : quintptr{0});
}

QModelIndex CCacheTreeModel::parent(const QModelIndex& index) const {
    return index.isValid() && index.internalId() != 0
               ? createIndex(static_cast<int>(index.internalId() - 1), 0, quintptr{0})
               : QModelIndex();
}

int CCacheTreeModel::rowCount(const QModelIndex& parent) const {
    if (m_pAnalysis == nullptr || parent.column() > 0 || Operation(parent) != nullptr)
        return 0;
    return static_cast<int>(parent.isValid() ? Cache(parent)->m_operations.size()
                                             : m_pAnalysis->m_caches.size());
}

QVariant CCacheTreeModel::data(const QModelIndex& index, int nRole) const {
    const CCacheAnalysis::CCache* pCache = Cache(index);
    if (pCache == nullptr)
        return {};
    const auto* pOperation = Operation(index);
    if (nRole == Qt::DisplayRole || nRole == Qt::ToolTipRole) {
        const std::string strText =
            pOperation != nullptr ? CCacheAnalysis::OperationText(m_pSession->m_listDetails, *pOperation)
                                  : CCacheAnalysis::CacheText(*pCache);
        return nRole == Qt::DisplayRole ? NodeDisplayText(strText) : NodeTipText(strText);
    }
    if (nRole == Qt::DecorationRole)
        return m_listImages.value(pOperation != nullptr ? pOperation->Image() : 0);
    return {};
}

} // namespace carvelot
