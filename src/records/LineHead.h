// Neighbouring lines of a log begin alike: the same second, and one of a few heads (ids and label of a debug
// line; level, user and source of a JAS line). What such a beginning means is remembered by its bytes, so
// that only the first line that begins so is taken apart word by word. Only beginnings of records are
// remembered: a line that the process filter refuses leaves none, so it is always taken apart.
#pragma once

#include "records/LogDetail.h"
#include "text/ByteScan.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace carvelot {

// Date and clock time up to the whole second, as the latest line of the usual form began with them.
struct LineStamp {
    static constexpr std::size_t kLongest = 24;

    char bytes[kLongest] = {};
    std::size_t length = 0; // at least 16; 0 while nothing is known
    std::int32_t day = 0;
    std::int32_t hour = 0;
    std::int32_t minute = 0;
    std::int32_t second = 0;
    std::uint32_t month = 0;  // the three bytes of its name
    std::uint64_t time = 0;   // microseconds since midnight
    std::uint64_t packed = 0; // day and time as records keep them

    void SetBytes(std::string_view stamp, std::string_view monthName) {
        length = stamp.size();
        std::memcpy(bytes, stamp.data(), length);
        month = static_cast<std::uint32_t>(Load32(monthName.data()) & 0xFFFFFFU);
        time = LogTime(hour, minute, second, 0);
    }
    // Whether a record can keep the numbers without more ado.
    bool IsOfAClock() const { return day < 32 && hour < 32 && minute < 64 && second < 64; }

    // Whether a line of at least kLongest bytes begins so.
    bool IsStartOf(const char* line) const {
        return length != 0 && Same16(line, bytes) && Load64(line + length - 8) == Load64(bytes + length - 8);
    }
};

// What stands between the stamp and the text.
struct alignas(64) LineHead {
    static constexpr std::size_t kLongest = 128;
    static constexpr std::size_t kMostBlanks = 15;

    // Of a head of which nothing is known the length says so, and nothing else is read: a session of a few
    // lines need not clear 256 of them.
    LineHead() {}

    std::uint32_t length = 0; // 0 for nothing known
    std::uint32_t month;
    bool labelRunsOn;  // a debug line's label goes on into the text, to the next tab
    LogKind levelKind; // of a JAS line: the kind that the level alone decides
    // Contexts of records, by the number of blanks between head and text (always 0 unless the label runs on);
    // kUnknown where no line of that kind has come.
    static constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
    std::array<std::uint32_t, kMostBlanks + 1> contexts;
    char bytes[kLongest];

    // Whether a line of the month goes on so; `at` points behind its stamp.
    bool IsAt(const char* at, std::size_t available, std::uint32_t ofMonth) const {
        return length != 0 && month == ofMonth && length <= available &&
               SameShortText({at, length}, {bytes, length});
    }
};

// A line that begins as earlier ones did, in pieces: its stamp and its context are known.
struct UsualLine {
    const LineStamp& stamp;
    std::uint32_t fraction;
    std::uint32_t context;
    LogKind kind;
    std::int32_t returnCode;
    SqlOperation operation;
    bool ascii;
    bool labelRunsOn;
    std::string_view text;
    std::string_view stored; // the text, and perhaps blanks behind it that belong to its label
    std::string_view name;   // the display name, or the table of a SQL record
};

class CLineHeads {
public:
    // The head that stands at `at`, where at least 24 bytes are readable; null when none is known.
    const LineHead* Find(const char* at, std::size_t available, std::uint32_t month) const {
        const std::size_t place = PlaceFor(at);
        const LineHead* const head = &m_heads[place];
        if (head->IsAt(at, available, month)) [[likely]] {
            return head;
        }
        const LineHead* const other = &m_heads[place ^ 1U];
        return other->IsAt(at, available, month) ? other : nullptr;
    }
    void Clear() {
        if (m_bLearnt) {
            for (LineHead& head : m_heads) {
                head.length = 0;
            }
            m_bLearnt = false;
        }
    }
    // Remembers what a line turned out to mean; a head that does not fit is passed over.
    void Learn(std::string_view head, std::uint32_t month, bool labelRunsOn, std::size_t blanks,
               std::uint32_t context, LogKind levelKind);

private:
    // A head has two places, so that two which meet do not drive each other out.
    static std::size_t PlaceFor(const char* at) {
        const std::uint64_t mixed = (Load64(at) * 31 + Load64(at + 8)) * 31 + Load64(at + 16);
        return static_cast<std::size_t>((mixed * 0x9E3779B97F4A7C15U) >> 56U);
    }

    std::array<LineHead, 256> m_heads;
    bool m_bLearnt = false;
};

} // namespace carvelot
