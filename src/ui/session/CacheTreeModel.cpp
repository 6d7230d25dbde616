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
    if (!index.isValid() || m_pAnalysis == nullptr) {
        return nullptr;
    }
    const auto cache = index.internalId() == 0 ? static_cast<std::size_t>(index.row())
                                               : static_cast<std::size_t>(index.internalId() - 1);
    return &m_pAnalysis->m_caches[cache];
}

const CCacheAnalysis::CCache::CCacheOperation* CCacheTreeModel::Operation(const QModelIndex& index) const {
    if (!index.isValid() || m_pAnalysis == nullptr || index.internalId() == 0) {
        return nullptr;
    }
    return &Cache(index)->m_operations[static_cast<std::size_t>(index.row())];
}

QModelIndex CCacheTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent)) {
        return {};
    }
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : quintptr{0});
}

QModelIndex CCacheTreeModel::parent(const QModelIndex& index) const {
    return index.isValid() && index.internalId() != 0
               ? createIndex(static_cast<int>(index.internalId() - 1), 0, quintptr{0})
               : QModelIndex();
}

int CCacheTreeModel::rowCount(const QModelIndex& parent) const {
    if (m_pAnalysis == nullptr || parent.column() > 0 || Operation(parent) != nullptr) {
        return 0;
    }
    return static_cast<int>(parent.isValid() ? Cache(parent)->m_operations.size()
                                             : m_pAnalysis->m_caches.size());
}

QVariant CCacheTreeModel::data(const QModelIndex& index, int role) const {
    const CCacheAnalysis::CCache* cache = Cache(index);
    if (cache == nullptr) {
        return {};
    }
    const auto* operation = Operation(index);
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        const std::string text = operation != nullptr
                                     ? CCacheAnalysis::OperationText(m_pSession->m_listDetails, *operation)
                                     : CCacheAnalysis::CacheText(*cache);
        return role == Qt::DisplayRole ? NodeDisplayText(text) : NodeTipText(text);
    }
    if (role == Qt::DecorationRole) {
        return m_listImages.value(operation != nullptr ? operation->Image() : 0);
    }
    return {};
}

} // namespace carvelot
