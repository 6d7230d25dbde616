#include "ui/kit/ListCtrl.h"

#include "text/Release.h"
#include "ui/kit/Text.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <limits>
#include <numeric>

namespace carvelot {

CListModel::CListModel(std::span<const CColumnSpec> columns) { SetColumns(columns); }

void CListModel::SetColumns(std::span<const CColumnSpec> columns) {
    beginResetModel();
    m_pSource = nullptr;
    m_nRows = 0;
    Release(m_listOrder);
    m_listColumns.clear();
    for (const CColumnSpec& column : columns) {
        m_listColumns.push_back(
            {ToQString(column.m_strTitle), column.m_nWidth,
             (column.m_nAlign == EAlign::Right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter,
             column.m_bSigned});
    }
    m_bSortable = std::ranges::any_of(columns, &CColumnSpec::m_bSorts);
    endResetModel();
}

void CListModel::TakeNewRows(const CListSource& source) {
    const auto rows =
        static_cast<int>(std::min<std::size_t>(source.RowCount(), std::numeric_limits<int>::max()));
    if (rows <= m_nRows) {
        return;
    }
    beginInsertRows({}, m_nRows, rows - 1);
    m_pSource = &source;
    m_nRows = rows;
    endInsertRows();
}

void CListModel::DropRows() {
    if (m_nRows == 0) {
        return;
    }
    beginRemoveRows({}, 0, m_nRows - 1);
    m_pSource = nullptr;
    m_nRows = 0;
    Release(m_listOrder);
    endRemoveRows();
}

void CListModel::BeginFill() {
    beginResetModel();
    m_pSource = nullptr;
    m_nRows = 0;
    Release(m_listOrder);
    endResetModel();
}

void CListModel::EndFill(const CListSource* source) {
    beginResetModel();
    m_pSource = source;
    m_nRows = source != nullptr ? static_cast<int>(source->RowCount()) : 0;
    Release(m_listOrder);
    endResetModel();
}

void CListModel::SetColumnTitle(int column, const QString& title) {
    m_listColumns[static_cast<std::size_t>(column)].m_strTitle = title;
    emit headerDataChanged(Qt::Horizontal, column, column);
}

int CListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_nRows; }

int CListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_listColumns.size());
}

QVariant CListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || m_pSource == nullptr) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return ToQString(m_pSource->Text(SourceRow(index.row()), index.column()));
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(m_listColumns[static_cast<std::size_t>(index.column())].m_nAlign);
    }
    if (role == kShareRole) {
        return m_pSource->Share(SourceRow(index.row()), index.column());
    }
    if (role == kSignedShareRole) {
        return m_listColumns[static_cast<std::size_t>(index.column())].m_bSigned;
    }
    return {};
}

QVariant CListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) {
        return {};
    }
    const CColumn& column = m_listColumns[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) {
        return column.m_strTitle;
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(column.m_nAlign);
    }
    return {};
}

void CListModel::sort(int column, Qt::SortOrder order) {
    if (m_pSource == nullptr || !m_bSortable || column < 0 || column >= columnCount()) {
        return;
    }
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<std::size_t> sourceRows;
    for (const QModelIndex& index : before) {
        sourceRows.push_back(SourceRow(index.row()));
    }

    if (m_listOrder.empty()) {
        m_listOrder.resize(static_cast<std::size_t>(m_nRows));
        std::iota(m_listOrder.begin(), m_listOrder.end(), std::size_t{0});
    }
    m_pSource->Sort(m_listOrder, column, order == Qt::DescendingOrder);

    if (!before.isEmpty()) {
        std::vector<int> places(m_listOrder.size());
        for (std::size_t n = 0; n < m_listOrder.size(); ++n) {
            places[m_listOrder[n]] = static_cast<int>(n);
        }
        QModelIndexList after;
        for (qsizetype n = 0; n < before.size(); ++n) {
            after << index(places[sourceRows[static_cast<std::size_t>(n)]], before[n].column());
        }
        changePersistentIndexList(before, after);
    }
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

CListCtrl::CListCtrl(std::span<const CColumnSpec> columns, const QString& accessibleName, QWidget* parent,
                     qsizetype mostDrawn)
    : CReportView(accessibleName, parent, mostDrawn), m_model(columns) {
    setModel(&m_model);
    setSelectionMode(QAbstractItemView::SingleSelection);
    header()->setSectionsClickable(true);
    header()->setSortIndicatorShown(false);
    TakeWidths();
    connect(header(), &QHeaderView::sectionClicked, this, &CListCtrl::OnHeaderClicked);
}

void CListCtrl::Fill(const CListSource* source) {
    setUpdatesEnabled(false);
    m_nSortColumn = -1;
    header()->setSortIndicatorShown(false);
    m_model.EndFill(source);
    setUpdatesEnabled(true);
}

void CListCtrl::SetColumns(std::span<const CColumnSpec> columns) {
    m_nSortColumn = -1;
    header()->setSortIndicatorShown(false);
    m_model.SetColumns(columns);
    TakeWidths();
}

void CListCtrl::TakeWidths() {
    for (int column = 0; column < m_model.columnCount(); ++column) {
        SetColumnWidth(column, m_model.ColumnWidth(column));
    }
}

void CListCtrl::SortBy(int column, Qt::SortOrder order) {
    m_nSortColumn = column;
    m_nSortOrder = order;
    header()->setSortIndicatorShown(true);
    header()->setSortIndicator(column, order);
    m_model.sort(column, order);
}

void CListCtrl::OnHeaderClicked(int column) {
    if (!m_model.IsSortable()) {
        return;
    }
    const bool reverse = column == m_nSortColumn && m_nSortOrder == Qt::AscendingOrder;
    SortBy(column, reverse ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void CListCtrl::ShowAt(int selected, int top) {
    setAutoScroll(false);
    if (selected >= 0) {
        selectionModel()->setCurrentIndex(m_model.index(selected, 0),
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    setAutoScroll(true);
    executeDelayedItemsLayout();
    updateGeometries();
    scrollTo(m_model.index(top, 0), PositionAtTop);
}

int CListCtrl::SelectedRow() const {
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

std::vector<int> CListCtrl::SelectedRows() const {
    std::vector<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows()) {
        rows.push_back(index.row());
    }
    std::ranges::sort(rows);
    return rows;
}

void CListCtrl::SetColumnWidth(int column, int width) {
    header()->setSectionHidden(column, width == 0);
    if (width != 0) {
        header()->resizeSection(column, width);
    }
}

void CListCtrl::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if ((m_bEnterOpens ? enter : event->key() == Qt::Key_Space) && m_fnOpenRow && SelectedRow() >= 0) {
        m_fnOpenRow(SelectedRow());
        event->accept();
        return;
    }
    CReportView::keyPressEvent(event);
}

void CListCtrl::mouseDoubleClickEvent(QMouseEvent* event) {
    CReportView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && m_fnOpenRow && SelectedRow() >= 0 &&
        indexAt(event->position().toPoint()).isValid()) {
        m_fnOpenRow(SelectedRow());
    }
}

} // namespace carvelot
