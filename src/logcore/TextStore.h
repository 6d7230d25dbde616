// The one home of a session's texts: bytes appended, never moved, freed all at once.
#pragma once

#include "logcore/ByteScan.h"
#include "logcore/PagedArray.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace carvelot {

class CTextStore {
public:
    using Offset = std::uint64_t;

    // Bytes from which on Add throws std::length_error.
    static constexpr std::size_t kMost = std::size_t{1} << 40U;

    CTextStore() { m_bytes.LimitTo(kMost); }

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

    // The same for a text that a recent one may equal: then that one serves for both. Many lines of a log are
    // the same but for their stamps.
    Offset AddShared(std::string_view text, bool ended) {
        if (text.size() < 8) {
            return Add(text, ended);
        }
        const char* const first = text.data();
        const char* const last = first + text.size() - 8;
        const std::uint64_t mixed =
            ((Load64(first) * 31 + Load64(first + text.size() / 2 - 4)) * 31 + Load64(last)) *
            0x9E3779B97F4A7C15U;
        RecentText& recent = m_recent[mixed >> 54U];
        const auto key = static_cast<std::uint32_t>(mixed >> 22U);
        const auto size = static_cast<std::uint32_t>(text.size() * 2 + (ended ? 1 : 0));
        if (recent.key != key || recent.size != size ||
            !SameShortText({&m_bytes[recent.offset], text.size()}, text)) {
            recent = {key, size, Add(text, ended)};
        }
        return recent.offset;
    }

    std::string_view View(Offset offset, std::size_t length) const { return {&m_bytes[offset], length}; }

    // The text from `offset` up to the first of two characters, one of which the caller knows to be there.
    std::string_view ViewUpTo(Offset offset, char end, char otherEnd) const;

    // A copy of any length, for texts that bear their own address.
    std::string_view Keep(std::string_view text);

    void Clear();

private:
    struct RecentText {
        std::uint32_t key;
        std::uint32_t size; // twice the length, and 1 for one that ends with a line feed; 0 for none
        Offset offset;
    };

    CPagedArray<char, 22> m_bytes;
    std::array<RecentText, 1024> m_recent{};
    std::vector<std::unique_ptr<char[]>> m_large;
};

} // namespace carvelot
