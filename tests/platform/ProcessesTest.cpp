#include "platform/Processes.h"
#include "support/FileHelper.h"
#include "support/TestFolder.h"

#include <algorithm>
#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>
#endif

using namespace carvelot::platform;
using namespace carvelot::test;

namespace {

std::string NameOf(std::uint32_t process) {
    std::vector<ProcessEntry> processes;
    EXPECT_TRUE(EnumerateProcesses(processes));
    for (const ProcessEntry& entry : processes) {
        if (entry.m_nProcess == process)
            return entry.m_strImageName;
    }
    return {};
}

std::uint32_t Own() {
#ifdef _WIN32
    return GetCurrentProcessId();
#else
    return static_cast<std::uint32_t>(getpid());
#endif
}

} // namespace

TEST(Processes, OurOwnIsThereUnderTheNameOfItsProgram) {
#ifdef _WIN32
    EXPECT_EQ(NameOf(Own()), "core_tests.exe");
#else
    EXPECT_EQ(NameOf(Own()), "core_tests");
#endif
}

TEST(Processes, EachIsThereOnceAndProcessZeroNever) {
    std::vector<ProcessEntry> processes{{1, "left over"}};
    ASSERT_TRUE(EnumerateProcesses(processes));
    std::vector<std::uint32_t> numbers;
    for (const ProcessEntry& entry : processes) {
        EXPECT_NE(entry.m_nProcess, 0u);
        EXPECT_NE(entry.m_strImageName, "left over");
        EXPECT_NE(entry.m_strImageName, "");
        EXPECT_EQ(entry.m_strImageName.find_first_of("/\\"), std::string::npos) << entry.m_strImageName;
        numbers.push_back(entry.m_nProcess);
    }
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(std::adjacent_find(numbers.begin(), numbers.end()), numbers.end());
    EXPECT_LE(processes.size(), 1024u);
}

TEST(Processes, AnotherProcessAppearsAndGoes) {
    const TestFolder folder;
    const auto count = [] {
        std::vector<ProcessEntry> processes;
        EnumerateProcesses(processes);
        return std::count_if(processes.begin(), processes.end(), [](const ProcessEntry& entry) {
            return entry.m_strImageName == "file_helper" || entry.m_strImageName == "file_helper.exe";
        });
    };
    // Other tests may run one at the same time: a name of our own tells them apart where names can be chosen.
#ifdef _WIN32
    const auto before = count();
    {
        FileHelper helper(folder, folder.Write("log", ""));
        ASSERT_TRUE(helper.Do("open"));
        EXPECT_EQ(count(), before + 1);
    }
    EXPECT_EQ(count(), before);
#else
    (void)count;
    const std::string program = folder.Path("jdenet_k test");
    std::filesystem::copy_file(CARVELOT_FILE_HELPER, program);
    int pipes[2];
    ASSERT_EQ(pipe(pipes), 0);
    const pid_t child = fork();
    if (child == 0) {
        dup2(pipes[0], 0);
        close(pipes[0]);
        close(pipes[1]);
        execl(program.c_str(), "another name", folder.Path("mark").c_str(), folder.Path("log").c_str(),
              nullptr);
        _exit(1);
    }
    close(pipes[0]);
    ASSERT_EQ(write(pipes[1], "open\n", 5), 5);
    for (int wait = 0; wait < 3000 && !folder.Exists("mark.1"); ++wait)
        usleep(1000);
    EXPECT_EQ(NameOf(static_cast<std::uint32_t>(child)), "jdenet_k test")
        << "the file's name, not the first argument";
    std::filesystem::remove(program);
    EXPECT_EQ(NameOf(static_cast<std::uint32_t>(child)), "jdenet_k test")
        << "its file is gone, its name is not";
    close(pipes[1]);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(NameOf(static_cast<std::uint32_t>(child)), "");
#endif
}
