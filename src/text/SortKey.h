// What a row is sorted by in one column: a text without regard to case, or a number.
#pragma once

#include <bit>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace carvelot {

class SortKey {
public:
    // A column that does not sort.
    SortKey() = default;
    // A text that lives elsewhere until the sort is done; `ascii` says that it is known to be pure ASCII.
    explicit SortKey(std::string_view text, bool ascii = false)
        : m_text(text), m_kind(Kind::Text), m_ascii(ascii) {}
    // A text made for the sort.
    explicit SortKey(std::string&& text) : m_made(std::move(text)), m_kind(Kind::MadeText) {}
    explicit SortKey(std::uint64_t number) : m_number(number), m_kind(Kind::Number) {}
    explicit SortKey(std::int64_t number) : SortKey(static_cast<std::uint64_t>(number) ^ kSign) {}
    explicit SortKey(std::int32_t number) : SortKey(std::int64_t{number}) {}
    // Adding 0 makes a 0 of a -0, which is no smaller.
    explicit SortKey(double number) : SortKey(OrderedBits(std::bit_cast<std::uint64_t>(number + 0.0))) {}
    explicit SortKey(float number) : SortKey(static_cast<double>(number)) {}

    bool IsText() const { return m_kind == Kind::Text || m_kind == Kind::MadeText; }
    bool IsKnownAscii() const { return m_ascii; }
    bool IsMade() const { return m_kind == Kind::MadeText; }
    std::string_view Text() const { return IsMade() ? std::string_view(m_made) : m_text; }
    std::uint64_t Number() const { return m_number; } // orders as the number does; 0 without one

private:
    enum class Kind : std::uint8_t { None, Text, MadeText, Number };
    static constexpr std::uint64_t kSign = std::uint64_t{1} << 63U;
    static constexpr std::uint64_t OrderedBits(std::uint64_t bits) {
        return (bits & kSign) != 0 ? ~bits : bits | kSign;
    }

    std::string m_made;
    std::string_view m_text;
    std::uint64_t m_number = 0;
    Kind m_kind = Kind::None;
    bool m_ascii = false;
};

// Brings rows into the order of their keys, which are all texts or all numbers, or into exactly the reverse;
// rows with equal keys keep their order.
void SortByKey(std::vector<std::size_t>& rows, bool descending,
               const std::function<SortKey(std::size_t row)>& keyOf);

} // namespace carvelot
