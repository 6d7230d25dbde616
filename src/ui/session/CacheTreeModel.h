// CacheTreeModel.h - the caches of a process and what was done to them, as a tree shows them.
#pragma once

#include "analysis/CacheAnalysis.h"
#include "session/CarvelotDoc.h"

#include <QAbstractItemModel>
#include <QIcon>

namespace carvelot {

// A view of a cache analysis. It must be cleared before that goes.
class CCacheTreeModel final : public QAbstractItemModel {
    Q_OBJECT

public:
    explicit CCacheTreeModel(QList<QIcon> images) : m_listImages(std::move(images)) {}

    void Show(const CCarvelotDoc& session, const CCacheAnalysis& analysis);
    void Clear();
    // The analysis has grown at its ends.
    void ShowGrowth() {
        emit layoutAboutToBeChanged();
        emit layoutChanged();
    }
    // Whose caches are shown; null when there are none.
    const CCarvelotDoc* Session() const { return m_pSession; }

    // The cache of a node: its own or that of the operation's parent.
    const CCacheAnalysis::CCache* Cache(const QModelIndex& index) const;
    // The operation of a node; null for a cache.
    const CCacheAnalysis::CCache::CCacheOperation* Operation(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex&) const override { return 1; }
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    // An index carries the row of its cache plus 1, or 0 at the top.
    QList<QIcon> m_listImages;
    const CCarvelotDoc* m_pSession = nullptr;
    const CCacheAnalysis* m_pAnalysis = nullptr;
};

} // namespace carvelot
