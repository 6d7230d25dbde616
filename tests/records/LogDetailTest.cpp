#include "records/LogDetail.h"

#include "text/Integers.h"
#include "text/TextColumns.h"

#include <gtest/gtest.h>

namespace carvelot::test {

TEST(ElapsedSeconds, IsZeroForEqualTimes) { EXPECT_EQ(ElapsedSeconds(5, 5), 0.0F); }

TEST(ElapsedSeconds, IsZeroFromAnUnknownTime) { EXPECT_EQ(ElapsedSeconds(7'000'000, 0), 0.0F); }

TEST(ElapsedSeconds, AddsThirteenHoursLessAMicrosecondToABackwardStep) {
    EXPECT_EQ(ElapsedSeconds(1'000'000, 2'000'000), 46798.999999F);
    // 00:00:01 after 12:59:59: just under two seconds.
    EXPECT_FLOAT_EQ(ElapsedSeconds(1'000'000, 46'799'000'000), 1.999999F);
}

TEST(ElapsedSeconds, IsEnormousAcrossMidnight) {
    const float seconds = ElapsedSeconds(1, 86'399'000'000);
    EXPECT_EQ(seconds, 18446744073709551616.0F / 1'000'000.0F);
    EXPECT_GT(seconds, 1.8e13F);
}

TEST(LogTime, TakesTheFractionAsTheIntegerThatTheLogWrote) {
    EXPECT_EQ(LogTime(0, 0, 0, 250), 250U);
    EXPECT_EQ(LogTime(9, 12, 3, 250000), 33'123'250'000U);
}

TEST(LogTime, WrapsModuloTwoToThe64) { EXPECT_EQ(LogTime(0, 0, -1, 0), ~std::uint64_t{0} - 999'999); }

TEST(ReadInteger, ReadsAsTheCLibraryDoes) {
    EXPECT_EQ(ReadInteger("12abc"), 12);
    EXPECT_EQ(ReadInteger(" \t-7"), -7);
    EXPECT_EQ(ReadInteger("+3"), 3);
    EXPECT_EQ(ReadInteger("abc"), 0);
    EXPECT_EQ(ReadInteger(""), 0);
    EXPECT_EQ(ReadInteger("- 5"), 0);
    EXPECT_EQ(ReadInteger("99999999999999999999"), 2147483647);
    EXPECT_EQ(ReadInteger("-99999999999999999999"), -2147483647 - 1);
}

TEST(Columns, CountUTF16Units) {
    std::string scratch;
    EXPECT_EQ(FromColumn("a\xC3\xA9z", 2, scratch), "z");
    EXPECT_EQ(FromColumn("\xF0\x9F\x9A\x9Az", 2, scratch), "z");
    EXPECT_EQ(FromColumn("abc", 3, scratch), "");
    EXPECT_EQ(FromColumn("abc", 99, scratch), "");
    EXPECT_EQ(ColumnOf("\xF0\x9F\x9A\x9A\xC3\xA9z", 6), 3U);
    EXPECT_EQ(AsciiAtColumn("\xC3\xA9"
                            "7",
                            1),
              '7');
    EXPECT_EQ(AsciiAtColumn("\xC3\xA9"
                            "7",
                            0),
              '\0');
    EXPECT_EQ(AsciiAtColumn("7", 1), '\0');
}

TEST(Columns, LeaveALoneSurrogateWhereACutGoesThroughAPair) {
    std::string scratch;
    // U+1F69A is D83D DE9A.
    EXPECT_EQ(FromColumn("\xF0\x9F\x9A\x9Az", 1, scratch), "\xED\xBA\x9Az");
    EXPECT_EQ(WithoutLastUnit("a\xF0\x9F\x9A\x9A", scratch), "a\xED\xA0\xBD");
    EXPECT_EQ(WithoutLastUnit("ab", scratch), "a");
    EXPECT_EQ(WithoutLastUnit("", scratch), "");
    EXPECT_EQ(WithReplacements("x\xED\xBA\x9Ay"), "x\xEF\xBF\xBDy");
}

} // namespace carvelot::test
