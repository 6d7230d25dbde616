#include "parse/LogReader.h"

#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <tuple>

namespace carvelot::test {

namespace {

std::vector<std::string> Lines(std::string_view content) {
    CMemorySource source(content);
    CLogReader reader(source, HintSet::Debug);
    std::vector<std::string> lines;
    LogLine line;
    while (reader.ReadLogLine(line)) {
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
    CMemorySource source("a jdeCache hCache: hCursor: Found existing cache JDB9900401 CAC0001111 Exiting "
                         "DBPerformRequest --UBE--\n");
    CLogReader reader(source, HintSet::Debug);
    LogLine line;
    ASSERT_TRUE(reader.ReadLogLine(line));
    EXPECT_TRUE(line.hints.IsComplete());
    std::string pairs;
    line.hints.ForEach([&](std::size_t at) { pairs.append(line.bytes.substr(at, 2)).append(" "); });
    EXPECT_EQ(pairs, "eC hC hC Fo B9 C0 BP -U ");
}

TEST(ReadLogLine, StartsOverAfterRewind) {
    CMemorySource source("a\nb\n");
    CLogReader reader(source, HintSet::Debug);
    LogLine line;
    ASSERT_TRUE(reader.ReadLogLine(line));
    ASSERT_TRUE(reader.ReadLogLine(line));
    reader.Rewind(HintSet::None);
    ASSERT_TRUE(reader.ReadLogLine(line));
    EXPECT_EQ(line.bytes, "a");
    EXPECT_EQ(reader.Position(), 2U);
}

TEST(ScanBlock, SeesTheSameInEveryStep) {
    // Bytes that matter among such that do not, drawn by a fixed rule.
    const std::string bytes = std::string("ehCBD0349PFoUEvLiOb-\xE9\xFF ") + "\n\r" + std::string(1, '\0');
    std::uint32_t state = 1;
    for (const HintSet set : {HintSet::None, HintSet::Debug, HintSet::Jas}) {
        for (std::size_t length = 0; length < 300; ++length) {
            std::string block(length + kScanPadding, ' ');
            for (std::size_t i = 0; i < length; ++i) {
                state = state * 1664525 + 1013904223;
                const std::size_t draw = (state >> 16U) % (bytes.size() + length / 8);
                block[i] = draw < bytes.size() ? bytes[draw] : 'x';
            }
            const auto seen = [&](ScanBlockFunction scan) {
                LineIndex index(length);
                scan(block.data(), length, index);
                const auto places = [](const std::uint32_t* place) {
                    std::vector<std::uint32_t> all;
                    while (*place != LineIndex::kNoMore) {
                        all.push_back(*place++);
                    }
                    return all;
                };
                return std::tuple(places(index.ends.get()), places(index.hints.get()), index.ascii,
                                  index.holdsNul);
            };
            const auto plain = seen(ScanByBytes(set));
            for (const ScanBlockFunction scan : {ScanBy16(set), ScanBy32(set), ScanBy64(set)}) {
                if (scan != nullptr) {
                    EXPECT_EQ(seen(scan), plain);
                }
            }
            std::vector<std::uint32_t> ends;
            for (std::uint32_t i = 0; i < length; ++i) {
                if (block[i] == '\n' || block[i] == '\r') {
                    ends.push_back(i);
                }
            }
            EXPECT_EQ(std::get<0>(plain), ends);
            EXPECT_EQ(std::get<2>(plain), block.find_first_of("\xE9\xFF") == std::string::npos);
            EXPECT_EQ(std::get<3>(plain), block.find('\0') != std::string::npos);
        }
    }
}

} // namespace carvelot::test
