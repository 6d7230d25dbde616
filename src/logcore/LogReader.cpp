#include "logcore/LogReader.h"

#include <algorithm>
#include <cstring>

namespace carvelot {

CLogReader::CLogReader(platform::SharedFile& file)
    : m_file(file), m_buffer(std::make_unique<char[]>(kLongestLine + kBlock + kScanPadding)) {}

void CLogReader::Rewind() {
    m_file.Rewind();
    m_nBegin = m_nEnd = 0;
    m_nConsumed = 0;
}

bool CLogReader::Refill() {
    const std::size_t rest = m_nEnd - m_nBegin;
    std::memmove(m_buffer.get(), m_buffer.get() + m_nBegin, rest);
    m_nBegin = 0;
    m_nEnd = rest;
    const std::size_t got = m_file.Read(m_buffer.get() + rest, kBlock);
    m_nEnd += got;
    return got > 0;
}

template <HintSet set> bool CLogReader::ReadLogLine(LogLine& line) {
    static const ScanLineFunction scanLine = BestScanLine<set>();
    for (;;) {
        const char* const first = m_buffer.get() + m_nBegin;
        const std::size_t limit = std::min(kLongestLine, m_nEnd - m_nBegin);
        const LineScan scan = scanLine(first, limit, line.hints);
        if (!scan.ended && limit < kLongestLine) {
            if (!Refill()) {
                return false;
            }
            continue;
        }
        const std::size_t taken = scan.length + (scan.ended ? 1 : 0);
        m_nBegin += taken;
        m_nConsumed += taken;
        line.bytes = {first, std::min(scan.length, scan.nul)};
        line.ascii = scan.ascii;
        return true;
    }
}

template bool CLogReader::ReadLogLine<HintSet::None>(LogLine&);
template bool CLogReader::ReadLogLine<HintSet::Debug>(LogLine&);
template bool CLogReader::ReadLogLine<HintSet::Jas>(LogLine&);

} // namespace carvelot
