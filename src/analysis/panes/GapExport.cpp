#include "analysis/panes/GapExport.h"

#include "logcore/CaseText.h"
#include "logcore/Columns.h"
#include "logcore/NodeText.h"
#include "platform/AtomicFile.h"
#include "platform/CodePage.h"

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

std::string ExportGaps(std::vector<GapRow>& rows, GapExportFormat format) {
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
        if (format == GapExportFormat::Csv) {
            out.append("\"").append(row.m_strProcessThread).append("\",");
            out.append(row.m_strTimeStamp).append(",").append(SecondsText(row.m_fGap)).append(",");
            out.append("\"").append(row.m_strMessage).append("\"\n");
        } else {
            AppendPadded(out, row.m_strProcessThread, kOwnerWidth);
            row.m_strTimeStamp = TrimLeft(TrimRight(row.m_strTimeStamp, " "), " ");
            AppendPadded(out, row.m_strTimeStamp, kStampWidth);
            AppendPadded(out, SecondsText(row.m_fGap), kGapWidth);
            out.append(row.m_strMessage).append("\n");
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
