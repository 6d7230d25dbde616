// Tables of text for a terminal.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// What a terminal can show in one line: no control characters, cut with an ellipsis.
std::string OneLine(std::string_view text, std::size_t longest = 100);
// The same where the ellipsis counts too, so that it is never longer.
std::string OneLineWithin(std::string_view text, std::size_t width);

// A table whose columns are as wide as they need to be; numbers stand to the right, the last text column runs
// out.
class CTextTable {
public:
    enum class Align { Left, Right };
    struct Column {
        std::string_view title;
        Align align;
    };

    static constexpr std::size_t kAnyWidth = static_cast<std::size_t>(-1);

    // `width`: that of the terminal, within which the last column is cut.
    explicit CTextTable(std::vector<Column> columns, std::size_t width = kAnyWidth)
        : m_columns(std::move(columns)), m_nWidth(width) {}

    void Add(std::vector<std::string> cells) {
        m_rows.push_back({std::move(cells), {}});
        ++m_nRows;
    }
    // A line between rows, which is none itself.
    void AddLine(std::string line) { m_rows.push_back({{}, std::move(line)}); }

    // `total`: how many rows there are, shown or not.
    void Print(std::ostream& out, std::string_view title, std::uint64_t total) const;

private:
    struct Row {
        std::vector<std::string> cells; // none of a line
        std::string line;
    };

    std::vector<std::size_t> Widths() const;
    void PrintRow(std::ostream& out, const std::vector<std::string>& cells,
                  const std::vector<std::size_t>& widths) const;

    const std::vector<Column> m_columns;
    const std::size_t m_nWidth;
    std::vector<Row> m_rows;
    std::size_t m_nRows = 0;
};

// So short that a table of columns reads as one.
inline constexpr auto L = CTextTable::Align::Left;
inline constexpr auto R = CTextTable::Align::Right;

} // namespace carvelot
