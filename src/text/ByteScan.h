// Looks at several bytes of a line at once.
#pragma once

#include "text/Integers.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace carvelot {

// Eight bytes are looked at as one number, the first of them in its lowest eight bits.
static_assert(std::endian::native == std::endian::little);

// The top bit of each of eight bytes.
inline constexpr std::uint64_t kUpperHalves = 0x8080'8080'8080'8080U;

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

// Whether a text starts with a word, without a call.
template <std::size_t size> inline bool Starts(std::string_view text, const char (&word)[size]) {
    return text.size() >= size - 1 && std::memcmp(text.data(), word, size - 1) == 0;
}

// Whether sixteen bytes are the same.
inline bool Same16(const char* x, const char* y) {
#if defined(__SSE2__)
    return _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(x)),
                                            _mm_loadu_si128(reinterpret_cast<const __m128i*>(y)))) == 0xFFFF;
#else
    return Load64(x) == Load64(y) && Load64(x + 8) == Load64(y + 8);
#endif
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
    if (size >= 16) {
        for (std::size_t at = 0; at + 16 < size; at += 16) {
            if (!Same16(x + at, y + at)) {
                return false;
            }
        }
        return Same16(x + size - 16, y + size - 16);
    }
    if (size >= 8) {
        return Load64(x) == Load64(y) && Load64(x + size - 8) == Load64(y + size - 8);
    }
    if (size >= 4) {
        return Load32(x) == Load32(y) && Load32(x + size - 4) == Load32(y + size - 4);
    }
    return size == 0 || (x[0] == y[0] && x[size / 2] == y[size / 2] && x[size - 1] == y[size - 1]);
}

// Calls look(place) for each place of one of four characters before a lower-case letter (or what follows
// those in ASCII), in rising order.
template <char a, char b, char c, char d, class Look>
void ForEachOfFourBeforeLower(std::string_view text, Look look) {
    const char* const p = text.data();
    std::size_t at = 0;
#if defined(__SSE2__)
    if (text.size() >= 17) {
        const std::size_t lastStep = text.size() - 17;
        for (;; at += 16) {
            // The last step overlaps the one before, whose places are left out.
            const std::size_t from = at < lastStep ? at : lastStep;
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + from));
            const auto is = [v](char character) { return _mm_cmpeq_epi8(v, _mm_set1_epi8(character)); };
            const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + from + 1));
            const __m128i lower = _mm_cmpgt_epi8(next, _mm_set1_epi8('a' - 1));
            auto places =
                static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_and_si128(
                    lower, _mm_or_si128(_mm_or_si128(is(a), is(b)), _mm_or_si128(is(c), is(d)))))) >>
                (at - from);
            for (; places != 0; places &= places - 1) {
                look(at + static_cast<std::size_t>(std::countr_zero(places)));
            }
            if (at >= lastStep) {
                return;
            }
        }
    }
#endif
    for (; at + 1 < text.size(); ++at) {
        if ((p[at] == a || p[at] == b || p[at] == c || p[at] == d) &&
            static_cast<signed char>(p[at + 1]) >= 'a') {
            look(at);
        }
    }
}

// Where one of two characters first stands in a text; the text's size where neither does.
inline std::size_t FindEither(std::string_view text, char one, char other) {
    std::size_t at = 0;
#if defined(__SSE2__)
    for (; at + 16 <= text.size(); at += 16) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
        const auto places = static_cast<std::uint32_t>(_mm_movemask_epi8(
            _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8(one)), _mm_cmpeq_epi8(v, _mm_set1_epi8(other)))));
        if (places != 0) {
            return at + static_cast<std::size_t>(std::countr_zero(places));
        }
    }
#endif
    while (at < text.size() && text[at] != one && text[at] != other) {
        ++at;
    }
    return at;
}

// Which of sixteen bytes are one character, the first one in the lowest bit.
#if defined(__SSE2__)
inline std::uint32_t PlacesAmong16(const char* p, char character) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_set1_epi8(character))));
}
#endif

// Where a character first stands in a text, which is mostly near its start.
inline std::size_t FindNear(std::string_view text, char character) {
#if defined(__SSE2__)
    if (text.size() >= 16) {
        if (const std::uint32_t places = PlacesAmong16(text.data(), character); places != 0) {
            return static_cast<std::size_t>(std::countr_zero(places));
        }
    }
#endif
    return text.find(character);
}

// Where a character last stands in a text, which is mostly near its end.
inline std::size_t FindLastNear(std::string_view text, char character) {
#if defined(__SSE2__)
    if (text.size() >= 16) {
        const std::size_t from = text.size() - 16;
        if (const std::uint32_t places = PlacesAmong16(text.data() + from, character); places != 0) {
            return from + 31 - static_cast<std::size_t>(std::countl_zero(places));
        }
    }
#endif
    return text.rfind(character);
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
        const auto pairs = [&](const char* q) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(q));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(q + 1));
            return _mm_and_si128(_mm_cmpeq_epi8(a, first), _mm_cmpeq_epi8(b, second));
        };
        for (std::size_t at = 0;; at += 16) {
            // In a long text four steps at once, as long as they find nothing.
            while (at + 64 <= lastStep && _mm_movemask_epi8(_mm_or_si128(
                                              _mm_or_si128(pairs(p + at), pairs(p + at + 16)),
                                              _mm_or_si128(pairs(p + at + 32), pairs(p + at + 48)))) == 0) {
                at += 64;
            }
            // The last step overlaps the one before.
            at = at < lastStep ? at : lastStep;
            auto places = static_cast<std::uint32_t>(_mm_movemask_epi8(pairs(p + at)));
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
