// The large blocks of sessions, kept from input to input. The linker takes these instead of the platform's:
// asking the system for a session's blocks, and touching fresh pages, costs more than reading a few lines.
#include "platform/PageMemory.h"

#include <map>
#include <mutex>
#include <new>
#include <vector>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/asan_interface.h>
#endif
#if __has_feature(memory_sanitizer)
#include <sanitizer/msan_interface.h>
#define COUNT_AS_UNSET(address, size) __msan_allocated_memory(address, size)
#endif
#endif
#if !defined(ASAN_POISON_MEMORY_REGION)
#define ASAN_POISON_MEMORY_REGION(address, size) ((void)(address), (void)(size))
#define ASAN_UNPOISON_MEMORY_REGION(address, size) ((void)(address), (void)(size))
#endif
#if !defined(COUNT_AS_UNSET)
#define COUNT_AS_UNSET(address, size) ((void)(address), (void)(size))
#endif

namespace carvelot::platform {

namespace {

constexpr std::align_val_t kPage{4096};
// As much of a block as inputs use; whoever reads it after the block was given back, or what an earlier
// session wrote to it, is caught by a sanitizer that looks for that.
constexpr std::size_t kGuarded = 64 * 1024;

// Threads read beside each other.
std::mutex& Lock() {
    static auto* const lock = new std::mutex;
    return *lock;
}

std::vector<void*>& FreeBlocks(std::size_t size) {
    // Never destroyed: sessions of static life may give their blocks back later.
    static auto* const blocks = new std::map<std::size_t, std::vector<void*>>;
    return (*blocks)[size];
}

std::size_t Guarded(std::size_t size) { return size < kGuarded ? size : kGuarded; }

} // namespace

void* AllocatePages(std::size_t size) {
    const std::lock_guard held(Lock());
    std::vector<void*>& blocks = FreeBlocks(size);
    if (blocks.empty()) {
        return ::operator new(size, kPage);
    }
    void* const block = blocks.back();
    blocks.pop_back();
    ASAN_UNPOISON_MEMORY_REGION(block, Guarded(size));
    COUNT_AS_UNSET(block, Guarded(size));
    return block;
}

void FreePages(void* block, std::size_t size) noexcept {
    if (block != nullptr) {
        const std::lock_guard held(Lock());
        ASAN_POISON_MEMORY_REGION(block, Guarded(size));
        FreeBlocks(size).push_back(block);
    }
}

// Blocks that are kept have been touched.
void PopulatePages(void* /*begin*/, std::size_t /*size*/) noexcept {}
void UseSmallPages(void* /*begin*/, std::size_t /*size*/) noexcept {}

} // namespace carvelot::platform
