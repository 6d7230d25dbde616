#include "logcore/CaseText.h"

#include "logcore/Columns.h"
#include "platform/CaseFold.h"

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
