// Numbers as people read them.
#pragma once

#include <cstdint>
#include <string>

namespace carvelot {

// With a comma between each three digits.
inline std::string Grouped(std::uint64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3; at -= 3) {
        digits.insert(at - 3, 1, ',');
    }
    return digits;
}

} // namespace carvelot
