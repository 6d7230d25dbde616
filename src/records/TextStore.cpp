#include "records/TextStore.h"

#include "text/ByteScan.h"

#include <algorithm>
#include <cstring>

namespace carvelot {

std::string_view CTextStore::ViewUpTo(Offset offset, char end, char otherEnd) const {
    const char* first = &m_bytes[offset];
    const char* last = first;
    while (*last != end && *last != otherEnd) {
        ++last;
    }
    return {first, static_cast<std::size_t>(last - first)};
}

std::string_view CTextStore::Keep(std::string_view text) {
    if (text.size() <= kLongest) {
        return text.empty() ? std::string_view{} : View(Add(text), text.size());
    }
    m_large.push_back({std::make_unique<char[]>(text.size()), text.size()});
    std::memcpy(m_large.back().bytes.get(), text.data(), text.size());
    return {m_large.back().bytes.get(), text.size()};
}

bool CTextStore::Holds(std::string_view word, const std::function<void()>& betweenBlocks) const {
    for (std::size_t block = 0; block < m_bytes.BlockCount(); ++block) {
        betweenBlocks();
        const auto bytes = m_bytes.Block(block);
        if (FindWord({bytes.data(), bytes.size()}, word) != std::string_view::npos) {
            return true;
        }
    }
    return std::any_of(m_large.begin(), m_large.end(), [word](const LargeText& text) {
        return FindWord({text.bytes.get(), text.size}, word) != std::string_view::npos;
    });
}

void CTextStore::Clear() {
    m_bytes.Clear();
    m_large.clear();
}

} // namespace carvelot
