#include "explore/pictures/SvgCanvas.h"

#include "explore/pictures/TestCanvas.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace carvelot::test {

namespace {

using testing::HasSubstr;
using testing::Not;
using namespace std::string_view_literals;

constexpr PictureColor kRed{255, 0, 16, 255};
constexpr PictureColor kHalfBlue{0, 0, 255, 51};

// What stands between the root's tags.
template <class Draw> std::string Drawn(Draw draw) {
    CTestCanvas screen;
    CSvgCanvas canvas({100, 50}, screen, "Sans", 12);
    draw(canvas);
    const std::string file = canvas.TakeFile();
    const std::size_t begin = file.find(">\n", file.find("<svg")) + 2;
    return file.substr(begin, file.rfind("</svg>\n") - begin);
}

std::string Text(const PictureRect& rect, std::string_view text, PictureAlign align = PictureAlign::Left) {
    return Drawn([&](ICanvas& canvas) { canvas.Text(rect, text, align, kRed); });
}

} // namespace

TEST(SvgCanvas, IsAFileOfThePicturesSizeAndFont) {
    CTestCanvas screen;
    CSvgCanvas canvas({640.5, 480}, screen, "A \"B\" <&> C", 12.25);
    EXPECT_EQ(canvas.LineHeight(), 14);
    EXPECT_EQ(canvas.TextWidth("abc"), 21);
    EXPECT_EQ(canvas.TakeFile(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                 "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"640.5\" height=\"480\" "
                                 "font-family=\"A &quot;B&quot; &lt;&amp;&gt; C\" font-size=\"12.25\">\n"
                                 "</svg>\n");
}

TEST(SvgCanvas, FillsRectanglesInAnyColour) {
    EXPECT_EQ(Drawn([](ICanvas& canvas) {
                  canvas.Fill({1, 2.5, 30.126, 4}, kRed);
                  canvas.Fill({0, 0, -5, -0.5}, kHalfBlue);
              }),
              "<rect x=\"1\" y=\"2.5\" width=\"30.13\" height=\"4\" fill=\"#ff0010\"/>\n"
              "<rect x=\"0\" y=\"0\" width=\"0\" height=\"0\" fill=\"#0000ff\" fill-opacity=\"0.2\"/>\n");
}

TEST(SvgCanvas, OutlinesInsideOfARectangle) {
    EXPECT_EQ(Drawn([](ICanvas& canvas) {
                  canvas.Outline({10, 20, 30, 40}, kRed, 2);
              }),
              "<rect x=\"11\" y=\"21\" width=\"28\" height=\"38\" fill=\"none\" stroke=\"#ff0010\" "
              "stroke-width=\"2\"/>\n");
}

TEST(SvgCanvas, HatchesWithAPatternOfItsOwn) {
    const std::string drawn = Drawn([](ICanvas& canvas) {
        canvas.Hatch({1, 2, 3, 4}, kRed);
        canvas.Hatch({5, 6, 7, 8}, kHalfBlue);
    });
    EXPECT_THAT(drawn,
                HasSubstr("<pattern id=\"h1\" width=\"6\" height=\"6\" patternUnits=\"userSpaceOnUse\">"
                          "<path d=\"M0 6L6 0\" stroke=\"#ff0010\"/></pattern>\n"
                          "<rect x=\"1\" y=\"2\" width=\"3\" height=\"4\" fill=\"url(#h1)\"/>\n"));
    EXPECT_THAT(drawn, HasSubstr("stroke=\"#0000ff\" stroke-opacity=\"0.2\"/></pattern>\n"
                                 "<rect x=\"5\" y=\"6\" width=\"7\" height=\"8\" fill=\"url(#h2)\"/>\n"));
}

TEST(SvgCanvas, DrawsPolygons) {
    constexpr std::array<PicturePoint, 3> points{{{0, 0}, {10.5, 0}, {5, -3.25}}};
    EXPECT_EQ(Drawn([&](ICanvas& canvas) { canvas.Polygon(points, kRed); }),
              "<polygon points=\"0,0 10.5,0 5,-3.25 \" fill=\"#ff0010\"/>\n");
}

TEST(SvgCanvas, ClipsWhatIsDrawnInAClip) {
    EXPECT_EQ(Drawn([](ICanvas& canvas) {
                  canvas.BeginClip({1, 2, 3, 4});
                  canvas.Fill({0, 0, 9, 9}, kRed);
                  canvas.EndClip();
              }),
              "<clipPath id=\"c1\"><rect x=\"1\" y=\"2\" width=\"3\" height=\"4\"/></clipPath>\n"
              "<g clip-path=\"url(#c1)\">\n"
              "<rect x=\"0\" y=\"0\" width=\"9\" height=\"9\" fill=\"#ff0010\"/>\n"
              "</g>\n");
}

TEST(SvgCanvas, AlignsTextsInTheMiddleOfTheHeight) {
    EXPECT_EQ(Text({10, 20, 70, 10}, "abc"), "<text x=\"10\" y=\"29.2\" fill=\"#ff0010\">abc</text>\n");
    EXPECT_EQ(Text({10, 20, 70, 10}, "abc", PictureAlign::Center),
              "<text x=\"45\" y=\"29.2\" text-anchor=\"middle\" fill=\"#ff0010\">abc</text>\n");
    EXPECT_EQ(Text({10, 20, 70, 10}, "abc", PictureAlign::Right),
              "<text x=\"80\" y=\"29.2\" text-anchor=\"end\" fill=\"#ff0010\">abc</text>\n");
}

TEST(SvgCanvas, CutsATextThatDoesNotFitWithAnEllipsis) {
    // Seven pixels a byte, and an ellipsis has three.
    EXPECT_THAT(Text({0, 0, 70, 10}, "abcdefghij"), HasSubstr(">abcdefghij<"));
    EXPECT_THAT(Text({0, 0, 69, 10}, "abcdefghij"), HasSubstr(">abcdef\u2026<"));
    EXPECT_THAT(Text({0, 0, 28, 10}, "abcdefghij"), HasSubstr(">a\u2026<"));
    EXPECT_THAT(Text({0, 0, 21, 10}, "abcdefghij"), HasSubstr(">\u2026<"));
    EXPECT_EQ(Text({0, 0, 20, 10}, "abcdefghij"), "");
    EXPECT_EQ(Text({0, 0, 20, 10}, ""), "");
    // No character is cut in two.
    EXPECT_THAT(Text({0, 0, 35, 10}, "\u00e4\u00e4\u00e4\u00e4"), HasSubstr(">\u00e4\u2026<"));
    EXPECT_THAT(Text({0, 0, 28, 10}, "\u00e4\u00e4\u00e4\u00e4"), HasSubstr(">\u2026<"));
}

TEST(SvgCanvas, HoldsNothingThatXmlDoesNotKnow) {
    const std::string drawn = Text({0, 0, 700, 10}, "<a&b>\"c\"\x01\x7F\0d\xFF\u20ac"sv);
    EXPECT_THAT(drawn, HasSubstr(">&lt;a&amp;b&gt;&quot;c&quot;   d\uFFFD\u20ac<"));
    EXPECT_THAT(drawn, Not(HasSubstr("\x01")));
}

} // namespace carvelot::test
