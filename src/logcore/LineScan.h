// One pass over a line's bytes: where it ends, where its text ends, whether it is ASCII, and where to look
// for the words that classify it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace carvelot {

// Places in a line where one of the words that classify a statement may stand, found in the same pass that
// finds the line's end; a few may lie behind it. Most lines have none or two.
class LineHints {
public:
    static constexpr std::size_t kMost = 24;

    void Reset() {
        m_nCount = 0;
        m_bComplete = true;
    }
    void Add(std::size_t position) {
        if (m_nCount < kMost) {
            m_positions[m_nCount++] = static_cast<std::uint16_t>(position);
        } else {
            m_bComplete = false;
        }
    }
    // False when there were more places than room: the line must be searched as a whole.
    bool IsComplete() const { return m_bComplete; }
    void Invalidate() { m_bComplete = false; }
    const std::uint16_t* begin() const { return m_positions; }
    const std::uint16_t* end() const { return m_positions + m_nCount; }

private:
    std::uint16_t m_positions[kMost];
    std::uint32_t m_nCount = 0;
    bool m_bComplete = true;
};

enum class HintSet { None, Debug, Jas };

struct LineScan {
    std::size_t length; // bytes ahead of the line's end, `limit` when there is none
    std::size_t nul;    // the first NUL, `limit` when there is none
    bool ended;
    bool ascii;
};

// Scans at most `limit` bytes from `first` on; up to kScanPadding bytes behind them are read as well. `hints`
// comes out reset and filled.
inline constexpr std::size_t kScanPadding = 64;
using ScanLineFunction = LineScan (*)(const char* first, std::size_t limit, LineHints& hints);

// The fastest scan that this machine can do.
template <HintSet set> ScanLineFunction BestScanLine();

// The scans by themselves, for tests. The one in steps of 32 bytes is null where the build or the machine
// lacks it.
template <HintSet set> LineScan ScanLineBy16(const char* first, std::size_t limit, LineHints& hints);
template <HintSet set> ScanLineFunction ScanLineBy32();

} // namespace carvelot
