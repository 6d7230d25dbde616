#include "platform/CodePage.h"

#include <cstdint>

namespace carvelot::platform {

namespace {

// Windows-1252 from 0x80 to 0x9F; the rest is Latin-1.
constexpr char16_t kWindows1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

} // namespace

std::string_view BytesToUtf8(std::string_view bytes, std::string& scratch) {
    if (IsValidUtf8(bytes)) {
        return bytes;
    }
    scratch.clear();
    scratch.reserve(bytes.size() * 2);
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80) {
            scratch.push_back(character);
            continue;
        }
        const unsigned unit = byte < 0xA0 ? kWindows1252[byte - 0x80] : byte;
        if (unit < 0x800) {
            scratch.push_back(static_cast<char>(0xC0 | (unit >> 6)));
        } else {
            scratch.push_back(static_cast<char>(0xE0 | (unit >> 12)));
            scratch.push_back(static_cast<char>(0x80 | ((unit >> 6) & 0x3F)));
        }
        scratch.push_back(static_cast<char>(0x80 | (unit & 0x3F)));
    }
    return scratch;
}

std::string CodePageName() { return "Windows-1252"; }

std::string Utf8ToBytes(std::string_view utf8) { return std::string(utf8); }

std::string Utf8ToTextFile(std::string_view utf8) { return Utf8ToBytes(utf8); }

} // namespace carvelot::platform
