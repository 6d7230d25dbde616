// Lines of a log file, under the one reading rule of the system, in large blocks.
#pragma once

#include "parse/BlockScan.h"
#include "sources/LogSource.h"
#include "sources/ReadAhead.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

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

// How blocks are read: the lines are the same in any case.
struct BlockReading {
    enum class Way { Here, Ahead, AheadIfLarge }; // ahead: by a thread of its own

    Way way = Way::AheadIfLarge;
    std::size_t bytes = 0; // of a block; 0 leaves it to the reader
    std::size_t ring = 6;  // blocks that are read ahead, two or more
};

// One line as the file holds it, without its end: at most 8192 bytes, cut at its first NUL. The bytes and
// kScanPadding bytes behind them stay readable until the next line is read.
struct LogLine {
    std::string_view bytes;
    bool ascii = true;
    LineMarks marks;
};

// Behind a line of a log: where whoever has read so far goes on.
struct LogPlace {
    std::uint64_t position = 0;   // of the next line's first byte
    std::uint64_t linesEnded = 0; // ahead of it, as an editor counts them
    bool behindReturn = false;    // the byte ahead of it is a carriage return
};

class CLogReader {
public:
    // A line longer than this comes in pieces of this size.
    static constexpr std::size_t kLongestLine = 8192;

    // Called ahead of each block that is read, by the thread that reads it.
    using Besides = std::function<void(const SourceProgress& read)>;

    // Starts at the source's first byte, or at another place of one that seeks; nothing is read of one that
    // does not. As long as this lives, nobody else may use the source, nor go what `besides` uses.
    explicit CLogReader(ILogSource& source, BlockScan scan = FindLineEnds,
                        const BlockReading& reading = {.way = BlockReading::Way::Here},
                        const LogPlace& start = {}, Besides besides = {});

    // Starts over from there.
    void Rewind();

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
            if (!TakeBlock()) {
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
    char LastByte() const { return m_pBytes[m_nBegin - 1]; }
    // Bytes of the log up to the end of the block that the latest line stands in; at the log's end all of
    // them.
    std::uint64_t BytesRead() const { return m_nBlockPosition + m_nEnd; }
    // Lines that have ended so far as an editor counts them, for which a line feed, a carriage return or both
    // in this order are one end; a piece ends no line. Looks at the latest block, so not for every line.
    std::uint64_t LinesEnded() const {
        if (m_pBlock == nullptr) {
            return m_start.linesEnded;
        }
        // Behind the last one the bytes may have moved on already.
        const bool atItsEnd = *m_pNextEnd == LineIndex::kNoMore;
        return m_pBlock->linesEnded + (atItsEnd ? m_pBlock->linesIn
                                                : m_pBlock->LinesEndedWith(static_cast<std::size_t>(
                                                      m_pNextEnd - m_pBlock->index.ends.get())));
    }
    // The number of the line that was read last, or of the line that it is a piece of.
    std::uint64_t LineNumber() const {
        const bool ended = LastByte() == '\n' || LastByte() == '\r';
        return LinesEnded() + (ended ? 0 : 1);
    }
    // Where the next line begins; to be asked for behind the last line only.
    LogPlace Place() const {
        return {Position(), LinesEnded(),
                m_pBlock == nullptr ? m_start.behindReturn : m_pBlock->endsBehindReturn};
    }
    // How far the source had been read with the block that the latest line stands in.
    const SourceProgress& Progress() const { return m_progress; }
    // At which bytes of the log its pieces begin, as far as they have been met; 0 alone for a log that is
    // one.
    const std::vector<std::uint64_t>& PieceBegins() const { return m_pieceBegins; }

private:
    // Large enough to make the calls of the system cheap, small enough to stay in a processor's cache.
    static constexpr std::size_t kBlock = 128 * 1024;
    // What the latest part of a log begins with, then what was read behind it, scanned.
    struct Block {
        explicit Block(std::size_t size);

        std::unique_ptr<char[]> bytes;
        LineIndex index;
        std::uint32_t end = 0; // of the bytes
        std::uint32_t rest =
            0; // of them, from which no line can be taken yet: the next block begins with them
        std::uint64_t position = 0;    // of the first byte, in the log
        bool behindReturn = false;     // the byte ahead of it is a carriage return
        bool endsBehindReturn = false; // its last byte is one, and no line feed can stand in the rest
        SourceProgress progress;
        bool scanned = false;         // what follows is there
        std::uint64_t linesIn = 0;    // ended with a line end of the block
        std::uint64_t linesEnded = 0; // ahead of it; there once it is taken

        // Lines that end with the first so many line ends of the block.
        std::uint64_t LinesEndedWith(std::size_t ends) const;
    };

    // Bytes to read, as far as is known; 0 when it can't be told.
    std::uint64_t SizeAhead() const;
    std::size_t BlockFor() const;
    bool Fill(Block& block, const Block* before, const CReadAhead<Block>& ahead);
    void Scan(Block& block) const;
    bool TakeBlock();
    void TakeLine(LogLine& line, std::size_t length) {
        const char* const first = m_pBytes + m_nBegin;
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
    const BlockScan m_scan;
    const LogPlace m_start;
    bool m_bAtStart = true; // the source could go there
    BlockReading m_reading;
    const Besides m_besides;
    std::vector<Block> m_ring;
    std::optional<CReadAhead<Block>> m_blocks;

    // The block whose lines are taken, null ahead of the first.
    const Block* m_pBlock;
    const char* m_pBytes;
    const std::uint32_t* m_pNextEnd;
    const std::uint32_t* m_pNextMark;
    std::uint32_t m_nBegin; // of the bytes that are not yet taken
    std::uint32_t m_nEnd;
    bool m_bPlain; // it holds ASCII without NUL
    std::uint64_t m_nBlockPosition;
    SourceProgress m_progress;
    std::vector<std::uint64_t> m_pieceBegins;
};

} // namespace carvelot
