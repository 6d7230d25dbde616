#include "report/TextTable.h"

#include "text/NumberText.h"
#include "text/TextColumns.h"

#include <algorithm>
#include <ostream>

namespace carvelot {

namespace {

constexpr std::string_view kEllipsis = "...";

// A character each, as nearly all terminals show nearly all of them.
std::size_t WidthOf(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

} // namespace

std::string OneLine(std::string_view text, std::size_t longest) {
    const std::string valid = WithReplacements(text);
    std::string_view rest = valid;
    std::string line;
    std::size_t count = 0;
    while (!rest.empty()) {
        const char32_t c = TakeCodePoint(rest);
        if (++count > longest) {
            return line.append(kEllipsis);
        }
        AppendCodePoint(line, c < 0x20 || (c >= 0x7F && c < 0xA0) ? U' ' : c);
    }
    return line;
}

std::string OneLineWithin(std::string_view text, std::size_t width) {
    std::string line = OneLine(text, width);
    return WidthOf(line) <= width ? line : OneLine(text, width - std::min(width, kEllipsis.size()));
}

void CTextTable::Print(std::ostream& out, std::string_view title, std::uint64_t total) const {
    out << '\n' << title << " (" << Grouped(total) << ")\n";
    if (m_rows.empty()) {
        return;
    }
    const std::vector<std::size_t> widths = Widths();
    std::vector<std::string> titles;
    for (const Column& column : m_columns) {
        titles.emplace_back(column.title);
    }
    PrintRow(out, titles, widths);
    for (const Row& row : m_rows) {
        if (row.cells.empty()) {
            out << row.line << '\n';
        } else {
            PrintRow(out, row.cells, widths);
        }
    }
    if (total > m_nRows) {
        out << "  ... and " << Grouped(total - m_nRows) << " more\n";
    }
}

std::vector<std::size_t> CTextTable::Widths() const {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        std::size_t width = m_columns[i].title.size();
        for (const Row& row : m_rows) {
            width = row.cells.empty() ? width : std::max(width, WidthOf(row.cells[i]));
        }
        widths.push_back(width);
    }
    return widths;
}

void CTextTable::PrintRow(std::ostream& out, const std::vector<std::string>& cells,
                          const std::vector<std::size_t>& widths) const {
    std::string line = " ";
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line.append(" ");
        if (i + 1 == cells.size() && m_nWidth != kAnyWidth) {
            constexpr std::size_t least = 16;
            const std::size_t taken = WidthOf(line);
            line.append(OneLineWithin(cells[i], m_nWidth > taken + least ? m_nWidth - taken : least));
            break;
        }
        const std::string padding(widths[i] - WidthOf(cells[i]), ' ');
        if (m_columns[i].align == Align::Right) {
            line.append(padding).append(cells[i]);
        } else {
            line.append(cells[i]).append(padding);
        }
        line.append(" ");
    }
    out << TrimRight(line, " ") << '\n';
}

} // namespace carvelot
