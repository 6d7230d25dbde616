#include "platform/AtomicFile.h"
#include "platform/ProfileFile.h"
#include "support/TestFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <vector>

#ifndef _WIN32
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#endif

using namespace carvelot::platform;
using namespace carvelot::test;

using Names = std::vector<std::string>;

#ifndef _WIN32
namespace {

// Lets no file of this process grow beyond a size: writes fail as they do on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : m_pOldHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit{bytes, m_old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_pOldHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_old{};
    void (*m_pOldHandler)(int);
};

} // namespace
#endif

TEST(AtomicFile, MakesANewFileOnlyAtCommit) {
    const TestFolder folder;
    AtomicFile file = AtomicFile::Create(folder.Path("new"));
    ASSERT_TRUE(file);
    EXPECT_TRUE(file.Write("one\n"));
    EXPECT_TRUE(file.Write("two\n"));
    EXPECT_FALSE(folder.Exists("new"));
    int error = -1;
    EXPECT_TRUE(file.Commit(&error));
    EXPECT_EQ(error, 0);
    EXPECT_EQ(folder.Read("new"), "one\ntwo\n");
    EXPECT_EQ(folder.Names(), Names{"new"});
    EXPECT_FALSE(file);
    EXPECT_FALSE(file.Write("three"));
    EXPECT_FALSE(file.Commit());
}

TEST(AtomicFile, ReplacesAFileWholeAtCommit) {
    const TestFolder folder;
    const std::string path = folder.Write("file", "old content, longer than the new");
    const std::string content(3'000'000, 'n');
    AtomicFile file = AtomicFile::Create(path);
    EXPECT_TRUE(file.Write(content));
    EXPECT_EQ(folder.Read("file"), "old content, longer than the new");
    EXPECT_TRUE(file.Commit());
    EXPECT_EQ(folder.Read("file"), content);
    EXPECT_EQ(folder.Names(), Names{"file"});
}

