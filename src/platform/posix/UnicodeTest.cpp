#include "platform/UnicodeTest.h"

namespace carvelot::platform {

bool LooksLikeUnicode(const void* block, std::size_t size) {
    const auto* const bytes = static_cast<const unsigned char*>(block);
    if (size == 0 || size % 2 != 0) {
        return false;
    }
    for (std::size_t at = 0; at < size; at += 2) {
        const unsigned unit = bytes[at] | (static_cast<unsigned>(bytes[at + 1]) << 8);
        if (unit == 0x0000 || unit == 0xFFFE || unit == 0xFFFF || unit == 0x0D0A) {
            return false;
        }
    }
    return true;
}

} // namespace carvelot::platform
