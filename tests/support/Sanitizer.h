// Whether the tests run under a sanitizer that has an allocator of its own, which takes several times the
// time, holds freed memory back and does not tell the C library what is held.
#pragma once

namespace carvelot::test {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif
#else
inline constexpr bool kSanitized = false;
#endif

} // namespace carvelot::test
