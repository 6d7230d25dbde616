#include "records/Interner.h"

#include "text/ByteScan.h"

#include <stdexcept>

namespace carvelot {

namespace {

std::uint32_t HashOf(std::string_view text) {
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
    std::uint64_t hash = text.size() * factor;
    const auto mix = [&](std::uint64_t bytes) {
        hash = (hash ^ bytes) * factor;
        hash ^= hash >> 32U;
    };
    const char* p = text.data();
    std::size_t rest = text.size();
    for (; rest > 8; rest -= 8, p += 8) {
        mix(Load64(p));
    }
    // The last load may overlap the one before.
    if (text.size() >= 8) {
        mix(Load64(text.data() + text.size() - 8));
    } else if (rest >= 4) {
        mix(Load32(p) | (std::uint64_t{Load32(p + rest - 4)} << 32U));
    } else {
        mix(static_cast<unsigned char>(p[0]) |
            (std::uint64_t{static_cast<unsigned char>(p[rest / 2])} << 8U) |
            (std::uint64_t{static_cast<unsigned char>(p[rest - 1])} << 16U));
    }
    return static_cast<std::uint32_t>(hash);
}

} // namespace

void CInterner::Clear() {
    m_store.Clear();
    m_texts.assign(1, std::string_view{});
    m_slots.assign(kFewSlots, Slot{});
}

std::uint32_t CInterner::Id(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    const std::uint32_t hash = HashOf(text);
    std::size_t at = hash & (m_slots.size() - 1);
    while (m_slots[at].number != 0) {
        if (m_slots[at].hash == hash && SameShortText(m_texts[m_slots[at].number - 1], text)) {
            return m_slots[at].number - 1;
        }
        at = (at + 1) & (m_slots.size() - 1);
    }
    if (m_texts.size() >= m_nMost) {
        throw std::length_error("interned texts");
    }
    const auto id = static_cast<std::uint32_t>(m_texts.size());
    m_texts.push_back(m_store.Keep(text));
    m_slots[at] = {hash, id + 1};
    if (m_texts.size() * 2 > m_slots.size()) {
        Grow();
    }
    return id;
}

void CInterner::Grow() {
    std::vector<Slot> slots(m_slots.size() * 2, Slot{});
    for (const Slot& slot : m_slots) {
        if (slot.number != 0) {
            std::size_t at = slot.hash & (slots.size() - 1);
            while (slots[at].number != 0) {
                at = (at + 1) & (slots.size() - 1);
            }
            slots[at] = slot;
        }
    }
    m_slots = std::move(slots);
}

} // namespace carvelot
