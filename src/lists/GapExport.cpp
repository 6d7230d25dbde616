#include "lists/GapExport.h"

#include "platform/AtomicFile.h"
#include "platform/CodePage.h"
#include "text/CaseText.h"
#include "text/TextColumns.h"

namespace carvelot {

namespace {

constexpr std::size_t kOwnerWidth = 14;
constexpr std::size_t kStampWidth = 19;
constexpr std::size_t kGapWidth = 17;

// "%-Nls": padded on the right to a width in characters.
void AppendPadded(std::string& out, std::string_view text, std::size_t width) {
    out.append(text);
    const std::size_t units = UnitCount(text);
    if (units < width) {
        out.append(width - units, ' ');
    }
}

} // namespace

std::optional<GapExportFormat> GapExportFormatOf(const std::string& path) {
    std::string_view name = path;
    name = name.substr(name.find_last_of("/\\") + 1);
    const std::size_t dot = name.rfind('.');
    const std::string extension = dot == std::string_view::npos ? "" : FoldedCase(name.substr(dot + 1));
    if (extension == "CSV") {
        return GapExportFormat::Csv;
    }
    if (extension == "TXT") {
        return GapExportFormat::Text;
    }
    return std::nullopt;
}

std::string ExportGaps(const CCarvelotDoc& session, std::vector<GapRow>& rows, GapExportFormat format) {
    std::string out;
    if (format == GapExportFormat::Csv) {
        out = "Proc/Thread,Timestamp,Gap Duration,Message\n";
    } else {
        AppendPadded(out, "Proc/Thread", kOwnerWidth);
        AppendPadded(out, "Timestamp", kStampWidth);
        AppendPadded(out, "Gap Duration", kGapWidth);
        out.append("Message\n");
    }
    for (GapRow& row : rows) {
        const std::string owner = CellText(row, GapRow::OWNER, session);
        const std::string gap = CellText(row, GapRow::GAP, session);
        const std::string message = CellText(row, GapRow::MESSAGE, session);
        if (format == GapExportFormat::Csv) {
            out.append("\"").append(owner).append("\",");
            out.append(row.TimeStamp(session)).append(",").append(gap).append(",");
            out.append("\"").append(message).append("\"\n");
        } else {
            AppendPadded(out, owner, kOwnerWidth);
            row.m_bTrimmed = true;
            AppendPadded(out, row.TimeStamp(session), kStampWidth);
            AppendPadded(out, gap, kGapWidth);
            out.append(message).append("\n");
        }
    }
    return out;
}

bool WriteGapExport(const std::string& path, std::string_view content, int& error) {
    platform::AtomicFile file = platform::AtomicFile::Create(path, &error);
    const bool valid = platform::IsValidUtf8(content);
    if (!file) {
        return false;
    }
    // Commit tells of a failed write, with its error.
    file.Write(platform::Utf8ToTextFile(valid ? std::string(content) : WithReplacements(content)));
    return file.Commit(&error);
}

} // namespace carvelot
