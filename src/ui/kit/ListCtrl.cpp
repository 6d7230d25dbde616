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
             (column.m_nAlign == EAlign::Right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter});
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

void CListModel::EndFill(const CListSource* pSource) {
    beginResetModel();
    m_pSource = pSource;
    m_nRows = pSource != nullptr ? static_cast<int>(pSource->RowCount()) : 0;
    Release(m_listOrder);
    endResetModel();
}

void CListModel::SetColumnTitle(int nColumn, const QString& strTitle) {
    m_listColumns[static_cast<std::size_t>(nColumn)].m_strTitle = strTitle;
    emit headerDataChanged(Qt::Horizontal, nColumn, nColumn);
}

int CListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_nRows; }

int CListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_listColumns.size());
}

QVariant CListModel::data(const QModelIndex& index, int nRole) const {
    if (!index.isValid() || m_pSource == nullptr)
        return {};
    if (nRole == Qt::DisplayRole)
        return ToQString(m_pSource->Text(SourceRow(index.row()), index.column()));
    if (nRole == Qt::TextAlignmentRole)
        return QVariant::fromValue(m_listColumns[static_cast<std::size_t>(index.column())].m_nAlign);
    return {};
}

QVariant CListModel::headerData(int nSection, Qt::Orientation nOrientation, int nRole) const {
    if (nOrientation != Qt::Horizontal || nSection < 0 || nSection >= columnCount())
        return {};
    const CColumn& column = m_listColumns[static_cast<std::size_t>(nSection)];
    if (nRole == Qt::DisplayRole)
        return column.m_strTitle;
    if (nRole == Qt::TextAlignmentRole)
        return QVariant::fromValue(column.m_nAlign);
    return {};
}

void CListModel::sort(int nColumn, Qt::SortOrder nOrder) {
    if (m_pSource == nullptr || !m_bSortable || nColumn < 0 || nColumn >= columnCount())
        return;
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList listBefore = persistentIndexList();
    std::vector<std::size_t> listSourceRows;
    for (const QModelIndex& index : listBefore)
        listSourceRows.push_back(SourceRow(index.row()));

    if (m_listOrder.empty()) {
        m_listOrder.resize(static_cast<std::size_t>(m_nRows));
        std::iota(m_listOrder.begin(), m_listOrder.end(), std::size_t{0});
    }
    m_pSource->Sort(m_listOrder, nColumn, nOrder == Qt::DescendingOrder);

    if (!listBefore.isEmpty()) {
        std::vector<int> listPlaces(m_listOrder.size());
        for (std::size_t n = 0; n < m_listOrder.size(); ++n)
            listPlaces[m_listOrder[n]] = static_cast<int>(n);
        QModelIndexList listAfter;
        for (qsizetype n = 0; n < listBefore.size(); ++n)
            listAfter << index(listPlaces[listSourceRows[static_cast<std::size_t>(n)]],
                               listBefore[n].column());
        changePersistentIndexList(listBefore, listAfter);
    }
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

CListCtrl::CListCtrl(std::span<const CColumnSpec> columns, const QString& strAccessibleName, QWidget* pParent,
                     qsizetype nMostDrawn)
    : CReportView(strAccessibleName, pParent, nMostDrawn), m_model(columns) {
    setModel(&m_model);
    setSelectionMode(QAbstractItemView::SingleSelection);
    header()->setSectionsClickable(true);
    header()->setSortIndicatorShown(false);
    TakeWidths();
    connect(header(), &QHeaderView::sectionClicked, this, &CListCtrl::OnHeaderClicked);
}

void CListCtrl::Fill(const CListSource* pSource) {
    setUpdatesEnabled(false);
    m_nSortColumn = -1;
    header()->setSortIndicatorShown(false);
    m_model.EndFill(pSource);
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

void CListCtrl::SortBy(int nColumn, Qt::SortOrder nOrder) {
    m_nSortColumn = nColumn;
    m_nSortOrder = nOrder;
    header()->setSortIndicatorShown(true);
    header()->setSortIndicator(nColumn, nOrder);
    m_model.sort(nColumn, nOrder);
}

void CListCtrl::OnHeaderClicked(int nColumn) {
    if (!m_model.IsSortable())
        return;
    const bool bReverse = nColumn == m_nSortColumn && m_nSortOrder == Qt::AscendingOrder;
    SortBy(nColumn, bReverse ? Qt::DescendingOrder : Qt::AscendingOrder);
}

int CListCtrl::SelectedRow() const {
    const QModelIndexList listRows = selectionModel()->selectedRows();
    return listRows.isEmpty() ? -1 : listRows.constFirst().row();
}

std::vector<int> CListCtrl::SelectedRows() const {
    std::vector<int> listRows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        listRows.push_back(index.row());
    std::ranges::sort(listRows);
    return listRows;
}

void CListCtrl::SetColumnWidth(int nColumn, int nWidth) {
    header()->setSectionHidden(nColumn, nWidth == 0);
    if (nWidth != 0)
        header()->resizeSection(nColumn, nWidth);
}

void CListCtrl::keyPressEvent(QKeyEvent* pEvent) {
    const bool bEnter = pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter;
    if ((m_bEnterOpens ? bEnter : pEvent->key() == Qt::Key_Space) && m_fnOpenRow && SelectedRow() >= 0) {
        m_fnOpenRow(SelectedRow());
        pEvent->accept();
        return;
    }
    CReportView::keyPressEvent(pEvent);
}

void CListCtrl::mouseDoubleClickEvent(QMouseEvent* pEvent) {
    CReportView::mouseDoubleClickEvent(pEvent);
    if (pEvent->button() == Qt::LeftButton && m_fnOpenRow && SelectedRow() >= 0 &&
        indexAt(pEvent->position().toPoint()).isValid())
        m_fnOpenRow(SelectedRow());
}

} // namespace carvelot
