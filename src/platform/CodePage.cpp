#include "platform/CodePage.h"

#include <cstdint>
#include <cstring>

namespace carvelot::platform {

namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080u;

std::uint64_t LoadWord(const char* text) {
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    return word;
}

bool IsTail(unsigned char byte) { return (byte & 0xC0) == 0x80; }

} // namespace

bool IsAscii(std::string_view text) {
    const char* at = text.data();
    std::size_t left = text.size();
    for (; left >= 32; at += 32, left -= 32) {
        if ((LoadWord(at) | LoadWord(at + 8) | LoadWord(at + 16) | LoadWord(at + 24)) & kHighBits) {
            return false;
        }
    }
    for (; left >= 8; at += 8, left -= 8) {
        if (LoadWord(at) & kHighBits) {
            return false;
        }
    }
    for (; left > 0; ++at, --left) {
        if (static_cast<unsigned char>(*at) >= 0x80) {
            return false;
        }
    }
    return true;
}

bool IsValidUtf8(std::string_view text) {
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        const auto lead = static_cast<unsigned char>(*at);
        if (lead < 0x80) {
            while (end - at >= 8 && !(LoadWord(at) & kHighBits)) {
                at += 8;
            }
            while (at != end && static_cast<unsigned char>(*at) < 0x80) {
                ++at;
            }
            continue;
        }
        const std::ptrdiff_t left = end - at;
        const auto byte = [at](std::ptrdiff_t index) { return static_cast<unsigned char>(at[index]); };
        if (lead >= 0xC2 && lead <= 0xDF) {
            if (left < 2 || !IsTail(byte(1))) {
                return false;
            }
            at += 2;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            if (left < 3 || !IsTail(byte(1)) || !IsTail(byte(2))) {
                return false;
            }
            if ((lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xED && byte(1) > 0x9F)) {
                return false;
            }
            at += 3;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            if (left < 4 || !IsTail(byte(1)) || !IsTail(byte(2)) || !IsTail(byte(3))) {
                return false;
            }
            if ((lead == 0xF0 && byte(1) < 0x90) || (lead == 0xF4 && byte(1) > 0x8F)) {
                return false;
            }
            at += 4;
        } else {
            return false;
        }
    }
    return true;
}

} // namespace carvelot::platform
