#include "platform/SharedFile.h"
#include "platform/TemporaryFile.h"
#include "support/FileHelper.h"
#include "support/TestFolder.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#ifndef _WIN32
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#endif

using namespace carvelot::platform;
using namespace carvelot::test;

namespace {

std::string ReadAll(SharedFile& file) {
    std::string bytes(std::size_t{1} << 16, '\0');
    bytes.resize(file.Read(bytes.data(), bytes.size()));
    return bytes;
}

} // namespace

TEST(SharedFile, ReadsAFileWholeAndAgainAfterRewind) {
    const TestFolder folder;
    const std::string path = folder.Write("log", std::string("a\r\n\0\x1A\xFFz", 7));
    SharedFile file = SharedFile::OpenForReading(path);
    ASSERT_TRUE(file);
    EXPECT_EQ(file.Size(), 7u);
    EXPECT_EQ(ReadAll(file), std::string("a\r\n\0\x1A\xFFz", 7));
    EXPECT_EQ(ReadAll(file), "");
    ASSERT_TRUE(file.Rewind());
    EXPECT_EQ(ReadAll(file), std::string("a\r\n\0\x1A\xFFz", 7));
}

TEST(SharedFile, AReadGivesExactlyWhatIsAskedForUntilTheEnd) {
    const TestFolder folder;
    SharedFile file = SharedFile::OpenForReading(folder.Write("log", "0123456789"));
    char buffer[8] = {};
    EXPECT_EQ(file.Read(buffer, 4), 4u);
    EXPECT_EQ(std::string(buffer, 4), "0123");
    EXPECT_EQ(file.Read(buffer, 0), 0u);
    EXPECT_EQ(file.Read(buffer, 8), 6u);
    EXPECT_EQ(std::string(buffer, 6), "456789");
    EXPECT_EQ(file.Read(buffer, 8), 0u);
}

TEST(SharedFile, AMissingFileIsErrorTwo) {
    const TestFolder folder;
    int error = 0;
    EXPECT_FALSE(SharedFile::OpenForReading(folder.Path("missing"), &error));
    EXPECT_EQ(error, 2); // ENOENT and ERROR_FILE_NOT_FOUND alike
}

TEST(SharedFile, ADirectoryDoesNotOpenForAnything) {
    const TestFolder folder;
    int error = 0;
    EXPECT_FALSE(SharedFile::OpenForReading(folder.Path(), &error));
    EXPECT_NE(error, 0);
    error = 0;
    EXPECT_FALSE(TruncateShared(folder.Path(), &error));
    EXPECT_NE(error, 0);
    EXPECT_EQ(SharedFileSize(folder.Path()), -1);
    EXPECT_FALSE(AppendFile::Open(folder.Path()));
}

TEST(SharedFile, APathBelowAFileDoesNotOpen) {
    const TestFolder folder;
    const std::string path = folder.Write("file", "x") + "/below";
    int error = 0;
    EXPECT_FALSE(SharedFile::OpenForReading(path, &error));
    EXPECT_NE(error, 0);
    EXPECT_FALSE(TruncateShared(path));
    EXPECT_FALSE(AppendFile::Open(path));
    EXPECT_EQ(SharedFileSize(path), -1);
}

TEST(SharedFile, APathWithANulDoesNotExist) {
    const TestFolder folder;
    const std::string path = folder.Write("file", "x") + std::string("\0tail", 5);
    int error = 0;
    EXPECT_FALSE(SharedFile::OpenForReading(path, &error));
    EXPECT_EQ(error, 2);
    EXPECT_FALSE(TruncateShared(path));
    EXPECT_FALSE(AppendFile::Open(path));
    EXPECT_FALSE(DeleteFileAt(path));
    EXPECT_EQ(folder.Read("file"), "x");
}

TEST(SharedFile, NamesBeyondAsciiAreUtf8) {
    const TestFolder folder;
    const std::string path = folder.Write("\xC3\xBC"
                                          "ber \xE6\x97\xA5\xE6\x9C\xAC.log",
                                          "text");
    SharedFile file = SharedFile::OpenForReading(path);
    ASSERT_TRUE(file);
    EXPECT_EQ(ReadAll(file), "text");
    EXPECT_EQ(SharedFileSize(path), 4);
    AppendFile append = AppendFile::Open(path);
    EXPECT_TRUE(append.Write("+"));
    append.Close();
    EXPECT_EQ(SharedFileSize(path), 5);
    EXPECT_TRUE(TruncateShared(path));
    EXPECT_EQ(SharedFileSize(path), 0);
    file.Close();
    EXPECT_TRUE(DeleteFileAt(path));
    EXPECT_EQ(SharedFileSize(path), -1);
}

