#include "parse/fast/LineScanLoop.h"

namespace carvelot {

namespace {

// For every processor.
class ByteStretch {
public:
    explicit ByteStretch(const ClassTables& tables) : m_tables(tables) {}

    void Look(const char* p) {
        m_ends = m_marks = 0;
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
            m_marks |= std::uint64_t{(here & behind) != 0} << at;
        }
    }
    std::uint64_t LineEnds() const { return m_ends; }
    std::uint64_t Marks() const { return m_marks; }
    bool IsAscii() const { return m_ascii; }
    bool HoldsNul() const { return m_nul; }

private:
    const ClassTables& m_tables;
    std::uint64_t m_ends = 0;
    std::uint64_t m_marks = 0;
    bool m_ascii = true;
    bool m_nul = false;
};

} // namespace

BlockScan ScanByBytes(LogFormat format) { return ScanOf<ByteStretch>(format); }

BlockScan FastScan(LogFormat format) {
    for (const auto scanBy : {ScanBy32, ScanBy16}) {
        if (const BlockScan scan = scanBy(format)) {
            return scan;
        }
    }
    return ScanByBytes(format);
}

} // namespace carvelot
