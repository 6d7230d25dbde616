// What frames are counted by: kind and name, each pair under one number.
#pragma once

#include "records/Interner.h"
#include "records/NumberMap.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace carvelot {

// In the order of their names.
enum class FrameKind : std::uint8_t { Event, Function, Object, Statement };

std::string_view NameOf(FrameKind kind);

inline constexpr std::uint32_t kNoKey = 0xFFFFFFFE;

// Two numbers as one, to look things up by.
constexpr std::uint64_t PairOf(std::uint32_t one, std::uint32_t other) {
    return (std::uint64_t{one} << 32U) | other;
}

class CFrameKeys {
public:
    std::uint32_t Number(FrameKind kind, std::string_view name); // given on first sight in rising order
    std::uint32_t Count() const { return static_cast<std::uint32_t>(m_keys.size()); }
    FrameKind Kind(std::uint32_t key) const { return m_keys[key].kind; }
    // Whether a key is of a kind.
    bool HasKind(FrameKind kind) const { return m_hasKind[static_cast<std::size_t>(kind)]; }
    std::string_view Name(std::uint32_t key) const { return m_names.Text(m_keys[key].name); }
    // By kind and name; no key comes first.
    bool Less(std::uint32_t one, std::uint32_t other) const;

private:
    struct Key {
        std::uint32_t name;
        FrameKind kind;
    };

    CInterner m_names;
    CNumberMap m_numbers; // by kind and name
    std::vector<Key> m_keys;
    std::array<bool, 4> m_hasKind{};
};

} // namespace carvelot
