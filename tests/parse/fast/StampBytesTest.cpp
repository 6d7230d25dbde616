#include "parse/fast/StampBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace carvelot::test {

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
    std::mt19937 random(7);
    constexpr std::string_view characters = " \t  x";
    for (int run = 0; run < 4000; ++run) {
        std::string text(16, ' ');
        for (char& byte : text) {
            byte = characters[random() % characters.size()];
        }
        const std::size_t count = std::min(text.find_first_not_of(" \t"), text.size());
        const LeadingBlanks leading = LeadingBlanksAmong16(text.data());
        EXPECT_EQ(leading.count, count) << text;
        EXPECT_EQ(leading.holdTab, text.substr(0, count).find('\t') != std::string::npos) << text;
    }
    EXPECT_EQ(LeadingBlanksAmong16("                ").count, 16U);
    EXPECT_TRUE(LeadingBlanksAmong16("               \t").holdTab);
}

} // namespace carvelot::test
