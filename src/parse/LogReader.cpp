#include "parse/LogReader.h"

#include "platform/CodePage.h"

namespace carvelot {

// A refill never leaves more than a line's longest length ahead of what it reads.
CLogReader::CLogReader(platform::SharedFile& file, HintSet hints)
    : m_file(file), m_scan(BestScan(hints)),
      m_buffer(std::make_unique<char[]>(kLongestLine + kBlock + kScanPadding)),
      m_index(kLongestLine + kBlock) {
    m_scan(m_buffer.get(), 0, m_index);
    m_pNextEnd = m_index.ends.get();
    m_pNextHint = m_index.hints.get();
}

void CLogReader::Rewind(HintSet hints) {
    m_file.Rewind();
    m_scan = BestScan(hints);
    m_nBegin = m_nEnd = 0;
    m_nBlockPosition = 0;
    m_scan(m_buffer.get(), 0, m_index);
    m_pNextEnd = m_index.ends.get();
    m_pNextHint = m_index.hints.get();
}

bool CLogReader::Refill() {
    const std::uint32_t rest = m_nEnd - m_nBegin;
    std::memmove(m_buffer.get(), m_buffer.get() + m_nBegin, rest);
    m_nBlockPosition += m_nBegin;
    m_nBegin = 0;
    const std::size_t got = m_file.Read(m_buffer.get() + rest, kBlock);
    m_nEnd = rest + static_cast<std::uint32_t>(got);
    std::memset(m_buffer.get() + m_nEnd, ' ', kScanPadding);
    m_scan(m_buffer.get(), m_nEnd, m_index);
    m_pNextEnd = m_index.ends.get();
    m_pNextHint = m_index.hints.get();
    m_bPlain = m_index.ascii && !m_index.holdsNul;
    return got > 0;
}

void CLogReader::LookForNulAndUpperHalf(LogLine& line) {
    line.bytes = line.bytes.substr(0, line.bytes.find('\0'));
    line.ascii = platform::IsAscii(line.bytes);
}

} // namespace carvelot
