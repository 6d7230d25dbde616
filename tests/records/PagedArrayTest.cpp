#include "records/PagedArray.h"

#include <atomic>
#include <cstdint>
#include <gtest/gtest.h>
#include <thread>
#ifndef _WIN32
#include <sys/mman.h>
#endif

namespace carvelot::test {

namespace {

constexpr std::size_t kPage = platform::kHugePage;
constexpr std::size_t kAskedAt = kPage / 4 * 3;

using Bytes = CPagedArray<char, 22>; // two pages a block

void Grow(Bytes& bytes, std::size_t size) {
    while (bytes.Size() < size) {
        bytes.Add(static_cast<char>(bytes.Size() % 251));
    }
}

void ExpectWhole(const Bytes& bytes) {
    for (std::size_t i = 0; i < bytes.Size(); ++i) {
        ASSERT_EQ(bytes[i], static_cast<char>(i % 251)) << i;
    }
}

} // namespace

#ifdef MADV_NOHUGEPAGE
// True in any case where the system makes no large pages of itself.
TEST(PagedArray, TakesNoLargePageOfMemoryForAFewElements) {
    Bytes bytes;
    bytes.Add('a');
    char* const first = &bytes[0];
    unsigned char known = 0;
    ASSERT_EQ(mincore(first + 4 * 4096, 1, &known), 0);
    EXPECT_EQ(known & 1U, 0U);
}
#endif

TEST(PagedArray, AsksForEachPageOnceThreeQuartersOfTheOneAheadAreFull) {
    Bytes bytes;
    bytes.AskAhead();
    // Within a block and over its end alike.
    for (std::size_t page = 0; page < 5; ++page) {
        Grow(bytes, page * kPage + kAskedAt);
        EXPECT_FALSE(bytes.ProvidePage()) << page;
        Grow(bytes, page * kPage + kAskedAt + 1);
        EXPECT_TRUE(bytes.ProvidePage()) << page;
        EXPECT_FALSE(bytes.ProvidePage()) << page;
    }
    ExpectWhole(bytes);
    EXPECT_EQ(bytes.BlockCount(), 3U);
}

TEST(PagedArray, AsksForNothingUnlessToldTo) {
    Bytes bytes;
    Grow(bytes, 3 * kPage);
    EXPECT_FALSE(bytes.ProvidePage());
}

TEST(PagedArray, OfSmallBlocksAsksForNothing) {
    CPagedArray<char, 12> bytes;
    bytes.AskAhead();
    for (std::size_t i = 0; i < 2 * kPage; ++i) {
        bytes.Add('a');
    }
    EXPECT_FALSE(bytes.ProvidePage());
}

TEST(PagedArray, WhatDoesNotFitUpToTheAskingPlaceLiesTogether) {
    Bytes bytes;
    bytes.AskAhead();
    bytes.Reserve(kAskedAt - 1);
    const char* const place = bytes.Reserve(kPage + 1); // past the places of both pages
    EXPECT_EQ(place, &bytes[kAskedAt - 1]);
    EXPECT_EQ(bytes.Size(), kAskedAt + kPage);
    EXPECT_TRUE(bytes.ProvidePage());
    EXPECT_EQ(bytes.BlockCount(), 1U);
}

TEST(PagedArray, AsksForNoBlockBeyondItsLimit) {
    Bytes bytes;
    bytes.AskAhead();
    bytes.LimitTo(2 * kPage);
    Grow(bytes, 2 * kPage);
    EXPECT_TRUE(bytes.ProvidePage()); // the second page, asked for long ago
    EXPECT_FALSE(bytes.ProvidePage());
    EXPECT_THROW(bytes.Add('a'), std::length_error);
    EXPECT_EQ(bytes.Size(), 2 * kPage);
    ExpectWhole(bytes);
}

TEST(PagedArray, ForgetsWhatItAskedForWhenItIsCleared) {
    Bytes bytes;
    bytes.AskAhead();
    Grow(bytes, kPage + kAskedAt + 1); // the next block is there already
    bytes.Clear();
    EXPECT_FALSE(bytes.ProvidePage());
    Grow(bytes, 2 * kPage + 1);
    ExpectWhole(bytes);
}

TEST(PagedArray, MovesWithTheBlockThatWasAskedFor) {
    Bytes bytes;
    bytes.AskAhead();
    Grow(bytes, kPage + kAskedAt + 1);
    Bytes other(std::move(bytes));
    EXPECT_FALSE(bytes.ProvidePage()); // NOLINT(bugprone-use-after-move): it is empty
    Grow(other, 3 * kPage);
    ExpectWhole(other);
}

TEST(PagedArray, IsTheSameWhileAnotherThreadProvidesItsPages) {
    Bytes bytes;
    bytes.AskAhead();
    std::atomic<bool> ended = false;
    std::size_t provided = 0;
    std::thread other([&] {
        while (!ended) {
            provided += bytes.ProvidePage() ? 1 : 0;
        }
    });
    Grow(bytes, 8 * kPage);
    ended = true;
    other.join();
    EXPECT_GE(provided, 1U);
    EXPECT_LE(provided, 8U);
    ExpectWhole(bytes);
}

} // namespace carvelot::test
