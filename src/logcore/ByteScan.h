// Looks at several bytes of a line at once.
#pragma once

#include "logcore/Numbers.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace carvelot {

inline std::uint64_t Load64(const char* p) {
    std::uint64_t value = 0;
    std::memcpy(&value, p, sizeof value);
    return value;
}

inline std::uint32_t Load32(const char* p) {
    std::uint32_t value = 0;
    std::memcpy(&value, p, sizeof value);
    return value;
}

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

// Reads six digits; false when one of the six bytes is none.
inline bool SixDigits(const char* p, std::uint32_t& value) {
    std::uint32_t sum = 0;
    bool digits = true;
    for (unsigned i = 0; i < 6; ++i) {
        const auto digit = static_cast<std::uint32_t>(static_cast<unsigned char>(p[i])) - '0';
        digits = digits && digit < 10;
        sum = sum * 10 + digit;
    }
    value = sum;
    return digits;
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
    const char* const x = a.data();
    const char* const y = b.data();
    const std::size_t size = a.size();
    // The last load of each branch may overlap the one before.
    if (size >= 8) {
        for (std::size_t at = 0; at + 8 < size; at += 8) {
            if (Load64(x + at) != Load64(y + at)) {
                return false;
            }
        }
        return Load64(x + size - 8) == Load64(y + size - 8);
    }
    if (size >= 4) {
        return Load32(x) == Load32(y) && Load32(x + size - 4) == Load32(y + size - 4);
    }
    return size == 0 || (x[0] == y[0] && x[size / 2] == y[size / 2] && x[size - 1] == y[size - 1]);
}

// Where a word of at least two characters first stands in a text, as std::string_view::find tells it, without
// a stop at each place that only its first character has.
inline std::size_t FindWord(std::string_view text, std::string_view word) {
#if defined(__SSE2__)
    const std::size_t behind = word.size() - 1;
    if (text.size() >= behind + 16) {
        const char* const p = text.data();
        const __m128i first = _mm_set1_epi8(word.front());
        const __m128i second = _mm_set1_epi8(word[1]);
        const std::size_t lastStep = text.size() - behind - 16;
        for (std::size_t at = 0;; at += 16) {
            // The last step overlaps the one before.
            at = at < lastStep ? at : lastStep;
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + at));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + at + 1));
            auto places = static_cast<std::uint32_t>(
                _mm_movemask_epi8(_mm_and_si128(_mm_cmpeq_epi8(a, first), _mm_cmpeq_epi8(b, second))));
            for (; places != 0; places &= places - 1) {
                const std::size_t place = at + static_cast<std::size_t>(std::countr_zero(places));
                if (SameShortText({p + place, word.size()}, word)) {
                    return place;
                }
            }
            if (at == lastStep) {
                return std::string_view::npos;
            }
        }
    }
#endif
    return text.find(word);
}

} // namespace carvelot
