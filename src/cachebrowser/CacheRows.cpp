#include "cachebrowser/CacheRows.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace carvelot {

namespace {

constexpr std::size_t kPageSize = 256 * 1024;

std::size_t LengthWithoutZeros(std::span<const unsigned char> row) {
    std::size_t nLength = row.size();
    std::uint64_t nWord = 0;
    while (nLength >= sizeof nWord) {
        std::memcpy(&nWord, row.data() + nLength - sizeof nWord, sizeof nWord);
        if (nWord != 0)
            break;
        nLength -= sizeof nWord;
    }
    while (nLength != 0 && row[nLength - 1] == 0)
        --nLength;
    return nLength;
}

} // namespace

void CCacheRows::Clear() { *this = CCacheRows(); }

void CCacheRows::Append(std::span<const unsigned char> row) {
    const std::size_t nLength = LengthWithoutZeros(row);
    if (nLength > m_nPageLeft) {
        const std::size_t nPage = std::max(nLength, kPageSize);
        m_listPages.push_back(std::make_unique_for_overwrite<unsigned char[]>(nPage));
        m_pNext = m_listPages.back().get();
        m_nPageLeft = nPage;
    }
    std::copy_n(row.data(), nLength, m_pNext);
    m_listRows.emplace_back(m_pNext, nLength);
    m_pNext += nLength;
    m_nPageLeft -= nLength;
}

} // namespace carvelot
