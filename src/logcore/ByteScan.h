// Looks at several bytes of a line at once.
#pragma once

#include "logcore/Numbers.h"

#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace carvelot {

// Which of sixteen bytes are decimal digits, the first one in the lowest bit.
inline std::uint32_t DigitsAmong16(const char* p) {
#if defined(__SSE2__)
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const __m128i value = _mm_sub_epi8(v, _mm_set1_epi8('0'));
    return static_cast<std::uint32_t>(
        _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_min_epu8(value, _mm_set1_epi8(9)), value)));
#else
    std::uint32_t bits = 0;
    for (unsigned i = 0; i < 16; ++i) {
        bits |= IsDigit(p[i]) ? 1U << i : 0U;
    }
    return bits;
#endif
}

// Whether a text starts with a word, without a call.
template <std::size_t size> inline bool Starts(std::string_view text, const char (&word)[size]) {
    return text.size() >= size - 1 && std::memcmp(text.data(), word, size - 1) == 0;
}

// Equality of short texts without a call.
inline bool SameShortText(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    const auto load = [](const char* p, auto value) {
        std::memcpy(&value, p, sizeof value);
        return value;
    };
    const char* const x = a.data();
    const char* const y = b.data();
    const std::size_t size = a.size();
    // The last load of each branch may overlap the one before.
    if (size >= 8) {
        for (std::size_t at = 0; at + 8 < size; at += 8) {
            if (load(x + at, std::uint64_t{}) != load(y + at, std::uint64_t{})) {
                return false;
            }
        }
        return load(x + size - 8, std::uint64_t{}) == load(y + size - 8, std::uint64_t{});
    }
    if (size >= 4) {
        return load(x, std::uint32_t{}) == load(y, std::uint32_t{}) &&
               load(x + size - 4, std::uint32_t{}) == load(y + size - 4, std::uint32_t{});
    }
    return size == 0 || (x[0] == y[0] && x[size / 2] == y[size / 2] && x[size - 1] == y[size - 1]);
}

} // namespace carvelot
