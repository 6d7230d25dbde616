#include "platform/CaseFold.h"

#include <clocale>
#include <gtest/gtest.h>

using carvelot::platform::ToUpper;

TEST(CaseFold, AsciiLettersAndNothingElseOfAsciiChange) {
    for (char32_t character = 0; character < 0x80; ++character) {
        const bool lower = character >= U'a' && character <= U'z';
        EXPECT_EQ(ToUpper(character), lower ? character - 32 : character) << static_cast<unsigned>(character);
    }
}

TEST(CaseFold, LettersBeyondAsciiFoldOneToOne) {
    EXPECT_EQ(ToUpper(U'\u00E4'), U'\u00C4');
    EXPECT_EQ(ToUpper(U'\u00FF'), U'\u0178');
    EXPECT_EQ(ToUpper(U'\u03C9'), U'\u03A9');
    EXPECT_EQ(ToUpper(U'\u0444'), U'\u0424');
    EXPECT_EQ(ToUpper(U'\u00C4'), U'\u00C4');
}

TEST(CaseFold, WhatHasNoSingleUpperCaseLetterStays) {
    EXPECT_EQ(ToUpper(U'\u00DF'), U'\u00DF'); // sharp s
    EXPECT_EQ(ToUpper(U'\uFB01'), U'\uFB01'); // fi ligature
    EXPECT_EQ(ToUpper(U'\u65E5'), U'\u65E5');
    EXPECT_EQ(ToUpper(U'\u00D7'), U'\u00D7'); // multiplication sign
}

TEST(CaseFold, CharactersAboveTheBasicPlaneAndHalvesOfPairsStay) {
    EXPECT_EQ(ToUpper(U'\U00010428'), U'\U00010428');
    EXPECT_EQ(ToUpper(U'\U0001F600'), U'\U0001F600');
    for (char32_t half = 0xD800; half <= 0xDFFF; ++half) {
        EXPECT_EQ(ToUpper(half), half);
    }
}

TEST(CaseFold, FoldingAFoldedCharacterChangesNothing) {
    for (char32_t character = 0; character < 0x10000; ++character) {
        EXPECT_EQ(ToUpper(ToUpper(character)), ToUpper(character)) << static_cast<unsigned>(character);
    }
}
