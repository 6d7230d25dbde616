#include "platform/CaseFold.h"

#include <array>
#include <locale.h>
#include <wctype.h>

namespace carvelot::platform::detail {

namespace {

using Table = std::array<char16_t, 0x10000>;

Table MakeTable() {
    Table table;
    // The plain locale, so that neither LANG nor a call of setlocale changes how a search matches.
    const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    for (wint_t unit = 0; unit < table.size(); ++unit) {
        const wint_t upper = locale != nullptr ? towupper_l(unit, locale) : towupper(unit);
        table[unit] = static_cast<char16_t>(upper < table.size() ? upper : unit);
    }
    if (locale != nullptr) {
        freelocale(locale);
    }
    return table;
}

} // namespace

char32_t ToUpperBeyondAscii(char32_t character) {
    static const Table table = MakeTable();
    return character < table.size() ? table[character] : character;
}

} // namespace carvelot::platform::detail