TEST(SharedFile, PathsLongerThan260CharactersOpen) {
    const TestFolder folder;
    std::string path = folder.Path();
    for (int depth = 0; depth < 6; ++depth) {
        path += "/" + std::string(60, static_cast<char>('a' + depth));
    }
#ifdef _WIN32
    // The library of the test's own file calls stops at 260 characters.
    std::string prefixed = "\\\\?\\" + path;
    for (char& character : prefixed) {
        if (character == '/') {
            character = '\\';
        }
    }
    std::filesystem::create_directories(ToPath(prefixed));
#else
    std::filesystem::create_directories(ToPath(path));
#endif
    path += "/jdedebug.log";
    AppendFile append = AppendFile::Open(path);
    ASSERT_TRUE(append);
    EXPECT_TRUE(append.Write("line\n"));
    append.Close();
    SharedFile file = SharedFile::OpenForReading(path);
    ASSERT_TRUE(file);
    EXPECT_EQ(ReadAll(file), "line\n");
    file.Close();
    EXPECT_TRUE(DeleteFileAt(path));
}

TEST(SharedFile, AMovedFromFileIsClosedAndAMovedToFileKeepsItsPlace) {
    const TestFolder folder;
    SharedFile first = SharedFile::OpenForReading(folder.Write("log", "0123456789"));
    char buffer[4];
    first.Read(buffer, 4);
    SharedFile second = std::move(first);
    EXPECT_FALSE(first); // NOLINT(bugprone-use-after-move): what is left behind is the point
    EXPECT_EQ(ReadAll(second), "456789");
    second.Close();
    EXPECT_FALSE(second);
    EXPECT_EQ(second.Read(buffer, 4), 0u);
    EXPECT_EQ(second.Size(), 0u);
}

TEST(SharedFile, AnotherProcessCanOpenAppendAndEmptyAFileThatWeRead) {
    const TestFolder folder;
    const std::string path = folder.Write("log", "first\n");
    SharedFile file = SharedFile::OpenForReading(path);
    ASSERT_TRUE(file);
    FileHelper helper(path);
    ASSERT_TRUE(helper.Do("open"));
    ASSERT_TRUE(helper.Do("append second"));
    EXPECT_EQ(ReadAll(file), "first\nsecond\n");
    ASSERT_TRUE(helper.Do("append third"));
    EXPECT_EQ(ReadAll(file), "third\n") << "what was appended behind the end is read on";
    ASSERT_TRUE(helper.Do("empty"));
    EXPECT_EQ(file.Size(), 0u);
    EXPECT_EQ(ReadAll(file), "");
    ASSERT_TRUE(helper.Do("append new"));
    ASSERT_TRUE(file.Rewind());
    EXPECT_EQ(ReadAll(file), "new\n");
}

TEST(SharedFile, AFileThatAnotherProcessWritesOpensIsMeasuredAppendedAndEmptied) {
    const TestFolder folder;
    const std::string path = folder.Write("log", "");
    FileHelper helper(path);
    ASSERT_TRUE(helper.Do("open"));
    ASSERT_TRUE(helper.Do("append one"));
    EXPECT_EQ(SharedFileSize(path), 4);
    AppendFile append = AppendFile::Open(path);
    ASSERT_TRUE(append);
    EXPECT_TRUE(append.Write("ours\n"));
    ASSERT_TRUE(helper.Do("append two"));
    EXPECT_TRUE(append.Write("again\n"));
    SharedFile file = SharedFile::OpenForReading(path);
    ASSERT_TRUE(file);
    EXPECT_EQ(ReadAll(file), "one\nours\ntwo\nagain\n");
    EXPECT_TRUE(TruncateShared(path));
    ASSERT_TRUE(helper.Do("append three"));
    EXPECT_EQ(folder.Read("log"), "three\n");
}

#ifdef _WIN32
TEST(SharedFile, AFileThatAnotherProcessSharesWithNobodyDoesNotOpen) {
    const TestFolder folder;
    const std::string path = folder.Write("log", "text");
    FileHelper helper(path);
    ASSERT_TRUE(helper.Do("exclusive"));
    int error = 0;
    EXPECT_FALSE(SharedFile::OpenForReading(path, &error));
    EXPECT_EQ(error, 32); // ERROR_SHARING_VIOLATION
    EXPECT_FALSE(TruncateShared(path));
    EXPECT_FALSE(AppendFile::Open(path));
    EXPECT_EQ(SharedFileSize(path), -1);
    ASSERT_TRUE(helper.Do("close"));
    EXPECT_TRUE(SharedFile::OpenForReading(path));
    EXPECT_EQ(folder.Read("log"), "text");
}
#else
TEST(SharedFile, OffWindowsALockOfAnotherProcessHindersNothing) {
    const TestFolder folder;
    const std::string path = folder.Write("log", "text");
    FileHelper helper(path);
    ASSERT_TRUE(helper.Do("exclusive"));
    SharedFile file = SharedFile::OpenForReading(path);
    ASSERT_TRUE(file);
    EXPECT_EQ(ReadAll(file), "text");
    EXPECT_EQ(SharedFileSize(path), 4);
}

