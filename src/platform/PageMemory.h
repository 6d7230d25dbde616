// Large blocks of memory straight from the system.
#pragma once

#include <cstddef>

namespace carvelot::platform {

/// A block of at least `size` zeroed bytes, aligned to a page. Throws std::bad_alloc.
void* AllocatePages(std::size_t size);

/// Gives a block back; `size` is the size that it was asked for with. Null is allowed.
void FreePages(void* block, std::size_t size) noexcept;

} // namespace carvelot::platform
