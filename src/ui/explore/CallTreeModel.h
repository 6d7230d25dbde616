// CallTreeModel.h - the call tree of a profile as a tree view shows it.
#pragma once

#include "explore/lists/CallTreeRows.h"

#include <QAbstractItemModel>

namespace carvelot {

class CCallTreeModel final : public QAbstractItemModel {
    Q_OBJECT

public:
    using QAbstractItemModel::QAbstractItemModel;

    // The rows belong to the caller; null shows none.
    void Show(const CCallTreeRows* rows);
    CCallTreeRows::Node Node(const QModelIndex& index) const {
        return index.isValid() ? static_cast<std::uint32_t>(index.internalId()) * kUnspread
                               : CCallTreeRows::kRoot;
    }

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override { return rowCount(parent) > 0; }
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    // The toolkit keeps the nodes that are open in a table whose hash is little more than the identifier, and
    // numbers that follow one another crowd it: an odd factor and its inverse modulo 2^32.
    static constexpr std::uint32_t kSpread = 0x9E3779B1U;
    static constexpr std::uint32_t kUnspread = 0x0E8B2F51U;
    static_assert(kSpread * kUnspread == 1U);

    const CCallTreeRows* m_pRows = nullptr;
};

} // namespace carvelot
