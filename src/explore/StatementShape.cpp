#include "explore/StatementShape.h"

#include "text/ByteScan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace carvelot {

namespace {

enum CharClass : std::uint8_t {
    CHAR_LETTER = 1U << 0U, // also each byte of a character beyond ASCII
    CHAR_DIGIT = 1U << 1U,
    CHAR_NAME_SIGN = 1U << 2U, // what a name holds besides
    CHAR_SPACE = 1U << 3U,
    CHAR_QUOTE = 1U << 4U,
    CHAR_DOT = 1U << 5U,
    CHAR_SIGN = 1U << 6U,
    CHAR_MARK = 1U << 7U,
};
constexpr unsigned kInName = CHAR_LETTER | CHAR_DIGIT | CHAR_NAME_SIGN;

constexpr std::array<std::uint8_t, 256> MakeClasses() {
    std::array<std::uint8_t, 256> classes{};
    for (unsigned i = 0; i < 256; ++i) {
        const char c = static_cast<char>(i);
        const bool isLetter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || i >= 0x80;
        classes[i] = isLetter                                       ? CHAR_LETTER
                     : IsDigit(c)                                   ? CHAR_DIGIT
                     : c == '_' || c == '#' || c == '$' || c == '@' ? CHAR_NAME_SIGN
                     : IsSpace(c)                                   ? CHAR_SPACE
                     : c == '\''                                    ? CHAR_QUOTE
                     : c == '.'                                     ? CHAR_DOT
                     : c == '+' || c == '-'                         ? CHAR_SIGN
                     : c == '?'                                     ? CHAR_MARK
                                                                    : 0;
    }
    return classes;
}
constexpr std::array<std::uint8_t, 256> kClasses = MakeClasses();

bool Is(char c, unsigned classes) { return (kClasses[static_cast<unsigned char>(c)] & classes) != 0; }

#if defined(__SSE2__)
// Which of sixteen bytes lie between two characters, these included.
__m128i Within(__m128i bytes, char first, char last) {
    return _mm_and_si128(_mm_cmpgt_epi8(bytes, _mm_set1_epi8(static_cast<char>(first - 1))),
                         _mm_cmplt_epi8(bytes, _mm_set1_epi8(static_cast<char>(last + 1))));
}
__m128i Equal(__m128i bytes, char character) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(character)); }
template <class... Masks> __m128i AnyOf(__m128i mask, Masks... masks) {
    ((mask = _mm_or_si128(mask, masks)), ...);
    return mask;
}
__m128i Load16(const char* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
#endif

// Whether what stands at a place may not go into the shape as it is: a quote; white space that is more, or
// other, than one blank ahead of something; a mark, a sign, or a digit or dot that a number may begin with.
// What is right behind a name, a number or a dot is a part of it.
bool IsLookedAt(std::string_view text, std::size_t at) {
    const char c = text[at];
    if (Is(c, CHAR_DIGIT | CHAR_DOT)) {
        return at == 0 || !Is(text[at - 1], kInName | CHAR_DOT);
    }
    if (Is(c, CHAR_SPACE)) {
        return c != ' ' || at + 1 == text.size() || Is(text[at + 1], CHAR_SPACE);
    }
    return Is(c, CHAR_QUOTE | CHAR_MARK | CHAR_SIGN);
}

// Copies what goes into the shape as it is, from a place up to the next one that is looked at, which it
// returns. There is room for sixteen more bytes than those.
std::size_t CopyPlain(std::string_view text, std::size_t at, char*& out) {
    char* end = out; // in a register, for what is written might be anything
#if defined(__SSE2__)
    // The same as above for sixteen bytes at once, with the ones right ahead of and behind each.
    if (at == 0 && !text.empty() && !IsLookedAt(text, 0)) {
        *end++ = text[at++];
    }
    const auto otherSpace = [](__m128i bytes) { return Within(bytes, '\t', '\r'); };
    for (; at != 0 && at + 17 <= text.size(); at += 16) {
        const __m128i bytes = Load16(text.data() + at);
        const __m128i next = Load16(text.data() + at + 1);
        const __m128i before = Load16(text.data() + at - 1);
        const __m128i inName =
            AnyOf(Within(_mm_or_si128(before, _mm_set1_epi8(0x20)), 'a', 'z'), Within(before, '0', '9'),
                  Equal(before, '_'), Equal(before, '#'), Equal(before, '$'), Equal(before, '@'),
                  Equal(before, '.'), _mm_cmplt_epi8(before, _mm_setzero_si128()));
        const __m128i begins = _mm_andnot_si128(inName, AnyOf(Within(bytes, '0', '9'), Equal(bytes, '.')));
        const __m128i doubled = _mm_and_si128(Equal(bytes, ' '), AnyOf(Equal(next, ' '), otherSpace(next)));
        const auto places = static_cast<std::uint32_t>(
            _mm_movemask_epi8(AnyOf(begins, doubled, otherSpace(bytes), Equal(bytes, '\''), Equal(bytes, '?'),
                                    Equal(bytes, '+'), Equal(bytes, '-'))));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(end), bytes);
        if (places != 0) {
            const int place = std::countr_zero(places);
            out = end + place;
            return at + static_cast<std::size_t>(place);
        }
        end += 16;
    }
#endif
    while (at < text.size() && !IsLookedAt(text, at)) {
        *end++ = text[at++];
    }
    out = end;
    return at;
}

std::size_t SkipDigits(std::string_view text, std::size_t at) {
    while (at < text.size() && IsDigit(text[at])) {
        ++at;
    }
    return at;
}

std::size_t SkipSpace(std::string_view text, std::size_t at) {
    while (at < text.size() && Is(text[at], CHAR_SPACE)) {
        ++at;
    }
    return at;
}

