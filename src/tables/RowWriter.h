// Rows as text for other programs: CSV by RFC 4180, or a JSON object a line. UTF-8 always.
#pragma once

#include "tables/Tables.h"
#include "text/JsonWriter.h"

#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace carvelot {

enum class RowFormat { Csv, Ndjson };

// "csv" or "ndjson"; nothing for another name.
std::optional<RowFormat> RowFormatOf(std::string_view name);

class CRowWriter {
public:
    CRowWriter(std::ostream& out, const Table& table, RowFormat format);

    // All rows of a log, until nobody takes them any more. A header stands ahead of those of the first log.
    void WriteRows(const CTableSource& source);

private:
    void WriteHeader();
    void WriteCsvRow(std::span<const Cell> cells);
    void WriteJsonRow(std::span<const Cell> cells);
    void PutCsvText(std::string_view text);

    const Table& m_table;
    const RowFormat m_format;
    bool m_bHeader = false;
    std::string m_strScratch;
    CBlockStream m_stream;
    CJsonEvents m_json;
};

} // namespace carvelot
