// Readings beyond the plain one, each for lines that some servers write; a log has them only if someone chose
// them.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace carvelot {

enum class Dialect : std::uint8_t {
    Months,   // short month names of other languages count as the English ones
    Numbered, // a JAS line's "[12345][JAS]" names the source JAS
};

struct DialectName {
    Dialect dialect;
    std::string_view name;
};
inline constexpr std::array<DialectName, 2> kDialects = {
    {{Dialect::Months, "months"}, {Dialect::Numbered, "numbered"}}};

inline std::optional<Dialect> DialectOf(std::string_view name) {
    for (const DialectName& known : kDialects) {
        if (known.name == name) {
            return known.dialect;
        }
    }
    return std::nullopt;
}

class CDialects {
public:
    constexpr CDialects() = default;
    constexpr CDialects(std::initializer_list<Dialect> dialects) {
        for (const Dialect dialect : dialects) {
            Add(dialect);
        }
    }

    constexpr bool Has(Dialect dialect) const { return (m_nBits & Bit(dialect)) != 0; }
    constexpr bool Empty() const { return m_nBits == 0; }
    constexpr void Add(Dialect dialect) { m_nBits = static_cast<std::uint8_t>(m_nBits | Bit(dialect)); }
    constexpr void Add(CDialects others) { m_nBits = static_cast<std::uint8_t>(m_nBits | others.m_nBits); }
    constexpr CDialects Without(CDialects others) const {
        CDialects rest;
        rest.m_nBits = static_cast<std::uint8_t>(m_nBits & ~others.m_nBits);
        return rest;
    }
    constexpr bool operator==(const CDialects&) const = default;

    // The way back from Names; what is no dialect's name is passed over.
    static CDialects Named(std::string_view names) {
        const std::string list = ", " + std::string(names) + ',';
        CDialects dialects;
        for (const DialectName& known : kDialects) {
            if (list.find(", " + std::string(known.name) + ',') != std::string::npos) {
                dialects.Add(known.dialect);
            }
        }
        return dialects;
    }
    // "months, numbered"; empty for none.
    std::string Names() const {
        std::string names;
        for (const DialectName& known : kDialects) {
            if (Has(known.dialect)) {
                names.append(names.empty() ? "" : ", ").append(known.name);
            }
        }
        return names;
    }

private:
    static constexpr std::uint8_t Bit(Dialect dialect) {
        return static_cast<std::uint8_t>(1U << static_cast<unsigned>(dialect));
    }

    std::uint8_t m_nBits = 0;
};

} // namespace carvelot
