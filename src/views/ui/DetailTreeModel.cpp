#include "views/ui/DetailTreeModel.h"

#include "views/ui/TreeCtrl.h"

namespace carvelot {

QModelIndex CDetailTreeModel::IndexOf(CDetailTree::Node node) const {
    return node == CDetailTree::kRoot ? QModelIndex() : IndexAt(static_cast<int>(m_tree.Row(node)), node);
}

QModelIndex CDetailTreeModel::index(int nRow, int nColumn, const QModelIndex& parent) const {
    if (nColumn != 0 || parent.column() > 0 || nRow < 0 || nRow >= rowCount(parent))
        return {};
    return IndexAt(nRow, m_tree.Child(Node(parent), static_cast<std::size_t>(nRow)));
}

QModelIndex CDetailTreeModel::parent(const QModelIndex& index) const {
    return index.isValid() ? IndexOf(m_tree.Parent(Node(index))) : QModelIndex();
}

int CDetailTreeModel::rowCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : static_cast<int>(m_tree.ChildCount(Node(parent)));
}

QVariant CDetailTreeModel::data(const QModelIndex& index, int nRole) const {
    if (!index.isValid())
        return {};
    if (nRole == Qt::DisplayRole)
        return NodeDisplayText(m_tree.Text(Node(index)));
    if (nRole == Qt::DecorationRole)
        return m_listImages.value(m_tree.Image(Node(index)));
    return {};
}

} // namespace carvelot
