#include "explore/Clock.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace carvelot::test {

namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

using Clocks = std::vector<std::int64_t>;

// Records with stamps as "Jan 15 10:00:00".
class Stamps {
public:
    explicit Stamps(const std::vector<std::string>& stamps) {
        for (const std::string& stamp : stamps) {
            char month[16] = "";
            CLogDetail detail;
            std::sscanf(stamp.c_str(), "%15s %d %d:%d:%d", month, &detail.m_nDay, &detail.m_nHour,
                        &detail.m_nMinute, &detail.m_nSecond);
            detail.m_strMonth = month;
            m_details.Append(detail, true);
        }
    }

    Clocks OnePiece() const { return All(CClock(m_details)); }
    Clocks Pieces(const std::vector<RecordRange>& pieces) const { return All(CClock(m_details, pieces)); }

    CDetailList m_details;

private:
    Clocks All(const CClock& clock) const {
        Clocks clocks;
        for (std::uint32_t i = 0; i < m_details.Size(); ++i) {
            clocks.push_back(clock[RecordIndex{i}]);
        }
        return clocks;
    }
};

Clocks ClocksOf(const std::vector<std::string>& stamps) { return Stamps(stamps).OnePiece(); }

} // namespace

TEST(ExploreClock, BeginsAt0AndCountsMicroseconds) {
    EXPECT_EQ(ClocksOf({"Jan 15 10:00:00", "Jan 15 10:00:01", "Jan 15 11:00:00"}),
              (Clocks{0, kSecond, kHour}));
}

TEST(ExploreClock, GoesOnOverMidnightMonthAndYear) {
    EXPECT_EQ(ClocksOf({"Jan 31 23:59:59", "Feb 1 00:00:01"}), (Clocks{0, 2 * kSecond}));
    EXPECT_EQ(ClocksOf({"Dec 31 23:59:00", "Jan 1 00:01:00"}), (Clocks{0, 2 * kMinute}));
}

TEST(ExploreClock, HasAFeb29OnlyInALogThatShowsOne) {
    EXPECT_EQ(ClocksOf({"Feb 28 12:00:00", "Mar 1 12:00:00"}), (Clocks{0, kDay}));
    EXPECT_EQ(ClocksOf({"Feb 28 12:00:00", "Mar 1 12:00:00", "Feb 29 12:00:00"}),
              (Clocks{0, 2 * kDay, 2 * kDay}));
}

TEST(ExploreClock, TakesTheShorterWayRoundTheYear) {
    // 365 days: 182 ahead is ahead, 183 ahead is 182 back.
    EXPECT_EQ(ClocksOf({"Jan 1 00:00:00", "Jul 2 00:00:00"}), (Clocks{0, 182 * kDay}));
    EXPECT_EQ(ClocksOf({"Jan 1 00:00:00", "Jul 3 00:00:00"}), (Clocks{0, 0}));
    // 366 days: 183 ahead is ahead.
    EXPECT_EQ(ClocksOf({"Feb 29 00:00:00", "Aug 30 00:00:00"}), (Clocks{0, 183 * kDay}));
    EXPECT_EQ(ClocksOf({"Feb 29 00:00:00", "Aug 31 00:00:00"}), (Clocks{0, 0}));
}

TEST(ExploreClock, KeepsTheClockOfTheRecordBeforeForOneWithoutAStamp) {
    const std::string time = " 10:00:05";
    EXPECT_EQ(ClocksOf({"MONTH 1" + time, "Jan 15 10:00:00", "Jan 15 10:00:03", "anF 15" + time,
                        "Jan 0" + time, "Jan 32" + time, "Feb 30" + time, "Apr 31" + time, "jan 15" + time,
                        "Jan 15 24:00:00", "Jan 15 -1:00:00", "Jan 15 10:00:04"}),
              (Clocks{0, 0, 3 * kSecond, 3 * kSecond, 3 * kSecond, 3 * kSecond, 3 * kSecond, 3 * kSecond,
                      3 * kSecond, 3 * kSecond, 3 * kSecond, 4 * kSecond}));
}

TEST(ExploreClock, ShowsASmallStepBackAndTakesALargeOneForNone) {
    EXPECT_EQ(ClocksOf({"Jan 15 10:20:00", "Jan 15 10:10:00", "Jan 15 10:10:01"}),
              (Clocks{0, -10 * kMinute, -10 * kMinute + kSecond}));
    EXPECT_EQ(ClocksOf({"Jan 15 10:20:00", "Jan 15 10:09:58", "Jan 15 10:09:59"}), (Clocks{0, 0, kSecond}));
}

