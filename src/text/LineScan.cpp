#include "text/LineScanLoop.h"

namespace carvelot {

namespace {

// For every processor.
class ByteStretch {
public:
    explicit ByteStretch(const ClassTables& tables) : m_tables(tables) {}

    void Look(const char* p) {
        m_ends = m_hints = 0;
        const auto classOf = [](char c, const unsigned char* low, const unsigned char* high) {
            const auto byte = static_cast<unsigned char>(c);
            return byte < 0x80 ? low[byte & 0xFU] & high[byte >> 4U] : 0;
        };
        for (unsigned at = 0; at < 64; ++at) {
            const int here = classOf(p[at], m_tables.firstLow, m_tables.firstHigh);
            m_ascii = m_ascii && static_cast<unsigned char>(p[at]) < 0x80;
            m_nul = m_nul || p[at] == '\0';
            if (here == 0) {
                continue;
            }
            m_ends |= std::uint64_t{(here & kLineEnd) != 0} << at;
            const int behind = classOf(p[at + 1], m_tables.secondLow, m_tables.secondHigh);
            m_hints |= std::uint64_t{(here & behind) != 0} << at;
        }
    }
    std::uint64_t LineEnds() const { return m_ends; }
    std::uint64_t Hints() const { return m_hints; }
    bool IsAscii() const { return m_ascii; }
    bool HoldsNul() const { return m_nul; }

private:
    const ClassTables& m_tables;
    std::uint64_t m_ends = 0;
    std::uint64_t m_hints = 0;
    bool m_ascii = true;
    bool m_nul = false;
};

} // namespace

LineIndex::LineIndex(std::size_t size)
    : ends(std::make_unique_for_overwrite<std::uint32_t[]>(size + 1)),
      hints(std::make_unique_for_overwrite<std::uint32_t[]>(size + 1)) {
    Clear();
}

ScanBlockFunction ScanByBytes(HintSet set) { return ScanOf<ByteStretch>(set); }

ScanBlockFunction BestScan(HintSet set) {
    for (const ScanBlockFunction scan : {ScanBy64(set), ScanBy32(set), ScanBy16(set)}) {
        if (scan != nullptr) {
            return scan;
        }
    }
    return ScanByBytes(set);
}

} // namespace carvelot
