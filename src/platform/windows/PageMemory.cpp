#include "platform/PageMemory.h"

#include <new>
#include <windows.h>

namespace carvelot::platform {

void* AllocatePages(std::size_t size) {
    void* const block = VirtualAlloc(nullptr, size == 0 ? 1 : size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void FreePages(void* block, std::size_t) noexcept {
    if (block != nullptr) {
        VirtualFree(block, 0, MEM_RELEASE);
    }
}

void PopulatePages(void*, std::size_t) noexcept {}

// There are no others.
void UseSmallPages(void*, std::size_t) noexcept {}

} // namespace carvelot::platform
