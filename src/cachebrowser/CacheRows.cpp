#include "cachebrowser/CacheRows.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace carvelot {

namespace {

constexpr std::size_t kPageSize = 256 * 1024;

std::size_t LengthWithoutZeros(std::span<const unsigned char> row) {
    std::size_t length = row.size();
    std::uint64_t word = 0;
    while (length >= sizeof word) {
        std::memcpy(&word, row.data() + length - sizeof word, sizeof word);
        if (word != 0) {
            break;
        }
        length -= sizeof word;
    }
    while (length != 0 && row[length - 1] == 0) {
        --length;
    }
    return length;
}

} // namespace

void CCacheRows::Clear() { *this = CCacheRows(); }

void CCacheRows::Append(std::span<const unsigned char> row) {
    const std::size_t length = LengthWithoutZeros(row);
    if (length > m_nPageLeft) {
        const std::size_t page = std::max(length, kPageSize);
        m_listPages.push_back(std::make_unique_for_overwrite<unsigned char[]>(page));
        m_pNext = m_listPages.back().get();
        m_nPageLeft = page;
    }
    std::copy_n(row.data(), length, m_pNext);
    m_listRows.emplace_back(m_pNext, length);
    m_pNext += length;
    m_nPageLeft -= length;
}

} // namespace carvelot
