// ListCtrl.h - the report list of the panes: one model and one view for all of them.
#pragma once

#include "text/ListSource.h"
#include "ui/kit/ReportView.h"

#include <QAbstractTableModel>

#include <functional>
#include <span>
#include <vector>

namespace carvelot {

// Shows a CListSource in the order of its rows or sorted by a column. The source belongs to the caller and
// outlives its time in the model.
class CListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit CListModel(std::span<const CColumnSpec> columns);

    // Call BeginFill before the source's rows change and EndFill after: rows then stand in the source's own
    // order.
    void BeginFill();
    void EndFill(const CListSource* pSource);
    void SetColumnTitle(int nColumn, const QString& strTitle);
    // Sorting is on unless a list keeps its rows in the order of the fill.
    void SetSortable(bool bSortable) { m_bSortable = bSortable; }
    bool IsSortable() const { return m_bSortable; }
    // Where right alignment suits a column of numbers.
    void SetRightAligned(int nColumn) { m_listColumns[static_cast<std::size_t>(nColumn)].m_bRight = true; }
    // The source's row that stands in a list row.
    std::size_t SourceRow(int nRow) const {
        const auto nAt = static_cast<std::size_t>(nRow);
        return m_listOrder.empty() ? nAt : m_listOrder[nAt];
    }
    int ColumnWidth(int nColumn) const { return m_listColumns[static_cast<std::size_t>(nColumn)].m_nWidth; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int nRole = Qt::DisplayRole) const override;
    QVariant headerData(int nSection, Qt::Orientation nOrientation, int nRole) const override;
    // Ascending by the source's comparison, or exactly its reverse; rows that compare equal keep their order.
    void sort(int nColumn, Qt::SortOrder nOrder) override;

private:
    struct CColumn {
        QString m_strTitle;
        int m_nWidth = 0;
        bool m_bRight = false;
    };

    std::vector<CColumn> m_listColumns;
    const CListSource* m_pSource = nullptr;
    int m_nRows = 0;
    std::vector<std::size_t>
        m_listOrder; // empty until the rows are sorted: they stand as the source has them
    bool m_bSortable = true;
};

// Report view with full-row selection that stays visible without the focus. A click on a header sorts by that
// column, a second one turns the order round; a fill forgets the sorting.
class CListCtrl : public CReportView {
    Q_OBJECT

public:
    CListCtrl(std::span<const CColumnSpec> columns, const QString& strAccessibleName, QWidget* pParent);

    CListModel& Model() { return m_model; }
    // Shows other rows; null empties the list.
    void Fill(const CListSource* pSource);
    void SortBy(int nColumn, Qt::SortOrder nOrder);
    // The list row that is selected, or -1.
    int SelectedRow() const;
    std::vector<int> SelectedRows() const;
    // Device-independent pixels, whatever the title's font; 0 hides the column.
    void SetColumnWidth(int nColumn, int nWidth);
    // A list that is not on the screen has its rows nowhere: the toolkit tells screen readers by this what
    // shows.
    QRect visualRect(const QModelIndex& index) const override {
        return isVisible() ? QTreeView::visualRect(index) : QRect();
    }

    // Answers a double click on a row, and its key: Enter, or the space bar where Enter is wanted for
    // something else.
    std::function<void(int nRow)> m_fnOpenRow;
    bool m_bEnterOpens = true;

protected:
    void keyPressEvent(QKeyEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;

private:
    void OnHeaderClicked(int nColumn);

    CListModel m_model;
    int m_nSortColumn = -1;
    Qt::SortOrder m_nSortOrder = Qt::AscendingOrder;
};

} // namespace carvelot
