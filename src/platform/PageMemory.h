// Large blocks of memory straight from the system.
#pragma once

#include <cstddef>

namespace carvelot::platform {

/// The size of a large page. A block of this size or more begins at the border of one, and is made of them
/// where the system has such pages.
inline constexpr std::size_t kHugePage = std::size_t{2} << 20;

/// A block of at least `size` zeroed bytes, aligned to a page. Throws std::bad_alloc.
void* AllocatePages(std::size_t size);

/// Gives a block back; `size` is the size that it was asked for with. Null is allowed.
void FreePages(void* block, std::size_t size) noexcept;

/// Has the system find and clear the memory of a part of a block now, which it does otherwise when the part
/// is first written to; the part begins at the border of a page. What stands in it stays, so it may be
/// written to meanwhile. Nothing where the system can't.
void PopulatePages(void* begin, std::size_t size) noexcept;

/// Has a part of a block made of small pages, before it is first written to: where perhaps only a little of
/// it ever is, a large page would be cleared in vain. The part begins at the border of a page.
void UseSmallPages(void* begin, std::size_t size) noexcept;

} // namespace carvelot::platform
