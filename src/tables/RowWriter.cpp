#include "tables/RowWriter.h"

#include <array>
#include <charconv>

namespace carvelot {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

template <class Number> void PutNumber(CBlockStream& stream, Number number) {
    std::array<char, 64> digits{};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    stream.Put(std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())));
}

} // namespace

std::optional<RowFormat> RowFormatOf(std::string_view name) {
    return name == "csv"      ? std::optional(RowFormat::Csv)
           : name == "ndjson" ? std::optional(RowFormat::Ndjson)
                              : std::nullopt;
}

CRowWriter::CRowWriter(std::ostream& out, const Table& table, RowFormat format)
    : m_table(table), m_format(format), m_stream(out), m_json(m_stream) {}

void CRowWriter::WriteRows(const CTableSource& source) {
    WriteHeader();
    ForEachRow(m_table, source, [this](std::span<const Cell> cells) {
        if (m_format == RowFormat::Csv) {
            WriteCsvRow(cells);
        } else {
            WriteJsonRow(cells);
        }
        return m_stream.IsTaken();
    });
}

void CRowWriter::WriteHeader() {
    if (m_bHeader || m_format != RowFormat::Csv) {
        return;
    }
    m_bHeader = true;
    std::string_view between;
    for (const TableColumn& column : m_table.columns) {
        m_stream.Put(between);
        m_stream.Put(column.name);
        between = ",";
    }
    m_stream.Put(kLineEnd);
}

void CRowWriter::WriteCsvRow(std::span<const Cell> cells) {
    std::string_view between;
    for (const Cell& cell : cells) {
        m_stream.Put(between);
        between = ",";
        if (const auto* const number = std::get_if<std::int64_t>(&cell)) {
            PutNumber(m_stream, *number);
        } else if (const auto* const real = std::get_if<double>(&cell)) {
            PutNumber(m_stream, *real);
        } else if (const auto* const text = std::get_if<std::string_view>(&cell)) {
            PutCsvText(ValidText(*text, m_strScratch));
        }
    }
    m_stream.Put(kLineEnd);
}

void CRowWriter::PutCsvText(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        m_stream.Put(text);
        return;
    }
    m_stream.Put('"');
    for (std::size_t quote = text.find('"'); quote != std::string_view::npos; quote = text.find('"')) {
        m_stream.Put(text.substr(0, quote + 1));
        m_stream.Put('"');
        text.remove_prefix(quote + 1);
    }
    m_stream.Put(text);
    m_stream.Put('"');
}

void CRowWriter::WriteJsonRow(std::span<const Cell> cells) {
    m_json.Reset(m_stream);
    m_json.StartObject();
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string_view name = m_table.columns[i].name;
        m_json.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
        if (const auto* const number = std::get_if<std::int64_t>(&cells[i])) {
            m_json.Int64(*number);
        } else if (const auto* const real = std::get_if<double>(&cells[i])) {
            m_json.Double(*real);
        } else if (const auto* const text = std::get_if<std::string_view>(&cells[i])) {
            const std::string_view valid = ValidText(*text, m_strScratch);
            m_json.String(valid.empty() ? "" : valid.data(), static_cast<rapidjson::SizeType>(valid.size()));
        } else {
            m_json.Null();
        }
    }
    m_json.EndObject();
    m_stream.Put('\n');
}

} // namespace carvelot
