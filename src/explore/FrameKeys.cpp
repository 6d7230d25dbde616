#include "explore/FrameKeys.h"

#include <array>

namespace carvelot {

std::string_view NameOf(FrameKind kind) {
    constexpr std::array<std::string_view, 4> names{"event", "function", "object", "statement"};
    return names[static_cast<std::size_t>(kind)];
}

std::uint32_t CFrameKeys::Number(FrameKind kind, std::string_view name) {
    const std::uint32_t id = m_names.Id(name);
    const auto [number, isNew] = m_numbers.FindOrAdd(PairOf(id, static_cast<std::uint32_t>(kind)), Count());
    if (isNew) {
        m_keys.push_back({id, kind});
        m_hasKind[static_cast<std::size_t>(kind)] = true;
    }
    return number;
}

bool CFrameKeys::Less(std::uint32_t one, std::uint32_t other) const {
    if (one == other || one == kNoKey || other == kNoKey) {
        return one == kNoKey && other != kNoKey;
    }
    return Kind(one) != Kind(other) ? Kind(one) < Kind(other) : Name(one) < Name(other);
}

} // namespace carvelot
