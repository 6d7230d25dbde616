#include "text/CaseText.h"

#include "platform/CaseFold.h"
#include "text/TextColumns.h"

#include <algorithm>

namespace carvelot {

namespace {

// Ranks code points as their UTF-16 forms rank: surrogate pairs stand before U+E000.
char32_t UnitOrder(char32_t c) { return c >= 0x10000 ? 0xD800 : c >= 0xE000 ? c + 0x200000 : c; }

} // namespace

std::string FoldedCase(std::string_view text) {
    std::string folded;
    folded.reserve(text.size());
    while (!text.empty()) {
        const char c = text.front();
        if (static_cast<unsigned char>(c) < 0x80) {
            folded.push_back(static_cast<char>(platform::ToUpper(static_cast<unsigned char>(c))));
            text.remove_prefix(1);
        } else {
            AppendCodePoint(folded, platform::ToUpper(TakeCodePoint(text)));
        }
    }
    return folded;
}

int CompareNoCase(std::string_view a, std::string_view b) {
    // What both begin with needs no look at its case, up to the start of a character.
    std::size_t same =
        static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
    while (same > 0 && (static_cast<unsigned char>(a[same - 1]) & 0x80U) != 0) {
        --same;
    }
    a.remove_prefix(same);
    b.remove_prefix(same);
    while (!a.empty() && !b.empty()) {
        const char32_t x = platform::ToUpper(TakeCodePoint(a));
        const char32_t y = platform::ToUpper(TakeCodePoint(b));
        if (x != y) {
            const char32_t orderX = UnitOrder(x);
            const char32_t orderY = UnitOrder(y);
            return (orderX != orderY ? orderX < orderY : x < y) ? -1 : 1;
        }
    }
    return a.empty() ? (b.empty() ? 0 : -1) : 1;
}

} // namespace carvelot
