#include "explore/pictures/TimelineLog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

namespace carvelot::test {

namespace {

// A thousand seconds of two threads, so that a pixel is a second:
//   3388: A 0-400 [B 100-200 [S], C 250-300], D 500-900
//   7:    E 600-700
std::vector<std::string> TwoThreads() {
    return LinesOfLog({
        At(0, CallText("A", 1)),
        At(100, CallText("Bravo", 2)),
        At(150, "SELECT * FROM PRODDTA.F4211"),
        At(160, kSqlDone),
        At(200, ReturnText("Bravo", 2)),
        At(250, CallText("C", 2)),
        At(300, ReturnText("C", 2, 2)),
        At(400, ReturnText("A", 1)),
        At(500, CallText("D", 1)),
        At(600, CallText("Echo", 1), "4120/7"),
        At(700, ReturnText("Echo", 1), "4120/7"),
        At(900, ReturnText("D", 1)),
        At(1000, "done"),
    });
}

using Texts = std::vector<std::string>;

class TimelineViewTest : public testing::Test {
protected:
    double X(int second) const { return m_view.XOf(second * std::int64_t{1'000'000}); }
    double Y(std::size_t lane, int row) const {
        return m_view.TopOf(m_view.Lanes().Shown()[lane]) + (row + 0.5) * m_view.Lanes().RowHeight();
    }
    std::string At(int second, std::size_t lane, int row) const {
        const CTimelineView::Hit hit = m_view.At({X(second), Y(lane, row)});
        return hit.bar ? m_log.NameOf(hit.bar->frame) : "none";
    }
    std::string Select(const char* name) {
        m_view.Select(m_log.Frame(name));
        return name;
    }
    std::string Beside(CTimelineView::Step step) const { return m_log.NameOf(m_view.Beside(step)); }
    Texts Lanes() const {
        Texts names;
        for (const CTimelineLanes::Lane& lane : m_view.Lanes().Shown()) {
            names.push_back(m_log.m_timeline.NameOf(lane.stream));
        }
        return names;
    }

    using Step = CTimelineView::Step;

