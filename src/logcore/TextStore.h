// The one home of a session's texts: bytes appended, never moved, freed all at once.
#pragma once

#include "logcore/PagedArray.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace carvelot {

class CTextStore {
public:
    using Offset = std::uint64_t;

    // Longest text that an offset can name; longer ones are kept by KeepLarge.
    static constexpr std::size_t kLongest = std::size_t{1} << 16U;

    // Appends head and tail as neighbours and says where the head starts.
    Offset Add(std::string_view head, std::string_view tail = {});

    std::string_view View(Offset offset, std::size_t length) const { return {&m_bytes[offset], length}; }

    // The text from `offset` up to the first of two characters, one of which the caller knows to be there.
    std::string_view ViewUpTo(Offset offset, char end, char otherEnd) const;

    // A copy of any length, for texts that bear their own address.
    std::string_view Keep(std::string_view text);

    void Clear();

private:
    CPagedArray<char, 22> m_bytes;
    std::vector<std::unique_ptr<char[]>> m_large;
};

} // namespace carvelot
