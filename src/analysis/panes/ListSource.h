// ListSource.h - what a list of a pane shows, without its window.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace carvelot {

struct CColumnSpec {
    const char* m_pszTitle;
    int m_nWidth; // device-independent pixels
};

// Rows of a list: texts are asked for when a cell is drawn, sorting compares the raw values behind them.
class CListSource {
public:
    virtual ~CListSource() = default;
    virtual std::size_t RowCount() const = 0;
    // The text of a cell, UTF-8.
    virtual std::string Text(std::size_t nRow, int nColumn) const = 0;
    // Below 0 when row A comes before row B in ascending order by that column, else 0 or above. Equal numbers
    // may answer 1: only "below 0" is ever asked for.
    virtual int OnCompareItems(std::size_t nRowA, std::size_t nRowB, int nColumn) const = 0;
    // Brings rows into ascending order by that column, or into exactly its reverse; rows that compare equal
    // keep their order. A source that knows a quicker way than comparing takes it.
    virtual void Sort(std::vector<std::size_t>& listOrder, int nColumn, bool bDescending) const {
        // Negating the comparison would call equal rows unordered both ways; swapping its sides gives the
        // same reversal as a proper order.
        std::stable_sort(listOrder.begin(), listOrder.end(), [&](std::size_t nA, std::size_t nB) {
            return bDescending ? OnCompareItems(nB, nA, nColumn) < 0 : OnCompareItems(nA, nB, nColumn) < 0;
        });
    }
};

// The usual source: a vector of rows and, for each column, how a row prints and compares.
template <typename TRow> class CRowList : public CListSource {
public:
    struct CColumn {
        std::function<std::string(const TRow&)> m_fnText;
        std::function<int(const TRow&, const TRow&)> m_fnCompare; // absent: the column does not sort
    };

    explicit CRowList(std::vector<CColumn> listColumns) : m_listColumns(std::move(listColumns)) {}

    std::size_t RowCount() const override { return m_listRows.size(); }
    std::string Text(std::size_t nRow, int nColumn) const override {
        return m_listColumns[static_cast<std::size_t>(nColumn)].m_fnText(m_listRows[nRow]);
    }
    int OnCompareItems(std::size_t nRowA, std::size_t nRowB, int nColumn) const override {
        const auto& fnCompare = m_listColumns[static_cast<std::size_t>(nColumn)].m_fnCompare;
        return fnCompare ? fnCompare(m_listRows[nRowA], m_listRows[nRowB]) : 0;
    }

    std::vector<TRow> m_listRows;

private:
    std::vector<CColumn> m_listColumns;
};

} // namespace carvelot
