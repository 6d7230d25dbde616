// DetailTreeModel.h - the call tree as a window shows it.
#pragma once

#include "views/DetailTree.h"

#include <QAbstractItemModel>
#include <QIcon>

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
        return index.isValid() ? static_cast<CDetailTree::Node>(index.internalId()) : CDetailTree::kRoot;
    }
    QModelIndex IndexOf(CDetailTree::Node node) const;

    QModelIndex index(int nRow, int nColumn, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override { return rowCount(parent) > 0; }
    int columnCount(const QModelIndex&) const override { return 1; }
    QVariant data(const QModelIndex& index, int nRole = Qt::DisplayRole) const override;

private:
    const CDetailTree& m_tree;
    QList<QIcon> m_listImages;
};

} // namespace carvelot
