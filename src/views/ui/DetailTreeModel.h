// DetailTreeModel.h - the call tree as a window shows it.
#pragma once

#include "views/DetailTree.h"

#include <QAbstractItemModel>
#include <QIcon>

#include <cstdint>

namespace carvelot {

// A view of a CDetailTree: it holds nothing of its own, and makes a text when one is drawn.
class CDetailTreeModel final : public QAbstractItemModel {
    Q_OBJECT

public:
    CDetailTreeModel(const CDetailTree& tree, QList<QIcon> listImages)
        : m_tree(tree), m_listImages(std::move(listImages)) {}

    // Around every change of the tree.
    void BeginChange() { beginResetModel(); }
    void EndChange() { endResetModel(); }

    // kRoot for an invalid index, and the other way round.
    CDetailTree::Node Node(const QModelIndex& index) const {
        return index.isValid() ? static_cast<std::uint32_t>(index.internalId()) * kUnspread : CDetailTree::kRoot;
    }
    QModelIndex IndexOf(CDetailTree::Node node) const;

    QModelIndex index(int nRow, int nColumn, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override { return rowCount(parent) > 0; }
    int columnCount(const QModelIndex&) const override { return 1; }
    QVariant data(const QModelIndex& index, int nRole = Qt::DisplayRole) const override;

private:
    // The toolkit keeps the nodes that are open in a table whose hash is little more than the identifier, and numbers
    // that follow one another crowd it. An odd factor and its inverse modulo 2^32 spread them out and bring them back.
    static constexpr std::uint32_t kSpread = 0x9E3779B1U;
    static constexpr std::uint32_t kUnspread = [] {
        std::uint32_t nInverse = kSpread;
        for (int n = 0; n < 5; ++n)
            nInverse *= 2U - kSpread * nInverse;
        return nInverse;
    }();
    static_assert(kSpread * kUnspread == 1U);
    QModelIndex IndexAt(int nRow, CDetailTree::Node node) const {
        return createIndex(nRow, 0, static_cast<quintptr>(node * kSpread));
    }

    const CDetailTree& m_tree;
    QList<QIcon> m_listImages;
};

} // namespace carvelot
