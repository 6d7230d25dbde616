#include "sources/PipeSource.h"

#include "support/TestFolder.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

std::string ReadSome(ILogSource& source, std::size_t size) {
    std::string bytes(size, '\0');
    bytes.resize(source.Read(bytes.data(), size));
    return bytes;
}

} // namespace

TEST(PipeSource, GivesAgainWhatHasBeenReadUntilItStartsOverForGood) {
    const TestFolder folder;
    platform::PipeFile pipe = platform::PipeFile::Open(folder.Write("pipe", "0123456789"));
    ASSERT_TRUE(pipe);
    CPipeSource source(pipe);
    EXPECT_EQ(source.Size(), 0U);
    EXPECT_FALSE(source.Seek(0));
    EXPECT_EQ(ReadSome(source, 3), "012");
    source.Rewind();
    EXPECT_EQ(ReadSome(source, 2), "01");
    EXPECT_EQ(ReadSome(source, 4), "2345") << "partly again";
    EXPECT_EQ(source.Progress().done, 6U);
    source.RewindForGood();
    source.Rewind();
    EXPECT_EQ(ReadSome(source, 4), "0123");
    EXPECT_EQ(ReadSome(source, 100), "456789");
    EXPECT_EQ(ReadSome(source, 100), "");
    EXPECT_EQ(source.Progress().done, 10U);
    EXPECT_EQ(source.Progress().all, 0U);
}

TEST(PipeFile, IsReadOnFromWhereItIsMovedTo) {
    const TestFolder folder;
    platform::PipeFile first = platform::PipeFile::Open(folder.Write("pipe", "0123456789"));
    char bytes[4] = {};
    EXPECT_EQ(first.Read(bytes, 2), 2U);
    platform::PipeFile second(std::move(first));
    EXPECT_FALSE(first);
    EXPECT_EQ(second.Read(bytes, 3), 3U);
    EXPECT_STREQ(bytes, "234");
    platform::PipeFile third;
    third = std::move(second);
    EXPECT_FALSE(second);
    EXPECT_EQ(third.Read(bytes, 3), 3U);
    EXPECT_STREQ(bytes, "567");
}

TEST(PipeFile, IsAtNoPathOfAFileOrAFolder) {
    const TestFolder folder;
    EXPECT_FALSE(platform::PipeFile::IsAt(folder.Write("file", "x")));
    EXPECT_FALSE(platform::PipeFile::IsAt(folder.Path()));
    EXPECT_FALSE(platform::PipeFile::IsAt(folder.Path("missing")));
    EXPECT_FALSE(platform::PipeFile::Open(folder.Path("missing")));
}

} // namespace carvelot::test
