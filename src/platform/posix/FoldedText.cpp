#include "platform/posix/FoldedText.h"
#include "platform/CaseFold.h"
#include "platform/CodePage.h"

#include <algorithm>

namespace carvelot::platform {

char32_t TakeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80 ? 1u : lead < 0xE0 ? 2u : lead < 0xF0 ? 3u : 4u;
    char32_t character = length == 1 ? lead : lead & (0x7Fu >> length);
    for (std::size_t at = 1; at < length && at < text.size(); ++at) {
        character = (character << 6) | (static_cast<unsigned char>(text[at]) & 0x3Fu);
    }
    text.remove_prefix(std::min(length, text.size()));
    return character;
}

std::u32string FoldedText(std::string_view bytes) {
    std::string scratch;
    std::string_view text = BytesToUtf8(bytes, scratch);
    std::u32string folded;
    while (!text.empty()) {
        folded.push_back(ToUpper(TakeCharacter(text)));
    }
    return folded;
}

} // namespace carvelot::platform
