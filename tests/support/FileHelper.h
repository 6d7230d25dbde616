// The test's hand on a second process that works on a file: see tests/helper/FileHelper.cpp for its commands.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace carvelot::test {

class FileHelper {
public:
    /// Starts the process. All its commands are about the file at `path`.
    explicit FileHelper(const std::string& path);
    ~FileHelper();
    FileHelper(const FileHelper&) = delete;
    FileHelper& operator=(const FileHelper&) = delete;

    /// Sends one command and waits until the process says that it is done; false when it could not be done.
    bool Do(const std::string& command);
    /// The command that writes bytes of any kind.
    bool Write(std::string_view bytes);

private:
    bool Start(const std::string& program, const std::string& path);
    void End();

    std::intptr_t m_nProcess = -1;
    std::FILE* m_hCommands = nullptr; // its standard input
    std::FILE* m_hAnswers = nullptr;  // its standard output
};

} // namespace carvelot::test
