// The test's hand on a second process that works on a file.
#pragma once

#include "support/TestFolder.h"

#include <cstdio>
#include <string>

namespace carvelot::test {

class FileHelper {
public:
    /// Starts the process; its marks stand in `folder`, which must outlive it.
    FileHelper(const TestFolder& folder, const std::string& path);
    ~FileHelper();
    FileHelper(const FileHelper&) = delete;
    FileHelper& operator=(const FileHelper&) = delete;

    /// Sends one command and waits until it is done; false when it could not be done.
    bool Do(const std::string& command);

private:
    const TestFolder& m_folder;
    std::FILE* m_hPipe = nullptr;
    int m_nCommands = 0;
};

} // namespace carvelot::test
