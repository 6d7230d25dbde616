// The flame graph: where calls lie, what is drawn and what lies below the pointer.
#include "explore/pictures/FlamePicture.h"
#include "explore/lists/EdgeRows.h"
#include "explore/lists/FunctionRows.h"
#include "explore/lists/ListedRows.h"

#include "TestCanvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace carvelot::test {
namespace {

using Place = CFlameLayout::Place;

// Outer: Inner 2 s, a gap of one, Inner 3 s, two more; then Last.
Texts NestedCalls() {
    return DebugLog({At(0, CallText("Outer", 1)), At(1, CallText("Inner", 2)),
                     At(3, ReturnText("Inner", 2, 0)), At(4, CallText("Other", 2)),
                     At(5, CallText("Inner", 3)), At(7, ReturnText("Inner", 3, 0)),
                     At(7, ReturnText("Other", 2, 0)), At(8, ReturnText("Outer", 1, 0)),
                     At(8, CallText("Last", 1)), At(10, ReturnText("Last", 1, 0))});
}

struct Flame {
    explicit Flame(const Texts& lines, const ClockRange& range = {})
        : log(lines, range), layout(log.scope.profile.m_tree),
          picture(layout, log.explored.frames.Keys(), "Whole log") {
        picture.m_nWidth = 1000;
        picture.m_nRowHeight = 20;
    }
    Place Find(std::string_view name, Place from = 0) const {
        for (Place place = from; place < layout.Count(); ++place) {
            if (picture.Name(place) == name) {
                return place;
            }
        }
        return CFlameLayout::kNoPlace;
    }
    void Search(std::string_view text) {
        picture.m_search = CFlameSearch(layout, log.explored.frames.Keys(), text);
    }
    CTestCanvas Drawn() const {
        CTestCanvas canvas;
        picture.Draw(canvas);
        return canvas;
    }

