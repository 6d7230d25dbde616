#include "ui/explore/CallTreeModel.h"

#include "ui/kit/ReportView.h"
#include "ui/kit/Text.h"

namespace carvelot {

void CCallTreeModel::Show(const CCallTreeRows* rows) {
    beginResetModel();
    m_pRows = rows;
    endResetModel();
}

QModelIndex CCallTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || row >= rowCount(parent) || column < 0 || column >= columnCount(parent)) {
        return {};
    }
    const CCallTreeRows::Node node = m_pRows->Child(Node(parent), static_cast<std::uint32_t>(row));
    return createIndex(row, column, quintptr{node * kSpread});
}

QModelIndex CCallTreeModel::parent(const QModelIndex& index) const {
    if (!index.isValid()) {
        return {};
    }
    const CCallTreeRows::Node node = m_pRows->Parent(Node(index));
    return node == CCallTreeRows::kRoot
               ? QModelIndex()
               : createIndex(static_cast<int>(m_pRows->Row(node)), 0, quintptr{node * kSpread});
}

int CCallTreeModel::rowCount(const QModelIndex& parent) const {
    return m_pRows == nullptr || parent.column() > 0 ? 0
                                                     : static_cast<int>(m_pRows->ChildCount(Node(parent)));
}

int CCallTreeModel::columnCount(const QModelIndex& /*parent*/) const {
    return static_cast<int>(CallTreeRow::Columns().size());
}

QVariant CCallTreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const auto column = static_cast<std::size_t>(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return ToQString(CellText(m_pRows->Cells(Node(index)), index.column()));
    case Qt::TextAlignmentRole:
        return CallTreeRow::Columns()[column].m_nAlign == EAlign::Right
                   ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                   : QVariant();
    case kShareRole:
        return CellShare(CallTreeRow::Columns(), m_pRows->Cells(Node(index)), index.column());
    default:
        return {};
    }
}

QVariant CCallTreeModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount({})) {
        return {};
    }
    const auto& column = CallTreeRow::Columns()[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) {
        return ToQString(column.m_strTitle);
    }
    return role == Qt::TextAlignmentRole && column.m_nAlign == EAlign::Right
               ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
               : QVariant();
}

} // namespace carvelot
