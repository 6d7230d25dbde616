#include "logcore/LogReader.h"

#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

std::vector<std::string> Lines(std::string_view content) {
    const TestFile path(content);
    platform::SharedFile file = platform::SharedFile::OpenForReading(path.Path());
    CLogReader reader(file);
    std::vector<std::string> lines;
    LogLine line;
    while (reader.ReadLogLine<HintSet::Debug>(line)) {
        lines.emplace_back(line.bytes);
    }
    return lines;
}

std::string Of(std::size_t size, char c = 'x') { return std::string(size, c); }

using Strings = std::vector<std::string>;

} // namespace

TEST(ReadLogLine, EndsALineAtEachLineFeedAndEachCarriageReturn) {
    EXPECT_EQ(Lines("a\r\nb\rc\n\nd\n"), (Strings{"a", "", "b", "c", "", "d"}));
}

TEST(ReadLogLine, NeverGivesALastLineWithoutAnEnd) {
    EXPECT_EQ(Lines("a\nb"), Strings{"a"});
    EXPECT_EQ(Lines("only"), Strings{});
    EXPECT_EQ(Lines(""), Strings{});
}

TEST(ReadLogLine, CutsALineAfter8192BytesWithoutALookAtTheNextByte) {
    EXPECT_EQ(Lines(Of(8191) + "\n"), Strings{Of(8191)});
    EXPECT_EQ(Lines(Of(8192) + "\n"), (Strings{Of(8192), ""}));
    EXPECT_EQ(Lines(Of(8193) + "\n"), (Strings{Of(8192), "x"}));
    EXPECT_EQ(Lines(Of(8192) + "\r\n"), (Strings{Of(8192), "", ""}));
    EXPECT_EQ(Lines(Of(3 * 8192) + "y\n"), (Strings{Of(8192), Of(8192), Of(8192), "y"}));
}

TEST(ReadLogLine, Takes8192UnendedBytesForALineButNot8191) {
    EXPECT_EQ(Lines(Of(8192)), Strings{Of(8192)});
    EXPECT_EQ(Lines(Of(8191)), Strings{});
    EXPECT_EQ(Lines(Of(8192) + "rest"), Strings{Of(8192)});
}

TEST(ReadLogLine, EndsTheTextAtANulButNotTheLine) {
    EXPECT_EQ(Lines(std::string_view("ab\0cd\nef\n", 9)), (Strings{"ab", "ef"}));
    EXPECT_EQ(Lines(std::string_view("\0\n", 2)), Strings{""});
    // The bytes behind a NUL still count.
    EXPECT_EQ(Lines("a" + std::string(8191, '\0') + "b\n"), (Strings{"a", "b"}));
}

TEST(ReadLogLine, FindsLineEndsAtEveryPlaceOfALongFile) {
    // Lines of every length from 0 to 299, many times over: each meets the reader's blocks at another place.
    std::string content;
    Strings expected;
    for (int round = 0; round < 12; ++round) {
        for (std::size_t length = 0; length < 300; ++length) {
            expected.push_back(Of(length, static_cast<char>('a' + length % 26)));
            content.append(expected.back()).push_back('\n');
        }
    }
    EXPECT_EQ(Lines(content), expected);
}

TEST(ReadLogLine, HintsAtEveryWordThatClassifiesALine) {
    const TestFile path("a jdeCache hCache: hCursor: Found existing cache JDB9900401 CAC0001111 Exiting "
                        "DBPerformRequest --UBE--\n");
    platform::SharedFile file = platform::SharedFile::OpenForReading(path.Path());
    CLogReader reader(file);
    LogLine line;
    ASSERT_TRUE(reader.ReadLogLine<HintSet::Debug>(line));
    EXPECT_TRUE(line.hints.IsComplete());
    std::string pairs;
    for (const std::uint16_t at : line.hints) {
        pairs.append(line.bytes.substr(at, 2)).append(" ");
    }
    EXPECT_EQ(pairs, "Ca Ca Cu Fo DB CA DB UB ");
}

TEST(ReadLogLine, StartsOverAfterRewind) {
    const TestFile path("a\nb\n");
    platform::SharedFile file = platform::SharedFile::OpenForReading(path.Path());
    CLogReader reader(file);
    LogLine line;
    ASSERT_TRUE(reader.ReadLogLine<HintSet::None>(line));
    ASSERT_TRUE(reader.ReadLogLine<HintSet::None>(line));
    reader.Rewind();
    ASSERT_TRUE(reader.ReadLogLine<HintSet::None>(line));
    EXPECT_EQ(line.bytes, "a");
    EXPECT_EQ(reader.Position(), 2U);
}

TEST(ScanLine, SeesTheSameInStepsOf32BytesAsInStepsOf16) {
    const ScanLineFunction wide = ScanLineBy32<HintSet::Debug>();
    if (wide == nullptr) {
        GTEST_SKIP() << "this machine or this build has no wider step";
    }
    // Bytes that matter among such that do not, drawn by a fixed rule.
    const std::string bytes = std::string("abcCaCADBFoUB\xE9 ") + "\n\r" + std::string(1, '\0');
    std::uint32_t state = 1;
    for (std::size_t length = 0; length < 200; ++length) {
        std::string line(length + kScanPadding, ' ');
        for (char& c : line) {
            state = state * 1664525 + 1013904223;
            const std::size_t draw = (state >> 16U) % 40;
            c = draw < bytes.size() ? bytes[draw] : 'x';
        }
        LineHints narrowHints;
        LineHints wideHints;
        const LineScan a = ScanLineBy16<HintSet::Debug>(line.data(), length, narrowHints);
        const LineScan b = wide(line.data(), length, wideHints);
        EXPECT_EQ(a.length, b.length);
        EXPECT_EQ(a.ended, b.ended);
        EXPECT_EQ(std::min(a.nul, a.length), std::min(b.nul, b.length));
        const auto within = [&](const LineHints& hints) {
            std::vector<std::uint16_t> places;
            for (const std::uint16_t place : hints) {
                if (place + 1U < a.length) {
                    places.push_back(place);
                }
            }
            return places;
        };
        if (narrowHints.IsComplete() && wideHints.IsComplete()) {
            EXPECT_EQ(within(narrowHints), within(wideHints));
        }
        if (a.ended) {
            EXPECT_EQ(a.ascii, b.ascii);
        }
    }
}

} // namespace carvelot::test
