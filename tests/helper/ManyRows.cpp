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

MANY_ROWS_EXPORT std::int32_t SkelmondCacheFetchProcessor(std::uint32_t, std::uint64_t, std::uint64_t* cursor,
                                                          void* buffer, std::int32_t rowSize,
                                                          std::int32_t first) {
    static std::int32_t s_nNext = 0;
    static std::int32_t s_nRows = 0;
    *cursor = 0;
    if (first != 0) {
        const char* const setting = std::getenv("CARVELOT_MANY_ROWS");
        const std::string rows = setting != nullptr ? setting : "";
        s_nNext = 0;
        s_nRows = rows == "endless" ? -1 : std::atoi(rows.c_str());
        return 0;
    }
    if (s_nNext == s_nRows) {
        return 0;
    }
    unsigned char row[36] = {};
    std::memcpy(row, &s_nNext, sizeof s_nNext);
    const std::string text = "row " + std::to_string(s_nNext);
    for (std::size_t n = 0; n < text.size(); ++n) {
        row[4 + 2 * n] = static_cast<unsigned char>(text[n]);
    }
    std::memcpy(buffer, row, std::min(sizeof row, static_cast<std::size_t>(rowSize)));
    ++s_nNext;
    if (const char* const mark = std::getenv("CARVELOT_MANY_ROWS_MARK");
        mark != nullptr && s_nNext % 2000 == 0) {
        std::ofstream(mark + std::to_string(s_nNext));
    }
    *cursor = 1;
    return 0;
}
