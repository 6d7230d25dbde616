#include "logcore/Interner.h"

#include <functional>
#include <stdexcept>

namespace carvelot {

void CInterner::Clear() {
    m_store.Clear();
    m_texts.assign(1, std::string_view{});
    m_hashes.assign(1, 0);
    m_slots.assign(256, 0);
}

std::uint32_t CInterner::Id(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    const std::size_t hash = std::hash<std::string_view>{}(text);
    std::size_t slot = hash & (m_slots.size() - 1);
    while (m_slots[slot] != 0) {
        const std::uint32_t id = m_slots[slot] - 1;
        if (m_hashes[id] == hash && m_texts[id] == text) {
            return id;
        }
        slot = (slot + 1) & (m_slots.size() - 1);
    }
    if (m_texts.size() >= m_nMost) {
        throw std::length_error("interned texts");
    }
    const auto id = static_cast<std::uint32_t>(m_texts.size());
    m_texts.push_back(m_store.Keep(text));
    m_hashes.push_back(hash);
    m_slots[slot] = id + 1;
    if (m_texts.size() * 2 > m_slots.size()) {
        Grow();
    }
    return id;
}

void CInterner::Grow() {
    std::vector<std::uint32_t> slots(m_slots.size() * 2, 0);
    for (std::uint32_t id = 1; id < m_texts.size(); ++id) {
        std::size_t slot = m_hashes[id] & (slots.size() - 1);
        while (slots[slot] != 0) {
            slot = (slot + 1) & (slots.size() - 1);
        }
        slots[slot] = id + 1;
    }
    m_slots = std::move(slots);
}

} // namespace carvelot
