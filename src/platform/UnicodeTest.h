// The system's guess whether a block holds UTF-16.
#pragma once

#include <cstddef>

namespace carvelot::platform {

/// On Windows the answer of IsTextUnicode with all its tests. Elsewhere no for a block that holds one of the
/// 16-bit units that its documentation calls illegal (0x0000, 0xFFFE, 0xFFFF, 0x0D0A) or that has an odd
/// length, else yes.
bool LooksLikeUnicode(const void* block, std::size_t size);

} // namespace carvelot::platform
