#include "records/TextStore.h"

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
    m_large.push_back(std::make_unique<char[]>(text.size()));
    std::memcpy(m_large.back().get(), text.data(), text.size());
    return {m_large.back().get(), text.size()};
}

void CTextStore::Clear() {
    m_bytes.Clear();
    m_large.clear();
}

} // namespace carvelot
