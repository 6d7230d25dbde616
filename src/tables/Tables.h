// The tables that a log can be had as: what their columns are, and their rows one by one. docs/tables.md
// shows this to readers; a test holds the two together.
#pragma once

#include "tables/TableSource.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace carvelot {

enum class ColumnType : std::uint8_t { Text, Integer, Real };
std::string_view NameOf(ColumnType type);

// A value of a row; none where there is nothing to tell. Texts are UTF-8 as the log's reader made them, and
// may hold what is no valid Unicode (ValidText).
using Cell = std::variant<std::monostate, std::int64_t, double, std::string_view>;

struct TableColumn {
    std::string_view name;
    ColumnType type;
    std::string_view unit; // of a number; empty for one that counts, names or numbers things
    std::string_view meaning;
    // The text of a cell stands in the session or in the scratch string.
    Cell (*cell)(const CTableSource& source, std::uint32_t row, std::string& scratch);
};

struct Table {
    std::string_view name;
    std::string_view meaning;
    std::span<const TableColumn> columns;
    std::uint32_t (*rows)(const CTableSource& source);
};

std::span<const Table> Tables();
// Null for a name that is none.
const Table* FindTable(std::string_view name);
// The names of all, as a sentence has them: "records, frames or gaps".
std::string TableNames();

// A text as every reader can take it: with U+FFFD for what is no Unicode. In the argument or the scratch
// string.
std::string_view ValidText(std::string_view text, std::string& scratch);

// Seconds of 32 bits as their shortest decimal form reads; none for 0, which is not measured.
Cell SecondsCell(float seconds);
// None of an empty text.
Cell TextCell(std::string_view text);
// A key that is the same in every log, as 16 hexadecimal digits: of a shape's text; of a function's kind and
// name.
Cell ShapeKeyCell(const CTableSource& source, std::uint32_t shape, std::string& scratch);
Cell FunctionKeyCell(const CTableSource& source, std::uint32_t key, std::string& scratch);

// take(cells) for each row, in the table's order, until it says false. Costs the memory of one row.
template <class Take> void ForEachRow(const Table& table, const CTableSource& source, Take take) {
    const std::uint32_t rows = table.rows(source);
    std::vector<std::string> scratch(table.columns.size());
    std::vector<Cell> cells(table.columns.size());
    for (std::uint32_t row = 0; row < rows; ++row) {
        for (std::size_t column = 0; column < cells.size(); ++column) {
            cells[column] = table.columns[column].cell(source, row, scratch[column]);
        }
        if (!take(std::span<const Cell>(cells))) {
            return;
        }
    }
}

} // namespace carvelot
