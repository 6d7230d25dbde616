// Lines of a log file, under the one reading rule of the system, in large blocks.
#pragma once

#include "logcore/LineScan.h"
#include "platform/SharedFile.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace carvelot {

// One line as the file holds it, without its end: at most 8192 bytes, cut at its first NUL. The bytes stay
// valid until the next line is read.
struct LogLine {
    std::string_view bytes;
    bool ascii = true;
    LineHints hints;
};

class CLogReader {
public:
    // A line longer than this comes in pieces of this size.
    static constexpr std::size_t kLongestLine = 8192;

    explicit CLogReader(platform::SharedFile& file);

    // Starts over from the file's first byte.
    void Rewind();

    // Reads the next line. A byte 10 or 13 ends it, so CR LF gives an empty line after every line. After 8192
    // bytes it ends without a look at the next byte. False at the end of the file: bytes behind the last line
    // end are no line.
    template <HintSet hints> bool ReadLogLine(LogLine& line);

    // Bytes of the file that the lines read so far took.
    std::uint64_t Position() const { return m_nConsumed; }

private:
    static constexpr std::size_t kBlock = 256 * 1024;

    bool Refill();

    platform::SharedFile& m_file;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_nBegin = 0;
    std::size_t m_nEnd = 0;
    std::uint64_t m_nConsumed = 0;
};

extern template bool CLogReader::ReadLogLine<HintSet::None>(LogLine&);
extern template bool CLogReader::ReadLogLine<HintSet::Debug>(LogLine&);
extern template bool CLogReader::ReadLogLine<HintSet::Jas>(LogLine&);

} // namespace carvelot
