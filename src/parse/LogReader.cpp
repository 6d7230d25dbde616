#include "parse/LogReader.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace carvelot {

std::uint64_t CLogReader::SizeAhead() const {
    const std::uint64_t size = m_source.Size();
    // Where a log has not grown there may still be a byte more in a moment.
    return size > m_start.position ? size - m_start.position : std::min<std::uint64_t>(size, 1);
}

// A small log, as most are that tests read, is read as a whole; one that grows meanwhile comes in more
// blocks.
std::size_t CLogReader::BlockFor() const {
    constexpr std::uint64_t least = 1024;
    const std::uint64_t size = SizeAhead();
    return size == 0 ? kBlock : static_cast<std::size_t>(std::clamp<std::uint64_t>(size, least, kBlock));
}

// What is left of a block is always shorter than the longest line.
CLogReader::Block::Block(std::size_t size)
    : bytes(std::make_unique_for_overwrite<char[]>(kLongestLine + size + kScanPadding)),
      index(kLongestLine + size) {}

CLogReader::CLogReader(ILogSource& source, BlockScan scan, const BlockReading& reading, const LogPlace& start,
                       ReadingBesides besides)
    : m_source(source), m_scan(scan), m_start(start), m_reading(reading), m_besides(std::move(besides)) {
    if (m_reading.bytes == 0) {
        m_reading.bytes = BlockFor();
    }
    if (m_reading.way == BlockReading::Way::AheadIfLarge) {
        const std::uint64_t size = SizeAhead();
        const bool large = size == 0 || size > 4 * kBlock;
        m_reading.way = large ? BlockReading::Way::Ahead : BlockReading::Way::Here;
    }
    const bool ahead = m_reading.way == BlockReading::Way::Ahead;
    const std::size_t blocks = ahead ? m_reading.ring : 1;
    m_ring.reserve(blocks);
    for (std::size_t i = 0; i < blocks; ++i) {
        m_ring.emplace_back(m_reading.bytes);
    }
    Rewind();
}

void CLogReader::Rewind() {
    m_blocks.reset();
    if (m_start.position == 0) {
        m_source.Rewind();
    } else {
        m_bAtStart = m_source.Seek(m_start.position);
    }
    m_pBlock = nullptr;
    m_lines = {};
    m_nBlockPosition = m_start.position;
    m_progress = m_source.Progress();
    m_pieceBegins.assign(1, 0);
    m_blocks.emplace(
        m_ring,
        [this](Block& block, const Block* before, const CReadAhead<Block>& ahead) {
            return Fill(block, before, ahead);
        },
        m_reading.way == BlockReading::Way::Ahead);
}

bool CLogReader::Fill(Block& block, const Block* before, const CReadAhead<Block>& ahead) {
    if (m_besides.beforeBlock && ahead.Waiting() > 0) {
        m_besides.beforeBlock(m_source.Progress());
    }
    std::uint32_t kept = 0;
    std::uint64_t position = m_start.position;
    bool behindReturn = m_start.behindReturn;
    if (before != nullptr) {
        kept = before->rest;
        const std::uint32_t taken = before->end - kept;
        behindReturn = kept == 0 && before->bytes[taken - 1] == '\r';
        std::memmove(block.bytes.get(), before->bytes.get() + taken, kept);
        position = before->position + taken;
    }
    const std::size_t got = m_bAtStart ? m_source.Read(block.bytes.get() + kept, m_reading.bytes) : 0;
    if (got == 0) {
        return false;
    }
    block.position = position;
    block.behindReturn = behindReturn;
    block.end = kept + static_cast<std::uint32_t>(got);
    block.progress = m_source.Progress();
    char* const end = block.bytes.get() + block.end;
    std::memset(end, ' ', kScanPadding);
    block.scanned = false;
    block.prepared.Clear();
    if (ahead.Waiting() > 0 || m_reading.prepareAlways) {
        Scan(block);
        if (m_besides.prepare) {
            m_besides.prepare({block.bytes.get(), block.end, block.index, nullptr}, block.prepared);
        }
    }
    const auto isLineEnd = [](char c) { return c == '\n' || c == '\r'; };
    const auto latest = std::find_if(std::make_reverse_iterator(end),
                                     std::make_reverse_iterator(block.bytes.get()), isLineEnd);
    block.rest = static_cast<std::uint32_t>(end - latest.base()) % kLongestLine;
    block.endsBehindReturn = end[-1] == '\r';
    return true;
}

void CLogReader::Scan(Block& block) const {
    m_scan(block.bytes.get(), block.end, block.index);
    block.linesIn = block.LinesEndedWith(block.index.endCount);
    block.scanned = true;
}

bool CLogReader::TakeBlock() {
    const std::uint64_t linesEnded =
        m_pBlock == nullptr ? m_start.linesEnded : m_pBlock->linesEnded + m_pBlock->linesIn;
    Block* const block = m_blocks->Next();
    if (block == nullptr) {
        return false;
    }
    if (!block->scanned) {
        Scan(*block);
    }
    block->linesEnded = linesEnded;
    m_pBlock = block;
    m_lines = {block->bytes.get(), block->end, block->index, &block->prepared};
    m_nBlockPosition = block->position;
    m_progress = block->progress;
    m_pieceBegins.resize(m_progress.piece + 1, m_progress.pieceBegin);
    return true;
}

std::uint64_t CLogReader::Block::LinesEndedWith(std::size_t ends) const {
    std::uint64_t lines = ends;
    if (ends > 0 && behindReturn && bytes[0] == '\n') {
        --lines;
    }
    // Most logs have no carriage return at all.
    if (std::memchr(bytes.get(), '\r', end) != nullptr) {
        for (std::size_t i = 1; i < ends; ++i) {
            const std::uint32_t at = index.ends[i];
            lines -= bytes[at] == '\n' && index.ends[i - 1] + 1 == at && bytes[at - 1] == '\r' ? 1U : 0U;
        }
    }
    return lines;
}

} // namespace carvelot
