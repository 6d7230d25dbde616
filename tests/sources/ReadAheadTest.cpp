#include "sources/ReadAhead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <stdexcept>
#include <thread>

namespace carvelot::test {

namespace {

struct Numbered {
    int number = 0;
};

// The numbers that come out when as many blocks are filled, each by what the one before it holds.
std::vector<int> Numbers(std::size_t ring, int count, bool threaded) {
    std::vector<Numbered> blocks(ring);
    int filled = 0;
    CReadAhead<Numbered> ahead(
        blocks,
        [&](Numbered& block, const Numbered* before, const CReadAhead<Numbered>&) {
            if (filled == count) {
                return false;
            }
            ++filled;
            block.number = before == nullptr ? 1 : before->number + 1;
            return true;
        },
        threaded);
    std::vector<int> numbers;
    while (const Numbered* const block = ahead.Next()) {
        numbers.push_back(block->number);
    }
    EXPECT_EQ(ahead.Next(), nullptr) << "it stays at its end";
    return numbers;
}

std::vector<int> UpTo(int count) {
    std::vector<int> numbers;
    for (int i = 1; i <= count; ++i) {
        numbers.push_back(i);
    }
    return numbers;
}

} // namespace

TEST(ReadAhead, GivesAllBlocksInTheirOrderWithAndWithoutAThread) {
    for (const bool threaded : {false, true}) {
        for (const std::size_t ring : {threaded ? 2U : 1U, 3U, 4U, 8U}) {
            for (const int count : {0, 1, 2, 7, 8, 9, 1000}) {
                EXPECT_EQ(Numbers(ring, count, threaded), UpTo(count))
                    << ring << ' ' << count << ' ' << threaded;
            }
        }
    }
}

TEST(ReadAhead, NeverFillsABlockThatIsWorkedOn) {
    std::vector<Numbered> blocks(3);
    int filled = 0;
    CReadAhead<Numbered> ahead(
        blocks,
        [&](Numbered& block, const Numbered*, const CReadAhead<Numbered>&) {
            block.number = ++filled;
            return filled <= 500;
        },
        true);
    int expected = 0;
    while (const Numbered* const block = ahead.Next()) {
        ++expected;
        for (int look = 0; look < 50; ++look) {
            ASSERT_EQ(block->number, expected);
        }
    }
    EXPECT_EQ(expected, 500);
}

TEST(ReadAhead, FillsNoMoreThanItsRingHolds) {
    std::vector<Numbered> blocks(4);
    std::atomic<int> filled = 0;
    std::atomic<int> taken = 0;
    std::atomic<int> most = 0;
    CReadAhead<Numbered> ahead(
        blocks,
        [&](Numbered&, const Numbered*, const CReadAhead<Numbered>&) {
            most = std::max(most.load(), ++filled - taken);
            return filled <= 200;
        },
        true);
    while (ahead.Next() != nullptr) {
        ++taken;
    }
    // The one that is worked on has been counted as taken.
    EXPECT_LE(most, 5);
}

TEST(ReadAhead, KnowsHowManyBlocksWait) {
    {
        std::vector<Numbered> blocks(1);
        CReadAhead<Numbered> here(
            blocks,
            [](Numbered& block, const Numbered*, const CReadAhead<Numbered>& ahead) {
                EXPECT_EQ(ahead.Waiting(), 0U);
                return ++block.number <= 3;
            },
            false);
        while (here.Next() != nullptr) {
            EXPECT_EQ(here.Waiting(), 0U);
        }
    }
    std::vector<Numbered> blocks(4);
    std::vector<std::size_t> seen;
    std::atomic<int> filled = 0;
    CReadAhead<Numbered> ahead(
        blocks,
        [&](Numbered&, const Numbered*, const CReadAhead<Numbered>& itself) {
            seen.push_back(itself.Waiting());
            return ++filled <= 4;
        },
        true);
    while (ahead.Waiting() < 4) {
        std::this_thread::yield();
    }
    EXPECT_EQ(seen, (std::vector<std::size_t>{0, 1, 2, 3}));
    EXPECT_NE(ahead.Next(), nullptr);
    EXPECT_EQ(ahead.Waiting(), 3U);
}

TEST(ReadAhead, HandsOnWhatFillingThrowsBehindTheBlocksAheadOfIt) {
    for (const bool threaded : {false, true}) {
        std::vector<Numbered> blocks(4);
        int filled = 0;
        CReadAhead<Numbered> ahead(
            blocks,
            [&](Numbered&, const Numbered*, const CReadAhead<Numbered>&) {
                if (++filled == 3) {
                    throw std::bad_alloc();
                }
                return true;
            },
            threaded);
        EXPECT_NE(ahead.Next(), nullptr);
        EXPECT_NE(ahead.Next(), nullptr);
        EXPECT_THROW(ahead.Next(), std::bad_alloc);
    }
}

TEST(ReadAhead, EndsCleanlyWhereverItIsLeft) {
    for (int taken = 0; taken < 20; ++taken) {
        std::vector<Numbered> blocks(4);
        int filled = 0;
        CReadAhead<Numbered> ahead(
            blocks, [&](Numbered&, const Numbered*, const CReadAhead<Numbered>&) { return ++filled <= 15; },
            true);
        for (int i = 0; i < taken; ++i) {
            ahead.Next();
        }
    }
}

} // namespace carvelot::test
