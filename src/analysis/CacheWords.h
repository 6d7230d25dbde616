// What a line of a cache's trace says: the words of it that matter, all found in one pass over the message.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace carvelot {

struct CacheWords {
    static constexpr std::size_t kNone = std::string_view::npos;

    enum Call : std::uint32_t {
        CALL_CACHE_INIT = 1U << 0U, // jdeCacheInit, and so on
        CALL_CACHE_ADD = 1U << 1U,
        CALL_CACHE_UPDATE = 1U << 2U,
        CALL_CACHE_DELETE = 1U << 3U,
        CALL_CACHE_DELETE_ALL = 1U << 4U, // which jdeCacheDelete is named with
        CALL_CACHE_FETCH = 1U << 5U,
        CALL_CACHE_TERMINATE = 1U << 6U,
        CALL_CACHE_TERMINATE_ALL = 1U << 7U, // which jdeCacheTerminate is named with
        CALL_CACHE_RESET_CURSOR = 1U << 8U,
        CALL_CACHE_CLOSE_CURSOR = 1U << 9U,
        CALL_CREATED = 1U << 10U,     // Created new cache
        CALL_FOUND = 1U << 11U,       // Found existing cache
        CALL_CURSOR_OPEN = 1U << 12U, // Open Cursor Success
    };

    std::uint32_t calls = 0; // every one that the message holds
    // Where the first of each marker ends, kNone for a marker that is not there.
    std::size_t name = kNone;     // Name:[
    std::size_t instance = kNone; // Nm:[
    std::size_t handle = kNone;   // hCache:[
    std::size_t cursor = kNone;   // hCursor:[

    bool Hold(Call call) const { return (calls & call) != 0; }
};

CacheWords FindCacheWords(std::string_view message);

} // namespace carvelot
