#include "parse/LogReader.h"

#include "sources/MemorySource.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <tuple>

namespace carvelot::test {

namespace {

std::vector<std::string> LinesReadSo(std::string_view content, const BlockReading& reading) {
    CMemorySource source(content);
    CLogReader reader(source, FindLineEnds, reading);
    std::vector<std::string> lines;
    LogLine line;
    std::uint64_t position = 0;
    while (reader.ReadLogLine(line)) {
        lines.emplace_back(line.bytes);
        EXPECT_GT(reader.Position(), position);
        position = reader.Position();
        EXPECT_EQ(reader.LastByte(), content[position - 1]);
        EXPECT_GE(reader.Progress().done, position);
    }
    return lines;
}

// The same in blocks of all sizes, in a ring of any, with and without a thread ahead.
std::vector<std::string> LinesOf(std::string_view content) {
    using enum BlockReading::Way;
    const std::vector<std::string> lines = LinesReadSo(content, {.way = Here});
    for (const BlockReading::Way way : {Here, Ahead}) {
        for (const std::size_t bytes : {1U, 2U, 3U, 1000U, 8191U, 8192U, 8193U, 100'000U}) {
            // Each byte is looked at again for each block that comes behind it in its line.
            if (bytes >= 1000 || content.size() <= 1000) {
                for (const std::size_t ring : {2U, 3U, 8U}) {
                    EXPECT_EQ(LinesReadSo(content, {way, bytes, ring}), lines)
                        << "in blocks of " << bytes << ", " << ring << " of them";
                }
            }
        }
    }
    return lines;
}

std::string Repeated(std::size_t size, char c = 'x') { return std::string(size, c); }

using Strings = std::vector<std::string>;

} // namespace

TEST(ReadLogLine, EndsALineAtEachLineFeedAndEachCarriageReturn) {
    EXPECT_EQ(LinesOf("a\r\nb\rc\n\nd\n"), (Strings{"a", "", "b", "c", "", "d"}));
}

TEST(ReadLogLine, NeverGivesALastLineWithoutAnEnd) {
    EXPECT_EQ(LinesOf("a\nb"), Strings{"a"});
    EXPECT_EQ(LinesOf("only"), Strings{});
    EXPECT_EQ(LinesOf(""), Strings{});
}

TEST(ReadLogLine, CutsALineAfter8192BytesWithoutALookAtTheNextByte) {
    EXPECT_EQ(LinesOf(Repeated(8191) + "\n"), Strings{Repeated(8191)});
    EXPECT_EQ(LinesOf(Repeated(8192) + "\n"), (Strings{Repeated(8192), ""}));
    EXPECT_EQ(LinesOf(Repeated(8193) + "\n"), (Strings{Repeated(8192), "x"}));
    EXPECT_EQ(LinesOf(Repeated(8192) + "\r\n"), (Strings{Repeated(8192), "", ""}));
    EXPECT_EQ(LinesOf(Repeated(3 * 8192) + "y\n"),
              (Strings{Repeated(8192), Repeated(8192), Repeated(8192), "y"}));
}

TEST(ReadLogLine, Takes8192UnendedBytesForALineButNot8191) {
    EXPECT_EQ(LinesOf(Repeated(8192)), Strings{Repeated(8192)});
    EXPECT_EQ(LinesOf(Repeated(8191)), Strings{});
    EXPECT_EQ(LinesOf(Repeated(8192) + "rest"), Strings{Repeated(8192)});
}

TEST(ReadLogLine, EndsTheTextAtANulButNotTheLine) {
    EXPECT_EQ(LinesOf(std::string_view("ab\0cd\nef\n", 9)), (Strings{"ab", "ef"}));
    EXPECT_EQ(LinesOf(std::string_view("\0\n", 2)), Strings{""});
    // The bytes behind a NUL still count.
    EXPECT_EQ(LinesOf("a" + std::string(8191, '\0') + "b\n"), (Strings{"a", "b"}));
}

TEST(ReadLogLine, FindsLineEndsAtEveryPlaceOfALongFile) {
    // LinesOf of every length from 0 to 299, many times over: each meets the reader's blocks at another
    // place.
    std::string content;
    Strings expected;
    for (int round = 0; round < 12; ++round) {
        for (std::size_t length = 0; length < 300; ++length) {
            expected.push_back(Repeated(length, static_cast<char>('a' + length % 26)));
            content.append(expected.back()).push_back('\n');
        }
    }
    EXPECT_EQ(LinesOf(content), expected);
}

TEST(ReadLogLine, StartsOverAfterRewind) {
    CMemorySource source("a\nb\n");
    CLogReader reader(source);
    LogLine line;
    ASSERT_TRUE(reader.ReadLogLine(line));
    ASSERT_TRUE(reader.ReadLogLine(line));
    reader.Rewind();
    ASSERT_TRUE(reader.ReadLogLine(line));
    EXPECT_EQ(line.bytes, "a");
    EXPECT_EQ(reader.Position(), 2U);
}

} // namespace carvelot::test