    TimelineLog m_log{TwoThreads()};
    CTimelineView& m_view = m_log.m_view;
};

} // namespace

TEST_F(TimelineViewTest, ShowsTheWholeLogAtFirst) {
    EXPECT_DOUBLE_EQ(m_view.PerPixel(), 1e6);
    EXPECT_EQ(m_view.From(), 0);
    EXPECT_EQ(m_view.To(), 1'000'000'000);
    EXPECT_EQ(Lanes(), (Texts{"4120/3388", "4120/7"}));
}

TEST_F(TimelineViewTest, TellsWhatLiesAtAPoint) {
    EXPECT_EQ(At(0, 0, 0), "A");
    EXPECT_EQ(At(399, 0, 0), "A");
    EXPECT_EQ(At(400, 0, 0), "none");
    EXPECT_EQ(At(150, 0, 1), "Bravo");
    EXPECT_EQ(At(155, 0, 2), "SELECT PRODDTA.F4211");
    EXPECT_EQ(At(140, 0, 2), "none");
    EXPECT_EQ(At(299, 0, 1), "C");
    EXPECT_EQ(At(650, 1, 0), "Echo");
    EXPECT_EQ(At(650, 0, 0), "D");
}

TEST_F(TimelineViewTest, ZoomKeepsTheTimeAtThePointer) {
    const double x = X(250);
    for (int notch = 0; notch < 20; ++notch) {
        const std::int64_t before = m_view.TimeAt(x);
        m_view.Zoom(1, x);
        EXPECT_NEAR(static_cast<double>(m_view.TimeAt(x)), static_cast<double>(before), 2) << notch;
    }
    EXPECT_NEAR(m_view.PerPixel(), 1e6 / std::pow(1.25, 20), 0.001);
    EXPECT_EQ(At(250, 0, 1), "C");
}

TEST_F(TimelineViewTest, ZoomStaysBetweenAMicrosecondAPixelAndTheWholeLog) {
    m_view.Zoom(500, X(500));
    EXPECT_DOUBLE_EQ(m_view.PerPixel(), 1);
    m_view.Zoom(-500, X(500));
    EXPECT_TRUE(m_view.ShowsAll());
    EXPECT_DOUBLE_EQ(m_view.PerPixel(), 1e6);
    m_view.Zoom(3, X(0));
    m_view.Pan(-100);
    EXPECT_EQ(m_view.From(), 0);
    m_view.Pan(1e9);
    EXPECT_EQ(m_view.To(), 1'000'000'000);
    m_view.ShowAll();
    EXPECT_EQ(m_view.From(), 0);
    m_view.Zoom(3, X(0));
    m_view.ShowEnd();
    EXPECT_EQ(m_view.To(), 1'000'000'000);
}

TEST_F(TimelineViewTest, PansByPixels) {
    m_view.ShowSpan(100'000'000, 200'000'000);
    EXPECT_DOUBLE_EQ(m_view.PerPixel(), 1e5);
    m_view.Pan(10);
    EXPECT_EQ(m_view.From(), 101'000'000);
    EXPECT_EQ(m_view.To(), 201'000'000);
}

TEST_F(TimelineViewTest, StepsToNeighboursChildrenAndParents) {
    EXPECT_EQ(Beside(Step::Later), "A"); // from none to the first one in view
    Select("A");
    EXPECT_EQ(Beside(Step::Later), "D");
    EXPECT_EQ(Beside(Step::Earlier), "none");
    EXPECT_EQ(Beside(Step::Child), "Bravo");
    EXPECT_EQ(Beside(Step::Parent), "none");
    Select("Bravo");
    EXPECT_EQ(Beside(Step::Later), "C");
    EXPECT_EQ(Beside(Step::Child), "SELECT PRODDTA.F4211");
    EXPECT_EQ(Beside(Step::Parent), "A");
    Select("C");
    EXPECT_EQ(Beside(Step::Child), "none");
    EXPECT_EQ(Beside(Step::Earlier), "Bravo");
}

TEST_F(TimelineViewTest, WalksAllFramesLaneByLane) {
    Texts names;
    for (std::uint32_t frame = m_log.Frame("A"); frame != kNoFrame; frame = m_view.Beside(Step::Next)) {
        names.push_back(m_log.NameOf(frame));
        m_view.Select(frame);
    }
    const Texts all{"A", "Bravo", "SELECT PRODDTA.F4211", "C", "D", "Echo"};
    EXPECT_EQ(names, all);
    names.clear();
    for (std::uint32_t frame = m_view.Selected(); frame != kNoFrame; frame = m_view.Beside(Step::Previous)) {
        names.insert(names.begin(), m_log.NameOf(frame));
        m_view.Select(frame);
    }
    EXPECT_EQ(names, all);
}

TEST(TimelineView, ComesBackToTheDeepestLastFrameOfTheLaneAbove) {
    TimelineLog log(LinesOfLog({At(0, CallText("A", 1)), At(1, CallText("B", 2)), At(2, CallText("C", 3)),
                                At(3, ReturnText("A", 1)), At(4, CallText("E", 1), "4120/7"),
                                At(5, ReturnText("E", 1), "4120/7")}));
    log.m_view.Select(log.Frame("E"));
    EXPECT_EQ(log.NameOf(log.m_view.Beside(CTimelineView::Step::Previous)), "C");
    log.m_view.Fold(0, true);
    EXPECT_EQ(log.NameOf(log.m_view.Beside(CTimelineView::Step::Previous)), "A");
}

TEST_F(TimelineViewTest, AFoldedLaneShowsItsTopFrames) {
    const double height = m_view.Lanes().Height();
    m_view.Fold(0, true);
    EXPECT_EQ(m_view.Lanes().Height(), height - 2 * m_view.Lanes().RowHeight());
    EXPECT_EQ(At(150, 0, 0), "A");
    Select("A");
    EXPECT_EQ(Beside(Step::Child), "none");
    EXPECT_EQ(Beside(Step::Next), "D");
    // What is gone to shows.
    m_view.Reveal(m_log.Frame("C"));
    EXPECT_FALSE(m_view.Lanes().IsFolded(0));
}

TEST_F(TimelineViewTest, LanesSortByActivityAndHideWhenIdle) {
    m_view.SortByActivity(true);
    EXPECT_EQ(Lanes(), (Texts{"4120/3388", "4120/7"}));
    m_view.SortByActivity(false);
    m_view.HideIdle(true);
    EXPECT_EQ(Lanes(), (Texts{"4120/3388", "4120/7"}));
    m_view.ShowSpan(100'000'000, 200'000'000);
    EXPECT_EQ(Lanes(), Texts{"4120/3388"});
    m_view.ShowSpan(910'000'000, 990'000'000);
    EXPECT_EQ(Lanes(), Texts{});
    m_view.ShowAll();
    EXPECT_EQ(Lanes(), (Texts{"4120/3388", "4120/7"}));
}

TEST(TimelineLanes, TheBusiestStreamComesFirst) {
    TimelineLog log(LinesOfLog({At(0, CallText("A", 1)), At(1, ReturnText("A", 1)),
                                At(2, CallText("B", 1), "4120/7"), At(9, ReturnText("B", 1), "4120/7")}));
    log.m_view.SortByActivity(true);
    EXPECT_EQ(log.m_timeline.NameOf(log.m_view.Lanes().Shown()[0].stream), "4120/7");
}

TEST_F(TimelineViewTest, ShowsOnlyTheLanesOfTheScope) {
    m_view.SetScope(Selection(m_log.m_session.Thread(4120, 7)));
    EXPECT_EQ(Lanes(), Texts{"4120/7"});
    m_view.SetScope({});
    EXPECT_EQ(Lanes(), (Texts{"4120/3388", "4120/7"}));
}

TEST_F(TimelineViewTest, RevealsWhatIsOutOfView) {
    m_view.ShowSpan(0, 100'000'000);
    m_view.Reveal(m_log.Frame("Echo"));
    const auto rect = m_view.RectOf(m_log.Frame("Echo"));
    ASSERT_TRUE(rect.has_value());
    EXPECT_DOUBLE_EQ(m_view.PerPixel(), 1e5);
    EXPECT_DOUBLE_EQ(rect->x, m_view.Plot().x);
    EXPECT_DOUBLE_EQ(rect->width, kPlotWidth);
    // What is in view moves nothing.
    m_view.ShowAll();
    m_view.Zoom(1, X(650));
    const std::int64_t from = m_view.From();
    m_view.Reveal(m_log.Frame("Echo"));
    EXPECT_EQ(m_view.From(), from);
}

TEST_F(TimelineViewTest, SearchFindsNamesWithoutRegardToCaseAndWalksThem) {
    m_view.Search("E");
    EXPECT_EQ(m_view.MatchCount(), 2U); // SELECT and Echo
    EXPECT_EQ(m_log.NameOf(m_view.NextMatch(true)), "SELECT PRODDTA.F4211");
    m_view.Select(m_view.NextMatch(true));
    EXPECT_EQ(m_log.NameOf(m_view.NextMatch(true)), "Echo");
    m_view.Select(m_view.NextMatch(true));
    EXPECT_EQ(m_log.NameOf(m_view.NextMatch(true)), "SELECT PRODDTA.F4211");
    EXPECT_EQ(m_log.NameOf(m_view.NextMatch(false)), "SELECT PRODDTA.F4211");
    m_view.Search("bRAVO");
    EXPECT_EQ(m_view.MatchCount(), 1U);
    m_view.Search("nothing of that");
    EXPECT_EQ(m_view.NextMatch(true), kNoFrame);
    m_view.Search("");
    EXPECT_EQ(m_view.Matches(), nullptr);
}

TEST_F(TimelineViewTest, TheStripTellsItsFrameAndItsEdges) {
    using Part = CTimelineView::Part;
    m_view.ShowSpan(400'000'000, 600'000'000);
    const double y = m_view.Strip().y + 10;
    EXPECT_EQ(m_view.At({m_view.StripX(400'000'000), y}).part, Part::StripFrom);
    EXPECT_EQ(m_view.At({m_view.StripX(600'000'000), y}).part, Part::StripTo);
    EXPECT_EQ(m_view.At({m_view.StripX(500'000'000), y}).part, Part::StripFrame);
    EXPECT_EQ(m_view.At({m_view.StripX(700'000'000), y}).part, Part::Strip);
    EXPECT_EQ(m_view.StripTime(m_view.StripX(700'000'000)), 700'000'000);
}

TEST_F(TimelineViewTest, ARecordLeadsToItsFrame) {
    const auto name = [&](std::uint32_t record) {
        return m_log.NameOf(m_log.m_timeline.FrameAt(RecordIndex{record}));
    };
    Texts names;
    for (std::uint32_t i = 0; i < m_log.m_session.Count(); ++i) {
        names.push_back(name(i));
    }
    // The first line tells the format of the log.
    EXPECT_EQ(names, (Texts{"none", "A", "Bravo", "SELECT PRODDTA.F4211", "SELECT PRODDTA.F4211", "Bravo",
                            "C", "C", "A", "D", "Echo", "Echo", "D", "none"}));
}

TEST_F(TimelineViewTest, TipsTellTimesAndResults) {
    const auto tip = [&](const char* name) {
        return m_log.m_timeline.TipOf(TimelineBar{0, 0, m_log.Frame(name), 2});
    };
    EXPECT_EQ(tip("A"), "F A\nTotal 400.000000 s, self 250.000000 s\nFrom Jan 15 10:00:00.000000\nResult 0");
    EXPECT_EQ(tip("C"),
              "F C\nTotal 50.000000 s, self 50.000000 s\nFrom Jan 15 10:04:10.000000\nResult 2: failed");
    EXPECT_EQ(m_log.m_timeline.TipOf(TimelineBar{0, 0, m_log.Frame("C"), (1234U << 1U) | 1U}),
              "1,234 frames, some of them failed\nThe longest: F C, 50.000000 s");
}

TEST(TimelineView, WhatStartsAtTheEndOfTheLogShowsInTheLastColumn) {
    TimelineLog log(
        LinesOfLog({At(0, CallText("A", 1)), At(100, ReturnText("A", 1)), At(100, CallText("Z", 1))}));
    const CTimelineView& view = log.m_view;
    const auto hit = view.At({view.Plot().Right() - 0.5, view.TopOf(view.Lanes().Shown()[0]) + 4});
    ASSERT_TRUE(hit.bar.has_value());
}

TEST(TimelineView, SamplesShowEveryFrameWhereAndAsLongAsItRan) {
    for (const char* sample : {"order-slow.log", "jas-slow.log", "night-batch.log", "order-fails.log"}) {
        std::ifstream file(std::string(CARVELOT_SOURCE_FOLDER) + "/samples/" + sample, std::ios::binary);
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        TimelineLog log(lines);
        ASSERT_NE(log.Frames().Count(), 0U) << sample;
        const CCut whole(log.Frames(), log.m_explored.streams, {}, {});
        const CLargeVector<std::int64_t> selfTimes = whole.SelfTimes();
        for (std::uint32_t i = 0; i < log.Frames().Count(); ++i) {
            ASSERT_EQ(log.m_timeline.SelfTime(i), selfTimes[i]) << sample << " " << i;
            const Frame& frame = log.Frames()[i];
            log.m_view.ShowSpan(frame.start - 10, frame.end + 10);
            log.m_view.Reveal(i);
            const auto rect = log.m_view.RectOf(i);
            ASSERT_TRUE(rect.has_value());
            const auto hit = log.m_view.At({rect->x + rect->width / 2, rect->y + rect->height / 2});
            ASSERT_TRUE(hit.bar.has_value()) << sample << " " << i;
            ASSERT_TRUE(hit.bar->frame == i || hit.bar->Count() > 1) << sample << " " << i;
        }
    }
}

TEST(TimelineView, ALogWithoutCallsOrTimeShowsNothingAndFailsNowhere) {
    for (const std::vector<std::string>& lines :
         {DebugLog({}), LinesOfLog({At(0, "nothing")}), LinesOfLog({At(0, CallText("F", 1))}),
          std::vector<std::string>{}}) {
        TimelineLog log(lines);
        log.m_view.Zoom(5, 300);
        log.m_view.Pan(1000);
        log.m_view.ShowEnd();
        log.m_view.Search("f");
        log.m_view.HideIdle(true);
        EXPECT_LT(log.m_timeline.From(), log.m_timeline.To());
        for (int x = 0; x < 1000; x += 50) {
            for (int y = 0; y < 300; y += 10) {
                (void)log.m_view.At({static_cast<double>(x), static_cast<double>(y)});
            }
        }
    }
}

} // namespace carvelot::test
