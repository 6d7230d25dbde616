#include "parse/fast/LineScan.h"
#include "parse/LogReader.h"
#include "sources/MemorySource.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace carvelot::test {

TEST(LineScan, MarksEveryWordThatClassifiesALine) {
    CMemorySource source("a jdeCache hCache: hCursor: Found existing cache JDB9900401 CAC0001111 Exiting "
                         "DBPerformRequest --UBE--\n");
    CLogReader reader(source, FastScan(LOG_FORMAT_DEBUG));
    LogLine line;
    ASSERT_TRUE(reader.ReadLogLine(line));
    std::string pairs;
    line.marks.ForEach([&](std::size_t at) { pairs.append(line.bytes.substr(at, 2)).append(" "); });
    EXPECT_EQ(pairs, "eC hC hC Fo B9 C0 BP -U ");
}

TEST(LineScan, SeesTheSameInEveryStep) {
    // Bytes that matter among such that do not, drawn by a fixed rule.
    const std::string bytes = std::string("ehCBD0349PFoUEvLiOb-\xE9\xFF ") + "\n\r" + std::string(1, '\0');
    std::uint32_t state = 1;
    for (const LogFormat format : {LOG_FORMAT_DEBUG, LOG_FORMAT_JAS}) {
        for (std::size_t length = 0; length < 300; ++length) {
            std::string block(length + kScanPadding, ' ');
            for (std::size_t i = 0; i < length; ++i) {
                state = state * 1664525 + 1013904223;
                const std::size_t draw = (state >> 16U) % (bytes.size() + length / 8);
                block[i] = draw < bytes.size() ? bytes[draw] : 'x';
            }
            const auto seen = [&](BlockScan scan) {
                LineIndex index(length);
                scan(block.data(), length, index);
                const auto places = [](const std::uint32_t* place) {
                    std::vector<std::uint32_t> all;
                    while (*place != LineIndex::kNoMore) {
                        all.push_back(*place++);
                    }
                    return all;
                };
                return std::tuple(places(index.ends.get()), places(index.marks.get()), index.ascii,
                                  index.holdsNul);
            };
            const auto slow = seen(ScanByBytes(format));
            for (const BlockScan scan : {ScanBy16(format), ScanBy32(format)}) {
                if (scan != nullptr) {
                    EXPECT_EQ(seen(scan), slow);
                }
            }
            const auto plain = seen(FindLineEnds);
            EXPECT_TRUE(std::get<1>(plain).empty());
            EXPECT_EQ(std::get<0>(plain), std::get<0>(slow));
            EXPECT_EQ(std::get<2>(plain), std::get<2>(slow));
            EXPECT_EQ(std::get<3>(plain), std::get<3>(slow));
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
