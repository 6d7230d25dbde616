#include "live/CompanionLibrary.h"

#include "text/Columns.h"
#include "text/Numbers.h"

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
    if (ch >= '0' && ch <= '9')
        return ch - '0';
    if (ch >= 'a' && ch <= 'f')
        return ch - 'a' + 10;
    if (ch >= 'A' && ch <= 'F')
        return ch - 'A' + 10;
    return -1;
}

} // namespace

void CProcInfoBuffers::Clear() {
    ClearBytes(m_debugFile);
    ClearBytes(m_user);
    ClearBytes(m_environment);
    ClearBytes(m_scratch);
}

std::string BufferText(const char16_t* pText, std::size_t nUnits) {
    const char16_t* const pEnd = std::find(pText, pText + nUnits, u'\0');
    std::string strText;
    while (pText != pEnd) {
        char32_t ch = *pText++;
        if (ch >= 0xD800 && ch < 0xDC00 && pText != pEnd && *pText >= 0xDC00 && *pText < 0xE000)
            ch = 0x10000 + ((ch - 0xD800) << 10) + (*pText++ - 0xDC00U);
        AppendCodePoint(strText, ch);
    }
    return strText;
}

std::uint64_t ParseCacheHandle(std::string_view strHandle) {
    while (!strHandle.empty() && IsSpace(strHandle.front()))
        strHandle.remove_prefix(1);
    bool bNegative = false;
    if (!strHandle.empty() && (strHandle.front() == '+' || strHandle.front() == '-')) {
        bNegative = strHandle.front() == '-';
        strHandle.remove_prefix(1);
    }
    if (strHandle.size() > 2 && strHandle[0] == '0' && (strHandle[1] == 'x' || strHandle[1] == 'X') &&
        HexDigit(strHandle[2]) >= 0)
        strHandle.remove_prefix(2);
    std::uint64_t nHandle = 0;
    for (const char ch : strHandle) {
        const int nDigit = HexDigit(ch);
        if (nDigit < 0)
            break;
        if (nHandle >> 60 != 0)
            return std::numeric_limits<std::uint64_t>::max();
        nHandle = nHandle << 4 | static_cast<std::uint64_t>(nDigit);
    }
    return bNegative ? 0 - nHandle : nHandle;
}

ECacheProbe ProbeCache(const platform::CDynamicLibrary& library, std::uint32_t nProcess,
                       std::string_view strHandle) {
    if (!library.IsLoaded())
        return ECacheProbe::Gone;
    std::uint32_t nError = 0;
    const auto pfnFetch =
        reinterpret_cast<FCacheFetch>(library.Symbol("SkelmondCacheFetchProcessor", nError));
    if (pfnFetch == nullptr)
        return ECacheProbe::NoEntryPoint;
    const auto pRow = std::make_unique<unsigned char[]>(kProbeSize);
    std::uint64_t nCursor = 0;
    const std::int32_t nStatus =
        pfnFetch(nProcess, ParseCacheHandle(strHandle), &nCursor, pRow.get(), kProbeSize, 1);
    return nStatus == 0 ? ECacheProbe::Live : ECacheProbe::Gone;
}

} // namespace carvelot
