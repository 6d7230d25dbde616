#include "platform/CodePage.h"

#include <gtest/gtest.h>

using namespace carvelot::platform;

TEST(CodePage, AnAsciiTextIsReturnedAsItStandsAndNotCopied) {
    const std::string text = "4120/3388\tMON JAN 6 10:15:00.123456";
    std::string scratch;
    const std::string_view result = BytesToUtf8(text, scratch);
    EXPECT_EQ(result.data(), text.data());
    EXPECT_EQ(result.size(), text.size());
}

TEST(CodePage, AsciiEndsAt127WhereverTheByteStands) {
    for (std::size_t length = 0; length < 80; ++length) {
        EXPECT_TRUE(IsAscii(std::string(length, '\x7F'))) << length;
        for (std::size_t at = 0; at < length; ++at) {
            std::string text(length, 'a');
            text[at] = '\x80';
            EXPECT_FALSE(IsAscii(text)) << at << " of " << length;
        }
    }
}

TEST(CodePage, StrictUtf8KnowsNoOverlongFormNoSurrogateAndNothingBeyondUnicode) {
    for (const char* good : {"", "a", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
                             "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "12345678\xC3\xA4"}) {
        EXPECT_TRUE(IsValidUtf8(good)) << good;
    }
    for (const char* bad :
         {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2z", "\xE0\x9F\xBF", "\xE0\xA0", "\xED\xA0\x80",
          "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF0\x90\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFE",
          "\xFF", "12345678\xC3", "\xC3\xC3"}) {
        EXPECT_FALSE(IsValidUtf8(bad)) << bad;
    }
}

#ifndef _WIN32
TEST(CodePage, OffWindowsValidUtf8StaysAndAnythingElseIsWindows1252) {
    std::string scratch;
    EXPECT_EQ(BytesToUtf8("Gr\xC3\xB6\xC3\x9F"
                          "e",
                          scratch),
              "Gr\xC3\xB6\xC3\x9F"
              "e");
    EXPECT_EQ(BytesToUtf8("Gr\xF6\xDF"
                          "e",
                          scratch),
              "Gr\xC3\xB6\xC3\x9F"
              "e");
    EXPECT_EQ(BytesToUtf8("\x80 \x99 \xFF", scratch), "\xE2\x82\xAC \xE2\x84\xA2 \xC3\xBF");
}

TEST(CodePage, OffWindowsTheFiveUndefinedBytesAreTheControlsOfTheSameNumber) {
    std::string scratch;
    EXPECT_EQ(BytesToUtf8("\x81\x8D\x8F\x90\x9D", scratch), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
}

TEST(CodePage, OffWindowsTheWayBackIsUtf8) { EXPECT_EQ(Utf8ToBytes("\xC3\xB6"), "\xC3\xB6"); }
#endif
