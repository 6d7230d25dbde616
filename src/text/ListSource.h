// ListSource.h - what a list of a pane shows, without its window.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace carvelot {

enum class EAlign { Left, Right };

// What a list has to know of one of its columns to show it.
struct CColumnSpec {
    std::string m_strTitle; // UTF-8
    int m_nWidth;           // device-independent pixels
    EAlign m_nAlign = EAlign::Left;
    bool m_bSorts = false;  // a click on its title brings the rows into its order
    bool m_bSigned = false; // its bars run from the middle to either side
};

// Rows of a list: texts are made when a cell is asked for, sorting goes by the raw values behind them.
class CListSource {
public:
    virtual ~CListSource() = default;
    virtual std::size_t RowCount() const = 0;
    // The text of a cell, UTF-8.
    virtual std::string Text(std::size_t row, int column) const = 0;
    // Of a cell with a bar behind its text: how long the bar is, from -1 to 1 of the longest; no bar at 0.
    virtual double Share(std::size_t /*row*/, int /*column*/) const { return 0; }
    // Brings rows into ascending order by that column, or into exactly its reverse; rows that compare equal
    // keep their order. A list that does not sort leaves them where they are.
    virtual void Sort(std::vector<std::size_t>& /*listOrder*/, int /*nColumn*/, bool /*bDescending*/) const {}
};

} // namespace carvelot
