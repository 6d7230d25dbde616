// DetailTreeModel.h - the call tree as a window shows it.
#pragma once

#include "trees/DetailTree.h"

#include <QAbstractItemModel>
#include <QIcon>

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace carvelot {

// A view of a CDetailTree: it holds nothing of its own, and makes a text when one is drawn.
//
// Every call that never returns leaves one level open, so a damaged log nests without end, and what lays a
// tree out on the screen goes down level by level. From kDeepest on, nodes stand one below the other in their
// order instead.
class CDetailTreeModel final : public QAbstractItemModel {
    Q_OBJECT

public:
    CDetailTreeModel(const CDetailTree& tree, QList<QIcon> images)
        : m_tree(tree), m_listImages(std::move(images)) {}

    static constexpr std::uint32_t kDeepest = 500; // levels

    // Around every change of the tree.
    void BeginChange() { beginResetModel(); }
    void EndChange();
    // Around a fill with the same records and more, in which open, current and selected nodes stay.
    void BeginGrowth();
    void EndGrowth();

    // kRoot for an invalid index, and the other way round.
    CDetailTree::Node Node(const QModelIndex& index) const {
        return index.isValid() ? static_cast<std::uint32_t>(index.internalId()) * kUnspread
                               : CDetailTree::kRoot;
    }
    QModelIndex IndexOf(CDetailTree::Node node) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override { return rowCount(parent) > 0; }
    int columnCount(const QModelIndex&) const override { return 1; }
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    // The toolkit keeps the nodes that are open in a table whose hash is little more than the identifier, and
    // numbers that follow one another crowd it. An odd factor and its inverse modulo 2^32 spread them out and
    // bring them back.
    static constexpr std::uint32_t kSpread = 0x9E3779B1U;
    static constexpr std::uint32_t kUnspread = [] {
        std::uint32_t inverse = kSpread;
        for (int n = 0; n < 5; ++n) {
            inverse *= 2U - kSpread * inverse;
        }
        return inverse;
    }();
    static_assert(kSpread * kUnspread == 1U);
    QModelIndex IndexAt(int row, CDetailTree::Node node) const {
        return createIndex(row, 0, quintptr{node * kSpread});
    }

    void Flatten();
    CDetailTree::Node Parent(CDetailTree::Node node) const;
    std::size_t Row(CDetailTree::Node node) const;
    std::size_t ChildCount(CDetailTree::Node parent) const;
    CDetailTree::Node Child(CDetailTree::Node parent, std::size_t row) const;

    // The tree as it is shown when it is too deep: parents and rows of all nodes, and the children of those
    // that have others than in the tree.
    struct CFlat {
        std::vector<CDetailTree::Node> m_listParents;
        std::vector<std::uint32_t> m_listRows;
        std::unordered_map<CDetailTree::Node, std::vector<CDetailTree::Node>>
            m_mapChildren; // of nodes of the last level
    };

    const CDetailTree& m_tree;
    std::unique_ptr<CFlat> m_pFlat; // null when the tree is shown as it is
    QList<QIcon> m_listImages;

    // Of the nodes that views keep, while the tree grows.
    QModelIndexList m_listKept;
    std::vector<CDetailTree::NodeKey> m_listKeptKeys;
};

} // namespace carvelot
