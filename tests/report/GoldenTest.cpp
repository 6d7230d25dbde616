// The whole JSON of each sample and of some malformed logs, byte for byte. tests/golden/update writes them
// anew.
#include "report/ReportRun.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace carvelot::test {

namespace {

const std::filesystem::path kRoot = CARVELOT_SOURCE_FOLDER;

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

// Without the member that holds the path as it was given.
std::string WithoutPath(const std::string& json) { return json.substr(json.find(",\"format\":")); }

std::vector<std::string> Logs() {
    std::vector<std::string> logs;
    for (const char* folder : {"samples", "tests/golden"}) {
        for (const auto& entry : std::filesystem::directory_iterator(kRoot / folder)) {
            if (entry.path().extension() == ".log") {
                logs.push_back(entry.path().string());
            }
        }
    }
    return logs;
}

} // namespace

TEST(Golden, EveryLogGivesItsJson) {
    const std::vector<std::string> logs = Logs();
    EXPECT_GE(logs.size(), 9U);
    for (const std::string& log : logs) {
#ifdef _WIN32
        // Its texts are UTF-8, which is the code page of few Windows machines.
        if (log.find("utf-8") != std::string::npos || log.find("odd-") != std::string::npos) {
            continue;
        }
#endif
        std::ostringstream out;
        std::ostringstream err;
        ASSERT_EQ(RunReport({"--json", log}, out, err), 0) << log << err.str();
        const std::string expected =
            ReadFile(kRoot / "tests/golden" / std::filesystem::path(log).stem().concat(".json"));
        ASSERT_FALSE(expected.empty()) << log;
        EXPECT_TRUE(WithoutPath(out.str()) == WithoutPath(expected))
            << log << " no longer gives tests/golden/" << std::filesystem::path(log).stem().string()
            << ".json";
    }
}

} // namespace carvelot::test
