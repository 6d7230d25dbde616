#include "platform/TemporaryFile.h"
#include "support/FileHelper.h"
#include "support/TestFolder.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <unistd.h>
#endif

using namespace carvelot::platform;
using namespace carvelot::test;

namespace {

#ifdef _WIN32
constexpr const char* kTemporaryFolder = "TMP";
#else
constexpr const char* kTemporaryFolder = "TMPDIR";
#endif

} // namespace

TEST(TemporaryFile, ANameIsUniqueBearsThePrefixAndItsFileExistsEmpty) {
    const TestFolder folder;
    const EnvironmentGuard temporary(kTemporaryFolder, folder.Path().c_str());
    const auto first = MakeTemporaryName("NEW");
    const auto second = MakeTemporaryName("NEW");
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    EXPECT_EQ(folder.Names().size(), 2u);
    for (const std::string& name : folder.Names()) {
        EXPECT_EQ(name.substr(0, 3), "NEW");
        EXPECT_EQ(folder.Read(name), "");
    }
}

TEST(TemporaryFile, WithoutAFolderForItThereIsNoNameButAnError) {
    const TestFolder folder;
    const EnvironmentGuard temporary(kTemporaryFolder, folder.Path("missing").c_str());
    int error = 0;
    EXPECT_FALSE(MakeTemporaryName("NEW", &error));
    EXPECT_NE(error, 0);
}

TEST(CopyFileOver, ReplacesTheContentOfAnExistingFile) {
    const TestFolder folder;
    std::string bytes;
    for (int count = 0; count < 300'000; ++count) {
        bytes += std::to_string(count) + "\r\n";
    }
    const std::string from = folder.Write("from", bytes);
    const std::string to = folder.Write("to", std::string(bytes.size() + 1000, 'x'));
    EXPECT_TRUE(CopyFileOver(from, to));
    EXPECT_EQ(folder.Read("to"), bytes);
    EXPECT_TRUE(CopyFileOver(from, folder.Path("new")));
    EXPECT_EQ(folder.Read("new"), bytes);
}

TEST(CopyFileOver, FailsForADirectoryAMissingFileAndAFileOntoItself) {
    const TestFolder folder;
    const std::string file = folder.Write("file", "text");
    EXPECT_FALSE(CopyFileOver(folder.Path(), folder.Path("copy")));
    EXPECT_FALSE(CopyFileOver(folder.Path("missing"), folder.Path("copy")));
    EXPECT_FALSE(folder.Exists("copy"));
    EXPECT_FALSE(CopyFileOver(file, folder.Path()));
    EXPECT_FALSE(CopyFileOver(file, file));
    EXPECT_EQ(folder.Read("file"), "text");
}

TEST(CopyFileOver, CopiesAFileThatAnotherProcessWrites) {
    const TestFolder folder;
    const std::string path = folder.Write("log", "one\n");
    FileHelper helper(path);
    ASSERT_TRUE(helper.Do("open"));
    ASSERT_TRUE(helper.Do("append two"));
    EXPECT_TRUE(CopyFileOver(path, folder.Path("copy")));
    EXPECT_EQ(folder.Read("copy"), "one\ntwo\n");
}

TEST(CopyFileOver, TheCopyOfAProtectedFileCanBeDeleted) {
    TestFolder folder;
    const std::string from = folder.Write("from", "text");
    folder.Protect("from");
    EXPECT_TRUE(CopyFileOver(from, folder.Path("copy")));
    EXPECT_TRUE(DeleteFileAt(folder.Path("copy")));
    EXPECT_FALSE(folder.Exists("copy"));
}

TEST(DeleteFileAt, DeletesFilesAndNoFolders) {
    const TestFolder folder;
    const std::string path = folder.Write("file", "text");
    EXPECT_TRUE(DeleteFileAt(path));
    EXPECT_FALSE(folder.Exists("file"));
    EXPECT_FALSE(DeleteFileAt(path));
    EXPECT_FALSE(DeleteFileAt(folder.Path()));
    EXPECT_TRUE(std::filesystem::exists(ToPath(folder.Path())));
}
