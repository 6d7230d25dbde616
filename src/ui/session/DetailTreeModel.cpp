#include "ui/session/DetailTreeModel.h"

#include "ui/kit/TreeCtrl.h"

#include <algorithm>

namespace carvelot {

void CDetailTreeModel::EndChange() {
    m_pFlat.reset();
    const auto nNodes = static_cast<CDetailTree::Node>(m_tree.NodeCount());
    // Parents stand before their children.
    CLargeVector<std::uint32_t> listDepths(nNodes);
    std::uint32_t nDeepest = 0;
    for (CDetailTree::Node node = 0; node < nNodes; ++node) {
        const CDetailTree::Node parent = m_tree.Parent(node);
        listDepths[node] = parent == CDetailTree::kRoot ? 0 : listDepths[parent] + 1;
        nDeepest = std::max(nDeepest, listDepths[node]);
    }
    if (nDeepest >= kDeepest) {
        auto pFlat = std::make_unique<CFlat>();
        pFlat->m_listParents.resize(nNodes);
        pFlat->m_listRows.resize(nNodes);
        for (CDetailTree::Node node = 0; node < nNodes; ++node) {
            const CDetailTree::Node parent = m_tree.Parent(node);
            if (listDepths[node] < kDeepest - 1) {
                pFlat->m_listParents[node] = parent;
                pFlat->m_listRows[node] = static_cast<std::uint32_t>(m_tree.Row(node));
                continue;
            }
            // The nearest ancestor that may have children on the screen.
            const CDetailTree::Node shown =
                listDepths[parent] == kDeepest - 2 ? parent : pFlat->m_listParents[parent];
            auto& listChildren = pFlat->m_mapChildren[shown];
            pFlat->m_listParents[node] = shown;
            pFlat->m_listRows[node] = static_cast<std::uint32_t>(listChildren.size());
            listChildren.push_back(node);
        }
        m_pFlat = std::move(pFlat);
    }
    endResetModel();
}

CDetailTree::Node CDetailTreeModel::Parent(CDetailTree::Node node) const {
    return m_pFlat != nullptr ? m_pFlat->m_listParents[node] : m_tree.Parent(node);
}

std::size_t CDetailTreeModel::Row(CDetailTree::Node node) const {
    return m_pFlat != nullptr ? m_pFlat->m_listRows[node] : m_tree.Row(node);
}

std::size_t CDetailTreeModel::ChildCount(CDetailTree::Node parent) const {
    if (m_pFlat != nullptr && parent != CDetailTree::kRoot) {
        if (const auto it = m_pFlat->m_mapChildren.find(parent); it != m_pFlat->m_mapChildren.end())
            return it->second.size();
        // A node below the last level: its children stand beside it.
        if (m_pFlat->m_mapChildren.contains(m_pFlat->m_listParents[parent]))
            return 0;
    }
    return m_tree.ChildCount(parent);
}

CDetailTree::Node CDetailTreeModel::Child(CDetailTree::Node parent, std::size_t nRow) const {
    if (m_pFlat != nullptr) {
        if (const auto it = m_pFlat->m_mapChildren.find(parent); it != m_pFlat->m_mapChildren.end())
            return it->second[nRow];
    }
    return m_tree.Child(parent, nRow);
}

QModelIndex CDetailTreeModel::IndexOf(CDetailTree::Node node) const {
    return node == CDetailTree::kRoot ? QModelIndex() : IndexAt(static_cast<int>(Row(node)), node);
}

QModelIndex CDetailTreeModel::index(int nRow, int nColumn, const QModelIndex& parent) const {
    if (nColumn != 0 || parent.column() > 0 || nRow < 0 || nRow >= rowCount(parent))
        return {};
    return IndexAt(nRow, Child(Node(parent), static_cast<std::size_t>(nRow)));
}

QModelIndex CDetailTreeModel::parent(const QModelIndex& index) const {
    return index.isValid() ? IndexOf(Parent(Node(index))) : QModelIndex();
}

int CDetailTreeModel::rowCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : static_cast<int>(ChildCount(Node(parent)));
}

QVariant CDetailTreeModel::data(const QModelIndex& index, int nRole) const {
    if (!index.isValid())
        return {};
    if (nRole == Qt::DisplayRole)
        return NodeDisplayText(m_tree.Text(Node(index)));
    if (nRole == Qt::ToolTipRole)
        return NodeTipText(m_tree.Text(Node(index)));
    if (nRole == Qt::DecorationRole)
        return m_listImages.value(m_tree.Image(Node(index)));
    return {};
}

} // namespace carvelot
