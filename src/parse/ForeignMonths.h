// Short month names of other languages than English.
#pragma once

#include <string_view>

namespace carvelot {

// The English short name, "Jan" to "Dec", of the month that a word names in any of the languages: with a dot
// behind it or without, in any case. Empty for any other word.
std::string_view EnglishMonth(std::string_view word);

} // namespace carvelot
