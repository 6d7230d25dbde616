// Numbers out of log text, read as the C library reads them.
#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

namespace carvelot {

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

constexpr bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Reads one "%d" from text[pos]: leading white space, a sign, digits; the value saturates to 32 bits. On
// success `pos` stands behind the last digit. False, with `value` untouched, when there is no digit.
constexpr bool ScanInteger(std::string_view text, std::size_t& pos, std::int32_t& value) {
    std::size_t at = pos;
    while (at < text.size() && IsSpace(text[at])) {
        ++at;
    }
    bool negative = false;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
        negative = text[at] == '-';
        ++at;
    }
    if (at >= text.size() || !IsDigit(text[at])) {
        return false;
    }
    constexpr std::int64_t limit = std::int64_t{1} << 32;
    std::int64_t sum = 0;
    for (; at < text.size() && IsDigit(text[at]); ++at) {
        if (sum < limit) {
            sum = sum * 10 + (text[at] - '0');
        }
    }
    if (negative) {
        sum = -sum;
    }
    constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
    value = static_cast<std::int32_t>(sum < lowest ? lowest : sum > highest ? highest : sum);
    pos = at;
    return true;
}

// The number that a text begins with, 0 if it begins with none ("_wtoi").
constexpr std::int32_t ReadInteger(std::string_view text) {
    std::size_t pos = 0;
    std::int32_t value = 0;
    ScanInteger(text, pos, value);
    return value;
}

// One decimal digit; anything else is 0.
constexpr std::int32_t DigitValue(char c) { return IsDigit(c) ? c - '0' : 0; }

} // namespace carvelot
