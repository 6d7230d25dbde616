// Plain substring search without regard to case, prepared once for many texts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace carvelot {

class CFindText {
public:
    explicit CFindText(std::string_view text);

    // Whether the text holds what is sought; `ascii` says that it is known to be pure ASCII.
    bool IsIn(std::string_view text, bool ascii) const;

private:
    bool IsInAscii(std::string_view text) const;

    std::string m_strFolded;
    bool m_bAscii = true;
    // The place in the text sought of the letter that log text holds least, and that letter in both cases.
    std::size_t m_nRarePlace = 0;
    char m_rareUpper = 0;
    char m_rareLower = 0;
};

} // namespace carvelot
