// The lines of a block, by what its scan found.
#pragma once

#include "parse/BlockScan.h"
#include "parse/PreparedLine.h"

#include <cstddef>
#include <cstdint>
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
    static constexpr std::size_t kLongest = 8192; // a longer one comes in pieces of this size

    std::string_view bytes;
    bool ascii = true;
    LineMarks marks;
    const PreparedLine* prepared = nullptr;      // if it was prepared
    const PreparedLines* preparedWith = nullptr; // then those of its block
};

// The lines of a block, from its first byte on. What is left behind the last begins the next block.
class CBlockLines {
public:
    // Of no block, which has no lines.
    CBlockLines() = default;
    CBlockLines(const char* bytes, std::uint32_t size, const LineIndex& index, const PreparedLines* prepared)
        : m_pBytes(bytes), m_nEnd(size), m_pNextEnd(index.ends.get()), m_pNextMark(index.marks.get()),
          m_pNextPrepared(prepared == nullptr || prepared->lines.empty() ? &kNonePrepared
                                                                         : prepared->lines.data()),
          m_pPrepared(prepared), m_bPlain(index.ascii && !index.holdsNul) {}

    bool Next(LogLine& line) {
        const std::size_t length = *m_pNextEnd - m_nBegin;
        if (length >= LogLine::kLongest) {
            if (m_nEnd - m_nBegin < LogLine::kLongest) {
                return false;
            }
            Take(line, LogLine::kLongest);
            return true;
        }
        Take(line, length);
        ++m_nBegin;
        ++m_pNextEnd;
        return true;
    }

    // Of the bytes that are not yet taken the first, and that behind the last.
    std::uint32_t Begin() const { return m_nBegin; }
    std::uint32_t End() const { return m_nEnd; }
    // The last byte that was taken.
    char LastByte() const { return m_pBytes[m_nBegin - 1]; }
    // In the block's index, kNoMore behind the last.
    const std::uint32_t* NextEnd() const { return m_pNextEnd; }

private:
    static constexpr std::uint32_t kNoPlace = LineIndex::kNoMore;
    static constexpr PreparedLine kNonePrepared{};

    void Take(LogLine& line, std::size_t length) {
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
        line.prepared = nullptr;
        if (m_pNextPrepared->begin == origin) {
            line.prepared = m_pNextPrepared++;
            line.preparedWith = m_pPrepared;
        }
        if (!m_bPlain) {
            LookForNulAndUpperHalf(line);
        }
    }
    static void LookForNulAndUpperHalf(LogLine& line);

    const char* m_pBytes = nullptr;
    std::uint32_t m_nBegin = 0;
    std::uint32_t m_nEnd = 0;
    const std::uint32_t* m_pNextEnd = &kNoPlace;
    const std::uint32_t* m_pNextMark = &kNoPlace;
    const PreparedLine* m_pNextPrepared = &kNonePrepared;
    const PreparedLines* m_pPrepared = nullptr;
    bool m_bPlain = true; // the block holds ASCII without NUL
};

} // namespace carvelot
