#include "ui/session/DetailTreeModel.h"

#include "ui/kit/TreeCtrl.h"

#include <algorithm>

namespace carvelot {

void CDetailTreeModel::EndChange() {
    Flatten();
    endResetModel();
}

void CDetailTreeModel::BeginGrowth() {
    emit layoutAboutToBeChanged();
    m_listKept = persistentIndexList();
    m_listKeptKeys.clear();
    for (const QModelIndex& index : m_listKept) {
        m_listKeptKeys.push_back(m_tree.KeyOf(Node(index)));
    }
}

void CDetailTreeModel::EndGrowth() {
    Flatten();
    std::vector<CDetailTree::Node> before;
    for (const QModelIndex& index : m_listKept) {
        before.push_back(Node(index));
    }
    QModelIndexList after;
    for (const CDetailTree::Node node : m_tree.NodesOf(m_listKeptKeys, before)) {
        after << IndexOf(node);
    }
    changePersistentIndexList(m_listKept, after);
    m_listKept.clear();
    emit layoutChanged();
}

void CDetailTreeModel::Flatten() {
    m_pFlat.reset();
    const auto nodes = static_cast<CDetailTree::Node>(m_tree.NodeCount());
    // Parents stand before their children.
    CLargeVector<std::uint32_t> depths(nodes);
    std::uint32_t deepest = 0;
    for (CDetailTree::Node node = 0; node < nodes; ++node) {
        const CDetailTree::Node parent = m_tree.Parent(node);
        depths[node] = parent == CDetailTree::kRoot ? 0 : depths[parent] + 1;
        deepest = std::max(deepest, depths[node]);
    }
    if (deepest >= kDeepest) {
        auto flat = std::make_unique<CFlat>();
        flat->m_listParents.resize(nodes);
        flat->m_listRows.resize(nodes);
        for (CDetailTree::Node node = 0; node < nodes; ++node) {
            const CDetailTree::Node parent = m_tree.Parent(node);
            if (depths[node] < kDeepest - 1) {
                flat->m_listParents[node] = parent;
                flat->m_listRows[node] = static_cast<std::uint32_t>(m_tree.Row(node));
                continue;
            }
            // The nearest ancestor that may have children on the screen.
            const CDetailTree::Node shown =
                depths[parent] == kDeepest - 2 ? parent : flat->m_listParents[parent];
            auto& children = flat->m_mapChildren[shown];
            flat->m_listParents[node] = shown;
            flat->m_listRows[node] = static_cast<std::uint32_t>(children.size());
            children.push_back(node);
        }
        m_pFlat = std::move(flat);
    }
}

CDetailTree::Node CDetailTreeModel::Parent(CDetailTree::Node node) const {
    return m_pFlat != nullptr ? m_pFlat->m_listParents[node] : m_tree.Parent(node);
}

std::size_t CDetailTreeModel::Row(CDetailTree::Node node) const {
    return m_pFlat != nullptr ? m_pFlat->m_listRows[node] : m_tree.Row(node);
}

std::size_t CDetailTreeModel::ChildCount(CDetailTree::Node parent) const {
    if (m_pFlat != nullptr && parent != CDetailTree::kRoot) {
        if (const auto it = m_pFlat->m_mapChildren.find(parent); it != m_pFlat->m_mapChildren.end()) {
            return it->second.size();
        }
        // A node below the last level: its children stand beside it.
        if (m_pFlat->m_mapChildren.contains(m_pFlat->m_listParents[parent])) {
            return 0;
        }
    }
    return m_tree.ChildCount(parent);
}

CDetailTree::Node CDetailTreeModel::Child(CDetailTree::Node parent, std::size_t row) const {
    if (m_pFlat != nullptr) {
        if (const auto it = m_pFlat->m_mapChildren.find(parent); it != m_pFlat->m_mapChildren.end()) {
            return it->second[row];
        }
    }
    return m_tree.Child(parent, row);
}

QModelIndex CDetailTreeModel::IndexOf(CDetailTree::Node node) const {
    return node == CDetailTree::kRoot ? QModelIndex() : IndexAt(static_cast<int>(Row(node)), node);
}

QModelIndex CDetailTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (column != 0 || parent.column() > 0 || row < 0 || row >= rowCount(parent)) {
        return {};
    }
    return IndexAt(row, Child(Node(parent), static_cast<std::size_t>(row)));
}

QModelIndex CDetailTreeModel::parent(const QModelIndex& index) const {
    return index.isValid() ? IndexOf(Parent(Node(index))) : QModelIndex();
}

int CDetailTreeModel::rowCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : static_cast<int>(ChildCount(Node(parent)));
}

QVariant CDetailTreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return NodeDisplayText(m_tree.Text(Node(index)));
    }
    if (role == Qt::ToolTipRole) {
        return NodeTipText(m_tree.Text(Node(index)));
    }
    if (role == Qt::DecorationRole) {
        return m_listImages.value(m_tree.Image(Node(index)));
    }
    return {};
}

} // namespace carvelot
