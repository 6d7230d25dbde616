#include "platform/PageMemory.h"
#include "platform/ProcessMemory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <new>
#ifndef _WIN32
#include <sys/mman.h>
#endif

using namespace carvelot::platform;

TEST(PageMemory, ABlockIsZeroedAlignedToAPageAndWritableToItsLastByte) {
    for (const std::size_t size : {std::size_t{1}, std::size_t{4096}, std::size_t{100'000},
                                   std::size_t{2} << 20, (std::size_t{5} << 20) + 123}) {
        char* const block = static_cast<char*>(AllocatePages(size));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 4096, 0u) << size;
        EXPECT_TRUE(std::all_of(block, block + size, [](char byte) { return byte == 0; })) << size;
        std::memset(block, 0x5A, size);
        FreePages(block, size);
    }
}

TEST(PageMemory, ALargeBlockBeginsAtTheBorderOfALargePage) {
    char* const block = static_cast<char*>(AllocatePages(2 * kHugePage));
#ifndef _WIN32
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % kHugePage, 0U);
#endif
    FreePages(block, 2 * kHugePage);
}

TEST(PageMemory, APopulatedPartKeepsItsBytes) {
    char* const block = static_cast<char*>(AllocatePages(2 * kHugePage));
    block[kHugePage] = 'a';
    block[2 * kHugePage - 1] = 'z';
    PopulatePages(block + kHugePage, kHugePage);
    EXPECT_EQ(block[kHugePage], 'a');
    EXPECT_EQ(block[kHugePage + 1], '\0');
    EXPECT_EQ(block[2 * kHugePage - 1], 'z');
    FreePages(block, 2 * kHugePage);
}

#ifdef MADV_POPULATE_WRITE
TEST(PageMemory, APopulatedPartAndNoOtherHasItsMemory) {
    const auto inMemory = [](char* page) {
        unsigned char known = 0;
        EXPECT_EQ(mincore(page, 1, &known), 0);
        return (known & 1U) != 0;
    };
    char* const block = static_cast<char*>(AllocatePages(3 * kHugePage));
    PopulatePages(block + kHugePage, kHugePage);
    EXPECT_FALSE(inMemory(block));
    EXPECT_TRUE(inMemory(block + kHugePage));
    EXPECT_TRUE(inMemory(block + 2 * kHugePage - 4096));
    EXPECT_FALSE(inMemory(block + 2 * kHugePage));
    FreePages(block, 3 * kHugePage);
}
#endif

TEST(PageMemory, NothingIsABlockTooAndNullMayBeFreed) {
    void* const block = AllocatePages(0);
    EXPECT_NE(block, nullptr);
    FreePages(block, 0);
    FreePages(nullptr, 100);
}

TEST(PageMemory, WhatNoMachineHasThrows) {
    EXPECT_THROW(AllocatePages(std::numeric_limits<std::size_t>::max()), std::bad_alloc);
    EXPECT_THROW(AllocatePages(std::numeric_limits<std::size_t>::max() / 2 - 4096), std::bad_alloc);
}

TEST(ProcessMemory, ThePeakGrowsWithWhatIsTouchedAndNeverShrinks) {
    const std::uint64_t before = PeakResidentBytes();
    EXPECT_GT(before, 0u);
    // More than all that other tests may have touched in this process.
    const std::size_t size = static_cast<std::size_t>(before) + (std::size_t{32} << 20);
    void* const block = AllocatePages(size);
    std::memset(block, 1, size);
    const std::uint64_t with = PeakResidentBytes();
    FreePages(block, size);
    EXPECT_GE(with, size);
    // The system counts in batches of pages.
    EXPECT_GE(PeakResidentBytes() + (std::uint64_t{1} << 20), with);
}
