// Neighbouring lines of a log begin alike: the same second, and one of a few beginnings behind it (ids and
// label of a debug line; level, user and source of a JAS line). What such a beginning means is remembered by
// its bytes, so that only the first line that begins so is taken apart word by word. Only beginnings of
// records are remembered: a line that the process filter refuses leaves none, so it is always taken apart.
#pragma once

#include "records/LogDetail.h"
#include "records/UsualLine.h"
#include "text/ByteScan.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <string_view>

namespace carvelot {

// The stamp that the latest line of the usual form began with.
struct KnownStamp : LineStamp {
    static constexpr std::size_t kLongest = 24;

    char bytes[kLongest] = {};
    std::size_t length = 0;  // at least 16; 0 while nothing is known
    std::uint32_t month = 0; // the three bytes of its name

    // Enters the bytes of a stamp whose numbers stand here already; false for numbers that no clock shows.
    bool Enter(std::string_view stamp, std::string_view monthName);
    // Whether a line of at least kLongest bytes begins so.
    bool IsStartOf(const char* line) const {
        return length != 0 && Same16(line, bytes) && Load64(line + length - 8) == Load64(bytes + length - 8);
    }
};

// What stands between the stamp and the text.
struct alignas(64) LineBeginning {
    static constexpr std::size_t kLongest = 128;
    static constexpr std::size_t kMostBlanks = 15;

    // Of a beginning of which nothing is known the length says so, and nothing else is read: a session of a
    // few lines need not clear 256 of them.
    LineBeginning() {}

    std::uint32_t length = 0; // 0 for nothing known
    std::uint32_t month;
    bool labelRunsOn;     // a debug line's label goes on into the text, to the next tab
    bool dashFixesColumn; // " - " behind it would fix the log's text column
    LogKind levelKind;    // of a JAS line: the kind that the level alone decides
    // Contexts of records, by the number of blanks ahead of the text (always 0 unless the label runs on);
    // kNoContext where no line of that kind has come.
    std::array<std::uint32_t, kMostBlanks + 1> contexts;
    char bytes[kLongest];

    // Whether a line of the month goes on so; `at` points behind its stamp.
    bool IsAt(const char* at, std::size_t available, std::uint32_t ofMonth) const {
        return length != 0 && month == ofMonth && length <= available &&
               SameShortText({at, length}, {bytes, length});
    }
};

class CLineBeginnings {
public:
    // The beginning that stands at `at`, where at least 24 bytes are readable; null when none is known.
    const LineBeginning* Find(const char* at, std::size_t available, std::uint32_t month) const {
        const std::size_t place = PlaceFor(at);
        const LineBeginning* const beginning = &m_beginnings[place];
        if (beginning->IsAt(at, available, month)) [[likely]] {
            return beginning;
        }
        const LineBeginning* const other = &m_beginnings[place ^ 1U];
        return other->IsAt(at, available, month) ? other : nullptr;
    }
    void Clear();
    void CopyFrom(const CLineBeginnings& other);
    // Remembers what the beginning of a line turned out to mean; one that does not fit is passed over.
    void Learn(std::string_view bytes, std::uint32_t month, bool labelRunsOn, std::size_t blanks,
               std::uint32_t context, LogKind levelKind, bool dashFixesColumn = false);

private:
    // A beginning has two places, so that two which meet do not drive each other out.
    static std::size_t PlaceFor(const char* at) {
        const std::uint64_t mixed = (Load64(at) * 31 + Load64(at + 8)) * 31 + Load64(at + 16);
        return static_cast<std::size_t>((mixed * 0x9E3779B97F4A7C15U) >> 56U);
    }

    std::array<LineBeginning, 256> m_beginnings;
    bool m_bLearnt = false;
};

// Beginnings that one thread learns, and another looks up a little later.
class CSharedBeginnings {
public:
    // For the thread that learns.
    const CLineBeginnings& Learnt() const { return m_learnt; }
    void Clear();
    void Learn(std::string_view bytes, std::uint32_t month, bool labelRunsOn, std::size_t blanks,
               std::uint32_t context, LogKind levelKind, bool dashFixesColumn = false);
    // Changes where what was learnt earlier does not hold for later lines.
    std::uint32_t Generation() const { return m_nGeneration; }

    // For the other thread: what was learnt up to now, and its generation.
    const CLineBeginnings& Latest(std::uint32_t& generation);

private:
    CLineBeginnings m_learnt;
    CLineBeginnings m_copy; // the other thread's
    std::mutex m_mutex;     // of what follows, and of m_learnt between the threads
    std::uint32_t m_nGeneration = 0;
    bool m_bChanged = false; // since it was copied
};

} // namespace carvelot
