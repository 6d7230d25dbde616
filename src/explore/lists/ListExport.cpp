#include "explore/lists/ListExport.h"

#include "explore/lists/ListTexts.h"
#include "platform/AtomicFile.h"
#include "platform/CodePage.h"
#include "text/CaseText.h"
#include "text/TextColumns.h"

namespace carvelot {

namespace {

// A log may hold bytes that are no text in any encoding.
std::string ValidUtf8(const std::string& text) {
    return platform::IsValidUtf8(text) ? text : WithReplacements(text);
}

// In quotes where it holds what divides cells, or blanks that a reader might trim.
void AppendCsvCell(std::string& line, const std::string& text) {
    const bool isPlain = text.find_first_of(",\"\r\n") == std::string::npos &&
                         (text.empty() || (text.front() != ' ' && text.back() != ' '));
    if (isPlain) {
        line.append(text);
        return;
    }
    line.push_back('"');
    for (const char c : text) {
        line.append(c == '"' ? 2 : 1, c);
    }
    line.push_back('"');
}

template <class CellOf> std::string LineOf(ListExportFormat format, std::size_t columns, CellOf cellOf) {
    const bool isCsv = format == ListExportFormat::Csv;
    std::string line;
    for (std::size_t column = 0; column < columns; ++column) {
        if (column != 0) {
            line.push_back(isCsv ? ',' : '\t');
        }
        const std::string text = ValidUtf8(cellOf(column));
        if (isCsv) {
            AppendCsvCell(line, text);
        } else {
            line.append(OnOneLine(text));
        }
    }
    return line.append(isCsv ? "\r\n" : "\n");
}

} // namespace

std::optional<ListExportFormat> ListExportFormatOf(std::string_view path) {
    const std::string_view name = path.substr(path.find_last_of("/\\") + 1);
    const std::size_t dot = name.rfind('.');
    const std::string ending = dot == std::string_view::npos ? "" : FoldedCase(name.substr(dot + 1));
    if (ending == "CSV") {
        return ListExportFormat::Csv;
    }
    if (ending == "TXT") {
        return ListExportFormat::Text;
    }
    return std::nullopt;
}

bool WriteListExport(const std::string& path, ListExportFormat format, const ShownList& list, int& error) {
    platform::AtomicFile file = platform::AtomicFile::Create(path, &error);
    if (!file) {
        return false;
    }
    const std::size_t columns = list.columns.size();
    // Commit tells of a failed write, with its error.
    file.Write(LineOf(format, columns, [&list](std::size_t column) { return list.columns[column].title; }));
    for (const std::size_t row : list.rows) {
        file.Write(LineOf(format, columns, [&list, row](std::size_t column) {
            return list.source.Text(row, list.columns[column].number);
        }));
    }
    return file.Commit(&error);
}

} // namespace carvelot
