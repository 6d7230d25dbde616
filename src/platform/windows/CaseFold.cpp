#include "platform/CaseFold.h"

#include <array>
#include <windows.h>

namespace carvelot::platform::detail {

namespace {

using Table = std::array<char16_t, 0x10000>;

Table MakeTable() {
    Table table;
    for (unsigned unit = 0; unit < table.size(); ++unit) {
        const auto character = static_cast<wchar_t>(unit);
        wchar_t upper = character;
        // The file system's folding: one unit to one, the same in every language. Half a pair has no case.
        if (unit < 0xD800 || unit > 0xDFFF) {
            LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, &character, 1, &upper, 1, nullptr, nullptr,
                          0);
        }
        table[unit] = static_cast<char16_t>(upper);
    }
    return table;
}

} // namespace

char32_t ToUpperBeyondAscii(char32_t character) {
    static const Table table = MakeTable();
    return character < table.size() ? table[character] : character;
}

} // namespace carvelot::platform::detail