TEST(AtomicFile, WithoutCommitTheTargetIsAsItWasAndNothingIsLeft) {
    const TestFolder folder;
    const std::string path = folder.Write("file", "old");
    {
        AtomicFile file = AtomicFile::Create(path);
        EXPECT_TRUE(file.Write(std::string(200'000, 'n')));
        AtomicFile fresh = AtomicFile::Create(folder.Path("fresh"));
        EXPECT_TRUE(fresh.Write("text"));
    }
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_EQ(folder.Names(), Names{"file"});
}

TEST(AtomicFile, AnEmptyFileIsAFileToo) {
    const TestFolder folder;
    EXPECT_TRUE(AtomicFile::Create(folder.Path("empty")).Commit());
    EXPECT_TRUE(folder.Exists("empty"));
    EXPECT_EQ(folder.Read("empty"), "");
}

TEST(AtomicFile, AFolderAMissingFolderAndAnEmptyPathAreErrors) {
    const TestFolder folder;
    int error = 0;
    EXPECT_FALSE(AtomicFile::Create(folder.Path(), &error));
    EXPECT_NE(error, 0);
    error = 0;
    EXPECT_FALSE(AtomicFile::Create(folder.Path("missing/file"), &error));
    EXPECT_NE(error, 0);
    error = 0;
    EXPECT_FALSE(AtomicFile::Create("", &error));
    EXPECT_NE(error, 0);
    error = 0;
    EXPECT_FALSE(AtomicFile::Create(folder.Path("file") + std::string("\0x", 2), &error));
    EXPECT_NE(error, 0);
    EXPECT_EQ(folder.Names(), Names{});
}

TEST(AtomicFile, NamesBeyondAsciiAndOfTheGreatestLengthWork) {
    const TestFolder folder;
    for (const std::string& name : {std::string("\xC3\xBC"
                                                "ber.csv"),
                                    std::string(251, 'n') + ".csv"}) {
        AtomicFile file = AtomicFile::Create(folder.Path(name));
        ASSERT_TRUE(file) << name;
        EXPECT_TRUE(file.Write("text"));
        EXPECT_TRUE(file.Commit()) << name;
        EXPECT_EQ(folder.Read(name), "text");
    }
}

TEST(AtomicFile, AProtectedFileFailsAndStays) {
    TestFolder folder;
    const std::string path = folder.Write("file", "old");
    if (!folder.Protect("file")) {
        GTEST_SKIP() << "this user may write everything";
    }
    int error = 0;
    EXPECT_FALSE(AtomicFile::Create(path, &error));
    EXPECT_NE(error, 0);
    EXPECT_EQ(folder.Read("file"), "old");
}

#ifndef _WIN32
TEST(AtomicFile, AnExistingFileKeepsItsModeAndANewOneHasThatOfTheUser) {
    const TestFolder folder;
    const std::string path = folder.Write("file", "old");
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    AtomicFile file = AtomicFile::Create(path);
    file.Write("new");
    EXPECT_TRUE(file.Commit());
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0640u);

    const mode_t old = umask(0027);
    EXPECT_TRUE(AtomicFile::Create(folder.Path("new")).Commit());
    umask(old);
    ASSERT_EQ(stat(folder.Path("new").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0640u);
}

TEST(AtomicFile, ANameThatAnotherFileHasIsPassedOver) {
    const TestFolder folder;
    Names names;
    {
        AtomicFile first = AtomicFile::Create(folder.Path("first"));
        names = folder.Names();
    }
    ASSERT_EQ(names.size(), 1U);
    // ".carvelot-<process>-<number>.tmp": the next numbers are taken.
    const std::size_t dash = names[0].rfind('-');
    const int number = std::stoi(names[0].substr(dash + 1));
    Names taken;
    for (int next = number + 1; next <= number + 3; ++next) {
        taken.push_back(names[0].substr(0, dash + 1) + std::to_string(next) + ".tmp");
        folder.Write(taken.back(), "another's");
    }
    AtomicFile file = AtomicFile::Create(folder.Path("file"));
    ASSERT_TRUE(file);
    EXPECT_TRUE(file.Write("text"));
    EXPECT_TRUE(file.Commit());
    EXPECT_EQ(folder.Read("file"), "text");
    for (const std::string& name : taken) {
        EXPECT_EQ(folder.Read(name), "another's") << name;
    }
    EXPECT_EQ(folder.Names().size(), 4U);
}

TEST(AtomicFile, OfALinkTheFileBehindItIsReplaced) {
    const TestFolder folder;
    std::filesystem::create_directory(folder.Path("there"));
    folder.Write("there/file", "old");
    ASSERT_EQ(symlink("there/file", folder.Path("link").c_str()), 0);
    ASSERT_EQ(symlink("link", folder.Path("chain").c_str()), 0);
    ASSERT_EQ(symlink("there/new", folder.Path("dangling").c_str()), 0);
    for (const char* name : {"chain", "dangling"}) {
        AtomicFile file = AtomicFile::Create(folder.Path(name));
        ASSERT_TRUE(file) << name;
        EXPECT_TRUE(file.Write(name));
        EXPECT_TRUE(file.Commit()) << name;
        EXPECT_TRUE(std::filesystem::is_symlink(folder.Path(name)));
    }
    EXPECT_EQ(folder.Read("there/file"), "chain");
    EXPECT_EQ(folder.Read("there/new"), "dangling");
    ASSERT_EQ(symlink("self", folder.Path("self").c_str()), 0);
    EXPECT_FALSE(AtomicFile::Create(folder.Path("self/file")));
}

TEST(AtomicFile, ALinkToItselfIsAnError) {
    const TestFolder folder;
    ASSERT_EQ(symlink("self", folder.Path("self").c_str()), 0);
    int error = 0;
    EXPECT_FALSE(AtomicFile::Create(folder.Path("self"), &error));
    EXPECT_EQ(error, ELOOP);
}

TEST(AtomicFile, ADeviceIsWrittenDirectlyAndStaysADevice) {
    AtomicFile null = AtomicFile::Create("/dev/null");
    ASSERT_TRUE(null);
    EXPECT_TRUE(null.Write("text"));
    EXPECT_TRUE(null.Commit());
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(AtomicFile, AFullDiskIsAnErrorOfCommitAtTheLatest) {
    AtomicFile full = AtomicFile::Create("/dev/full");
    ASSERT_TRUE(full);
    EXPECT_TRUE(full.Write("a short text waits in the buffer"));
    int error = 0;
    EXPECT_FALSE(full.Commit(&error));
    EXPECT_EQ(error, ENOSPC);

    full = AtomicFile::Create("/dev/full");
    EXPECT_FALSE(full.Write(std::string(1'000'000, 'x')));
    EXPECT_FALSE(full.Write("more"));
    error = 0;
    EXPECT_FALSE(full.Commit(&error));
    EXPECT_EQ(error, ENOSPC);
}

TEST(AtomicFile, ADiskThatGetsFullLeavesTheOldContentAndNothingBesideIt) {
    const TestFolder folder;
    const std::string path = folder.Write("file", "old");
    const FileSizeLimit limit(100'000);
    for (const std::size_t size : {std::size_t{150'000}, std::size_t{1'000'000}}) {
        AtomicFile file = AtomicFile::Create(path);
        ASSERT_TRUE(file);
        file.Write(std::string(size, 'x'));
        int error = 0;
        EXPECT_FALSE(file.Commit(&error));
        EXPECT_EQ(error, EFBIG);
        EXPECT_EQ(folder.Read("file"), "old");
        EXPECT_EQ(folder.Names(), Names{"file"});
    }
    EXPECT_FALSE(WriteProfileText("A", "k", std::string(200'000, 'x'), path));
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_EQ(folder.Names(), Names{"file"});
}

TEST(AtomicFile, APipeIsWrittenDirectly) {
    const TestFolder folder;
    const std::string path = folder.Path("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::string received;
    std::thread reader([&] {
        const int file = open(path.c_str(), O_RDONLY);
        char buffer[4096];
        for (ssize_t count; (count = read(file, buffer, sizeof buffer)) > 0;) {
            received.append(buffer, static_cast<std::size_t>(count));
        }
        close(file);
    });
    AtomicFile file = AtomicFile::Create(path);
    EXPECT_TRUE(file);
    const std::string content(300'000, 'p');
    EXPECT_TRUE(file.Write(content));
    EXPECT_TRUE(file.Commit());
    reader.join();
    EXPECT_EQ(received, content);
}

TEST(AtomicFile, APipeThatNobodyReadsIsAnErrorAndNoWaitWithoutEnd) {
    const TestFolder folder;
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    int error = 0;
    EXPECT_FALSE(AtomicFile::Create(folder.Path("pipe"), &error));
    EXPECT_EQ(error, ENXIO);
}

TEST(AtomicFile, WhereNothingCanBeMadeBesideItAWritableFileIsWrittenAtCommit) {
    // /proc lets existing files be written and none be made.
    const std::string path = "/proc/self/comm";
    AtomicFile file = AtomicFile::Create(path);
    ASSERT_TRUE(file);
    EXPECT_TRUE(file.Write("atomic-test"));
    int error = 0;
    EXPECT_TRUE(file.Commit(&error)) << error;
    char name[32] = {};
    const int opened = open(path.c_str(), O_RDONLY);
    EXPECT_GT(read(opened, name, sizeof name - 1), 0);
    close(opened);
    EXPECT_STREQ(name, "atomic-test\n");
}
#endif
