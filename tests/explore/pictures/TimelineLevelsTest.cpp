#include "explore/pictures/TimelineLog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>
#include <utility>

namespace carvelot::test {

namespace {

// Calls one behind the other, each with its start and end.
std::vector<std::string> Calls(const std::vector<std::pair<std::int64_t, std::int64_t>>& spans) {
    std::vector<std::string> lines;
    std::size_t number = 0;
    for (const auto& [start, end] : spans) {
        const std::string name = "F" + std::to_string(number % 7);
        lines.push_back(AtMicrosecond(start, CallText(name, 1)));
        lines.push_back(AtMicrosecond(end, ReturnText(name, 1, number % 50 == 49 ? 2 : 0)));
        ++number;
    }
    return LinesOfLog(lines);
}

std::vector<TimelineBar> BarsOf(const TimelineLog& log, std::int64_t from, std::int64_t to, unsigned level) {
    std::vector<TimelineBar> bars;
    log.m_timeline.Levels().ForEachBar(0, from, to, level,
                                       [&](const TimelineBar& bar) { bars.push_back(bar); });
    return bars;
}

// The same by looking at every frame.
std::vector<TimelineBar> PlainBars(const TimelineLog& log, unsigned level) {
    std::vector<TimelineBar> bars;
    bool isLong = false;
    for (std::uint32_t i = 0; i < log.Frames().Count(); ++i) {
        const Frame& frame = log.Frames()[i];
        const std::uint32_t failed = frame.IsFailed() ? 1 : 0;
        const bool wasLong = std::exchange(isLong, frame.Total() >= std::int64_t{1} << level);
        if (bars.empty() || isLong || wasLong || bars.back().start >> level != frame.start >> level) {
            bars.push_back({frame.start, frame.end, i, 2 + failed});
            continue;
        }
        TimelineBar& bar = bars.back();
        bar.frame = frame.Total() > log.Frames()[bar.frame].Total() ? i : bar.frame;
        bar.end = frame.end;
        bar.countAndFailed = ((bar.Count() + 1) << 1U) | (bar.countAndFailed & 1U) | failed;
    }
    return bars;
}

bool Equal(const TimelineBar& one, const TimelineBar& other) {
    return one.start == other.start && one.end == other.end && one.frame == other.frame &&
           one.countAndFailed == other.countAndFailed;
}

// Bursts of short calls, long ones, and calls that take no time.
std::vector<std::pair<std::int64_t, std::int64_t>> MixedSpans(std::uint32_t count) {
    std::mt19937 random(7);
    std::vector<std::pair<std::int64_t, std::int64_t>> spans;
    std::int64_t now = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const bool isBurst = i / 3000 % 2 == 0;
        now += random() % (isBurst ? 3 : 2000);
        const std::int64_t length = random() % 3 == 0    ? 0
                                    : random() % 40 == 0 ? random() % 50'000
                                                         : random() % 6;
        spans.emplace_back(now, now + length);
        now += length;
    }
    return spans;
}

} // namespace

