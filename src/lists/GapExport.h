// The timing gaps as a file.
#pragma once

#include "lists/PaneRows.h"

#include <optional>
#include <string>
#include <vector>

namespace carvelot {

enum class GapExportFormat { Csv, Text };

// The format by the file name's extension, in any case; nothing for another one ("Invalid file type").
std::optional<GapExportFormat> GapExportFormatOf(const std::string& path);

// The file's content, UTF-8 with line feeds: a header and the rows in their order. Nothing is escaped. The
// text form trims the rows' own time stamps, and what they show stays.
std::string ExportGaps(const CCarvelotDoc& session, std::vector<GapRow>& rows, GapExportFormat format);

// Writes the file as a whole or not at all. False with the system's error number.
bool WriteGapExport(const std::string& path, std::string_view content, int& error);

} // namespace carvelot
