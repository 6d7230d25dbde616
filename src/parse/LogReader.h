// Lines of a log file, under the one reading rule of the system, in large blocks.
#pragma once

#include "parse/BlockLines.h"
#include "parse/BlockScan.h"
#include "parse/PreparedLine.h"
#include "sources/LogSource.h"
#include "sources/ReadAhead.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace carvelot {

// How blocks are read: the lines are the same in any case.
struct BlockReading {
    enum class Way { Here, Ahead, AheadIfLarge }; // ahead: by a thread of its own

    Way way = Way::AheadIfLarge;
    std::size_t bytes = 0; // of a block; 0 leaves it to the reader
    std::size_t ring = 6;  // blocks that are read ahead, two or more
    // For tests: each block is scanned and prepared when it is read. Otherwise this is left to whoever takes
    // it when that thread would have to wait, as for bytes that are unpacked.
    bool prepareAlways = false;
};

// Behind a line of a log: where whoever has read so far goes on.
struct LogPlace {
    std::uint64_t position = 0;   // of the next line's first byte
    std::uint64_t linesEnded = 0; // ahead of it, as an editor counts them
    bool behindReturn = false;    // the byte ahead of it is a carriage return
};

// What else the thread that reads does, if anything.
struct ReadingBesides {
    // Ahead of each block.
    std::function<void(const SourceProgress& read)> beforeBlock;
    // With the lines of a scanned block, for which nothing is prepared yet.
    std::function<void(CBlockLines lines, PreparedLines& prepared)> prepare;
};

class CLogReader {
public:
    static constexpr std::size_t kLongestLine = LogLine::kLongest;

    // Starts at the source's first byte, or at another place of one that seeks; nothing is read of one that
    // does not. As long as this lives, nobody else may use the source, nor go what `besides` uses.
    explicit CLogReader(ILogSource& source, BlockScan scan = FindLineEnds,
                        const BlockReading& reading = {.way = BlockReading::Way::Here},
                        const LogPlace& start = {}, ReadingBesides besides = {});

    // Starts over from there.
    void Rewind();

    // Reads the next line. A byte 10 or 13 ends it, so CR LF gives an empty line after every line. After 8192
    // bytes it ends without a look at the next byte. False at the end of the file: bytes behind the last line
    // end are no line.
    bool ReadLogLine(LogLine& line) {
        while (!m_lines.Next(line)) {
            if (!TakeBlock()) {
                return false;
            }
        }
        return true;
    }

    // Bytes of the log that the lines read so far took.
    std::uint64_t Position() const { return m_nBlockPosition + m_lines.Begin(); }
    // The last of these, which is the line's end unless the line is a piece; to be asked for behind a line
    // only.
    char LastByte() const { return m_lines.LastByte(); }
    // Bytes of the log up to the end of the block that the latest line stands in; at the log's end all of
    // them.
    std::uint64_t BytesRead() const { return m_nBlockPosition + m_lines.End(); }
    // Lines that have ended so far as an editor counts them, for which a line feed, a carriage return or both
    // in this order are one end; a piece ends no line. Looks at the latest block, so not for every line.
    std::uint64_t LinesEnded() const {
        if (m_pBlock == nullptr) {
            return m_start.linesEnded;
        }
        // Behind the last one the bytes may have moved on already.
        const bool atItsEnd = *m_lines.NextEnd() == LineIndex::kNoMore;
        return m_pBlock->linesEnded + (atItsEnd ? m_pBlock->linesIn
                                                : m_pBlock->LinesEndedWith(static_cast<std::size_t>(
                                                      m_lines.NextEnd() - m_pBlock->index.ends.get())));
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
        PreparedLines prepared;
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

    ILogSource& m_source;
    const BlockScan m_scan;
    const LogPlace m_start;
    bool m_bAtStart = true; // the source could go there
    BlockReading m_reading;
    const ReadingBesides m_besides;
    std::vector<Block> m_ring;
    std::optional<CReadAhead<Block>> m_blocks;

    // The block whose lines are taken, null ahead of the first.
    const Block* m_pBlock;
    CBlockLines m_lines;
    std::uint64_t m_nBlockPosition;
    SourceProgress m_progress;
    std::vector<std::uint64_t> m_pieceBegins;
};

} // namespace carvelot
