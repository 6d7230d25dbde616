// How the core fares on a generated log, each figure as a ratio to what only reading the file costs in the
// same run.
//
//   carvelot_bench [--carvelot_log=FILE] [--carvelot_size=MEGABYTES] [Google Benchmark's options]
//                                           without a file or a size: logs of 100 MB, 200 MB and 1 GB
//   carvelot_bench --carvelot_peak=FILE     loads FILE and prints the peak of its own memory, in bytes
//   carvelot_bench --carvelot_explore=FILE  the same with all that is told of where its time went
#include "LogGenerator.h"

#include "explore/Findings.h"
#include "platform/ProcessMemory.h"
#include "session/CarvelotDoc.h"
#include "trees/DetailTree.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

namespace carvelot::bench {

namespace {

// What no log holds, so that a search walks all of it.
constexpr const char* kNeedle = "zzQQyy-needle";

class CQuietHost : public ISessionHost {
public:
    void ShowMessage(std::string_view text) override { std::cerr << text << '\n'; }
    void PrintOutput(std::string_view text) override { std::cerr << text; }
};

struct LoadedLog {
    AnalysisSettings settings;
    PendingStatement pending;
    CQuietHost host;
    CCarvelotDoc session{settings, pending, host};

    explicit LoadedLog(const std::string& path) {
        if (!session.OnOpenDocument(path)) {
            std::cerr << "cannot load " << path << '\n';
            std::exit(1);
        }
    }
};

// All that is told of where a whole log's time went.
struct Explored {
    const ExploredSession whole;
    std::future<std::vector<Finding>> findings;
    const ExploredScope scope;

    Explored(const CCarvelotDoc& session, const AnalysisSettings& settings)
        : whole(session, settings), findings(std::async([this] { return FindAll(whole); })),
          scope(whole, {}, {}) {
        findings.wait();
    }
};

// The least that any reader does: large blocks, and every line end found.
std::size_t ReadAndSplit(const std::string& path) {
    std::vector<char> block(1U << 20U);
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    std::size_t lines = 0;
    while (const std::size_t got = std::fread(block.data(), 1, block.size(), file)) {
        const char* at = block.data();
        const char* const end = at + got;
        while ((at = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)))) !=
               nullptr) {
            ++lines;
            ++at;
        }
    }
    std::fclose(file);
    return lines;
}

double Seconds(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

void Register(const std::string& name, const std::string& path) {
    using benchmark::State;
    const auto add = [&](const char* what, auto run) {
        benchmark::RegisterBenchmark((name + "/" + what).c_str(), run)
            ->Unit(benchmark::kMillisecond)
            ->UseManualTime()
            ->Iterations(1)
            ->Repetitions(7);
    };
    add("read-and-split", [path](State& state) {
        for (auto _ : state) {
            const auto start = std::chrono::steady_clock::now();
            benchmark::DoNotOptimize(ReadAndSplit(path));
            state.SetIterationTime(Seconds(start));
        }
    });
    add("load", [path](State& state) {
        for (auto _ : state) {
            const auto start = std::chrono::steady_clock::now();
            auto log = std::make_unique<LoadedLog>(path);
            state.SetIterationTime(Seconds(start));
            state.counters["records"] = static_cast<double>(log->session.m_listDetails.Size());
        }
    });
    add("close", [path](State& state) {
        for (auto _ : state) {
            auto log = std::make_unique<LoadedLog>(path);
            const auto start = std::chrono::steady_clock::now();
            log.reset();
            state.SetIterationTime(Seconds(start));
        }
    });
    add("tree", [path](State& state) {
        const LoadedLog log(path);
        // All records of the log in one tree, whatever their thread.
        std::vector<RecordIndex> records;
        for (std::uint32_t i = 0; i < log.session.m_listDetails.Size(); ++i) {
            records.push_back(RecordIndex{i});
        }
        for (auto _ : state) {
            CDetailTree tree(log.session);
            const auto start = std::chrono::steady_clock::now();
            tree.FillDetails(true, records);
            benchmark::DoNotOptimize(tree.ChildCount(CDetailTree::kRoot));
            state.SetIterationTime(Seconds(start));
            state.counters["nodes"] = static_cast<double>(tree.NodeCount());
        }
    });
    add("explore", [path](State& state) {
        const LoadedLog log(path);
        for (auto _ : state) {
            const auto start = std::chrono::steady_clock::now();
            const Explored explored(log.session, log.settings);
            state.SetIterationTime(Seconds(start));
            state.counters["frames"] = static_cast<double>(explored.whole.frames.Count());
        }
    });
    add("find", [path](State& state) {
        const LoadedLog log(path);
        for (auto _ : state) {
            const auto start = std::chrono::steady_clock::now();
            benchmark::DoNotOptimize(log.session.FindDetails(kNeedle).size());
            state.SetIterationTime(Seconds(start));
        }
    });
    add("grep", [path](State& state) {
        const std::string command =
            std::string("grep -i -F -c -e ") + kNeedle + " '" + path + "' > /dev/null";
        for (auto _ : state) {
            const auto start = std::chrono::steady_clock::now();
            benchmark::DoNotOptimize(std::system(command.c_str()));
            state.SetIterationTime(Seconds(start));
        }
    });
}

// Keeps the least time of each benchmark: noise only ever adds.
class CRatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                const std::string name = run.run_name.function_name;
                const double seconds = run.GetAdjustedRealTime() / 1000;
                const auto known = m_seconds.try_emplace(name, seconds).first;
                known->second = std::min(known->second, seconds);
            }
        }
    }

    std::optional<double> SecondsOf(const std::string& name) const {
        const auto found = m_seconds.find(name);
        return found == m_seconds.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::map<std::string, double> m_seconds;
};

