#include "explore/pictures/TimelineLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

using Texts = std::vector<std::string>;

Texts MarksOf(const TimelineLog& log, std::int64_t from, std::int64_t to, std::int64_t step) {
    Texts texts;
    for (const TimeMark& mark : log.m_timeline.Axis().Marks(from, to, step)) {
        texts.push_back(std::to_string(mark.clock) + " " + mark.text);
    }
    return texts;
}

std::string On(const char* day, const char* time, std::string_view text) {
    return std::string(day) + " " + time + " - 4120/3388 Worker\t" + std::string(text);
}

} // namespace

TEST(TimeAxis, StepsAreRound) {
    EXPECT_EQ(CTimeAxis::StepOf(0.3), 1);
    EXPECT_EQ(CTimeAxis::StepOf(1.1), 2);
    EXPECT_EQ(CTimeAxis::StepOf(3), 5);
    EXPECT_EQ(CTimeAxis::StepOf(5.5), 10);
    EXPECT_EQ(CTimeAxis::StepOf(200'001), 500'000);
    EXPECT_EQ(CTimeAxis::StepOf(500'001), 1'000'000);
    EXPECT_EQ(CTimeAxis::StepOf(11e6), 15'000'000);
    EXPECT_EQ(CTimeAxis::StepOf(16e6), 30'000'000);
    EXPECT_EQ(CTimeAxis::StepOf(31e6), 60'000'000);
    EXPECT_EQ(CTimeAxis::StepOf(31 * 60e6), 3'600'000'000);
    EXPECT_EQ(CTimeAxis::StepOf(4 * 3600e6), 6 * 3'600'000'000);
    EXPECT_EQ(CTimeAxis::StepOf(13 * 3600e6), 86'400'000'000);
    EXPECT_EQ(CTimeAxis::StepOf(3 * 86'400e6), 5 * 86'400'000'000);
}

TEST(TimeAxis, MarksStandAtWholeStepsOfTheDayAndTellNoMoreThanTheyNeed) {
    const TimelineLog log(LinesOfLog(
        {DebugLine("09:12:03.250000", CallText("F", 1)), DebugLine("09:14:03.250000", ReturnText("F", 1))}));
    EXPECT_EQ(MarksOf(log, 0, 20'000'000, 10'000'000), (Texts{"6750000 09:12:10", "16750000 09:12:20"}));
    EXPECT_EQ(MarksOf(log, 0, 120'000'000, 60'000'000), (Texts{"56750000 09:13", "116750000 09:14"}));
    EXPECT_EQ(MarksOf(log, 0, 1'000'000, 500'000), (Texts{"250000 09:12:03.500", "750000 09:12:04.000"}));
    EXPECT_EQ(MarksOf(log, 0, 500, 200),
              (Texts{"0 09:12:03.250000", "200 09:12:03.250200", "400 09:12:03.250400"}));
}

TEST(TimeAxis, TellsTheDayWhereItChangesAndAtTheStartOfALogOfSeveral) {
    const TimelineLog log(LinesOfLog({On("Feb 28", "23:59:50.000000", CallText("F", 1)),
                                      On("Mar 01", "00:00:20.000000", ReturnText("F", 1))}));
    EXPECT_EQ(MarksOf(log, 0, 30'000'000, 10'000'000), (Texts{"0 Feb 28 23:59:50", "10000000 Mar 1 00:00:00",
                                                              "20000000 00:00:10", "30000000 00:00:20"}));
    EXPECT_EQ(MarksOf(log, 0, 30'000'000, 86'400'000'000), Texts{"10000000 Mar 1"});
    EXPECT_EQ(log.m_timeline.Axis().Text(10'000'001), "Mar 1 00:00:00.000001");
}

TEST(TimeAxis, BeginsAtMidnightWithoutStamps) {
    const TimelineLog log(LinesOfLog({On("Xxx 28", "10:00:00.000000", CallText("F", 1)),
                                      On("Xxx 28", "10:00:05.000000", ReturnText("F", 1))}));
    EXPECT_EQ(MarksOf(log, 0, 1'000'000, 1'000'000), (Texts{"0 00:00:00", "1000000 00:00:01"}));
}

TEST(ActivityStrip, TellsHowManyStreamsAreBusy) {
    // 1024 seconds: a bucket a second.
    const TimelineLog log(LinesOfLog({
        At(0, CallText("A", 1)),
        At(100, CallText("B", 1), "4120/7"),
        At(150, CallText("C", 2), "4120/7"),
        At(200, ReturnText("B", 1), "4120/7"),
        At(512, ReturnText("A", 1)),
        At(1024, "done"),
    }));
    ASSERT_EQ(log.m_timeline.To() - log.m_timeline.From(), 1'024'000'000);
    const std::vector<double>& busy = log.m_timeline.Activity().Busy();
    EXPECT_DOUBLE_EQ(busy[0], 1);
    EXPECT_DOUBLE_EQ(busy[99], 1);
    EXPECT_DOUBLE_EQ(busy[100], 2);
    EXPECT_DOUBLE_EQ(busy[199], 2);
    EXPECT_DOUBLE_EQ(busy[200], 1);
    EXPECT_DOUBLE_EQ(busy[511], 1);
    EXPECT_DOUBLE_EQ(busy[512], 0);
    EXPECT_DOUBLE_EQ(busy[1023], 0);
    EXPECT_DOUBLE_EQ(log.m_timeline.Activity().Most(), 2);
}

} // namespace carvelot::test
