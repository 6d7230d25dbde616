#include "platform/Processes.h"
#include "support/FileHelper.h"
#include "support/TestFolder.h"

#include <algorithm>
#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#endif

using namespace carvelot::platform;
using namespace carvelot::test;

namespace {

std::string NameOf(std::uint32_t process) {
    std::vector<ProcessEntry> processes;
    EXPECT_TRUE(EnumerateProcesses(processes));
    for (const ProcessEntry& entry : processes) {
        if (entry.m_nProcess == process) {
            return entry.m_strImageName;
        }
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

#ifndef _WIN32
// A process of a program's copy under another name, which ends with the object.
class Running {
public:
    Running(const TestFolder& folder, const char* name, std::vector<std::string> arguments)
        : m_program(folder.Path(name)) {
        std::filesystem::copy_file(CARVELOT_FILE_HELPER, m_program);
        arguments.insert(arguments.begin() + 1, folder.Path("log"));
        std::vector<char*> words;
        for (std::string& argument : arguments) {
            words.push_back(argument.data());
        }
        words.push_back(nullptr);
        int pipes[2];
        int answers[2];
        EXPECT_EQ(pipe2(pipes, O_CLOEXEC), 0);
        EXPECT_EQ(pipe2(answers, O_CLOEXEC), 0);
        m_child = fork();
        if (m_child == 0) {
            dup2(pipes[0], 0);
            dup2(answers[1], 1);
            execv(m_program.c_str(), words.data());
            _exit(1);
        }
        close(pipes[0]);
        close(answers[1]);
        m_input = pipes[1];
        EXPECT_EQ(write(m_input, "open\n", 5), 5);
        char answer[4];
        EXPECT_EQ(read(answers[0], answer, sizeof answer), 4); // its program runs
        close(answers[0]);
    }
    ~Running() { End(); }
    void End() {
        if (m_input >= 0) {
            close(std::exchange(m_input, -1));
            waitpid(m_child, nullptr, 0);
        }
    }
    std::uint32_t Number() const { return static_cast<std::uint32_t>(m_child); }
    const std::string& Program() const { return m_program; }

private:
    std::string m_program;
    pid_t m_child = -1;
    int m_input = -1;
};
#endif

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
        FileHelper helper(folder.Write("log", ""));
        ASSERT_TRUE(helper.Do("open"));
        EXPECT_EQ(count(), before + 1);
    }
    EXPECT_EQ(count(), before);
#else
    (void)count;
    Running process(folder, "jdenet_k test", {"another name"});
    EXPECT_EQ(NameOf(process.Number()), "jdenet_k test") << "the file's name, not the first argument";
    std::filesystem::remove(process.Program());
    EXPECT_EQ(NameOf(process.Number()), "jdenet_k test") << "its file is gone, its name is not";
    process.End();
    EXPECT_EQ(NameOf(process.Number()), "");
#endif
}

#ifndef _WIN32
TEST(Processes, AProgramUnderWineBearsItsOwnName) {
    const TestFolder folder;
    EXPECT_EQ(NameOf(Running(folder, "wine64-preloader", {"/usr/lib/wine/wine64", "C:\\B9\\fda.EXE", "y.exe"})
                         .Number()),
              "fda.EXE");
    const TestFolder native;
    EXPECT_EQ(NameOf(Running(native, "wine", {"Z:/opt/jde/activConsole.exe"}).Number()), "activConsole.exe");
    const TestFolder server;
    EXPECT_EQ(NameOf(Running(server, "wineserver", {"wineserver", ".exe"}).Number()), "wineserver")
        << "an ending alone is no program";
    const TestFolder other;
    EXPECT_EQ(NameOf(Running(other, "jdenet_n", {"jdenet_n", "C:\\B9\\fda.exe"}).Number()), "jdenet_n")
        << "only Wine runs programs of Windows";
}
#endif
