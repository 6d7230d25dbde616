// Names as they compare: without case.
#pragma once

#include <string>
#include <string_view>

namespace carvelot::platform {

/// The characters of an 8-bit name in upper case. Two names are the same when these are.
std::u32string FoldedText(std::string_view bytes);

/// The next character of valid UTF-8, which is taken off the text.
char32_t TakeCharacter(std::string_view& text);

} // namespace carvelot::platform
