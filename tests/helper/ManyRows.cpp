// A companion library with one cache of as many rows as CARVELOT_MANY_ROWS says, or with "endless" a cursor
// that never ends. A row is its number and sixteen units of text. After every two thousand rows it makes a
// file whose name is CARVELOT_MANY_ROWS_MARK and their number, if that is set.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#ifdef _WIN32
#define MANY_ROWS_EXPORT extern "C" __declspec(dllexport)
#else
#define MANY_ROWS_EXPORT extern "C" __attribute__((visibility("default")))
#endif

MANY_ROWS_EXPORT std::int32_t SkelmondCacheFetchProcessor(std::uint32_t, std::uint64_t,
                                                          std::uint64_t* pCursor, void* pRow,
                                                          std::int32_t nRowSize, std::int32_t nFirst) {
    static std::int32_t s_nNext = 0;
    static std::int32_t s_nRows = 0;
    *pCursor = 0;
    if (nFirst != 0) {
        const char* const pszRows = std::getenv("CARVELOT_MANY_ROWS");
        const std::string strRows = pszRows != nullptr ? pszRows : "";
        s_nNext = 0;
        s_nRows = strRows == "endless" ? -1 : std::atoi(strRows.c_str());
        return 0;
    }
    if (s_nNext == s_nRows)
        return 0;
    unsigned char row[36] = {};
    std::memcpy(row, &s_nNext, sizeof s_nNext);
    const std::string strText = "row " + std::to_string(s_nNext);
    for (std::size_t n = 0; n < strText.size(); ++n)
        row[4 + 2 * n] = static_cast<unsigned char>(strText[n]);
    std::memcpy(pRow, row, std::min(sizeof row, static_cast<std::size_t>(nRowSize)));
    ++s_nNext;
    if (const char* const pszMark = std::getenv("CARVELOT_MANY_ROWS_MARK");
        pszMark != nullptr && s_nNext % 2000 == 0)
        std::ofstream(pszMark + std::to_string(s_nNext));
    *pCursor = 1;
    return 0;
}
