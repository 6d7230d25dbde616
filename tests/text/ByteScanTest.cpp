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

TEST(SixDigitsAndDash, ReadsEverySixDigits) {
    for (std::uint32_t number = 0; number < 1'000'000; number += 7) {
        std::string text = std::to_string(1'000'000 + number).substr(1) + " - 1/2";
        std::uint32_t value = 0;
        ASSERT_TRUE(SixDigitsAndDash(text.data(), value));
        ASSERT_EQ(value, number);
    }
}

TEST(SixDigitsAndDash, TakesNoOtherCharacterInAnyPlace) {
    const std::string good = "402195 - ";
    for (std::size_t place = 0; place < 8; ++place) {
        for (int c = 0; c < 0x80; ++c) {
            std::string text = good;
            text[place] = static_cast<char>(c);
            std::uint32_t value = 0;
            const bool fits = place < 6 ? IsDigit(static_cast<char>(c)) : text == good;
            EXPECT_EQ(SixDigitsAndDash(text.data(), value), fits) << place << ' ' << c;
        }
    }
}

TEST(ThreeDigitsAndBracket, ReadsThousandthsAndTakesNoOtherCharacter) {
    for (std::uint32_t number = 0; number < 1000; ++number) {
        const std::string text = std::to_string(1000 + number).substr(1) + " [APP";
        std::uint32_t value = 0;
        EXPECT_TRUE(ThreeDigitsAndBracket(text.data(), value));
        EXPECT_EQ(value, number * 1000);
    }
    const std::string good = "402 [   ";
    for (std::size_t place = 0; place < 5; ++place) {
        for (int c = 0; c < 0x100; ++c) {
            std::string text = good;
            text[place] = static_cast<char>(c);
            std::uint32_t value = 0;
            const bool fits = place < 3 ? IsDigit(static_cast<char>(c)) : text == good;
            EXPECT_EQ(ThreeDigitsAndBracket(text.data(), value), fits) << place << ' ' << c;
        }
    }
}

TEST(LeadingBlanksAmong16, CountsBlanksAndTellsTabsAmongThem) {
    ForTexts(" \t  x", [](std::string_view text) {
        const std::size_t count = std::min(text.find_first_not_of(" \t"), text.size());
        if (text.size() >= 16) {
            const LeadingBlanks leading = LeadingBlanksAmong16(text.data());
            const std::size_t looked = std::min<std::size_t>(count, 16);
            EXPECT_EQ(leading.count, looked) << text;
            EXPECT_EQ(leading.holdTab, text.substr(0, looked).find('\t') != std::string_view::npos) << text;
        }
    });
    EXPECT_EQ(LeadingBlanksAmong16("                ").count, 16U);
    EXPECT_TRUE(LeadingBlanksAmong16("               \t").holdTab);
}

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
