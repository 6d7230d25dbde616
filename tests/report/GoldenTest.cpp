// All that the report makes of each sample and of some malformed logs, byte for byte. tests/golden/outputs
// lists the kinds of output, tests/golden/update writes them anew.
#include "platform/TemporaryFile.h"
#include "report/ReportRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace carvelot::test {

namespace {

const std::filesystem::path kRoot = CARVELOT_SOURCE_FOLDER;

// Outputs name their log, and the golden ones do so from the root.
class InRoot {
public:
    InRoot() { std::filesystem::current_path(kRoot); }
    ~InRoot() { std::filesystem::current_path(m_before); }
    InRoot(const InRoot&) = delete;
    InRoot& operator=(const InRoot&) = delete;

private:
    const std::filesystem::path m_before = std::filesystem::current_path();
};

struct Output {
    std::string ending;
    std::vector<std::string> options;
};

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

std::vector<Output> Outputs() {
    std::vector<Output> outputs;
    std::ifstream in(kRoot / "tests/golden/outputs");
    for (std::string line; std::getline(in, line);) {
        std::istringstream words(line);
        Output output;
        if (words >> output.ending && output.ending.front() == '.') {
            for (std::string option; words >> option;) {
                output.options.push_back(option);
            }
            outputs.push_back(output);
        }
    }
    return outputs;
}

std::vector<std::string> Logs() {
    std::vector<std::string> logs;
    for (const char* folder : {"samples", "tests/golden"}) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() == ".log") {
                logs.push_back(entry.path().generic_string());
            }
        }
    }
    return logs;
}

// What the report makes of a log: the file that it writes, or what it prints.
std::string Made(const Output& output, const std::string& log) {
    std::vector<std::string> arguments = output.options;
    const auto place = std::find(arguments.begin(), arguments.end(), "FILE");
    const bool isFile = place != arguments.end();
    std::string file;
    if (isFile) {
        file = platform::MakeTemporaryName("GLD").value();
        platform::DeleteFileAt(file);
        file += output.ending;
        *place = file;
    }
    arguments.push_back(log);
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(RunReport(arguments, out, err), 0) << log << err.str();
    if (!isFile) {
        return out.str();
    }
    const std::string written = ReadFile(file);
    platform::DeleteFileAt(file);
    return written;
}

} // namespace

TEST(Golden, EveryLogGivesItsOutputs) {
    const InRoot root;
    const std::vector<std::string> logs = Logs();
    EXPECT_GE(logs.size(), 17U);
    const std::vector<Output> outputs = Outputs();
    EXPECT_GE(outputs.size(), 2U);
    for (const std::string& log : logs) {
#ifdef _WIN32
        // Its texts are UTF-8, which is the code page of few Windows machines.
        if (log.find("utf-8") != std::string::npos || log.find("odd-") != std::string::npos) {
            continue;
        }
#endif
        for (const Output& output : outputs) {
            const std::filesystem::path golden =
                "tests/golden" / std::filesystem::path(log).stem().concat(output.ending);
            EXPECT_TRUE(std::filesystem::exists(golden)) << golden;
            EXPECT_TRUE(Made(output, log) == ReadFile(golden)) << log << " no longer gives " << golden;
        }
    }
}

} // namespace carvelot::test
