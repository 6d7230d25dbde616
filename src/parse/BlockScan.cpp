#include "parse/BlockScan.h"

#include "platform/CodePage.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace carvelot {

LineIndex::LineIndex(std::size_t size)
    : ends(std::make_unique_for_overwrite<std::uint32_t[]>(size + 1)),
      marks(std::make_unique_for_overwrite<std::uint32_t[]>(size + 1)) {
    Clear();
}

void FindLineEnds(const char* first, std::size_t size, LineIndex& index) {
    const char* const last = first + size;
    const auto next = [last](const char* from, char end) {
        const void* const found = std::memchr(from, end, static_cast<std::size_t>(last - from));
        return found == nullptr ? last : static_cast<const char*>(found);
    };
    std::uint32_t* ends = index.ends.get();
    const char* feed = next(first, '\n');
    const char* carriage = next(first, '\r');
    while (feed != last || carriage != last) {
        const char* const end = std::min(feed, carriage);
        *ends++ = static_cast<std::uint32_t>(end - first);
        (end == feed ? feed : carriage) = next(end + 1, *end);
    }
    *ends = LineIndex::kNoMore;
    index.endCount = static_cast<std::uint32_t>(ends - index.ends.get());
    index.marks[0] = LineIndex::kNoMore;
    const std::string_view block(first, size);
    index.ascii = platform::IsAscii(block);
    index.holdsNul = block.find('\0') != std::string_view::npos;
}

} // namespace carvelot
