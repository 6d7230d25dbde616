// Lines that hold a word and yet became no record, by the reason.
#pragma once

#include <cstdint>

namespace carvelot {

struct RefusedLines {
    std::uint64_t noTime = 0;   // of a debug log: the third word is no time
    std::uint64_t noMonth = 0;  // of a JAS log: the second word is no month
    std::uint64_t filtered = 0; // of another process than the one that is kept

    std::uint64_t Count() const { return noTime + noMonth + filtered; }
};

} // namespace carvelot
