// Numbers by number: places in a list by the number of what stands there. Entries are never removed. Much
// quicker than std::unordered_map, for which each lookup is a chain of pointers; an analysis makes several
// for every line that concerns it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace carvelot {

class CNumberMap {
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    // The value under a key, entered as `value` when there was none; and whether it was.
    std::pair<std::uint32_t, bool> FindOrAdd(std::uint64_t key, std::uint32_t value) {
        const std::size_t before = m_nCount;
        const std::uint32_t found = At(key, value);
        return {found, m_nCount != before};
    }
    // The value under a key to be changed, entered as `value` when there was none; valid until the next
    // entry.
    std::uint32_t& At(std::uint64_t key, std::uint32_t value) {
        if (m_nCount * 2 >= m_slots.size()) {
            Grow();
        }
        Slot& slot = SlotOf(key);
        if (slot.value == kNone) {
            slot = {key, value};
            ++m_nCount;
        }
        return slot.value;
    }
    // kNone when there is none.
    std::uint32_t Find(std::uint64_t key) const {
        return m_slots.empty() ? kNone : const_cast<CNumberMap*>(this)->SlotOf(key).value;
    }

private:
    struct Slot {
        std::uint64_t key = 0;
        std::uint32_t value = kNone;
    };

    Slot& SlotOf(std::uint64_t key) {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t at = static_cast<std::size_t>((key * 0x9E3779B97F4A7C15U) >> 32U) & mask;
        while (m_slots[at].value != kNone && m_slots[at].key != key) {
            at = (at + 1) & mask;
        }
        return m_slots[at];
    }
    void Grow() {
        std::vector<Slot> old(m_slots.empty() ? 8 : m_slots.size() * 2);
        old.swap(m_slots);
        for (const Slot& slot : old) {
            if (slot.value != kNone) {
                SlotOf(slot.key) = slot;
            }
        }
    }

    std::vector<Slot> m_slots; // a power of two long, at most half full
    std::size_t m_nCount = 0;
};

} // namespace carvelot
