// The time of each record, counted on over midnights, turns of the year and clocks that were set back. The
// stamps of a log have no year, and its times of day begin anew each night.
#pragma once

#include "explore/ExploreProgress.h"
#include "records/DetailList.h"
#include "records/PageAllocator.h"

#include <cstdint>
#include <optional>
#include <span>

namespace carvelot {

// Records that follow each other in the file, without the one at `end`.
struct RecordRange {
    std::uint32_t first = 0;
    std::uint32_t end = 0;
};

// Microseconds between two times. Beyond what 64 bits hold, sums of times stay at the most that they hold.
std::int64_t AddTimes(std::int64_t one, std::int64_t other);
// The shortest time that is more than a threshold, which is compared as seconds of 32 bits.
std::int64_t ShortestSilence(float threshold);

// The day of a record's stamp; nothing of a stamp that is none (no such day, no such time of day).
struct StampedDay {
    std::int32_t month; // 1 to 12
    std::int32_t day;
};
std::optional<StampedDay> StampedDayOf(const CDetailList& details, RecordIndex record);

class CClock {
public:
    explicit CClock(const CDetailList& details, CExploreProgress* progress = nullptr);
    // The log was written in pieces, each by a clock of its own from its start on. A record in no piece has
    // clock 0.
    CClock(const CDetailList& details, std::span<const RecordRange> pieces,
           CExploreProgress* progress = nullptr);

    // Microseconds since the first record whose stamp can be believed; within half of what 64 bits hold.
    std::int64_t operator[](RecordIndex record) const { return m_clocks[Number(record)]; }
    // The record with which time begins; none in a log without stamps.
    std::optional<RecordIndex> FirstRecord() const { return m_firstRecord; }
    // Whether a stamp names a Feb 29.
    bool IsLeapYear() const { return m_bLeapYear; }
    // The largest clock, 0 without records.
    std::int64_t Length() const { return m_nLength; }

private:
    void ReadStamps(const CDetailList& details);
    void WalkPiece(RecordRange piece);
    std::int64_t Distance(std::int64_t from, std::int64_t to) const;
    bool IsNear(std::int64_t from, std::int64_t to) const;
    std::uint32_t NextStamped(std::uint32_t record, std::uint32_t end) const;
    bool IsFirstStray(std::uint32_t record, std::uint32_t end) const;
    bool IsStray(std::int64_t before, std::int64_t distance, std::uint32_t record, std::uint32_t end,
                 bool isThirdOrLater) const;

    CExploreProgress* const m_pProgress;
    std::uint32_t m_nRecords;
    CLargeVector<std::int64_t> m_clocks; // by record; a stamp, until its piece is walked
    bool m_bLeapYear = false;
    std::optional<RecordIndex> m_firstRecord;
    std::int64_t m_nFirstStamp = 0; // of that record
    std::int64_t m_nLength = 0;
};

} // namespace carvelot
