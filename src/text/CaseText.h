// Texts without regard to case, folded one character to one character.
#pragma once

#include <string>
#include <string_view>

namespace carvelot {

// The text in upper case.
std::string FoldedCase(std::string_view text);

// -1, 0 or 1: the order of two texts in upper case, by UTF-16 units.
int CompareNoCase(std::string_view a, std::string_view b);

inline bool EqualNoCase(std::string_view a, std::string_view b) { return CompareNoCase(a, b) == 0; }

} // namespace carvelot
