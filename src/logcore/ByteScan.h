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

// Equality of short texts without a call.
inline bool SameShortText(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    const auto differ = [&](std::size_t at) {
        std::uint64_t x = 0;
        std::uint64_t y = 0;
        std::memcpy(&x, a.data() + at, sizeof x);
        std::memcpy(&y, b.data() + at, sizeof y);
        return x != y;
    };
    std::size_t at = 0;
    for (; at + 8 <= a.size(); at += 8) {
        if (differ(at)) {
            return false;
        }
    }
    if (a.size() >= 8) {
        return at == a.size() || !differ(a.size() - 8);
    }
    for (; at < a.size(); ++at) {
        if (a[at] != b[at]) {
            return false;
        }
    }
    return true;
}

} // namespace carvelot
