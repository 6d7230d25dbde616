#include "text/ByteScan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace carvelot::test {

namespace {

// Texts of every length up to four steps, out of few characters so that near misses abound. What stands
// behind a text must not matter.
template <class Check> void ForTexts(std::string_view characters, Check check) {
    std::mt19937 random(7);
    for (std::size_t size = 0; size < 70; ++size) {
        for (int run = 0; run < 60; ++run) {
            std::string bytes(size + 16, characters[0]);
            for (char& byte : bytes) {
                byte = characters[random() % characters.size()];
            }
            check(std::string_view(bytes).substr(0, size));
        }
    }
}

} // namespace

TEST(SearchesOfByteScan, FindWhatTheStandardLibraryFinds) {
    ForTexts("ab.xyCN", [](std::string_view text) {
        EXPECT_EQ(FindNear(text, 'a'), text.find('a'));
        EXPECT_EQ(FindLastNear(text, '.'), text.rfind('.'));
        EXPECT_EQ(FindEither(text, 'C', 'N'), std::min(text.find_first_of("CN"), text.size()));
        EXPECT_EQ(FindWord(text, "xy."), text.find("xy."));
        std::vector<std::size_t> places;
        ForEachOfFourBeforeLower<'C', 'N', 'x', '.'>(text, [&](std::size_t at) { places.push_back(at); });
        std::vector<std::size_t> expected;
        for (std::size_t at = 0; at + 1 < text.size(); ++at) {
            if (std::string_view("CNx.").find(text[at]) != std::string_view::npos && text[at + 1] >= 'a') {
                expected.push_back(at);
            }
        }
        EXPECT_EQ(places, expected) << text;
    });
}

TEST(SameShortText, TellsTextsThatDifferInOneByte) {
    ForTexts("ab", [](std::string_view text) {
        std::string other(text);
        EXPECT_TRUE(SameShortText(text, other));
        EXPECT_FALSE(SameShortText(text, other + "a"));
        for (std::size_t at = 0; at < other.size(); ++at) {
            other[at] = 'c';
            EXPECT_FALSE(SameShortText(text, other)) << at;
            other[at] = text[at];
        }
    });
}

} // namespace carvelot::test
