#include "parse/LogReader.h"

#include "platform/CodePage.h"

#include <algorithm>

namespace carvelot {

// A small log, as most are that tests read, is read as a whole; one that grows meanwhile comes in more
// blocks.
std::size_t CLogReader::BlockFor(const ILogSource& source) {
    constexpr std::uint64_t least = 1024;
    const std::uint64_t size = source.Size();
    return size == 0 ? kBlock : static_cast<std::size_t>(std::clamp<std::uint64_t>(size, least, kBlock));
}

// A refill never leaves more than a line's longest length ahead of what it reads.
CLogReader::CLogReader(ILogSource& source, BlockScan scan)
    : m_source(source), m_scan(scan), m_nBlock(BlockFor(source)),
      m_buffer(std::make_unique_for_overwrite<char[]>(kLongestLine + m_nBlock + kScanPadding)),
      m_index(kLongestLine + m_nBlock), m_pNextEnd(m_index.ends.get()), m_pNextMark(m_index.marks.get()) {}

void CLogReader::Rewind(BlockScan scan) {
    m_source.Rewind();
    m_scan = scan;
    m_nBegin = m_nEnd = 0;
    m_nBlockPosition = 0;
    m_index.Clear();
    m_pNextEnd = m_index.ends.get();
    m_pNextMark = m_index.marks.get();
}

bool CLogReader::Refill() {
    const std::uint32_t rest = m_nEnd - m_nBegin;
    std::memmove(m_buffer.get(), m_buffer.get() + m_nBegin, rest);
    m_nBlockPosition += m_nBegin;
    m_nBegin = 0;
    const std::size_t got = m_source.Read(m_buffer.get() + rest, m_nBlock);
    m_nEnd = rest + static_cast<std::uint32_t>(got);
    if (got > 0) {
        std::memset(m_buffer.get() + m_nEnd, ' ', kScanPadding);
        m_scan(m_buffer.get(), m_nEnd, m_index);
        m_bPlain = m_index.ascii && !m_index.holdsNul;
    } else {
        m_index.Clear();
    }
    m_pNextEnd = m_index.ends.get();
    m_pNextMark = m_index.marks.get();
    return got > 0;
}

void CLogReader::LookForNulAndUpperHalf(LogLine& line) {
    line.bytes = line.bytes.substr(0, line.bytes.find('\0'));
    line.ascii = platform::IsAscii(line.bytes);
}

} // namespace carvelot
