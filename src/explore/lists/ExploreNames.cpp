#include "explore/lists/ExploreNames.h"

#include "text/NumberText.h"
#include "text/TextColumns.h"

#include <array>

namespace carvelot {

std::string Counted(std::uint64_t count, std::string_view what) {
    return Grouped(count).append(" ").append(what).append(count == 1 ? "" : "s");
}

std::string SecondsWithPlaces(std::int64_t microseconds) {
    const bool isNegative = microseconds < 0;
    const std::uint64_t size =
        isNegative ? 0 - static_cast<std::uint64_t>(microseconds) : static_cast<std::uint64_t>(microseconds);
    const std::string places = std::to_string(1'000'000 + size % 1'000'000);
    return std::string(isNegative ? "-" : "")
        .append(std::to_string(size / 1'000'000))
        .append(".")
        .append(places, 1);
}

std::string_view LetterOf(FrameKind kind) {
    constexpr std::array<std::string_view, 4> letters{"E", "F", "O", "S"};
    return letters[static_cast<std::size_t>(kind)];
}

std::string_view ShownName(std::string_view name) { return TrimLeft(name, " ").empty() ? "(no name)" : name; }

std::string_view ShownKey(const CFrameKeys& keys, std::uint32_t key) {
    return key == kNoKey ? "(top)" : ShownName(keys.Name(key));
}

std::string_view ShownSubject(FindingRule rule, std::string_view subject) {
    return subject.empty() && rule == FindingRule::RolledBack ? "(in no function)" : ShownName(subject);
}

std::string SubjectText(const Finding& finding) {
    std::string text(ShownSubject(finding.rule, finding.subject));
    if (finding.rule == FindingRule::CursorNotClosed) {
        text.append(" of cache ").append(ShownSubject(finding.rule, finding.cache));
    }
    return text;
}

} // namespace carvelot
