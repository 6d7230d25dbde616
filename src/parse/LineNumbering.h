// Numbers lines as an editor does.
#pragma once

#include "parse/LogReader.h"

namespace carvelot {

// A line feed, a carriage return or both in this order end a line of an editor, which knows nothing of
// pieces.
class CLineNumbering {
public:
    // Of lines that are read from a place on.
    explicit CLineNumbering(const LogPlace& start = {})
        : m_nLines(start.linesEnded), m_nEnd(start.position), m_bBehindReturn(start.behindReturn) {}

    // The number of the line that the reader has just read, the first one being 1. To be asked for every
    // line.
    std::uint64_t Take(const CLogReader& reader) {
        const std::uint64_t begin = m_nEnd;
        m_nEnd = reader.Position();
        const char last = reader.LastByte();
        if (last == '\n' && m_bBehindReturn && m_nEnd - begin == 1) {
            m_bBehindReturn = false;
            return m_nLines;
        }
        m_bBehindReturn = last == '\r';
        const bool ended = m_bBehindReturn || last == '\n';
        m_nLines += ended ? 1 : 0;
        return ended ? m_nLines : m_nLines + 1;
    }

private:
    std::uint64_t m_nLines;
    std::uint64_t m_nEnd; // of the latest line, in the log
    bool m_bBehindReturn;
};

} // namespace carvelot
