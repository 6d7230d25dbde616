#include "parse/fast/MarkedSigns.h"

#include <cstddef>
#include <cstring>

namespace carvelot {

namespace {

// Whether a word stands at a place of a text, as a whole. The place may be any number.
template <std::size_t size> bool WordAt(std::string_view text, std::ptrdiff_t at, const char (&word)[size]) {
    return at >= 0 &&
           at + static_cast<std::ptrdiff_t>(size) - 1 <= static_cast<std::ptrdiff_t>(text.size()) &&
           std::memcmp(text.data() + at, word, size - 1) == 0;
}

} // namespace

LineSigns FindSigns(std::string_view text, std::string_view line, const LineMarks& marks) {
    LineSigns signs;
    std::uint32_t& found = signs.inText.found;
    if (text.empty()) {
        return signs;
    }
    const std::ptrdiff_t textStart = text.data() - line.data();
    marks.ForEach([&](std::size_t place) {
        if (place >= line.size()) {
            return;
        }
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(place) - textStart;
        // By the first letter of the word's pair. A pair outside of the text is no start of a word within it.
        switch (line[place]) {
        case 'e':
            found |= WordAt(text, at - 2, "jdeCache") ? TextSigns::SIGN_CACHE : 0U;
            break;
        case 'h':
            found |= WordAt(text, at, "hCache:") || WordAt(text, at, "hCursor:") ? TextSigns::SIGN_CACHE : 0U;
            break;
        case 'F':
            found |= WordAt(text, at, "Found existing cache") ? TextSigns::SIGN_CACHE : 0U;
            break;
        case 'B':
            found |= WordAt(text, at - 9, "Exiting DBPerformRequest") ? TextSigns::SIGN_SQL_DONE : 0U;
            [[fallthrough]];
        case 'C':
            found |= at >= 2 && StartsListedCode(text, static_cast<std::size_t>(at - 2))
                         ? TextSigns::SIGN_JDB_CODE
                         : 0U;
            break;
        case '-':
            found |= WordAt(text, at - 1, "--UBE--") ? TextSigns::SIGN_UBE : 0U;
            signs.ubeInLine =
                signs.ubeInLine || WordAt(line, static_cast<std::ptrdiff_t>(place) - 1, "--UBE--");
            break;
        case 'E':
            found |= WordAt(text, at, "Event Starts :") ? TextSigns::SIGN_EVENT_STARTS : 0U;
            found |= WordAt(text, at, "Event Ends:") ? TextSigns::SIGN_EVENT_ENDS : 0U;
            break;
        case 'L':
            found |= WordAt(text, at - 6, "at ER Line") ? TextSigns::SIGN_ER_LINE : 0U;
            break;
        case 'O':
            found |= WordAt(text, at, "Object Called:") ? TextSigns::SIGN_OBJECT_CALLED : 0U;
            break;
        default:
            break;
        }
    });
    return signs;
}

} // namespace carvelot
