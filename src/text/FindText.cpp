#include "text/FindText.h"

#include "platform/CodePage.h"
#include "text/CaseText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace carvelot {

namespace {

char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Characters of log text, the commonest first; what is not here is rarer still.
constexpr std::string_view kCommonFirst = " ETAONRISLDC0UFMHP1_2GB3456789=,().VYKW'-:";

std::size_t Rarity(char upper) { return std::min(kCommonFirst.find(upper), kCommonFirst.size()); }

} // namespace

CFindText::CFindText(std::string_view text) : m_strFolded(FoldedCase(text)) {
    m_bAscii = platform::IsAscii(m_strFolded);
    for (std::size_t i = 0; i < m_strFolded.size(); ++i) {
        if (Rarity(m_strFolded[i]) > Rarity(m_strFolded[m_nRarePlace])) {
            m_nRarePlace = i;
        }
    }
    if (!m_strFolded.empty()) {
        m_rareUpper = m_strFolded[m_nRarePlace];
        m_rareLower = LowerAscii(m_rareUpper);
    }
}

bool CFindText::IsIn(std::string_view text, bool ascii) const {
    if (m_strFolded.empty()) {
        return true;
    }
    if (ascii) {
        return m_bAscii && IsInAscii(text);
    }
    return FoldedCase(text).find(m_strFolded) != std::string::npos;
}

bool CFindText::IsInAscii(std::string_view text) const {
    const std::size_t size = m_strFolded.size();
    if (text.size() < size) {
        return false;
    }
    const auto matchesAt = [&](std::size_t at) {
        for (std::size_t i = 0; i < size; ++i) {
            if (UpperAscii(text[at + i]) != m_strFolded[i]) {
                return false;
            }
        }
        return true;
    };
    const std::size_t starts = text.size() - size + 1;
    const char* const rare = text.data() + m_nRarePlace;
    std::size_t at = 0;
#if defined(__SSE2__)
    const __m128i upper = _mm_set1_epi8(m_rareUpper);
    const __m128i lower = _mm_set1_epi8(m_rareLower);
    for (; at + 16 <= starts; at += 16) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rare + at));
        auto hits = static_cast<std::uint32_t>(
            _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(v, upper), _mm_cmpeq_epi8(v, lower))));
        for (; hits != 0; hits &= hits - 1) {
            if (matchesAt(at + static_cast<std::size_t>(std::countr_zero(hits)))) {
                return true;
            }
        }
    }
#endif
    for (; at < starts; ++at) {
        if ((rare[at] == m_rareUpper || rare[at] == m_rareLower) && matchesAt(at)) {
            return true;
        }
    }
    return false;
}

} // namespace carvelot
