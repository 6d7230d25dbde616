// Looks at the bytes of a usual line's beginning: several at once, at fixed places.
#pragma once

#include "text/ByteScan.h"
#include "text/LineTokens.h"
#include "text/TextColumns.h"

#include <bit>
#include <cstdint>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace carvelot {

// Whether three characters are one of the twelve names themselves.
inline bool IsMonthName(std::string_view token) {
    const auto key = [](std::string_view name) {
        return (std::uint32_t{static_cast<unsigned char>(name[0])} << 16U) |
               (std::uint32_t{static_cast<unsigned char>(name[1])} << 8U) |
               static_cast<unsigned char>(name[2]);
    };
    const std::uint32_t wanted = key(token);
    bool found = false;
    for (std::size_t at = 0; at < kMonths.size(); at += 3) {
        found |= key(kMonths.substr(at, 3)) == wanted;
    }
    return found;
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

// Reads six digits with " -" behind them; false when one of the eight bytes, which are ASCII, is another.
inline bool SixDigitsAndDash(const char* p, std::uint32_t& value) {
    // What is left of each byte is a digit's value, and nothing of the last two.
    const std::uint64_t values = Load64(p) ^ 0x2D20'3030'3030'3030U;
    // 10 and more, in the last two 1 and more, reach a byte's top bit.
    if (((values + 0x7F7F'7676'7676'7676U) & kUpperHalves) != 0) {
        return false;
    }
    // Neighbours are joined: to numbers of two digits, of four, of eight.
    std::uint64_t joined = ((values << 16U) * (10 * 256 + 1)) >> 8U;
    joined = ((joined & 0x00FF'00FF'00FF'00FFU) * (100 * 65536 + 1)) >> 16U;
    joined = ((joined & 0x0000'FFFF'0000'FFFFU) * (10'000 * 0x1'0000'0000U + 1)) >> 32U;
    value = static_cast<std::uint32_t>(joined);
    return true;
}

// Reads three digits, thousandths, with " [" behind them, of eight readable bytes; false when one of the five
// is another.
inline bool ThreeDigitsAndBracket(const char* p, std::uint32_t& millionths) {
    const std::uint64_t values = Load64(p) ^ 0x5B'2030'3030U;
    millionths = static_cast<std::uint32_t>((values & 0xFF) * 100 + (values >> 8U & 0xFF) * 10 +
                                            (values >> 16U & 0xFF)) *
                 1000;
    return (((values + 0x7F'7F76'7676U) | values) & 0x80'8080'8080U) == 0;
}

// How many blanks and tabs sixteen bytes begin with.
struct LeadingBlanks {
    static constexpr std::uint32_t kMost = 16;

    std::uint32_t count = 0;
    bool holdTab = false;
};
inline LeadingBlanks LeadingBlanksAmong16(const char* p) {
#if defined(__SSE2__)
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const auto tabs = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_set1_epi8('\t'))));
    const auto blanks = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_set1_epi8(' '))));
    const auto count = static_cast<std::uint32_t>(std::countr_one(tabs | blanks));
    return {count, (tabs & ((1U << count) - 1)) != 0};
#else
    LeadingBlanks leading;
    for (; leading.count < LeadingBlanks::kMost && (p[leading.count] == ' ' || p[leading.count] == '\t');
         ++leading.count) {
        leading.holdTab = leading.holdTab || p[leading.count] == '\t';
    }
    return leading;
#endif
}

// The same for a text with sixteen readable bytes behind it.
inline std::string_view TrimPaddedStatement(std::string_view text) {
    const std::uint32_t blanks = LeadingBlanksAmong16(text.data()).count;
    if (blanks >= LeadingBlanks::kMost || blanks >= text.size()) {
        return TrimStatement(text);
    }
    const char* const first = text.data() + blanks;
    const char* last = text.data() + text.size();
    while (last[-1] == ' ') {
        --last;
    }
    return {first, static_cast<std::size_t>(last - first)};
}

} // namespace carvelot
