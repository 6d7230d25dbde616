#include "platform/UnicodeTest.h"

#include <gtest/gtest.h>
#include <string>

using carvelot::platform::LooksLikeUnicode;

TEST(UnicodeTest, AnEightBitTextInABlockPaddedWithZerosIsNone) {
    std::string block = "123.45";
    block.resize(128);
    EXPECT_FALSE(LooksLikeUnicode(block.data(), block.size()));
}

TEST(UnicodeTest, AUtf16TextInABlockPaddedWithZerosIsNoneEither) {
    std::string block;
    for (const char character : std::string("123.45")) {
        block.append({character, '\0'});
    }
    block.resize(128);
    EXPECT_FALSE(LooksLikeUnicode(block.data(), block.size()));
}

#ifndef _WIN32
TEST(UnicodeTest, OffWindowsAnyUnitThatIsNoCharacterSettlesIt) {
    std::u16string block(64, u'1');
    EXPECT_TRUE(LooksLikeUnicode(block.data(), 128));
    for (const char16_t unit : {u'\0', u'\xFFFE', u'\xFFFF', u'\x0D0A'}) {
        for (const std::size_t at : {0u, 31u, 63u}) {
            std::u16string bad = block;
            bad[at] = unit;
            EXPECT_FALSE(LooksLikeUnicode(bad.data(), 128)) << static_cast<unsigned>(unit) << " at " << at;
        }
    }
    EXPECT_TRUE(LooksLikeUnicode("text of bytes without zeros", 26));
    EXPECT_FALSE(LooksLikeUnicode("odd", 3));
    EXPECT_FALSE(LooksLikeUnicode("", 0));
}
#endif
