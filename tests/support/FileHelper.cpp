#include "support/FileHelper.h"

#include <algorithm>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <process.h>
#else
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace carvelot::test {

FileHelper::FileHelper(const std::string& path) {
    std::string program = CARVELOT_FILE_HELPER;
#ifdef _WIN32
    std::replace(program.begin(), program.end(), '/', '\\');
#endif
    if (!Start(program, path)) {
        std::fprintf(stderr, "%s does not start\n", program.c_str());
    }
}

FileHelper::~FileHelper() {
    if (m_hCommands != nullptr) {
        std::fclose(m_hCommands); // it ends with its input
        End();
        std::fclose(m_hAnswers);
    }
}

bool FileHelper::Do(const std::string& command) {
    if (m_hCommands == nullptr) {
        return false;
    }
    std::fputs((command + "\n").c_str(), m_hCommands);
    std::fflush(m_hCommands);
    char answer[64];
    return std::fgets(answer, sizeof answer, m_hAnswers) != nullptr &&
           std::string_view(answer).starts_with("done");
}

bool FileHelper::Write(std::string_view bytes) {
    std::string command = "write ";
    for (const char byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        command += digits;
    }
    return Do(command);
}

// Neither end of a pipe that stays here may be inherited: the process would never see its input end.
#ifdef _WIN32
bool FileHelper::Start(const std::string& program, const std::string& path) {
    int commands[2];
    int answers[2];
    if (_pipe(commands, 1 << 16, _O_BINARY | _O_NOINHERIT) != 0 ||
        _pipe(answers, 1 << 16, _O_BINARY | _O_NOINHERIT) != 0) {
        return false;
    }
    // What it gets as its own is what stands in the place of ours for a moment.
    std::fflush(stdout);
    const int input = _dup(0);
    const int output = _dup(1);
    _dup2(commands[0], 0);
    _dup2(answers[1], 1);
    m_nProcess = _spawnl(_P_NOWAIT, program.c_str(), ('"' + program + '"').c_str(),
                         ('"' + path + '"').c_str(), nullptr);
    _dup2(input, 0);
    _dup2(output, 1);
    for (const int file : {input, output, commands[0], answers[1]}) {
        _close(file);
    }
    if (m_nProcess == -1) {
        return false;
    }
    m_hCommands = _fdopen(commands[1], "wb");
    m_hAnswers = _fdopen(answers[0], "rb");
    return m_hCommands != nullptr && m_hAnswers != nullptr;
}

void FileHelper::End() { _cwait(nullptr, m_nProcess, 0); }
#else
bool FileHelper::Start(const std::string& program, const std::string& path) {
    int commands[2];
    int answers[2];
    if (pipe2(commands, O_CLOEXEC) != 0 || pipe2(answers, O_CLOEXEC) != 0) {
        return false;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, commands[0], 0);
    posix_spawn_file_actions_adddup2(&actions, answers[1], 1);
    char* const words[] = {const_cast<char*>(program.c_str()), const_cast<char*>(path.c_str()), nullptr};
    pid_t process = -1;
    const int error = posix_spawn(&process, program.c_str(), &actions, nullptr, words, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(commands[0]);
    close(answers[1]);
    if (error != 0) {
        return false;
    }
    m_nProcess = process;
    m_hCommands = fdopen(commands[1], "w");
    m_hAnswers = fdopen(answers[0], "r");
    return m_hCommands != nullptr && m_hAnswers != nullptr;
}

void FileHelper::End() { waitpid(static_cast<pid_t>(m_nProcess), nullptr, 0); }
#endif

} // namespace carvelot::test
