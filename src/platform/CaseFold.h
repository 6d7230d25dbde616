// Simple case folding: one character to one character, as the platform maps it, independent of the user's
// language.
#pragma once

namespace carvelot::platform {

namespace detail {
char32_t ToUpperBeyondAscii(char32_t character);
}

/// The upper-case form of a character; itself if it has none. Characters above U+FFFF stay as they are,
/// because the platform folds UTF-16 unit by unit.
inline char32_t ToUpper(char32_t character) {
    if (character < 0x80) {
        return character - U'a' < 26 ? character - 0x20 : character;
    }
    return detail::ToUpperBeyondAscii(character);
}

} // namespace carvelot::platform
