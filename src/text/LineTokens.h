// Words of a line as the C library's strtok takes them, the delimiters changing as the line goes.
#pragma once

#include "text/ByteScan.h"

#include <cstdint>
#include <string_view>

namespace carvelot {

// One or two characters that end a word.
struct Delimiters {
    char one;
    char other;

    bool Hold(char c) const { return c == one || c == other; }
};
inline constexpr Delimiters kBlank{' ', ' '};
inline constexpr Delimiters kBlankOrTab{' ', '\t'};
inline constexpr Delimiters kTab{'\t', '\t'};
inline constexpr Delimiters kBrackets{'[', ']'};

class CLineTokens {
public:
    explicit CLineTokens(std::string_view line) : m_rest(line) {}

    // The next word between delimiters: leading ones are skipped, and the one that ends it is stepped over.
    // False when nothing but delimiters is left.
    bool Next(Delimiters delimiters, std::string_view& token) {
        std::size_t first = 0;
        while (first < m_rest.size() && delimiters.Hold(m_rest[first])) {
            ++first;
        }
        m_rest.remove_prefix(first);
        if (m_rest.empty()) {
            return false;
        }
        const std::size_t size = FindEither(m_rest, delimiters.one, delimiters.other);
        token = m_rest.substr(0, size);
        m_rest.remove_prefix(size < m_rest.size() ? size + 1 : size);
        return true;
    }

    std::string_view Rest() const { return m_rest; }

private:
    std::string_view m_rest;
};

// A month is any piece of this, by plain substring search: "anF" is one too.
inline constexpr std::string_view kMonths = "JanFebMarAprMayJunJulAugSepOctNovDec";

inline bool IsMonth(std::string_view token) { return kMonths.find(token) != std::string_view::npos; }

} // namespace carvelot
