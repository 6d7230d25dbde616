// CacheRows.h - the rows of a cache as they were fetched: bytes, decoded only when a cell is looked at.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace carvelot {

class CCacheRows {
public:
    void Clear();
    // Keeps the row without the zeros at its end: bytes behind a row's end read as zero anyway, and a
    // structure can make rows far longer than what is in them.
    void Append(std::span<const unsigned char> row);
    std::size_t Size() const { return m_listRows.size(); }
    std::span<const unsigned char> operator[](std::size_t n) const { return m_listRows[n]; }

private:
    std::vector<std::unique_ptr<unsigned char[]>> m_listPages;
    std::size_t m_nPageLeft = 0;
    unsigned char* m_pNext = nullptr;
    std::vector<std::span<const unsigned char>> m_listRows;
};

} // namespace carvelot
