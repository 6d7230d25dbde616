#include "explore/Clock.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <vector>

namespace carvelot {

namespace {

constexpr std::int64_t kDay = 86'400'000'000;
constexpr std::int64_t kTenMinutes = 600'000'000;
constexpr std::int64_t kNoStamp = -1;
constexpr std::int64_t kMostClock = std::int64_t{1} << 62U;

struct Month {
    std::string_view name;
    std::int32_t days;
};
constexpr std::array<Month, 12> kMonths = {{{"Jan", 31},
                                            {"Feb", 29},
                                            {"Mar", 31},
                                            {"Apr", 30},
                                            {"May", 31},
                                            {"Jun", 30},
                                            {"Jul", 31},
                                            {"Aug", 31},
                                            {"Sep", 30},
                                            {"Oct", 31},
                                            {"Nov", 30},
                                            {"Dec", 31}}};
constexpr std::int64_t kFeb29 = 59; // days are numbered by a leap year until the whole log is seen

// What a context's month says.
struct MonthDays {
    std::int32_t days = -1; // 0 for what is no month, -1 while it is not looked up
    std::int64_t firstDay = 0;
};

MonthDays FindMonth(std::string_view name) {
    std::int64_t firstDay = 0;
    for (const Month& month : kMonths) {
        if (month.name == name) {
            return {month.days, firstDay};
        }
        firstDay += month.days;
    }
    return {0, 0};
}

std::int64_t Unsigned(std::int64_t distance) { return distance < 0 ? -distance : distance; }

} // namespace

std::int64_t AddTimes(std::int64_t one, std::int64_t other) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(one, other, &sum)) {
        return other < 0 ? std::numeric_limits<std::int64_t>::min()
                         : std::numeric_limits<std::int64_t>::max();
    }
    return sum;
}

std::int64_t ShortestSilence(float threshold) {
    std::int64_t least = 0;
    std::int64_t most = std::numeric_limits<std::int64_t>::max();
    while (least < most) {
        const std::int64_t middle = least + (most - least) / 2;
        if (SecondsFromMicroseconds(static_cast<std::uint64_t>(middle)) > threshold) {
            most = middle;
        } else {
            least = middle + 1;
        }
    }
    return least;
}

std::optional<StampedDay> StampedDayOf(const CDetailList& details, RecordIndex record) {
    const std::string_view name = details.Month(record);
    const auto month =
        std::find_if(kMonths.begin(), kMonths.end(), [name](const Month& one) { return one.name == name; });
    const std::int32_t day = details.Day(record);
    if (month == kMonths.end() || day < 1 || day > month->days ||
        details.Time(record) >= static_cast<std::uint64_t>(kDay)) {
        return std::nullopt;
    }
    return StampedDay{static_cast<std::int32_t>(month - kMonths.begin()) + 1, day};
}

CClock::CClock(const CDetailList& details, CExploreProgress* progress)
    : CClock(details, std::array{RecordRange{0, static_cast<std::uint32_t>(details.Size())}}, progress) {}

CClock::CClock(const CDetailList& details, std::span<const RecordRange> pieces, CExploreProgress* progress)
    : m_pProgress(progress), m_nRecords(static_cast<std::uint32_t>(details.Size())), m_clocks(m_nRecords) {
    ReadStamps(details);
    std::uint32_t behind = 0;
    const auto clearUpTo = [&](std::uint32_t end) {
        std::fill(m_clocks.begin() + behind, m_clocks.begin() + end, 0);
    };
    for (const RecordRange piece : pieces) {
        clearUpTo(piece.first);
        WalkPiece(piece);
        behind = piece.end;
    }
    clearUpTo(m_nRecords);
    AddPart(progress, ExploreParts::kClock);
}

void CClock::ReadStamps(const CDetailList& details) {
    std::vector<MonthDays> months(details.ContextCount()); // by context
    // Mostly a record is of the same second as the one before.
    std::uint32_t context = 0;
    std::uint64_t second = CDetailList::kNoSecond;
    std::int64_t dayNumber = 0;
    std::uint64_t timeOfSecond = 0; // beyond a day where there is no such day
    for (std::uint32_t i = 0; i < m_nRecords; ++i) {
        CheckAt(m_pProgress, i);
        const RecordIndex record{i};
        const std::uint64_t fraction = details.Fraction(record);
        if (details.ContextNumber(record) != context || details.SecondNumber(record) != second ||
            second == CDetailList::kNoSecond) {
            context = details.ContextNumber(record);
            second = details.SecondNumber(record);
            MonthDays& month = months[context];
            if (month.days < 0) {
                month = FindMonth(details.Month(record));
            }
            const std::int32_t day = details.Day(record);
            const bool isDay = day >= 1 && day <= month.days;
            dayNumber = isDay ? month.firstDay + day - 1 : 0;
            timeOfSecond = isDay ? details.Time(record) - fraction : static_cast<std::uint64_t>(kDay);
        }
        const std::uint64_t time = timeOfSecond + fraction;
        if (time >= static_cast<std::uint64_t>(kDay)) {
            m_clocks[i] = kNoStamp;
            continue;
        }
        m_bLeapYear = m_bLeapYear || dayNumber == kFeb29;
        m_clocks[i] = dayNumber * kDay + static_cast<std::int64_t>(time);
    }
}

