// An array that only grows, in blocks that come straight from the system: no element ever moves, growing
// copies nothing, and closing a session gives back a few large blocks instead of millions of small ones.
#pragma once

#include "platform/PageMemory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace carvelot {

template <class T, unsigned BlockBits> class CPagedArray {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    static constexpr std::size_t kBlockSize = std::size_t{1} << BlockBits;

    CPagedArray() = default;
    CPagedArray(CPagedArray&& other) noexcept
        : m_blocks(std::move(other.m_blocks)), m_pLast(std::exchange(other.m_pLast, nullptr)),
          m_pNext(std::exchange(other.m_pNext, nullptr)), m_pEnd(std::exchange(other.m_pEnd, nullptr)),
          m_nBefore(std::exchange(other.m_nBefore, 0)) {
        other.m_blocks.clear();
    }
    CPagedArray(const CPagedArray&) = delete;
    CPagedArray& operator=(const CPagedArray&) = delete;
    CPagedArray& operator=(CPagedArray&&) = delete;
    ~CPagedArray() { Clear(); }

    std::size_t Size() const { return m_nBefore + static_cast<std::size_t>(m_pNext - m_pLast); }

    // From here on the array takes no more blocks than so many elements fill; growing beyond them throws
    // std::length_error and leaves the array as it is.
    void LimitTo(std::size_t elements) { m_nMostBlocks = elements / kBlockSize; }

    T& operator[](std::size_t i) { return m_blocks[i >> BlockBits][i & (kBlockSize - 1)]; }
    const T& operator[](std::size_t i) const { return m_blocks[i >> BlockBits][i & (kBlockSize - 1)]; }

    // What lies together in memory.
    std::size_t BlockCount() const { return m_blocks.size(); }
    std::span<const T> Block(std::size_t block) const {
        const bool isLast = block + 1 == m_blocks.size();
        return {m_blocks[block], isLast ? static_cast<std::size_t>(m_pNext - m_pLast) : kBlockSize};
    }

    void Add(const T& value) { *Reserve(1) = value; }

    // Room for `count` (at most a block) neighbouring elements at the end, now part of the array; what is
    // left of a block that is too short for them is skipped.
    T* Reserve(std::size_t count) {
        if (count > static_cast<std::size_t>(m_pEnd - m_pNext)) [[unlikely]] {
            AddBlock();
        }
        T* const place = m_pNext;
        m_pNext += count;
        return place;
    }

    // Lets go of all but the first element, which must be there. Takes no memory, as the other one.
    void ClearToFirst() {
        for (; m_blocks.size() > 1; m_blocks.pop_back()) {
            platform::FreePages(m_blocks.back(), kBlockSize * sizeof(T));
        }
        m_pLast = m_blocks.front();
        m_pNext = m_pLast + 1;
        m_pEnd = m_pLast + kBlockSize;
        m_nBefore = 0;
    }

    void Clear() {
        for (T* block : m_blocks) {
            platform::FreePages(block, kBlockSize * sizeof(T));
        }
        m_blocks.clear();
        m_pLast = m_pNext = m_pEnd = nullptr;
        m_nBefore = 0;
    }

private:
    void AddBlock() {
        if (m_blocks.size() >= m_nMostBlocks) {
            throw std::length_error("paged array");
        }
        // Room in the list first: a failure of either allocation must leave nothing behind.
        if (m_blocks.size() == m_blocks.capacity()) {
            m_blocks.reserve(std::max<std::size_t>(m_blocks.size() * 2, 4));
        }
        T* const block = static_cast<T*>(platform::AllocatePages(kBlockSize * sizeof(T)));
        m_nBefore = m_blocks.size() * kBlockSize;
        m_blocks.push_back(block);
        m_pLast = m_pNext = block;
        m_pEnd = block + kBlockSize;
    }

    std::vector<T*> m_blocks;
    T* m_pLast = nullptr;      // the last block
    T* m_pNext = nullptr;      // behind its last element
    T* m_pEnd = nullptr;       // behind its room
    std::size_t m_nBefore = 0; // elements of the blocks before it
    std::size_t m_nMostBlocks = std::numeric_limits<std::size_t>::max();
};

} // namespace carvelot
