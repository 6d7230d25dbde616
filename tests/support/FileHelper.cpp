#include "support/FileHelper.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace carvelot::test {

namespace {

constexpr const char* kMark = "helper-done";

} // namespace

FileHelper::FileHelper(const TestFolder& folder, const std::string& path) : m_folder(folder) {
    std::string program = CARVELOT_FILE_HELPER;
#ifdef _WIN32
    std::replace(program.begin(), program.end(), '/', '\\');
    m_hPipe = _popen((program + " " + folder.Path(kMark) + " " + path).c_str(), "w");
#else
    m_hPipe = popen((program + " " + folder.Path(kMark) + " " + path).c_str(), "w");
#endif
}

FileHelper::~FileHelper() {
    if (m_hPipe == nullptr) {
        return;
    }
#ifdef _WIN32
    _pclose(m_hPipe);
#else
    pclose(m_hPipe);
#endif
}

bool FileHelper::Do(const std::string& command) {
    if (m_hPipe == nullptr) {
        return false;
    }
    std::fputs((command + "\n").c_str(), m_hPipe);
    std::fflush(m_hPipe);
    const std::string mark = kMark + ("." + std::to_string(++m_nCommands));
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < end) {
        if (m_folder.Exists(mark)) {
            return true;
        }
        if (m_folder.Exists(mark + ".failed")) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return false;
}

} // namespace carvelot::test
