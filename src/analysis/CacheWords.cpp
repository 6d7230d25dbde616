#include "analysis/CacheWords.h"

#include "text/ByteScan.h"

#include <cstring>

namespace carvelot {

namespace {

template <std::size_t size> bool HoldsAt(std::string_view text, std::size_t at, const char (&word)[size]) {
    return at + size - 1 <= text.size() && std::memcmp(text.data() + at, word, size - 1) == 0;
}

template <std::size_t size>
void TakeMarker(std::string_view message, std::size_t at, const char (&marker)[size], std::size_t& end) {
    if (end == CacheWords::kNone && HoldsAt(message, at, marker)) {
        end = at + size - 1;
    }
}

// The calls that stand behind "jdeCache".
std::uint32_t CallsNamed(std::string_view rest) {
    switch (rest.empty() ? '\0' : rest.front()) {
    case 'I':
        return Starts(rest, "Init") ? CacheWords::CALL_CACHE_INIT : 0U;
    case 'F':
        return Starts(rest, "Fetch") ? CacheWords::CALL_CACHE_FETCH : 0U;
    case 'A':
        return Starts(rest, "Add") ? CacheWords::CALL_CACHE_ADD : 0U;
    case 'U':
        return Starts(rest, "Update") ? CacheWords::CALL_CACHE_UPDATE : 0U;
    case 'R':
        return Starts(rest, "ResetCursor") ? CacheWords::CALL_CACHE_RESET_CURSOR : 0U;
    case 'C':
        return Starts(rest, "CloseCursor") ? CacheWords::CALL_CACHE_CLOSE_CURSOR : 0U;
    case 'D':
        return (Starts(rest, "Delete") ? CacheWords::CALL_CACHE_DELETE : 0U) |
               (Starts(rest, "DeleteAll") ? CacheWords::CALL_CACHE_DELETE_ALL : 0U);
    case 'T':
        return (Starts(rest, "Terminate") ? CacheWords::CALL_CACHE_TERMINATE : 0U) |
               (Starts(rest, "TerminateAll") ? CacheWords::CALL_CACHE_TERMINATE_ALL : 0U);
    default:
        return 0;
    }
}

} // namespace

CacheWords FindCacheWords(std::string_view message) {
    CacheWords words;
    // Each of the words holds one of four capital letters before a small one, which tells it from all but one
    // or two others.
    ForEachOfFourBeforeLower<'C', 'F', 'N', 'O'>(message, [&](std::size_t at) {
        switch (message[at]) {
        case 'C':
            if (message[at + 1] == 'r') {
                words.calls |= HoldsAt(message, at, "Created new cache") ? CacheWords::CALL_CREATED : 0U;
            } else if (at >= 1 && message[at - 1] == 'h') {
                TakeMarker(message, at, "Cache:[", words.handle);
                TakeMarker(message, at, "Cursor:[", words.cursor);
            } else if (at >= 3 && HoldsAt(message, at - 3, "jdeCache")) {
                words.calls |= CallsNamed(message.substr(at + 5));
            }
            break;
        case 'F':
            words.calls |= HoldsAt(message, at, "Found existing cache") ? CacheWords::CALL_FOUND : 0U;
            break;
        case 'N':
            TakeMarker(message, at, "Nm:[", words.instance);
            TakeMarker(message, at, "Name:[", words.name);
            break;
        default:
            words.calls |= HoldsAt(message, at, "Open Cursor Success") ? CacheWords::CALL_CURSOR_OPEN : 0U;
            break;
        }
    });
    return words;
}

} // namespace carvelot
