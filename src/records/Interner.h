// Texts that truly repeat (labels, months, users, levels, table and function names), each kept once under a
// number.
#pragma once

#include "records/TextStore.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace carvelot {

class CInterner {
public:
    // The most texts: their numbers and the numbers' successors have 32 bits.
    static constexpr std::size_t kMost = 0xFFFFFFFE;

    CInterner() { Clear(); }

    // The number of a text, given on first sight in rising order; the empty text is 0. Throws
    // std::length_error instead of a number that would be no new one.
    std::uint32_t Id(std::string_view text);
    std::string_view Text(std::uint32_t id) const { return m_texts[id]; }
    std::size_t Count() const { return m_texts.size(); }
    void Clear();
    // For tests of the boundary.
    void LimitTo(std::size_t texts) { m_nMost = texts; }

private:
    static constexpr std::size_t kFewSlots = 16;

    void Grow();

    CTextStore m_store;
    std::vector<std::string_view> m_texts;
    struct Slot {
        std::uint32_t hash;
        std::uint32_t number; // of the text, + 1; 0 for a free slot
    };
    std::vector<Slot> m_slots; // a power of two long, at most half full
    std::size_t m_nMost = kMost;
};

} // namespace carvelot
