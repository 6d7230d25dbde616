// CacheDataView.h - the rows of a live cache, on the right of a cache browser window.
#pragma once

#include "ui/kit/ReportView.h"
#include "cachebrowser/CacheDoc.h"

#include <QAbstractTableModel>

namespace carvelot {

// A view of the document's rows: a cell is decoded when it is asked for.
class CCacheDataModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit CCacheDataModel(const CCacheDoc& cache) : m_cache(cache) {}

    void SetColumns(std::vector<CListColumn> listColumns);
    // Before the document's rows go.
    void DeleteAllItems();
    // Takes in what the document has more than is shown.
    void ShowNewItems();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int nRole = Qt::DisplayRole) const override;
    QVariant headerData(int nSection, Qt::Orientation nOrientation, int nRole) const override;

private:
    const CCacheDoc& m_cache;
    std::vector<CListColumn> m_listColumns;
    int m_nRows = 0;
    bool m_bNumbers = false; // rows without columns show their number in one
};

class CCacheDataView : public CReportView, public ICacheDataView {
    Q_OBJECT

public:
    // Registers itself in the document and shows its columns.
    explicit CCacheDataView(CCacheDoc& cache);
    ~CCacheDataView() override;

    void SetColumns(std::vector<CListColumn> listColumns) override;
    void DeleteAllItems() override { m_model.DeleteAllItems(); }
    void ShowNewItems() override { m_model.ShowNewItems(); }

    CCacheDataModel& Model() { return m_model; }
    // A list that is not on the screen has its rows nowhere: the toolkit tells screen readers by this what
    // shows.
    QRect visualRect(const QModelIndex& index) const override {
        return isVisible() ? QTreeView::visualRect(index) : QRect();
    }

private:
    CCacheDoc& m_cache;
    CCacheDataModel m_model;
};

} // namespace carvelot