std::int64_t CClock::Distance(std::int64_t from, std::int64_t to) const {
    const auto dayOf = [this](std::int64_t stamp) {
        const std::int64_t day = stamp / kDay;
        return day > kFeb29 && !m_bLeapYear ? day - 1 : day;
    };
    const std::int64_t year = m_bLeapYear ? 366 : 365;
    std::int64_t days = dayOf(to) - dayOf(from);
    if (2 * days > year) {
        days -= year;
    } else if (2 * days <= -year) {
        days += year;
    }
    return days * kDay + (to % kDay - from % kDay);
}

bool CClock::IsNear(std::int64_t from, std::int64_t to) const {
    return Unsigned(Distance(from, to)) <= kTenMinutes;
}

// Walks over records without a stamp, each of them at most for the few stamped ones ahead of it.
std::uint32_t CClock::NextStamped(std::uint32_t record, std::uint32_t end) const {
    while (record < end && m_clocks[record] == kNoStamp) {
        ++record;
    }
    return record;
}

bool CClock::IsFirstStray(std::uint32_t record, std::uint32_t end) const {
    const std::uint32_t second = NextStamped(record + 1, end);
    if (second == end || Unsigned(Distance(m_clocks[record], m_clocks[second])) <= kDay) {
        return false;
    }
    const std::uint32_t third = NextStamped(second + 1, end);
    return third != end && IsNear(m_clocks[second], m_clocks[third]);
}

bool CClock::IsStray(std::int64_t before, std::int64_t distance, std::uint32_t record, std::uint32_t end,
                     bool isThirdOrLater) const {
    if (Unsigned(distance) <= kTenMinutes) {
        return false;
    }
    std::uint32_t following = NextStamped(record + 1, end);
    if (following == end) {
        return isThirdOrLater && Unsigned(distance) > kDay;
    }
    for (int looked = 0; looked < 3 && following != end; ++looked) {
        if (IsNear(before, m_clocks[following])) {
            return true;
        }
        following = NextStamped(following + 1, end);
    }
    return false;
}

void CClock::WalkPiece(RecordRange piece) {
    std::optional<std::int64_t> before; // the latest stamp that is not stray
    std::uint32_t stamped = 0;
    std::int64_t clock = 0;
    std::int64_t midnight = 0; // ahead of that stamp
    for (std::uint32_t i = piece.first; i < piece.end; ++i) {
        CheckAt(m_pProgress, i);
        const std::int64_t stamp = m_clocks[i];
        if (stamp != kNoStamp) {
            ++stamped;
            if (before) {
                // Mostly the day is the same, and little time has passed.
                const bool isSameDay = stamp >= midnight && stamp < midnight + kDay;
                if (isSameDay && Unsigned(stamp - *before) <= kTenMinutes) {
                    clock = std::min(clock + (stamp - *before), kMostClock);
                    before = stamp;
                    m_clocks[i] = clock;
                    m_nLength = std::max(m_nLength, clock);
                    continue;
                }
                const std::int64_t distance = isSameDay ? stamp - *before : Distance(*before, stamp);
                if (!IsStray(*before, distance, i, piece.end, stamped >= 3)) {
                    // A clock that was set back by more than the ten minutes goes on from where it stood.
                    const std::int64_t step = distance < -kTenMinutes ? 0 : distance;
                    clock = std::min(clock + step, kMostClock);
                    before = stamp;
                    midnight = isSameDay ? midnight : stamp - stamp % kDay;
                }
            } else if (stamped != 1 || !IsFirstStray(i, piece.end)) {
                if (m_firstRecord) {
                    clock = Distance(m_nFirstStamp, stamp);
                } else {
                    m_firstRecord = RecordIndex{i};
                    m_nFirstStamp = stamp;
                }
                before = stamp;
                midnight = stamp - stamp % kDay;
            }
        }
        m_clocks[i] = clock;
        m_nLength = std::max(m_nLength, clock);
    }
}

} // namespace carvelot
