#include "platform/UnicodeTest.h"

#include <windows.h>

namespace carvelot::platform {

bool LooksLikeUnicode(const void* block, std::size_t size) {
    return IsTextUnicode(block, static_cast<int>(size), nullptr) != FALSE;
}

} // namespace carvelot::platform
