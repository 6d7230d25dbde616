#include "live/CompanionLibrary.h"

#include "text/Integers.h"
#include "text/TextColumns.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace carvelot {

namespace {

constexpr std::int32_t kProbeSize = 100;

// The library's callers have always counted units as bytes here; the library ends its texts itself.
template <std::size_t N> void ClearBytes(char16_t (&buffer)[N]) {
    std::fill_n(reinterpret_cast<unsigned char*>(buffer), N, static_cast<unsigned char>(0));
}

int HexDigit(char ch) {
    if (ch >= '0' && ch <= '9') {
        return ch - '0';
    }
    if (ch >= 'a' && ch <= 'f') {
        return ch - 'a' + 10;
    }
    if (ch >= 'A' && ch <= 'F') {
        return ch - 'A' + 10;
    }
    return -1;
}

} // namespace

void CProcInfoBuffers::Clear() {
    ClearBytes(m_debugFile);
    ClearBytes(m_user);
    ClearBytes(m_environment);
    ClearBytes(m_scratch);
}

std::string BufferText(const char16_t* buffer, std::size_t units) {
    const char16_t* const end = std::find(buffer, buffer + units, u'\0');
    std::string text;
    while (buffer != end) {
        char32_t ch = *buffer++;
        if (ch >= 0xD800 && ch < 0xDC00 && buffer != end && *buffer >= 0xDC00 && *buffer < 0xE000) {
            ch = 0x10000 + ((ch - 0xD800) << 10) + (*buffer++ - 0xDC00U);
        }
        AppendCodePoint(text, ch);
    }
    return text;
}

std::uint64_t ParseCacheHandle(std::string_view handle) {
    while (!handle.empty() && IsSpace(handle.front())) {
        handle.remove_prefix(1);
    }
    bool negative = false;
    if (!handle.empty() && (handle.front() == '+' || handle.front() == '-')) {
        negative = handle.front() == '-';
        handle.remove_prefix(1);
    }
    if (handle.size() > 2 && handle[0] == '0' && (handle[1] == 'x' || handle[1] == 'X') &&
        HexDigit(handle[2]) >= 0) {
        handle.remove_prefix(2);
    }
    std::uint64_t handleNumber = 0;
    for (const char ch : handle) {
        const int digit = HexDigit(ch);
        if (digit < 0) {
            break;
        }
        if (handleNumber >> 60 != 0) {
            return std::numeric_limits<std::uint64_t>::max();
        }
        handleNumber = handleNumber << 4 | static_cast<std::uint64_t>(digit);
    }
    return negative ? 0 - handleNumber : handleNumber;
}

ECacheProbe ProbeCache(const platform::CDynamicLibrary& library, std::uint32_t process,
                       std::string_view handle) {
    if (!library.IsLoaded()) {
        return ECacheProbe::Gone;
    }
    std::uint32_t error = 0;
    const auto pfnFetch = reinterpret_cast<FCacheFetch>(library.Symbol("SkelmondCacheFetchProcessor", error));
    if (pfnFetch == nullptr) {
        return ECacheProbe::NoEntryPoint;
    }
    const auto row = std::make_unique<unsigned char[]>(kProbeSize);
    std::uint64_t cursor = 0;
    const std::int32_t status =
        pfnFetch(process, ParseCacheHandle(handle), &cursor, row.get(), kProbeSize, 1);
    return status == 0 ? ECacheProbe::Live : ECacheProbe::Gone;
}

} // namespace carvelot
