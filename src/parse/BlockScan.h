// What one pass over a block of a log finds: where its lines end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace carvelot {

// Positions count from the block's first byte.
struct LineIndex {
    // `size`: the longest block that will be scanned. At first nothing is found.
    explicit LineIndex(std::size_t size);
    // Forgets what was found.
    void Clear() { ends[0] = marks[0] = kNoMore; }

    // Behind the last entry of each stands kNoMore.
    static constexpr std::uint32_t kNoMore = 0xFFFFFFFF;
    std::unique_ptr<std::uint32_t[]> ends;  // of every line feed and carriage return
    std::unique_ptr<std::uint32_t[]> marks; // of whatever else the scan was made to look for
    std::uint32_t endCount = 0;             // how many ends there are
    bool ascii = true;                      // every byte is
    bool holdsNul = false;
};

// Scans `size` bytes. A scan may read kScanPadding bytes behind them, which must be ASCII but not NUL.
inline constexpr std::size_t kScanPadding = 64;
using BlockScan = void (*)(const char* first, std::size_t size, LineIndex& index);

// The scan that looks for nothing but line ends.
void FindLineEnds(const char* first, std::size_t size, LineIndex& index);

} // namespace carvelot