// `what` is "peak" or "explore".
std::uint64_t PeakOf(const std::string& program, const std::string& what, const std::string& path) {
    const std::string command = program + " --carvelot_" + what + "='" + path + "'";
    std::FILE* const pipe = popen(command.c_str(), "r");
    unsigned long long bytes = 0;
    if (pipe == nullptr || std::fscanf(pipe, "%llu", &bytes) != 1) {
        bytes = 0;
    }
    if (pipe != nullptr) {
        pclose(pipe);
    }
    return bytes;
}

void PrintRow(const std::string& name, const std::string& ratio, double measured, double target) {
    std::printf("| %-10s | %-25s | %8.3f | %6.2f |\n", name.c_str(), ratio.c_str(), measured, target);
}

void PrintRatios(const CRatioReporter& reporter, const std::string& name, const std::string& path,
                 const std::string& program) {
    const auto row = [&](const std::string& what, const std::string& over, double target) {
        const auto a = reporter.SecondsOf(name + "/" + what);
        const auto b = reporter.SecondsOf(name + "/" + over);
        if (a && b) {
            PrintRow(name, what + " over " + over, *a / *b, target);
        }
    };
    row("load", "read-and-split", 4);
    row("tree", "load", 0.1);
    row("explore", "load", 0.5);
    row("find", "grep", 1);
    row("close", "load", 0.02);
    const double peak = static_cast<double>(PeakOf(program, "peak", path));
    const double explored = static_cast<double>(PeakOf(program, "explore", path));
    PrintRow(name, "peak memory over file", peak / static_cast<double>(std::filesystem::file_size(path)),
             1.3);
    PrintRow(name, "explore over peak memory", explored / peak - 1, 0.4);
}

} // namespace

int Main(int argc, char** argv) {
    std::vector<std::string> files;
    std::vector<std::uint64_t> sizes;
    std::vector<char*> rest;
    for (int i = 0; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument.starts_with("--carvelot_peak=")) {
            const LoadedLog log{std::string(argument.substr(16))};
            std::printf("%llu\n", static_cast<unsigned long long>(platform::PeakResidentBytes()));
            return 0;
        }
        if (argument.starts_with("--carvelot_explore=")) {
            const LoadedLog log{std::string(argument.substr(19))};
            const Explored explored(log.session, log.settings);
            std::printf("%llu\n", static_cast<unsigned long long>(platform::PeakResidentBytes()));
            return 0;
        }
        if (argument.starts_with("--carvelot_log=")) {
            files.emplace_back(argument.substr(15));
        } else if (argument.starts_with("--carvelot_size=")) {
            sizes.push_back(std::strtoull(argv[i] + 16, nullptr, 10));
        } else {
            rest.push_back(argv[i]);
        }
    }
    const bool scales = files.empty() && sizes.empty();
    if (scales) {
        sizes = {100, 200, 1000};
    }
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "carvelot-bench";
    std::vector<std::pair<std::string, std::string>> logs;
    for (const std::string& file : files) {
        logs.emplace_back("log" + std::to_string(logs.size() + 1), file);
    }
    if (files.empty()) {
        std::filesystem::create_directories(folder);
        for (const std::uint64_t megabytes : sizes) {
            for (const char* kind : {"debug", "jas"}) {
                const std::string name = std::string(kind) + "-" + std::to_string(megabytes);
                const std::string path = (folder / (name + ".log")).string();
                std::ofstream out(path, std::ios::binary);
                (std::strcmp(kind, "debug") == 0 ? WriteDebugLog : WriteJASLog)(out, megabytes << 20U, 1);
                logs.emplace_back(name, path);
            }
        }
    }
    for (const auto& [name, path] : logs) {
        Register(name, path);
    }
    int count = static_cast<int>(rest.size());
    benchmark::Initialize(&count, rest.data());
    CRatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n| log        | ratio                     | measured | target |\n"
                "|------------|---------------------------|---------:|-------:|\n");
    for (const auto& [name, path] : logs) {
        PrintRatios(reporter, name, path, argv[0]);
    }
    if (scales) {
        for (const std::string kind : {"debug", "jas"}) {
            for (const std::string what : {"load", "explore"}) {
                const auto small = reporter.SecondsOf(kind + "-100/" + what);
                const auto large = reporter.SecondsOf(kind + "-1000/" + what);
                if (small && large) {
                    PrintRow(kind, what + " of 10 times the log", *large / *small, 10.5);
                }
            }
        }
    }
    if (files.empty()) {
        std::filesystem::remove_all(folder);
    }
    return 0;
}

} // namespace carvelot::bench

int main(int argc, char** argv) { return carvelot::bench::Main(argc, argv); }
