// One pass over a block of a log: where its lines end, and where to look for the words that classify them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace carvelot {

// Which words a pass looks for.
enum class HintSet { None, Debug, Jas };

// What a pass over a block found. Positions count from the block's first byte.
struct LineIndex {
    // `size`: the longest block that will be scanned. At first nothing is found.
    explicit LineIndex(std::size_t size);
    // Forgets what was found.
    void Clear() { ends[0] = hints[0] = kNoMore; }

    // Behind the last entry of each stands kNoMore.
    static constexpr std::uint32_t kNoMore = 0xFFFFFFFF;
    std::unique_ptr<std::uint32_t[]> ends;  // of every line feed and carriage return
    std::unique_ptr<std::uint32_t[]> hints; // of every pair of letters that a classifying word holds
    bool ascii = true;                      // every byte is
    bool holdsNul = false;
};

// Scans `size` bytes; kScanPadding bytes behind them are read as well, and must be ASCII but not NUL.
inline constexpr std::size_t kScanPadding = 64;
using ScanBlockFunction = void (*)(const char* first, std::size_t size, LineIndex& index);

// The fastest scan that this machine can do.
ScanBlockFunction BestScan(HintSet set);

// The scans by themselves, for tests: byte by byte, and in steps of 16, 32 and 64 bytes, which are null where
// the build or the machine lacks them.
ScanBlockFunction ScanByBytes(HintSet set);
ScanBlockFunction ScanBy16(HintSet set);
ScanBlockFunction ScanBy32(HintSet set);
ScanBlockFunction ScanBy64(HintSet set);

} // namespace carvelot
