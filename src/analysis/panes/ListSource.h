// ListSource.h - what a list of a pane shows, without its window.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
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

} // namespace carvelot