// Behind the literal that begins at a place. A doubled quote stands in it and does not end it.
std::size_t EndOfLiteral(std::string_view text, std::size_t at) {
    do {
        at = std::min(text.find('\'', at + 1), text.size() - 1) + 1;
    } while (at < text.size() && text[at] == '\'');
    return at;
}

bool IsDigitAt(std::string_view text, std::size_t at) { return at < text.size() && IsDigit(text[at]); }

// Behind the longest number without a sign at a place; the place itself where there is none.
std::size_t EndOfNumber(std::string_view text, std::size_t place) {
    std::size_t end = SkipDigits(text, place);
    if (end < text.size() && text[end] == '.' && IsDigitAt(text, end + 1)) {
        end = SkipDigits(text, end + 1);
    }
    if (end != place && end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        const bool hasSign = end + 1 < text.size() && Is(text[end + 1], CHAR_SIGN);
        const std::size_t exponent = end + (hasSign ? 2 : 1);
        if (IsDigitAt(text, exponent)) {
            end = SkipDigits(text, exponent);
        }
    }
    return end;
}

// Whether a sign at a place is that of a number behind it, and no operator between two values.
bool IsNumbersSign(std::string_view text, std::size_t place) {
    while (place != 0 && Is(text[place - 1], CHAR_SPACE)) {
        --place;
    }
    if (place == 0) {
        return false;
    }
    if (std::string_view("(,=<>").find(text[place - 1]) != std::string_view::npos) {
        return true;
    }
    std::size_t word = place;
    // No word that counts is longer.
    while (word != 0 && place - word <= 7 && Is(text[word - 1], kInName)) {
        --word;
    }
    const std::string_view before = text.substr(word, place - word);
    constexpr std::array<std::string_view, 6> words{"AND", "BETWEEN", "THEN", "ELSE", "LIKE", "SELECT"};
    return std::find(words.begin(), words.end(), before) != words.end();
}

// Behind the number at a place, its sign included, if it is one that stands for itself and is no part of a
// name or of a longer number; else the place itself.
std::size_t EndOfLoneNumber(std::string_view text, std::size_t place) {
    if (place != 0 && Is(text[place - 1], kInName | CHAR_DOT)) {
        return place;
    }
    const std::size_t digits = place + (Is(text[place], CHAR_SIGN) ? 1 : 0);
    const std::size_t end = EndOfNumber(text, digits);
    const bool isLone = end != digits && (end == text.size() || !Is(text[end], kInName));
    return isLone ? end : place;
}

} // namespace

std::string ShapeOf(std::string_view text, std::string_view operation) {
    return std::string(CShapeText().Of(text, operation));
}

std::string_view CShapeText::Of(std::string_view text, std::string_view operation) {
    const std::size_t place = operation.empty() ? 0 : text.find(operation);
    if (place != std::string_view::npos) {
        text.remove_prefix(place);
    }
    // A list of two marks grows, all else shrinks.
    const std::size_t room = 2 * text.size() + 32;
    if (m_nRoom < room) {
        m_nRoom = 2 * room;
        m_shape = std::make_unique_for_overwrite<char[]>(m_nRoom);
    }
    m_pListEnd = nullptr;
    m_bList = false;
    char* end = m_shape.get();
    std::size_t at = SkipSpace(text, 0);
    while (at < text.size()) {
        at = CopyPlain(text, at, end);
        if (at == text.size()) {
            break;
        }
        if (Is(text[at], CHAR_SPACE)) {
            at = SkipSpace(text, at);
            if (at < text.size()) {
                *end++ = ' ';
            }
        } else {
            at = TakeValue(text, at, end);
        }
    }
    return {m_shape.get(), static_cast<std::size_t>(end - m_shape.get())};
}

// A literal, a mark or a number at a place becomes a mark; what only looks like one stays. Returns the place
// behind it; `out` is the end of the shape.
std::size_t CShapeText::TakeValue(std::string_view text, std::size_t at, char*& out) {
    const bool isSign = Is(text[at], CHAR_SIGN);
    std::size_t end = at;
    if (Is(text[at], CHAR_QUOTE)) {
        end = SkipDigits(text, EndOfLiteral(text, at));
    } else if (Is(text[at], CHAR_MARK)) {
        end = SkipDigits(text, at + 1);
    } else if (!isSign || IsNumbersSign(text, at)) {
        end = EndOfLoneNumber(text, at);
        if (end == at) {
            // A signed number that does not stand for itself is left as a whole.
            end = isSign ? EndOfNumber(text, at + 1) : at + 1;
            out = std::copy(text.begin() + at, text.begin() + end, out);
            return end;
        }
    }
    if (end == at) {
        *out++ = text[at];
        return at + 1;
    }
    out = AddMark(out);
    return end;
}

// A mark behind another one and a comma joins its list. Returns the shape's new end.
char* CShapeText::AddMark(char* end) {
    const auto trimBlanks = [this](char* from) {
        while (from > m_pListEnd && from[-1] == ' ') {
            --from;
        }
        return from;
    };
    bool joins = false;
    if (m_pListEnd != nullptr) {
        char* const comma = trimBlanks(end);
        joins = comma > m_pListEnd && comma[-1] == ',' && trimBlanks(comma - 1) == m_pListEnd;
    }
    if (joins) {
        constexpr std::string_view more = ", ...";
        end = m_bList ? m_pListEnd : std::copy(more.begin(), more.end(), m_pListEnd);
    } else {
        *end++ = '?';
    }
    m_bList = joins;
    m_pListEnd = end;
    return end;
}

} // namespace carvelot