TEST(ExploreClock, PassesOverAStampFarFromItsNeighbours) {
    EXPECT_EQ(ClocksOf({"Jan 15 10:00:00", "Mar 1 10:00:00", "Jan 15 10:00:02"}),
              (Clocks{0, 0, 2 * kSecond}));
    // Three stamped records behind are looked at, ...
    EXPECT_EQ(ClocksOf({"Jan 15 10:00:00", "Mar 1 10:00:00", "Mar 2 10:00:00", "x 1 1:00:00",
                        "Mar 3 10:00:00", "Jan 15 10:10:00"}),
              (Clocks{0, 0, 0, 0, 0, 10 * kMinute}));
    // ... not four.
    EXPECT_EQ(ClocksOf({"Jan 15 10:00:00", "Jan 16 10:00:00", "Jan 17 10:00:00", "Jan 18 10:00:00",
                        "Jan 19 10:00:00", "Jan 15 10:10:00"})[1],
              kDay);
    // Ten minutes are near, a second more is not.
    EXPECT_EQ(ClocksOf({"Jan 15 10:00:00", "Jan 15 10:10:01", "Jan 15 10:10:00"}),
              (Clocks{0, 0, 10 * kMinute}));
    EXPECT_EQ(ClocksOf({"Jan 15 10:00:00", "Jan 15 10:10:00", "Jan 15 10:05:00"}),
              (Clocks{0, 10 * kMinute, 5 * kMinute}));
    EXPECT_EQ(ClocksOf({"Jan 15 10:00:00", "Jan 15 11:00:00", "Jan 15 10:10:01"})[1], kHour);
}

TEST(ExploreClock, PassesOverAFirstStampMoreThanADayFromTwoThatAgree) {
    EXPECT_EQ(ClocksOf({"Jan 10 10:00:00", "Jan 15 10:00:00", "Jan 15 10:10:00"}),
              (Clocks{0, 0, 10 * kMinute}));
    EXPECT_EQ(ClocksOf({"Jan 10 10:00:00", "Jan 15 10:00:00", "Jan 15 10:10:01"})[1], 5 * kDay);
    EXPECT_EQ(ClocksOf({"Jan 14 10:00:00", "Jan 15 10:00:00", "Jan 15 10:00:01"})[1], kDay);
    EXPECT_EQ(ClocksOf({"Jan 10 10:00:00", "Jan 15 10:00:00"})[1], 5 * kDay);
}

TEST(ExploreClock, PassesOverALastStampMoreThanADayFromTheOneBefore) {
    EXPECT_EQ(ClocksOf({"Jan 15 10:00:00", "Jan 15 10:00:01", "Jan 16 10:00:01"})[2], kSecond + kDay);
    EXPECT_EQ(ClocksOf({"Jan 15 10:00:00", "Jan 15 10:00:01", "Jan 16 10:00:02", "x 1 1:00:00"}),
              (Clocks{0, kSecond, kSecond, kSecond}));
}

TEST(ExploreClock, NamesTheRecordWithWhichTimeBeginsAndTheLargestClock) {
    const Stamps stamps(
        {"x 1 1:00:00", "Jan 10 10:00:00", "Jan 15 10:00:00", "Jan 15 10:00:05", "Jan 15 10:00:03"});
    const CClock clock(stamps.m_details);
    EXPECT_EQ(clock.FirstRecord(), RecordIndex{2});
    EXPECT_EQ(clock.Length(), 5 * kSecond);
    const Stamps none({"x 1 1:00:00"});
    EXPECT_EQ(CClock(none.m_details).FirstRecord(), std::nullopt);
    EXPECT_EQ(CClock(none.m_details).Length(), 0);
    EXPECT_EQ(CClock(CDetailList()).Length(), 0);
}

TEST(ExploreClock, StartsEachPieceByItsDistanceFromTheFirstPiecesStart) {
    const Stamps stamps({"Jan 15 10:00:00", "Jan 15 12:00:00", "x 1 1:00:00", "Jan 15 09:00:00",
                         "Jan 15 09:00:01", "Jan 15 11:00:00"});
    EXPECT_EQ(stamps.Pieces({{0, 2}, {2, 5}, {5, 6}}),
              (Clocks{0, 2 * kHour, 0, -kHour, -kHour + kSecond, kHour}));
    // A piece's neighbours are its own: its last stamp is the third of none.
    EXPECT_EQ(stamps.Pieces({{0, 2}, {2, 5}})[5], 0);
}

TEST(ExploreClock, TakesTheYearOfTheWholeLogForAllPieces) {
    const Stamps stamps({"Feb 28 12:00:00", "Mar 1 12:00:00", "Feb 29 12:00:00"});
    EXPECT_EQ(stamps.Pieces({{0, 2}, {2, 3}}), (Clocks{0, 2 * kDay, kDay}));
}

TEST(ExploreClock, StaysWithin64BitsWhereEachStampIsHalfAYearAhead) {
    CDetailList details;
    constexpr std::uint32_t count = 1'200'000;
    const char* const months[] = {"Jan", "May", "Sep"};
    for (std::uint32_t i = 0; i < count; ++i) {
        CLogDetail detail;
        detail.m_strMonth = months[i % 3];
        detail.m_nDay = 1;
        detail.m_nHour = static_cast<std::int32_t>(i % 24);
        details.Append(detail, true);
    }
    const CClock clock(details);
    std::int64_t before = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        ASSERT_GE(clock[RecordIndex{i}], before);
        before = clock[RecordIndex{i}];
    }
    EXPECT_EQ(before, std::int64_t{1} << 62U);
}

TEST(ExploreTimes, StayAtTheMostThat64BitsHold) {
    constexpr std::int64_t most = INT64_MAX;
    EXPECT_EQ(AddTimes(2, 3), 5);
    EXPECT_EQ(AddTimes(most, 1), most);
    EXPECT_EQ(AddTimes(INT64_MIN, -1), INT64_MIN);
}

} // namespace carvelot::test
