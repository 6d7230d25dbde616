// The one home of a session's texts: bytes appended, never moved, freed all at once.
#pragma once

#include "records/PagedArray.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace carvelot {

class CTextStore {
public:
    using Offset = std::uint64_t;

    // Bytes from which on Add throws std::length_error.
    static constexpr std::size_t kMost = std::size_t{1} << 40U;

    CTextStore() {
        m_bytes.LimitTo(kMost);
        m_bytes.AskAhead();
    }

    // For tests of the boundary.
    void LimitTo(std::size_t bytes) { m_bytes.LimitTo(bytes); }

    // Longest text that an offset can name; longer ones are kept by KeepLarge.
    static constexpr std::size_t kLongest = std::size_t{1} << 16U;

    // Appends a text and says where it starts; with `ended`, a line feed behind it.
    Offset Add(std::string_view text, bool ended = false) {
        const std::size_t size = text.size() + (ended ? 1 : 0);
        if (size == 0) {
            return 0;
        }
        char* const place = m_bytes.Reserve(size);
        std::memcpy(place, text.data(), text.size());
        if (ended) {
            place[text.size()] = '\n';
        }
        return m_bytes.Size() - size;
    }

    std::string_view View(Offset offset, std::size_t length) const { return {&m_bytes[offset], length}; }

    // Has the beginning of a text brought into the cache. Were it no part of its caller, g++ 12 would take a
    // call that changes nothing for none.
    [[gnu::always_inline]] inline void Fetch(Offset offset) const {
#if defined(__GNUC__)
        for (std::size_t line = 0; line < 3; ++line) {
            __builtin_prefetch(&m_bytes[offset] + 64 * line);
        }
#endif
    }

    // The text from `offset` up to the first of two characters, one of which the caller knows to be there.
    std::string_view ViewUpTo(Offset offset, char end, char otherEnd) const;

    // Whether the bytes of one text, or of neighbouring ones, hold a word of at least two characters.
    // `betweenBlocks` is called every few megabytes.
    bool Holds(std::string_view word, const std::function<void()>& betweenBlocks) const;

    // A copy of any length, for texts that bear their own address.
    std::string_view Keep(std::string_view text);

    // As the paged array's.
    bool ProvidePage() noexcept { return m_bytes.ProvidePage(); }

    void Clear();

private:
    CPagedArray<char, 22> m_bytes;
    struct LargeText {
        std::unique_ptr<char[]> bytes;
        std::size_t size;
    };
    std::vector<LargeText> m_large;
};

} // namespace carvelot
