// Memory for vectors of millions of elements: large blocks come straight from the system in huge pages, so
// that filling them costs a few page faults instead of thousands.
#pragma once

#include "platform/PageMemory.h"

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace carvelot {

template <class T> class CPageAllocator {
public:
    using value_type = T;

    CPageAllocator() = default;
    template <class U> explicit CPageAllocator(const CPageAllocator<U>& /*other*/) {}

    T* allocate(std::size_t count) {
        if (count > static_cast<std::size_t>(-1) / sizeof(T)) {
            throw std::bad_array_new_length();
        }
        return static_cast<T*>(IsLarge(count) ? platform::AllocatePages(count * sizeof(T))
                                              : ::operator new(count * sizeof(T)));
    }
    void deallocate(T* block, std::size_t count) {
        if (IsLarge(count)) {
            platform::FreePages(block, count * sizeof(T));
        } else {
            ::operator delete(block);
        }
    }
    // Numbers that a vector makes room for are left as they are: whoever resizes it writes them anyway.
    template <class U, class... Arguments> void construct(U* place, Arguments&&... arguments) {
        if constexpr (sizeof...(Arguments) == 0 && std::is_trivially_default_constructible_v<U>) {
            ::new (static_cast<void*>(place)) U;
        } else {
            ::new (static_cast<void*>(place)) U{std::forward<Arguments>(arguments)...};
        }
    }
    friend bool operator==(const CPageAllocator& /*a*/, const CPageAllocator& /*b*/) { return true; }

private:
    static constexpr std::size_t kLarge = std::size_t{2} << 20U; // bytes
    static bool IsLarge(std::size_t count) { return count * sizeof(T) >= kLarge; }
};

template <class T> using CLargeVector = std::vector<T, CPageAllocator<T>>;

} // namespace carvelot
