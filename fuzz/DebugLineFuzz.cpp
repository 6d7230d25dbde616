// Lines of a debug log, behind a first line that tells the format: with texts behind the first tab, or at a
// fixed column.
//
// A line with one blank more ahead of it is no longer of the usual form, which is read at fixed columns: the
// general way must read the same out of it. And what the hints of the line scan find, a search of the whole
// text must find as well.
#include "logcore/ByteScan.h"
#include "logcore/Classifier.h"
#include "logcore/LineScan.h"
#include "support/FuzzSession.h"

#include <algorithm>
#include <memory>

using namespace carvelot;

namespace {

constexpr std::string_view kTabLead = "Jan 15 08:00:00.000001 - 1/1 Worker\tEntering JDB_OpenTable\n";
constexpr std::string_view kColumnLead = "Jan 15 08:00:00.000001 - 1/1 Worker      Entering JDB_OpenTable\n";

void RequireSameSigns(std::string_view text, std::string_view line, const LineHints& hints) {
    const TextSigns a = FindSigns(text);
    const TextSigns b = FindSigns(text, line, hints);
    fuzz::Require(a.cache == b.cache && a.jdbCode == b.jdbCode && a.sqlDone == b.sqlDone && a.ube == b.ube,
                  "the hints lead to every word of a debug line");
}

void CheckScans(std::string_view line) {
    const std::size_t limit = std::min<std::size_t>(line.size(), CLogReader::kLongestLine);
    const auto buffer = std::make_unique<char[]>(limit + kScanPadding);
    std::copy_n(line.data(), limit, buffer.get());
    std::fill_n(buffer.get() + limit, kScanPadding, 'C');
    LineHints hints;
    const LineScan by16 = ScanLineBy16<HintSet::Debug>(buffer.get(), limit, hints);
    const std::string_view bytes(buffer.get(), limit);
    const std::size_t end = std::min(bytes.find_first_of("\r\n"), limit);
    fuzz::Require(by16.length == end && by16.ended == (end < limit), "the scan finds the line's end");
    fuzz::Require(by16.nul == limit || by16.nul < end, "a NUL counts up to the line's end");
    fuzz::Require(std::min(by16.nul, end) == std::min(bytes.substr(0, end).find('\0'), end),
                  "the scan finds the first NUL");
    fuzz::Require(by16.ascii == std::all_of(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(end),
                                            [](char c) { return (c & 0x80) == 0; }),
                  "the scan tells ASCII");
    if (hints.IsComplete()) {
        const std::string_view text = bytes.substr(0, std::min(by16.nul, end));
        RequireSameSigns(text, text, hints);
        RequireSameSigns(text.substr(text.size() / 3), text, hints);
    }
    if (const ScanLineFunction scanBy32 = ScanLineBy32<HintSet::Debug>(); scanBy32 != nullptr) {
        LineHints hintsBy32;
        const LineScan by32 = scanBy32(buffer.get(), limit, hintsBy32);
        fuzz::Require(by32.length == by16.length && by32.ended == by16.ended && by32.ascii == by16.ascii &&
                          std::min(by32.nul, end) == std::min(by16.nul, end),
                      "both scans agree");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    if (input.empty()) {
        return 0;
    }
    const bool column = (input[0] & 1) != 0;
    const std::string_view lines = input.substr(1);
    CheckScans(lines);
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
