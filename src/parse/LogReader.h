// Lines of a log file, under the one reading rule of the system, in large blocks.
#pragma once

#include "parse/BlockScan.h"
#include "platform/SharedFile.h"
#include "records/LogSource.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace carvelot {

// The places in a line that the block's scan marked; a few may lie behind its text. Most lines have none.
class LineMarks {
public:
    LineMarks() = default;
    // `origin` is the line's own place in what the places count in.
    LineMarks(const std::uint32_t* first, const std::uint32_t* last, std::uint32_t origin)
        : m_first(first), m_last(last), m_nOrigin(origin) {}

    bool Empty() const { return m_first == m_last; }

    // Calls look(place) for each place, counted from the line's first byte.
    template <class Look> void ForEach(Look look) const {
        for (const std::uint32_t* place = m_first; place != m_last; ++place) {
            look(std::size_t{*place - m_nOrigin});
        }
    }

private:
    const std::uint32_t* m_first = nullptr;
    const std::uint32_t* m_last = nullptr;
    std::uint32_t m_nOrigin = 0;
};

// One line as the file holds it, without its end: at most 8192 bytes, cut at its first NUL. The bytes and
// kScanPadding bytes behind them stay readable until the next line is read.
struct LogLine {
    std::string_view bytes;
    bool ascii = true;
    LineMarks marks;
};

class CLogReader {
public:
    // A line longer than this comes in pieces of this size.
    static constexpr std::size_t kLongestLine = 8192;

    explicit CLogReader(ILogSource& source, BlockScan scan = FindLineEnds);

    // Starts over from the log's first byte.
    void Rewind(BlockScan scan = FindLineEnds);

    // Reads the next line. A byte 10 or 13 ends it, so CR LF gives an empty line after every line. After 8192
    // bytes it ends without a look at the next byte. False at the end of the file: bytes behind the last line
    // end are no line.
    bool ReadLogLine(LogLine& line) {
        std::size_t length = *m_pNextEnd - m_nBegin;
        while (length >= kLongestLine) {
            if (m_nEnd - m_nBegin >= kLongestLine) {
                TakeLine(line, kLongestLine);
                return true;
            }
            if (!Refill()) {
                return false;
            }
            length = *m_pNextEnd - m_nBegin;
        }
        TakeLine(line, length);
        ++m_nBegin;
        ++m_pNextEnd;
        return true;
    }

    // Bytes of the log that the lines read so far took.
    std::uint64_t Position() const { return m_nBlockPosition + m_nBegin; }
    // The last of these, which is the line's end unless the line is a piece; to be asked for behind a line
    // only.
    char LastByte() const { return m_buffer[m_nBegin - 1]; }

private:
    // Large enough to make the calls of the system cheap, small enough to stay in a processor's cache.
    static constexpr std::size_t kBlock = 128 * 1024;
    static std::size_t BlockFor(const ILogSource& source);

    bool Refill();
    void TakeLine(LogLine& line, std::size_t length) {
        const char* const first = m_buffer.get() + m_nBegin;
        const std::uint32_t* const firstMark = m_pNextMark;
        const std::uint32_t origin = m_nBegin;
        m_nBegin += static_cast<std::uint32_t>(length);
        while (*m_pNextMark < m_nBegin) {
            ++m_pNextMark;
        }
        line.bytes = {first, length};
        line.ascii = true;
        line.marks = {firstMark, m_pNextMark, origin};
        if (!m_bPlain) {
            LookForNulAndUpperHalf(line);
        }
    }
    static void LookForNulAndUpperHalf(LogLine& line);

    ILogSource& m_source;
    BlockScan m_scan;
    std::size_t m_nBlock;
    std::unique_ptr<char[]> m_buffer;
    LineIndex m_index;
    const std::uint32_t* m_pNextEnd;
    const std::uint32_t* m_pNextMark;
    std::uint32_t m_nBegin = 0; // of the bytes that are read but not yet taken, in the buffer
    std::uint32_t m_nEnd = 0;
    bool m_bPlain = true;               // the buffer holds ASCII without NUL
    std::uint64_t m_nBlockPosition = 0; // of the buffer's first byte, in the file
};

} // namespace carvelot
