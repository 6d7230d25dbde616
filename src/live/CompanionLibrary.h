// CompanionLibrary.h - what is exchanged with the closed companion library, which reaches into running JDE
// processes. Every entry point returns 0 for success; any other number is a failure that is only shown.
#pragma once

#include "platform/DynamicLibrary.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

inline constexpr std::string_view kCompanionLibrary = "Skelmond.DLL";

// Process id, the four buffers of CProcInfoBuffers, one of ETraceMode, and the tracing flag, in and out.
using FGetSetProcInfo = std::int32_t (*)(std::uint32_t, char16_t*, char16_t*, char16_t*, char16_t*,
                                         std::int32_t, std::int32_t*);
// Process id, cache handle, the caller's cursor (0 after a call: no row), row buffer, its size in bytes, and
// 1 to open the fetch or 0 to move to the next row.
using FCacheFetch = std::int32_t (*)(std::uint32_t, std::uint64_t, std::uint64_t*, void*, std::int32_t,
                                     std::int32_t);
// Process id and a word that is always 1. Clears all caches of the process.
using FClearCaches = std::int32_t (*)(std::uint32_t, std::int32_t);

enum ETraceMode : std::int32_t { TRACE_READ = 1, TRACE_TOGGLE = 2, TRACE_IDENTITY = 3 };

// The texts of one call. The library ends what it writes with a zero.
struct CProcInfoBuffers {
    char16_t m_debugFile[260] = {};
    char16_t m_user[22] = {};
    char16_t m_environment[22] = {};
    char16_t m_scratch[512] = {}; // handed over and never read

    // Before each call: as many bytes as each buffer has units, which is its first half.
    void Clear();
};

// A buffer's text up to its first zero, UTF-8.
std::string BufferText(const char16_t* text, std::size_t units);
template <std::size_t N> std::string BufferText(const char16_t (&text)[N]) { return BufferText(text, N); }

// A handle as logs print it, hexadecimal, read as the C library reads it: leading white space, a sign, "0x",
// digits up to the first character that is none. What overflows is the greatest number.
std::uint64_t ParseCacheHandle(std::string_view handle);

enum class ECacheProbe { Gone, Live, NoEntryPoint };
// Asks the library whether the cache of that handle still answers. Without a library it is gone.
ECacheProbe ProbeCache(const platform::CDynamicLibrary& library, std::uint32_t process,
                       std::string_view handle);

} // namespace carvelot
