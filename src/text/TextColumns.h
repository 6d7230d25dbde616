// Columns of a log line. A column counts UTF-16 units, as the rules of the log do; texts here are UTF-8. For
// ASCII both are the same, and that is the fast way through every function.
#pragma once

#include "text/ByteScan.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

// A text that is usually a slice of another and only now and then, when a cut went through a surrogate pair,
// a text of its own, kept in the scratch string that the caller lends.
std::string_view FromColumnOfAny(std::string_view text, std::size_t column, std::string& scratch);
inline std::string_view FromColumn(std::string_view text, std::size_t column, std::string& scratch) {
    const std::size_t passed = column < text.size() ? column : text.size();
    std::size_t at = 0;
    // The first eight at once; of those that are not passed over none is looked at.
    if (text.size() >= 8 && passed != 0) {
        const std::size_t looked = passed < 8 ? passed : 8;
        if (((Load64(text.data()) & kUpperHalves) << (64 - 8 * looked)) != 0) {
            return FromColumnOfAny(text, column, scratch);
        }
        at = looked;
    }
    for (; at < passed; ++at) {
        if (static_cast<unsigned char>(text[at]) >= 0x80) {
            return FromColumnOfAny(text, column, scratch);
        }
    }
    return text.substr(passed);
}

// The text without its last UTF-16 unit; empty stays empty.
std::string_view WithoutLastUnit(std::string_view text, std::string& scratch);

// The column of a byte position that starts a character.
std::size_t ColumnOf(std::string_view text, std::size_t position);

// The character at a column if it is ASCII, else NUL; also NUL past the end.
char AsciiAtColumn(std::string_view text, std::size_t column);

// Length in UTF-16 units.
std::size_t UnitCount(std::string_view text);

// The same text with every sequence that is no valid UTF-8 (lone surrogates too) replaced by U+FFFD.
std::string WithReplacements(std::string_view text);

// Takes one code point (or lone surrogate) off the front; a stray byte counts as U+FFFD.
char32_t TakeCodePoint(std::string_view& text);
void AppendCodePoint(std::string& text, char32_t c);

// The text without the characters of a set at its right or its left end.
inline std::string_view TrimRight(std::string_view text, std::string_view set) {
    const auto isIn = [set](char c) {
        for (const char member : set) {
            if (member == c) {
                return true;
            }
        }
        return false;
    };
    while (!text.empty() && isIn(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

inline std::string_view TrimLeft(std::string_view text, std::string_view set) {
    while (!text.empty() && set.find(text.front()) != std::string_view::npos) {
        text.remove_prefix(1);
    }
    return text;
}

// What every statement text is trimmed of: blanks and tabs on the left, blanks on the right.
inline std::string_view TrimStatement(std::string_view text) {
    const char* first = text.data();
    const char* last = first + text.size();
    constexpr std::uint64_t eightBlanks = 0x2020202020202020U;
    while (last - first >= 8 && Load64(first) == eightBlanks) {
        first += 8;
    }
    while (first != last && (*first == ' ' || *first == '\t')) {
        ++first;
    }
    while (first != last && last[-1] == ' ') {
        --last;
    }
    return {first, static_cast<std::size_t>(last - first)};
}

// What stands between `from` and the next `end`; empty when there is no such end.
inline std::string_view UpTo(std::string_view text, char end) {
    const std::size_t at = FindNear(text, end);
    return at == std::string_view::npos ? std::string_view{} : text.substr(0, at);
}

} // namespace carvelot
