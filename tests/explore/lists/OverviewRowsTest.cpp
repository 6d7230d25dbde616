#include "explore/lists/OverviewRows.h"

#include "explore/lists/EdgeRows.h"
#include "explore/lists/ListedRows.h"
#include "explore/lists/WallClock.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

using SortedOrders = std::vector<std::vector<std::size_t>>;

constexpr const char* kTelling = "Entering JDB_OpenTable"; // a line by which the format is known

std::string LineOf(const Texts& lines) { return OverviewLine(Listed(lines).explored); }

} // namespace

TEST(OverviewLine, TellsTheTimeFromTheFirstRecordToTheLast) {
    EXPECT_EQ(LineOf({DebugLine("10:00:00.000000", kTelling), DebugLine("10:00:12.345000", "b")}),
              "debug log \u00B7 12.345 s \u00B7 1 process, 1 thread \u00B7 2 records");
    EXPECT_EQ(LineOf({DebugLine("10:00:00.000000", kTelling), DebugLine("10:01:22.510000", "b")}),
              "debug log \u00B7 1 m 22.510 s \u00B7 1 process, 1 thread \u00B7 2 records");
    EXPECT_EQ(LineOf({DebugLine("10:00:00.000000", kTelling), DebugLine("13:00:07.000000", "b")}),
              "debug log \u00B7 3 h 0 m 7.000 s \u00B7 1 process, 1 thread \u00B7 2 records");
}

TEST(OverviewLine, TellsOfLinesThatAreNoRecords) {
    EXPECT_EQ(LineOf({DebugLine("10:00:00.000000", kTelling), "a stack trace", "and more of it"}),
              "debug log \u00B7 0.000 s \u00B7 1 process, 1 thread \u00B7 1 record \u00B7 2 lines unread");
}

TEST(OverviewLine, OfAWebServersLogCountsUsers) {
    EXPECT_EQ(LineOf(JASLog({UserAt(0, "a"), UserAt(1, "b")})),
              "JAS log \u00B7 2 h 0 m 1.000 s \u00B7 2 users \u00B7 " + std::to_string(kJASLead + 2) +
                  " records");
}

TEST(OverviewRows, SortByTextCountAndTime) {
    EXPECT_EQ(SortedByEach(std::vector<OverviewFinding>{{"b", 10, 5, 0}, {"a", 9, 7, 1}, {"C", 100, 6, 2}}),
              (SortedOrders{{1, 0, 2}, {1, 0, 2}, {0, 2, 1}}));
    EXPECT_EQ(SortedByEach(std::vector<OverviewCost>{{"b", 5, 10}, {"a", 7, 9}, {"C", 6, 100}}),
              (SortedOrders{{1, 0, 2}, {0, 2, 1}, {1, 0, 2}}));
}

TEST(EdgeRows, SortByNameCallsAndTime) {
    EXPECT_EQ(SortedByEach(std::vector<EdgeRow>{{1, "b", 10, 5}, {2, "a", 9, 7}, {3, "C", 100, 6}}),
              (SortedOrders{{1, 0, 2}, {1, 0, 2}, {0, 2, 1}}));
}

TEST(WallClock, OfALogWithoutATimeHasNoDay) {
    const Listed log(std::string("no line of this\nis a record\n"));
    EXPECT_EQ(CWallClock(log.explored).Day(0), "");
    const Listed stamped(DebugLog({At(0, "a")}));
    EXPECT_EQ(CWallClock(stamped.explored).Day(0), "Jan 15");
    EXPECT_EQ(CWallClock(stamped.explored).Day(std::int64_t{17} * 86'400 * 1'000'000), "Feb 1");
}

TEST(WallClock, ARangeMayBeOpenAtEitherEnd) {
    const Listed log(Texts{DebugLine("10:00:00.000000", kTelling), DebugLine("10:00:05.000000", "b")});
    const CWallClock wall(log.explored);
    EXPECT_EQ(RangeText(wall, {1'000'000, 3'500'000}), "10:00:01.000000 to 10:00:03.500000 (2.500000 s)");
    EXPECT_EQ(RangeText(wall, {1'000'000, ClockRange::kOpenTo}), "from 10:00:01.000000");
    EXPECT_EQ(RangeText(wall, {ClockRange::kOpenFrom, 3'500'000}), "up to 10:00:03.500000");
    EXPECT_EQ(RangeText(wall, {}), "");
}

} // namespace carvelot::test
