// An array that only grows, in blocks that come straight from the system: no element ever moves, growing
// copies nothing, and closing a session gives back a few large blocks instead of millions of small ones.
#pragma once

#include "platform/PageMemory.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
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
          m_nBefore(std::exchange(other.m_nBefore, 0)),
          m_pNextBlock(std::exchange(other.m_pNextBlock, nullptr)), m_bAsksAhead(other.m_bAsksAhead) {
        other.m_blocks.clear();
        other.m_pWanted = nullptr;
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

    // From the next block on the array asks for each page of memory shortly before it grows into it, if its
    // blocks are made of large ones.
    void AskAhead() { m_bAsksAhead = kPages > 0; }
    // Has the page that was asked for made ready, which the system does otherwise when its first element is
    // written: it clears it, and that may take longer than filling it. False if none is asked for. For
    // another thread than the one that adds; not while the array is cleared.
    bool ProvidePage() noexcept {
        void* const page = m_pWanted.exchange(nullptr);
        if (page != nullptr) {
            platform::PopulatePages(page, platform::kHugePage);
        }
        return page != nullptr;
    }

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
            MakeRoom(count);
        }
        T* const place = m_pNext;
        m_pNext += count;
        return place;
    }

    // Lets go of all but the first element, which must be there. Takes no memory, as the other one.
    void ClearToFirst() {
        for (; m_blocks.size() > 1; m_blocks.pop_back()) {
            platform::FreePages(m_blocks.back(), kBlockBytes);
        }
        m_pLast = m_blocks.front();
        m_pNext = m_pLast + 1;
        m_pEnd = m_pLast + kBlockSize;
        m_nBefore = 0;
        ForgetNextBlock();
    }

    void Clear() {
        for (T* block : m_blocks) {
            platform::FreePages(block, kBlockBytes);
        }
        m_blocks.clear();
        m_pLast = m_pNext = m_pEnd = nullptr;
        m_nBefore = 0;
        ForgetNextBlock();
    }

private:
    static constexpr std::size_t kBlockBytes = kBlockSize * sizeof(T);
    static constexpr std::size_t kPages =
        kBlockBytes % platform::kHugePage == 0 ? kBlockBytes / platform::kHugePage : 0;

    // Elements of a block with which so many pages are full and the next one so far that the page behind it
    // is asked for: early enough to be there in time, late enough to be needed.
    static constexpr std::size_t AskingPlace(std::size_t pages) {
        return (pages * platform::kHugePage + platform::kHugePage / 4 * 3) / sizeof(T);
    }

    void MakeRoom(std::size_t count) {
        while (m_pLast != nullptr && m_pEnd != m_pLast + kBlockSize) {
            AskForNextPage();
            if (count <= static_cast<std::size_t>(m_pEnd - m_pNext)) {
                return;
            }
        }
        AddBlock();
    }

    // At an asking place, which is where the room ends until then.
    void AskForNextPage() {
        const std::size_t next =
            static_cast<std::size_t>(m_pEnd - m_pLast) * sizeof(T) / platform::kHugePage + 1;
        if (next < kPages) {
            m_pEnd = m_pLast + AskingPlace(next);
            m_pWanted = reinterpret_cast<char*>(m_pLast) + next * platform::kHugePage;
            return;
        }
        m_pEnd = m_pLast + kBlockSize;
        if (m_blocks.size() >= m_nMostBlocks) {
            return;
        }
        try {
            m_pNextBlock = NewBlock();
        } catch (const std::bad_alloc&) {
            return; // it is asked for again when it is needed, and there may be none then
        }
        m_pWanted = m_pNextBlock;
    }

    static T* NewBlock() { return static_cast<T*>(platform::AllocatePages(kBlockBytes)); }

    void ForgetNextBlock() {
        m_pWanted = nullptr;
        platform::FreePages(std::exchange(m_pNextBlock, nullptr), kBlockBytes);
    }

    void AddBlock() {
        if (m_blocks.size() >= m_nMostBlocks) {
            throw std::length_error("paged array");
        }
        // Room in the list first: a failure of either allocation must leave nothing behind.
        if (m_blocks.size() == m_blocks.capacity()) {
            m_blocks.reserve(std::max<std::size_t>(m_blocks.size() * 2, 4));
        }
        T* const block = m_pNextBlock != nullptr ? std::exchange(m_pNextBlock, nullptr) : NewBlock();
        if (m_blocks.empty()) {
            // Most sessions of a test, and many of a user, are of a few thousand lines.
            platform::UseSmallPages(block, std::min(kBlockBytes, platform::kHugePage));
        }
        m_nBefore = m_blocks.size() * kBlockSize;
        m_blocks.push_back(block);
        m_pLast = m_pNext = block;
        m_pEnd = block + (m_bAsksAhead ? AskingPlace(0) : kBlockSize);
    }

    std::vector<T*> m_blocks;
    T* m_pLast = nullptr;      // the last block
    T* m_pNext = nullptr;      // behind its last element
    T* m_pEnd = nullptr;       // behind its room, or behind the room up to the next asking place
    std::size_t m_nBefore = 0; // elements of the blocks before it
    T* m_pNextBlock = nullptr; // the one behind it, if it was asked for ahead
    bool m_bAsksAhead = false;
    std::atomic<void*> m_pWanted = nullptr; // the page that is asked for
    std::size_t m_nMostBlocks = std::numeric_limits<std::size_t>::max();
};

} // namespace carvelot