TEST(TimelineLevels, MergeWhatStartsInTheSameStepAndIsShorter) {
    const TimelineLog log(Calls(MixedSpans(20'000)));
    ASSERT_EQ(log.Frames().Count(), 20'000U);
    for (unsigned level = 0; level <= 40; ++level) {
        const std::vector<TimelineBar> expected = PlainBars(log, level);
        const std::vector<TimelineBar> bars =
            BarsOf(log, log.m_timeline.From(), log.m_timeline.To() + 1, level);
        ASSERT_EQ(bars.size(), expected.size()) << level;
        for (std::size_t i = 0; i < bars.size(); ++i) {
            ASSERT_TRUE(Equal(bars[i], expected[i])) << level << " " << i;
        }
    }
}

TEST(TimelineLevels, GiveInAWindowTheBarsThatTheWholeLogHas) {
    const TimelineLog log(Calls(MixedSpans(20'000)));
    std::mt19937 random(11);
    for (int n = 0; n < 300; ++n) {
        const auto level = static_cast<unsigned>(random() % 20);
        const auto from = static_cast<std::int64_t>(random()) % log.m_timeline.To();
        const std::int64_t to = from + static_cast<std::int64_t>(random() % 2000 << level);
        const std::vector<TimelineBar> bars = BarsOf(log, from, to, level);
        std::size_t found = 0;
        for (const TimelineBar& bar : PlainBars(log, level)) {
            if (bar.start < to && (bar.end > from || bar.start >= from)) {
                const auto same = [&](const TimelineBar& other) { return Equal(bar, other); };
                ASSERT_EQ(std::count_if(bars.begin(), bars.end(), same), 1)
                    << level << " " << from << " " << to;
                ++found;
            }
        }
        ASSERT_LE(bars.size(), found + 4) << level << " " << from << " " << to;
    }
}

TEST(TimelineLevels, TakeLessThanHalfTheMemoryOfTheFrames) {
    const TimelineLog log(Calls(MixedSpans(100'000)));
    const double frames = log.Frames().Count();
    EXPECT_LE(static_cast<double>(log.m_timeline.Levels().Bytes()) / frames, 12.5);
    EXPECT_LE(static_cast<double>(log.m_timeline.Rows().Bytes()) / frames, 4.1);
}

TEST(TimelineLevels, LookAtFewBarsHoweverManyFramesAWindowHolds) {
    // A dense second among two hours of a call a second: no level of the whole row would be much shorter.
    std::vector<std::pair<std::int64_t, std::int64_t>> spans;
    for (std::int64_t i = 0; i < 3600; ++i) {
        spans.emplace_back(i * 1'000'000, i * 1'000'000 + 900'000);
    }
    for (std::int64_t i = 0; i < 50'000; ++i) {
        spans.emplace_back(3'600'000'000 + i * 20, 3'600'000'000 + i * 20 + 5);
    }
    for (std::int64_t i = 3601; i < 7200; ++i) {
        spans.emplace_back(i * 1'000'000, i * 1'000'000 + 900'000);
    }
    const TimelineLog log(Calls(spans));
    for (double pixel = 1; pixel < 4'000'000; pixel *= 1.25) {
        const auto level = static_cast<unsigned>(std::bit_width(static_cast<std::uint64_t>(pixel)) - 1);
        const auto half = static_cast<std::int64_t>(pixel * kPlotWidth / 2);
        std::size_t drawn = 0;
        const std::size_t looked = log.m_timeline.Levels().ForEachBar(
            0, 3'600'500'000 - half, 3'600'500'000 + half, level, [&](const TimelineBar&) { ++drawn; });
        EXPECT_LE(drawn, 4 * kPlotWidth) << pixel;
        EXPECT_LE(looked, 4 * drawn + 2 * 4096) << pixel;
    }
}

TEST(TimelineLevels, ShowAHundredThousandNestedCalls) {
    std::vector<std::string> lines;
    for (int i = 1; i <= 100'000; ++i) {
        lines.push_back(AtMicrosecond(i, CallText("F", i)));
    }
    const TimelineLog log(LinesOfLog(lines));
    EXPECT_EQ(log.m_timeline.Rows().RowCount(0), 100'000U);
    EXPECT_EQ(log.m_timeline.Rows().DepthOf(99'999), 99'999U);
    EXPECT_LE(static_cast<double>(log.m_timeline.Levels().Bytes()) / 100'000, 14);
}

TEST(TimelineLevels, TellWhetherAFrameLiesInASpan) {
    const TimelineLog log(Calls({{0, 10}, {100, 100}, {200, 300}}));
    const CTimelineLevels& levels = log.m_timeline.Levels();
    EXPECT_TRUE(levels.HasAny(0, 0, 1));
    EXPECT_TRUE(levels.HasAny(0, 9, 10));
    EXPECT_FALSE(levels.HasAny(0, 10, 100));
    EXPECT_TRUE(levels.HasAny(0, 100, 101));
    EXPECT_FALSE(levels.HasAny(0, 101, 200));
    EXPECT_TRUE(levels.HasAny(0, 250, 260));
    EXPECT_FALSE(levels.HasAny(0, 300, 400));
}

TEST(TimelineLevels, HoldOnlyWhatIsWanted) {
    const TimelineLog log(
        Calls({{0, 10}, {20, 30}, {40, 50}, {60, 70}, {80, 90}, {100, 110}, {120, 130}, {140, 150}}));
    const std::uint32_t key = log.Frames()[0].key;
    const CTimelineLevels some(log.m_timeline.Rows(), [key](const Frame& frame) { return frame.key == key; });
    EXPECT_EQ(std::vector<std::uint32_t>(some.FramesOf(0).begin(), some.FramesOf(0).end()),
              (std::vector<std::uint32_t>{0, 7}));
}

} // namespace carvelot::test
