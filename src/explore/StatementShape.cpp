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
std::size_t FirstOf(std::uint32_t places) { return static_cast<std::size_t>(std::countr_zero(places)); }
#endif

// Where a literal begins or white space stands that is more, or other, than one blank ahead of something.
std::size_t FindQuoteOrSpace(std::string_view text, std::size_t at) {
#if defined(__SSE2__)
    const auto otherSpace = [](__m128i bytes) { return Within(bytes, '\t', '\r'); };
    for (; at + 17 <= text.size(); at += 16) {
        const __m128i bytes = Load16(text.data() + at);
        const __m128i next = Load16(text.data() + at + 1);
        const __m128i doubled = _mm_and_si128(Equal(bytes, ' '), AnyOf(Equal(next, ' '), otherSpace(next)));
        const auto places = static_cast<std::uint32_t>(
            _mm_movemask_epi8(AnyOf(Equal(bytes, '\''), otherSpace(bytes), doubled)));
        if (places != 0) {
            return at + FirstOf(places);
        }
    }
#endif
    while (at < text.size() && !Is(text[at], CHAR_QUOTE) &&
           !(Is(text[at], CHAR_SPACE) &&
             (text[at] != ' ' || at + 1 == text.size() || Is(text[at + 1], CHAR_SPACE)))) {
        ++at;
    }
    return at;
}

// Where a mark, a sign, or a digit or dot that a number may begin with stands. What is right behind a name, a
// number or a dot is a part of it.
std::size_t FindMarkOrNumber(std::string_view text, std::size_t at) {
    const auto isOne = [text](std::size_t place) {
        return Is(text[place], CHAR_MARK | CHAR_SIGN) ||
               (Is(text[place], CHAR_DIGIT | CHAR_DOT) &&
                (place == 0 || !Is(text[place - 1], kInName | CHAR_DOT)));
    };
#if defined(__SSE2__)
    if (at == 0 && !text.empty()) {
        if (isOne(0)) {
            return 0;
        }
        at = 1;
    }
    for (; at + 16 <= text.size(); at += 16) {
        const __m128i bytes = Load16(text.data() + at);
        const __m128i before = Load16(text.data() + at - 1);
        const __m128i lower = _mm_or_si128(before, _mm_set1_epi8(0x20));
        const __m128i beyondAscii = _mm_cmplt_epi8(before, _mm_setzero_si128());
        const __m128i inName =
            AnyOf(Within(lower, 'a', 'z'), Within(before, '0', '9'), Equal(before, '_'), Equal(before, '#'),
                  Equal(before, '$'), Equal(before, '@'), Equal(before, '.'), beyondAscii);
        const __m128i begins = _mm_andnot_si128(inName, AnyOf(Within(bytes, '0', '9'), Equal(bytes, '.')));
        const auto places = static_cast<std::uint32_t>(
            _mm_movemask_epi8(AnyOf(begins, Equal(bytes, '?'), Equal(bytes, '+'), Equal(bytes, '-'))));
        if (places != 0) {
            return at + FirstOf(places);
        }
    }
#endif
    while (at < text.size() && !isOne(at)) {
        ++at;
    }
    return at;
}

std::size_t SkipDigits(std::string_view text, std::size_t at) {
    while (at < text.size() && IsDigit(text[at])) {
        ++at;
    }
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
    while (place != 0 && text[place - 1] == ' ') {
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
    ReplaceLiterals(place == std::string_view::npos ? text : text.substr(place));
    ReplaceNumbers();
    return m_strShape;
}

void CShapeText::ReplaceLiterals(std::string_view text) {
    m_strBare.clear();
    std::size_t at = 0;
    while (at < text.size() && Is(text[at], CHAR_SPACE)) {
        ++at;
    }
    while (at < text.size()) {
        const std::size_t from = at;
        at = FindQuoteOrSpace(text, at);
        m_strBare.append(text, from, at - from);
        if (at < text.size() && text[at] == '\'') {
            m_strBare.push_back('?');
            // A doubled quote stands in the literal and does not end it.
            do {
                at = std::min(text.find('\'', at + 1), text.size() - 1) + 1;
            } while (at < text.size() && text[at] == '\'');
        }
        const std::size_t space = at;
        while (at < text.size() && Is(text[at], CHAR_SPACE)) {
            ++at;
        }
        if (at != space && at < text.size()) {
            m_strBare.push_back(' ');
        }
    }
}

void CShapeText::ReplaceNumbers() {
    const std::string_view text = m_strBare;
    m_strShape.clear();
    m_nListEnd = 0;
    m_bList = false;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t from = at;
        at = FindMarkOrNumber(text, at);
        m_strShape.append(text, from, at - from);
        if (at == text.size()) {
            break;
        }
        std::size_t end = at;
        if (text[at] == '?') {
            end = SkipDigits(text, at + 1);
        } else if (!Is(text[at], CHAR_SIGN) || IsNumbersSign(text, at)) {
            end = EndOfLoneNumber(text, at);
        }
        if (end != at) {
            AddMark();
            at = end;
            continue;
        }
        // A signed number that does not stand for itself is left as a whole.
        end = at + 1;
        if (Is(text[at], CHAR_SIGN) && IsNumbersSign(text, at)) {
            end = EndOfNumber(text, end);
        }
        m_strShape.append(text, at, end - at);
        at = end;
    }
}

// A mark behind another one and a comma joins its list.
void CShapeText::AddMark() {
    const auto trimBlanks = [this](std::size_t end) {
        while (end > m_nListEnd && m_strShape[end - 1] == ' ') {
            --end;
        }
        return end;
    };
    const std::size_t comma = trimBlanks(m_strShape.size());
    const bool joins = m_nListEnd != 0 && comma > m_nListEnd && m_strShape[comma - 1] == ',' &&
                       trimBlanks(comma - 1) == m_nListEnd;
    if (joins) {
        m_strShape.resize(m_nListEnd);
        if (!m_bList) {
            m_strShape.append(", ...");
        }
        m_bList = true;
    } else {
        m_strShape.push_back('?');
        m_bList = false;
    }
    m_nListEnd = m_strShape.size();
}

} // namespace carvelot
