// Lines of a debug log, behind a first line that tells the format: with texts behind the first tab, or at a
// fixed column.
//
// A line with one blank more ahead of it is no longer of the usual form, which is known by the bytes that it
// begins with: the general way must read the same out of it. And what the hints of the line scan find, a
// search of the whole text must find as well.
#include "support/FuzzSession.h"
#include "support/ScanChecks.h"

#include <algorithm>

using namespace carvelot;

namespace {

constexpr std::string_view kTabLead = "Jan 15 08:00:00.000001 - 1/1 Worker\tEntering JDB_OpenTable\n";
constexpr std::string_view kColumnLead = "Jan 15 08:00:00.000001 - 1/1 Worker      Entering JDB_OpenTable\n";

constexpr std::uint32_t kSigns =
    TextSigns::SIGN_CACHE | TextSigns::SIGN_JDB_CODE | TextSigns::SIGN_SQL_DONE | TextSigns::SIGN_UBE;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    if (input.empty()) {
        return 0;
    }
    const bool column = (input[0] & 1) != 0;
    const std::string_view lines = input.substr(1);
    fuzz::CheckScans(HintSet::Debug, lines, kSigns);
    std::string usual(column ? kColumnLead : kTabLead);
    std::string shifted = usual;
    for (std::string_view rest = lines; !rest.empty();) {
        const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
        const std::string_view line = rest.substr(0, std::min<std::size_t>(end, 8000));
        usual.append(line).append("\n");
        shifted.append(" ").append(line).append("\n");
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    fuzz::CFuzzSession session(usual);
    // A line of a UBE is its own text, and a fixed column counts the blank.
    if (!column && !session.m_doc.m_bUBELog && session.m_doc.m_nTextColumn == 0) {
        const fuzz::CFuzzSession other(shifted);
        // A first word that teaches the format must stand behind something.
        if (other.m_doc.m_nTextColumn == 0 && other.m_doc.m_nTabCount == session.m_doc.m_nTabCount) {
            fuzz::RequireSameRecords(session, other);
        }
    }
    fuzz::WalkSession(session);
    return 0;
}
