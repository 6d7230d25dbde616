// Words of a line as the C library's strtok takes them, the delimiters changing as the line goes.
#pragma once

#include <cstdint>
#include <string_view>

namespace carvelot {

class CLineTokens {
public:
    explicit CLineTokens(std::string_view line) : m_rest(line) {}

    // The next word between delimiters: leading ones are skipped, and the one that ends it is stepped over.
    // False when nothing but delimiters is left.
    template <class IsDelimiter> bool Next(IsDelimiter isDelimiter, std::string_view& token) {
        const char* at = m_rest.data();
        const char* const end = at + m_rest.size();
        while (at != end && isDelimiter(*at)) {
            ++at;
        }
        if (at == end) {
            m_rest = {end, 0};
            return false;
        }
        const char* const first = at;
        while (at != end && !isDelimiter(*at)) {
            ++at;
        }
        token = {first, static_cast<std::size_t>(at - first)};
        if (at != end) {
            ++at;
        }
        m_rest = {at, static_cast<std::size_t>(end - at)};
        return true;
    }

    std::string_view Rest() const { return m_rest; }

private:
    std::string_view m_rest;
};

inline constexpr auto kBlank = [](char c) { return c == ' '; };
inline constexpr auto kBlankOrTab = [](char c) { return c == ' ' || c == '\t'; };
inline constexpr auto kTab = [](char c) { return c == '\t'; };
inline constexpr auto kBrackets = [](char c) { return c == '[' || c == ']'; };

// A month is any piece of this, by plain substring search: "anF" is one too.
inline constexpr std::string_view kMonths = "JanFebMarAprMayJunJulAugSepOctNovDec";

inline bool IsMonth(std::string_view token) { return kMonths.find(token) != std::string_view::npos; }

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

} // namespace carvelot
