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
// outlives its time in the model. Where no column sorts, the rows stay in the order of the fill.
class CListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit CListModel(std::span<const CColumnSpec> columns);

    // Call BeginFill before the source's rows change and EndFill after: rows then stand in the source's own
    // order.
    void BeginFill();
    void EndFill(const CListSource* source);
    // In the place of all columns; the rows go.
    void SetColumns(std::span<const CColumnSpec> columns);
    // For a source that grows while it is shown in its own order: takes in what it has more by now.
    void TakeNewRows(const CListSource& source);
    // Before all rows of the source go.
    void DropRows();
    void SetColumnTitle(int column, const QString& title);
    bool IsSortable() const { return m_bSortable; }
    // Null while there are no rows.
    const CListSource* Source() const { return m_pSource; }
    // The source's row that stands in a list row.
    std::size_t SourceRow(int row) const {
        const auto at = static_cast<std::size_t>(row);
        return m_listOrder.empty() ? at : m_listOrder[at];
    }
    int ColumnWidth(int column) const { return m_listColumns[static_cast<std::size_t>(column)].m_nWidth; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    // Ascending by the source's comparison, or exactly its reverse; rows that compare equal keep their order.
    void sort(int column, Qt::SortOrder order) override;

private:
    struct CColumn {
        QString m_strTitle;
        int m_nWidth = 0;
        Qt::Alignment m_nAlign;
        bool m_bSigned = false;
    };

    std::vector<CColumn> m_listColumns;
    const CListSource* m_pSource = nullptr;
    int m_nRows = 0;
    std::vector<std::size_t>
        m_listOrder; // empty until the rows are sorted: they stand as the source has them
    bool m_bSortable = false;
};

// Report view with full-row selection that stays visible without the focus. A click on a header sorts by that
// column, a second one turns the order round; a fill forgets the sorting.
class CListCtrl : public CReportView {
    Q_OBJECT

public:
    // Of a longer text a cell draws `mostDrawn` characters, on one line; 0 draws all of it.
    CListCtrl(std::span<const CColumnSpec> columns, const QString& accessibleName, QWidget* parent,
              qsizetype mostDrawn = 0);

    CListModel& Model() { return m_model; }
    // Shows other rows; null empties the list.
    void Fill(const CListSource* source);
    // In the place of all columns; the rows go.
    void SetColumns(std::span<const CColumnSpec> columns);
    void SortBy(int column, Qt::SortOrder order);
    // Below 0 while the rows stand in the order of the fill.
    int SortColumn() const { return m_nSortColumn; }
    Qt::SortOrder SortOrder() const { return m_nSortOrder; }
    // Selects a row, where there is one of that number, and brings another to the top as far as that goes.
    void ShowAt(int selected, int top);
    // The list row that is selected, or -1.
    int SelectedRow() const;
    std::vector<int> SelectedRows() const;
    // Device-independent pixels, whatever the title's font; 0 hides the column.
    void SetColumnWidth(int column, int width);
    // A list that is not on the screen has its rows nowhere: the toolkit tells screen readers by this what
    // shows.
    QRect visualRect(const QModelIndex& index) const override {
        return isVisible() ? QTreeView::visualRect(index) : QRect();
    }

    // Answers a double click on a row, and its key: Enter, or the space bar where Enter is wanted for
    // something else.
    std::function<void(int row)> m_fnOpenRow;
    bool m_bEnterOpens = true;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void TakeWidths();
    void OnHeaderClicked(int column);

    CListModel m_model;
    int m_nSortColumn = -1;
    Qt::SortOrder m_nSortOrder = Qt::AscendingOrder;
};

} // namespace carvelot
