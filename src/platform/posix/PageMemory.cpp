#include "platform/PageMemory.h"

#include <cstdint>
#include <limits>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace carvelot::platform {

namespace {

std::size_t RoundUp(std::size_t size, std::size_t unit) { return (size + unit - 1) / unit * unit; }

std::size_t BlockSize(std::size_t size) {
    const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return size == 0 ? page : RoundUp(size, page);
}

} // namespace

void* AllocatePages(std::size_t size) {
    if (size > std::numeric_limits<std::size_t>::max() / 2) {
        throw std::bad_alloc();
    }
    const std::size_t blockSize = BlockSize(size);
    const bool huge = blockSize >= kHugePage;
    // A block that begins on a huge page's border can be made of huge pages from its first byte.
    const std::size_t mapped = huge ? blockSize + kHugePage : blockSize;
    void* const map = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map == MAP_FAILED) {
        throw std::bad_alloc();
    }
    if (!huge) {
        return map;
    }
    char* const begin = static_cast<char*>(map);
    const std::size_t before = (kHugePage - reinterpret_cast<std::uintptr_t>(begin) % kHugePage) % kHugePage;
    if (before > 0) {
        munmap(begin, before);
    }
    munmap(begin + before + blockSize, kHugePage - before);
    madvise(begin + before, blockSize, MADV_HUGEPAGE);
    return begin + before;
}

void FreePages(void* block, std::size_t size) noexcept {
    if (block != nullptr) {
        munmap(block, BlockSize(size));
    }
}

void PopulatePages([[maybe_unused]] void* begin, [[maybe_unused]] std::size_t size) noexcept {
#ifdef MADV_POPULATE_WRITE
    madvise(begin, size, MADV_POPULATE_WRITE);
#endif
}

void UseSmallPages([[maybe_unused]] void* begin, [[maybe_unused]] std::size_t size) noexcept {
#ifdef MADV_NOHUGEPAGE
    madvise(begin, size, MADV_NOHUGEPAGE);
#endif
}

} // namespace carvelot::platform
