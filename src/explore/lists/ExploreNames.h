// What is shown of names and numbers, wherever something that was explored is shown.
#pragma once

#include "explore/Findings.h"
#include "explore/FrameKeys.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

// "1 record", "2,000 records".
std::string Counted(std::uint64_t count, std::string_view what);
// Seconds with six places: "12.903000", "-0.000001".
std::string SecondsWithPlaces(std::int64_t microseconds);

// "F", "E", "S" or "O".
std::string_view LetterOf(FrameKind kind);
// "(no name)" for one that shows nothing.
std::string_view ShownName(std::string_view name);
// The name of a key, "(top)" of none.
std::string_view ShownKey(const CFrameKeys& keys, std::uint32_t key);
// What a finding is about, or what is said of nothing.
std::string_view ShownSubject(FindingRule rule, std::string_view subject);
// The same with the cache of a cursor, whose handle tells nobody whose it is.
std::string SubjectText(const Finding& finding);

} // namespace carvelot
