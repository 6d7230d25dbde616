#include "explore/pictures/TestCanvas.h"
#include "explore/pictures/TimelineLog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace carvelot::test {

namespace {

using Drawn = CTestCanvas::Drawn;

class PictureLog : public TimelineLog {
public:
    using TimelineLog::TimelineLog;

    CTestCanvas Draw() const {
        CTestCanvas canvas;
        CTimelinePicture(m_view, m_ground).Draw(canvas);
        return canvas;
    }
    // Seconds of what is drawn in the lanes, as "row from-to".
    std::vector<std::string> Spans(const std::vector<Drawn>& all) const {
        std::vector<std::string> spans;
        for (const Drawn& drawn : all) {
            if (drawn.clip != m_view.Plot()) {
                continue;
            }
            const auto second = [&](double x) {
                return ExploredLog::Seconds(
                    static_cast<std::int64_t>(std::lround((x - m_view.Plot().x) * 1e6)));
            };
            const double row = std::floor((drawn.rect.y - m_view.Plot().y) / m_view.Lanes().RowHeight());
            spans.push_back(ExploredLog::Seconds(static_cast<std::int64_t>(row * 1e6)) + " " +
                            second(drawn.rect.x) + "-" + second(drawn.rect.Right()));
        }
        return spans;
    }