    Listed log;
    CFlameLayout layout;
    CFlamePicture picture;
};

TEST(FlameLayout, PutsCallsBelowTheirCallersInOrderOfAppearance) {
    const Flame flame(NestedCalls());
    Texts texts;
    for (std::uint32_t level = 0; level < flame.layout.Levels(); ++level) {
        for (Place place = flame.layout.LevelBegin(level); place < flame.layout.LevelBegin(level + 1);
             ++place) {
            EXPECT_EQ(flame.layout.LevelOf(place), level);
            texts.push_back(std::to_string(level) + ' ' + flame.picture.Name(place) + ' ' +
                            std::to_string(flame.layout.Start(place) / 1'000'000) + '-' +
                            std::to_string(flame.layout.End(place) / 1'000'000));
        }
    }
    EXPECT_EQ(texts, (Texts{"0 Whole log 0-10", "1 F Outer 0-8", "1 F Last 8-10", "2 F Inner 0-2",
                            "2 F Other 2-5", "3 F Inner 2-4"}));
    EXPECT_EQ(flame.layout.Parent(5), 4U);
    EXPECT_EQ(flame.layout.Parent(0), CFlameLayout::kNoPlace);
    EXPECT_EQ(flame.layout.ChildBegin(1), 3U);
    EXPECT_EQ(flame.layout.ChildEnd(1), 5U);
    EXPECT_EQ(flame.layout.WidestChild(1), 4U);
    EXPECT_EQ(flame.layout.WidestChild(5), CFlameLayout::kNoPlace);
}

TEST(FlameLayout, FindsByHalving) {
    const Flame flame(NestedCalls());
    EXPECT_EQ(flame.layout.At(2, 0), 3U);
    EXPECT_EQ(flame.layout.At(2, 1'999'999), 3U);
    EXPECT_EQ(flame.layout.At(2, 2'000'000), 4U);
    EXPECT_EQ(flame.layout.At(2, 5'000'000), CFlameLayout::kNoPlace);
    EXPECT_EQ(flame.layout.At(3, 0), CFlameLayout::kNoPlace);
    EXPECT_EQ(flame.layout.At(4, 3'000'000), CFlameLayout::kNoPlace);
    EXPECT_EQ(flame.layout.FirstEndingBehind(2, 3, 2'000'000), 4U);
    EXPECT_EQ(flame.layout.FirstEndingBehind(2, 3, 9'000'000), 5U);
}

TEST(FlameLayout, OfNothingIsTheWholeAlone) {
    const Flame flame(DebugLog({At(0, "Entering JDB_OpenTable")}));
    EXPECT_EQ(flame.layout.Count(), 1U);
    EXPECT_EQ(flame.layout.Levels(), 1U);
    EXPECT_EQ(flame.layout.Total(0), 0);
    EXPECT_TRUE(flame.Drawn().Texts().empty());
}

TEST(FlamePicture, DrawsEachCallAsWideAsItsTime) {
    const Flame flame(NestedCalls());
    const CTestCanvas canvas = flame.Drawn();
    EXPECT_EQ(canvas.Texts(), (Texts{"Whole log", "F Outer", "F Last", "F Inner", "F Other", "F Inner"}));
    const PictureColor outer = Shaded(ColorOf(FrameKind::Function), 1);
    ASSERT_EQ(canvas.Filled(outer).size(), 3U); // rows 1 and 3 are shaded the same
    EXPECT_EQ(canvas.Filled(outer)[0].rect, (PictureRect{0, 20, 799, 19}));
    EXPECT_EQ(canvas.Filled(outer)[1].rect, (PictureRect{800, 20, 199, 19}));
    EXPECT_EQ(flame.picture.RectOf(4), (PictureRect{200, 40, 300, 19}));
    EXPECT_EQ(flame.picture.Size().height, 80);
    EXPECT_EQ(flame.picture.Size().width, 1000);
}

TEST(FlamePicture, TellsWhatLiesAtAPointAlsoWhenZoomed) {
    Flame flame(NestedCalls());
    EXPECT_EQ(flame.picture.At({850, 25}), 2U);
    EXPECT_EQ(flame.picture.At({850, 45}), CFlameLayout::kNoPlace);
    EXPECT_EQ(flame.picture.At({100, 85}), CFlameLayout::kNoPlace);
    ASSERT_TRUE(flame.picture.ZoomTo(4)); // Other
    EXPECT_EQ(flame.picture.Rows(), 2U);
    EXPECT_EQ(flame.picture.At({990, 5}), 4U);
    EXPECT_EQ(flame.picture.At({600, 25}), 5U);
    EXPECT_EQ(flame.picture.At({700, 25}), CFlameLayout::kNoPlace);
    EXPECT_EQ(flame.Drawn().Texts(), (Texts{"F Other", "F Inner"}));
    EXPECT_EQ(flame.picture.RectOf(2), PictureRect{});
    ASSERT_TRUE(flame.picture.ZoomTo(CFlameLayout::kWhole));
    EXPECT_EQ(flame.picture.Rows(), 4U);
}

TEST(FlamePicture, DrawsWhatIsNarrowAsOneRestAndNothingOfWhatTookNoTime) {
    Texts lines = DebugLog({At(0, CallText("Outer", 1))});
    const auto add = [&lines](int micro, const std::string& text) {
        lines.push_back(DebugLine("10:00:" + std::to_string(10 + micro / 1'000'000) + "." +
                                      std::to_string(1'000'000 + micro % 1'000'000).substr(1),
                                  text, "4120/3388"));
    };
    for (int i = 0; i < 100; ++i) {
        add(2 * i, CallText("N" + std::to_string(i), 2));
        add(2 * i + 2, ReturnText("N" + std::to_string(i), 2, 0));
    }
    add(900, CallText("Never", 2));
    add(900, ReturnText("Never", 2, 0));
    lines.push_back(At(1000, ReturnText("Outer", 1, 0)));
    Flame flame(lines);
    const CTestCanvas canvas = flame.Drawn();
    ASSERT_EQ(canvas.Filled(kRestColor).size(), 1U);
    EXPECT_EQ(canvas.Filled(kRestColor)[0].rect.y, 40);
    EXPECT_EQ(canvas.Filled(kRestColor)[0].rect.x, 0);
    EXPECT_EQ(flame.picture.At({0.1, 45}), CFlameLayout::kNoPlace);
    EXPECT_FALSE(flame.picture.ZoomTo(flame.Find("F Never")));
    EXPECT_EQ(flame.picture.Zoomed(), CFlameLayout::kWhole);
}

TEST(FlamePicture, SearchMarksItsHitsAndSumsThoseBelowNoOther) {
    Flame flame(NestedCalls());
    flame.Search("iNNer");
    EXPECT_EQ(flame.picture.m_search.Hits(), (std::vector<Place>{3, 5}));
    EXPECT_EQ(flame.picture.m_search.Total(), 4'000'000);
    EXPECT_TRUE(flame.picture.m_search.Marks(3));
    EXPECT_FALSE(flame.picture.m_search.Marks(4));
    EXPECT_EQ(flame.Drawn().Of("outline").size(), 2U);
    // What is no hit fades.
    const PictureColor faded =
        Faded(Shaded(ColorOf(FrameKind::Function), 1), flame.picture.m_ground.background);
    EXPECT_EQ(flame.Drawn().Filled(faded).size(), 2U);
    flame.Search("r"); // Outer, Inner, Other, Inner: only Outer stands below none
    EXPECT_EQ(flame.picture.m_search.Count(), 4U);
    EXPECT_EQ(flame.picture.m_search.Total(), 8'000'000);
    flame.Search("zz");
    EXPECT_TRUE(flame.picture.m_search.IsOn());
    EXPECT_EQ(flame.picture.m_search.Count(), 0U);
    flame.Search("");
    EXPECT_FALSE(flame.picture.m_search.IsOn());
}

TEST(FlamePicture, ColorsBySelfTimeFromPaleToDark) {
    Flame flame(NestedCalls());
    flame.picture.m_coloring = CFlamePicture::Coloring::Self;
    const CTestCanvas canvas = flame.Drawn();
    const auto fillOf = [&](Place place) {
        for (const CTestCanvas::Drawn& fill : canvas.Of("fill")) {
            if (fill.rect.x == flame.picture.RectOf(place).x &&
                fill.rect.y == flame.picture.RectOf(place).y && fill.rect.height < 20) {
                return fill.color;
            }
        }
        return PictureColor{};
    };
    // Outer 3 s, Last 2 s, Other 1 s.
    EXPECT_GT(fillOf(4).green, fillOf(2).green);
    EXPECT_GT(fillOf(2).green, fillOf(1).green);
    EXPECT_GT(fillOf(4).red, fillOf(1).red);
}

TEST(FlamePicture, OutlinesTheFocusAndDescribesIt) {
    Flame flame(NestedCalls());
    flame.picture.m_focus = 4;
    ASSERT_EQ(flame.Drawn().Of("outline").size(), 1U);
    EXPECT_EQ(flame.Drawn().Of("outline")[0].rect, flame.picture.RectOf(4));
    EXPECT_EQ(flame.picture.Description(4), "F Other, 1 call, total 3.000000 s (30.0 %), self 1.000000 s");
    EXPECT_EQ(flame.picture.Description(0), "Whole log, total 10.000000 s");
}

TEST(FlamePicture, PartsOfADeepOneAreDrawnAlone) {
    Texts lines = DebugLog({});
    for (int i = 1; i <= 3000; ++i) {
        lines.push_back(At(i, CallText("F" + std::to_string(i), i)));
    }
    lines.push_back(At(4000, "Entering JDB_OpenTable"));
    Flame flame(lines);
    EXPECT_EQ(flame.picture.Rows(), 3001U);
    EXPECT_EQ(flame.picture.Size().height, 500 * 20);
    CTestCanvas canvas;
    flame.picture.DrawPart(canvas, {0, 1000, 1000, 60});
    EXPECT_EQ(canvas.Texts(), (Texts{"F F50", "F F51", "F F52"}));
    EXPECT_EQ(canvas.Of("fill")[1].rect.y, 0);
}

// Bars a row are at most some for each pixel, however many calls there are: what is drawn tells that none is
// walked over.
TEST(FlamePicture, OfManyCallsDrawsAFewBarsAPixelAtMost) {
    CLargeVector<CallTreeNode> tree;
    CFrameKeys keys;
    constexpr std::uint32_t wide = 300'000;
    const std::uint32_t key = keys.Number(FrameKind::Function, "F");
    for (std::uint32_t i = 0; i < wide; ++i) {
        CallTreeNode node{key};
        node.nextSibling = i + 1 < wide ? i + 1 : CallTreeNode::kNone;
        node.calls = 1;
        node.total = i % 1000 == 0 ? 3000 : 1;
        tree.push_back(node);
    }
    const CFlameLayout layout(tree);
    CFlamePicture picture(layout, keys, "Whole log");
    picture.m_nWidth = 1920;
    CTestCanvas canvas;
    picture.Draw(canvas);
    const std::size_t bars = canvas.Of("fill").size();
    EXPECT_GT(bars, 300U);
    EXPECT_LE(bars, 2 * 1920U + 2);
    // Each pixel of the row is covered.
    double covered = 0;
    for (const CTestCanvas::Drawn& fill : canvas.Of("fill")) {
        if (fill.rect.y == picture.m_nRowHeight) {
            EXPECT_LE(fill.rect.x, covered + 1.01);
            covered = fill.rect.Right();
        }
    }
    EXPECT_NEAR(covered, 1920, 1.01);
}

// Of samples, what is drawn adds up to what is listed.
TEST(FlamePicture, AgreesWithTheListsOfTheSamples) {
    for (const char* const name : {"order-slow.log", "order-fails.log", "ube-batch.log", "jas-slow.log"}) {
        const Listed log(SampleBytes(name));
        const CFlameLayout layout(log.scope.profile.m_tree);
        const CFrameKeys& keys = log.explored.frames.Keys();
        std::vector<std::int64_t> selfs(keys.Count(), 0);
        std::vector<std::uint64_t> calls(keys.Count(), 0);
        std::int64_t all = 0;
        for (Place place = 1; place < layout.Count(); ++place) {
            selfs[layout.Key(place)] += layout.Self(place);
            calls[layout.Key(place)] += layout.Calls(place);
            all += layout.Self(place);
            const Place parent = layout.Parent(place);
            ASSERT_GE(layout.Start(place), layout.Start(parent)) << name;
            ASSERT_LE(layout.End(place), layout.End(parent)) << name;
        }
        EXPECT_GT(layout.Count(), 5U) << name;
        EXPECT_EQ(layout.Total(CFlameLayout::kWhole), all) << name;
        const std::vector<FunctionRow> rows = MakeFunctionRows(keys, log.scope.profile);
        EXPECT_FALSE(rows.empty()) << name;
        for (const FunctionRow& row : rows) {
            EXPECT_EQ(selfs[row.counts.key], row.counts.self) << name << ' ' << row.name;
            EXPECT_EQ(calls[row.counts.key], row.counts.calls) << name << ' ' << row.name;
            std::uint64_t called = 0;
            for (const EdgeRow& edge : MakeCallerRows(keys, log.scope.profile, row.counts.key)) {
                called += edge.calls;
            }
            EXPECT_EQ(called, row.counts.calls) << name << ' ' << row.name;
        }
    }
}

} // namespace
} // namespace carvelot::test