TEST(SharedFile, APipeASocketAndADeviceFailAtOnceAndNeverBlock) {
    const TestFolder folder;
    const std::string pipe = folder.Path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string socketPath = folder.Path("socket");
    const int socketFile = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(socketPath.size(), sizeof address.sun_path);
    socketPath.copy(address.sun_path, socketPath.size());
    ASSERT_EQ(bind(socketFile, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    for (const std::string& path : {pipe, socketPath, std::string("/dev/null"), std::string("/dev/zero")}) {
        int error = 0;
        EXPECT_FALSE(SharedFile::OpenForReading(path, &error)) << path;
        EXPECT_NE(error, 0) << path;
        EXPECT_FALSE(TruncateShared(path)) << path;
        EXPECT_EQ(SharedFileSize(path), -1) << path;
    }
    EXPECT_FALSE(AppendFile::Open(pipe)) << "nobody reads it";
    close(socketFile);
}

TEST(SharedFile, ALinkLeadsToItsFile) {
    const TestFolder folder;
    folder.Write("log", "text");
    ASSERT_EQ(symlink("log", folder.Path("link").c_str()), 0);
    SharedFile file = SharedFile::OpenForReading(folder.Path("link"));
    ASSERT_TRUE(file);
    EXPECT_EQ(ReadAll(file), "text");
}

TEST(AppendFile, AFullDiskMakesTheWriteFail) {
    AppendFile file = AppendFile::Open("/dev/full");
    ASSERT_TRUE(file);
    EXPECT_FALSE(file.Write("line\n"));
}
#endif

TEST(SharedFileSize, IsMinusOneFrom2GiBOn) {
    const TestFolder folder;
    const std::string path = folder.Write("log", "");
    std::error_code error;
    std::filesystem::resize_file(ToPath(path), std::uintmax_t{0x7FFFFFFF}, error);
    if (error) {
        GTEST_SKIP() << "no room for a sparse file of 2 GiB: " << error.message();
    }
    EXPECT_EQ(SharedFileSize(path), std::numeric_limits<std::int32_t>::max());
    std::filesystem::resize_file(ToPath(path), std::uintmax_t{0x80000000}, error);
    ASSERT_FALSE(error);
    EXPECT_EQ(SharedFileSize(path), -1);
    EXPECT_EQ(SharedFile::OpenForReading(path).Size(), std::uint64_t{0x80000000});
}

TEST(SharedFileSize, OfAFileThatMayNotBeWrittenIsMinusOne) {
    TestFolder folder;
    const std::string path = folder.Write("log", "text");
    if (!folder.Protect("log")) {
        GTEST_SKIP() << "this user may write everything";
    }
    EXPECT_EQ(SharedFileSize(path), -1);
    EXPECT_TRUE(SharedFile::OpenForReading(path));
}

TEST(TruncateShared, EmptiesAFileAndLeavesItThere) {
    const TestFolder folder;
    const std::string path = folder.Write("log", "text");
    EXPECT_TRUE(TruncateShared(path));
    EXPECT_TRUE(folder.Exists("log"));
    EXPECT_EQ(folder.Read("log"), "");
}

TEST(TruncateShared, MakesNoFileThatIsMissing) {
    const TestFolder folder;
    int error = 0;
    EXPECT_FALSE(TruncateShared(folder.Path("missing"), &error));
    EXPECT_EQ(error, 2);
    EXPECT_FALSE(folder.Exists("missing"));
}

TEST(AppendFile, MakesAMissingFileAndKeepsWhatAnExistingOneHolds) {
    const TestFolder folder;
    AppendFile file = AppendFile::Open(folder.Path("log"));
    ASSERT_TRUE(file);
    EXPECT_TRUE(file.Write("one\n"));
    file.Close();
    file = AppendFile::Open(folder.Path("log"));
    EXPECT_TRUE(file.Write(""));
    EXPECT_TRUE(file.Write("two\n"));
    file.Close();
    EXPECT_EQ(folder.Read("log"), "one\ntwo\n") << "line feeds stay as they are";
    EXPECT_FALSE(file);
    EXPECT_FALSE(file.Write("three\n"));
}

TEST(AppendFile, GoesOnWhereItIsMovedTo) {
    const TestFolder folder;
    AppendFile first = AppendFile::Open(folder.Path("log"));
    EXPECT_TRUE(first.Write("1"));
    AppendFile second(std::move(first));
    EXPECT_FALSE(first);
    EXPECT_FALSE(first.Write("lost"));
    EXPECT_TRUE(second.Write("2"));
    AppendFile third = AppendFile::Open(folder.Path("other"));
    third = std::move(second);
    EXPECT_FALSE(second);
    EXPECT_TRUE(third.Write("3"));
    third.Close();
    EXPECT_EQ(folder.Read("log"), "123");
    EXPECT_EQ(folder.Read("other"), "");
}

TEST(AppendFile, TwoWritersNeverOverwriteEachOther) {
    const TestFolder folder;
    AppendFile one = AppendFile::Open(folder.Path("log"));
    AppendFile other = AppendFile::Open(folder.Path("log"));
    std::string expected;
    for (int line = 0; line < 100; ++line) {
        const std::string text = "line " + std::to_string(line) + "\n";
        EXPECT_TRUE((line % 2 == 0 ? one : other).Write(text));
        expected += text;
    }
    EXPECT_EQ(folder.Read("log"), expected);
}
