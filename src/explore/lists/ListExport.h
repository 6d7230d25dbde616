// A list as a file for spreadsheets and editors: its titles and its rows as they are shown.
#pragma once

#include "text/ListSource.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// Comma-separated values (RFC 4180), or cells divided by tabs, a row a line.
enum class ListExportFormat { Csv, Text };

// The format by the ending of a file's name, ".csv" or ".txt" in any case; nothing for another one.
std::optional<ListExportFormat> ListExportFormatOf(std::string_view path);

// What of a source is shown, and where.
struct ShownList {
    struct Column {
        std::string title; // UTF-8
        int number;        // in the source
    };

    const CListSource& source;
    std::vector<Column> columns;
    std::vector<std::size_t> rows; // the source's, from top to bottom
};

// Writes the file, UTF-8, as a whole or not at all. False with the system's error number.
bool WriteListExport(const std::string& path, ListExportFormat format, const ShownList& list, int& error);

} // namespace carvelot