    PictureGround m_ground;
};

using Texts = std::vector<std::string>;

// A thousand seconds, so that a pixel is a second.
std::vector<std::string> ThousandSeconds() {
    return LinesOfLog({
        At(0, CallText("Alpha", 1)),
        At(100, CallText("Bravo", 2)),
        At(200, ReturnText("Bravo", 2, 2)),
        At(250, "SELECT * FROM PRODDTA.F4211"),
        At(350, kSqlDone),
        At(360, EventText("Click")),
        At(390, kEventEnd),
        At(400, ReturnText("Alpha", 1)),
        At(500, CallText("Open", 1)),
        At(1000, "done"),
    });
}

bool Has(const Texts& texts, std::string_view text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

} // namespace

TEST(TimelinePicture, DrawsABarAFrameInTheColourOfItsKind) {
    const PictureLog log(ThousandSeconds());
    const CTestCanvas canvas = log.Draw();
    EXPECT_FALSE(canvas.m_bNested);
    const auto spans = [&](PictureColor color) { return log.Spans(canvas.Filled(color)); };
    // A pixel of each is left free ahead of its neighbour.
    EXPECT_EQ(spans(Shaded(ColorOf(FrameKind::Function), 0)), (Texts{"0 0-399", "0 500-999"}));
    EXPECT_EQ(spans(kFailedColor), Texts{"1 100-199"});
    EXPECT_EQ(spans(Shaded(ColorOf(FrameKind::Statement), 1)), Texts{"1 250-349"});
    EXPECT_EQ(spans(Shaded(ColorOf(FrameKind::Event), 1)), Texts{"1 360-389"});
}

TEST(TimelinePicture, NamesBearTheLetterOfTheirKindAndStayInTheirBars) {
    const PictureLog log(ThousandSeconds());
    const CTestCanvas canvas = log.Draw();
    for (const char* name : {"F Alpha", "F Bravo", "F Open", "S SELECT PRODDTA.F4211", "4120/3388"}) {
        EXPECT_EQ(canvas.Of(name).size(), 1U) << name;
    }
    // Where no name fits the letter stands alone.
    EXPECT_EQ(canvas.Of("E").size(), 1U);
    const PictureRect rect = canvas.Of("F Bravo")[0].rect;
    EXPECT_GE(rect.x, log.m_view.Plot().x + 100);
    EXPECT_LE(rect.Right(), log.m_view.Plot().x + 199);
}

TEST(TimelinePicture, AFrameThatFailedHasAHeavyEdgeAndOneWithoutEndATornOne) {
    PictureLog log(ThousandSeconds());
    const CTestCanvas canvas = log.Draw();
    EXPECT_EQ(log.Spans(canvas.Of("outline")), Texts{"1 100-199"});
    EXPECT_TRUE(Has(log.Spans(canvas.Of("polygon")), "0 996-999")) << log.Spans(canvas.Of("polygon")).size();
    // Where the end is out of view, no edge is torn.
    log.m_view.ShowSpan(500'000'000, 900'000'000);
    EXPECT_EQ(log.Spans(log.Draw().Of("polygon")), Texts{});
}

TEST(TimelinePicture, HatchesSilencesBelowTheFunctionThatWasSilent) {
    const PictureLog log(ThousandSeconds());
    const CTestCanvas canvas = log.Draw();
    const Texts hatched = log.Spans(canvas.Of("hatch"));
    EXPECT_TRUE(Has(hatched, "1 0-100"));
    EXPECT_TRUE(Has(hatched, "2 100-200"));
    EXPECT_TRUE(Has(hatched, "1 200-250"));
    EXPECT_TRUE(Has(hatched, "1 250-350")); // over the statement that was waited for
    EXPECT_TRUE(Has(hatched, "1 500-1000"));
    // Its name stands where no other name does.
    const std::vector<Drawn> names = canvas.Of("silence");
    EXPECT_EQ(names.size(), 3U);
}

TEST(TimelinePicture, SilencesAreThoseOfTheFinding) {
    const PictureLog log(ThousandSeconds());
    std::int64_t cost = 0;
    std::uint64_t count = 0;
    for (const Finding& finding : log.m_findings) {
        if (finding.rule == FindingRule::SilenceInCall) {
            cost += finding.cost;
            count += finding.count;
        }
    }
    std::int64_t total = 0;
    for (const TimelineSilence& silence : log.m_timeline.Silences(0)) {
        total += silence.end - silence.start;
    }
    EXPECT_EQ(total, cost);
    EXPECT_EQ(log.m_timeline.Silences(0).size(), count);
}

TEST(TimelinePicture, FlagsStandAtTheClockOfTheFindingsRecords) {
    const PictureLog log(ThousandSeconds());
    const CTestCanvas canvas = log.Draw();
    std::vector<double> reds;
    for (const Drawn& drawn : canvas.Of("polygon")) {
        if (drawn.clip == log.m_view.Flags() && drawn.color == ColorOf(Severity::Error)) {
            reds.push_back(drawn.rect.x - log.m_view.Plot().x);
        }
    }
    // The cause is the return, behind the call.
    EXPECT_EQ(reds, (std::vector<double>{100, 200}));
    const auto hit = log.m_view.At({log.m_view.Plot().x + 202, log.m_view.Flags().y + 4});
    ASSERT_NE(hit.flag, nullptr);
    EXPECT_EQ(log.m_timeline.TipOf(*hit.flag),
              "Bravo\nThe function failed; the first record names what went wrong first in it.");
}

TEST(TimelinePicture, NarrowFramesMergeIntoOneBarAColumn) {
    std::vector<std::string> lines;
    for (int i = 0; i < 20'000; ++i) {
        lines.push_back(AtMicrosecond(i * 10, CallText("F", 1)));
        lines.push_back(AtMicrosecond(i * 10 + 5, ReturnText("F", 1, i == 7'000 ? 2 : 0)));
    }
    const PictureLog log(LinesOfLog(lines));
    const CTestCanvas canvas = log.Draw();
    std::size_t bars = 0;
    for (const Drawn& drawn : canvas.Of("fill")) {
        bars += drawn.clip == log.m_view.Plot() ? 1 : 0;
    }
    EXPECT_LE(bars, 5U); // alike, they go in one piece; the one that failed shows
    EXPECT_EQ(log.Spans(canvas.Filled(kFailedColor)).size(), 1U);
    const auto hit = log.m_view.At({log.m_view.Plot().x + 500.5, log.m_view.Plot().y + 5});
    ASSERT_TRUE(hit.bar.has_value());
    EXPECT_GE(hit.bar->Count(), 6U); // of 200 microseconds a column those that start within 128
    EXPECT_LE(hit.bar->Count(), 14U);
}

TEST(TimelinePicture, SearchLeavesMatchesBrightAndFadesTheRest) {
    PictureLog log(ThousandSeconds());
    log.m_view.Search("open");
    const CTestCanvas canvas = log.Draw();
    const PictureColor bright = Shaded(ColorOf(FrameKind::Function), 0);
    const PictureColor faded = Faded(bright, log.m_ground.background);
    EXPECT_EQ(log.Spans(canvas.Filled(bright)), Texts{"0 500-999"});
    EXPECT_EQ(log.Spans(canvas.Filled(faded)), (Texts{"0 0-399", "0 500-999"}));
    EXPECT_EQ(canvas.Of("F Open").size(), 1U);
    EXPECT_EQ(canvas.Of("F Alpha")[0].color, log.m_ground.dimText);
}

TEST(TimelinePicture, WhatIsOutOfRangeIsShadedAndWhatIsSelectedOutlined) {
    PictureLog log(ThousandSeconds());
    log.m_view.SetRange({100'000'000, 300'000'000});
    log.m_view.Select(log.Frame("Bravo"));
    const CTestCanvas canvas = log.Draw();
    std::vector<double> shaded;
    for (const Drawn& drawn : canvas.Filled(log.m_ground.shade)) {
        if (drawn.rect.Bottom() == log.m_view.Plot().Bottom()) {
            shaded.push_back(drawn.rect.x - log.m_view.Plot().x);
            shaded.push_back(drawn.rect.Right() - log.m_view.Plot().x);
        }
    }
    EXPECT_EQ(shaded, (std::vector<double>{0, 100, 300, 1000}));
    EXPECT_TRUE(Has(log.Spans(canvas.Of("outline")), "0 99-201"));
}

TEST(TimelinePicture, TheStripFramesWhatIsShown) {
    PictureLog log(ThousandSeconds());
    log.m_view.ShowSpan(400'000'000, 600'000'000);
    const std::vector<Drawn> outlines = log.Draw().Of("outline");
    ASSERT_FALSE(outlines.empty());
    EXPECT_EQ(outlines[0].rect, (PictureRect{log.m_view.Strip().x + 400, 0, 200, log.m_view.Strip().height}));
}

TEST(TimelinePicture, ScrollsToTheRowsInView) {
    std::vector<std::string> lines;
    for (int i = 0; i < 1000; ++i) {
        lines.push_back(At(i, CallText("F" + std::to_string(i), i + 1)));
    }
    lines.push_back(At(2000, "done"));
    PictureLog log(LinesOfLog(lines), 200);
    EXPECT_TRUE(Has(log.Draw().Texts(), "F F1"));
    EXPECT_FALSE(Has(log.Draw().Texts(), "F F900"));
    log.m_view.Reveal(log.Frame("F900"));
    const Texts texts = log.Draw().Texts();
    EXPECT_TRUE(Has(texts, "F F900"));
    EXPECT_FALSE(Has(texts, "F F1"));
    EXPECT_LE(texts.size(), 40U);
}

} // namespace carvelot::test
