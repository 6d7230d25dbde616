// A simulated JDE program. Copied under the name of any JDE program it looks like one to Carvelot: it has a
// user and an environment, holds two caches and, while its tracing is on, writes a debug log.
//
//   jde-simulator --log FILE [--user NAME] [--environment NAME] [--tracing] [--pace MILLISECONDS]
//
// It works on one order after the other, a step each PACE (120 ms), and ends when its standard input does.
// With a pace of 0 it works only when told to: each line "round" on standard input is one order.
#include "simulator/ProcessState.h"
#include "simulator/Scenario.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <iostream>
#include <mutex>
#include <thread>

using namespace simulator;

namespace {

// What is told on standard input.
struct CInput {
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_nRounds = 0;
    bool m_bEnded = false;
};

// UTF-8 to UTF-16 by way of the file system's own conversion, which both systems have.
template <std::size_t N> bool SetText(char16_t (&field)[N], const std::string& text) {
    const std::u16string wide =
        std::filesystem::path(reinterpret_cast<const char8_t*>(text.c_str())).u16string();
    if (wide.size() >= N) {
        return false;
    }
    std::copy_n(wide.c_str(), wide.size() + 1, field);
    return true;
}

class CDebugLog {
public:
    CDebugLog(std::filesystem::path path, std::uint32_t process)
        : m_path(std::move(path)), m_nProcess(process) {}
    ~CDebugLog() {
        if (m_pFile != nullptr) {
            std::fclose(m_pFile);
        }
    }
    CDebugLog(const CDebugLog&) = delete;
    CDebugLog& operator=(const CDebugLog&) = delete;

    // One write at the file's end, wherever that is by now. The file stays open, shared with everybody.
    void Write(ESpeaker speaker, const std::string& text) {
        if (m_pFile == nullptr) {
#ifdef _WIN32
            m_pFile = _wfopen(m_path.c_str(), L"ab");
#else
            m_pFile = std::fopen(m_path.c_str(), "ab");
#endif
            if (m_pFile == nullptr) {
                return;
            }
            std::setvbuf(m_pFile, nullptr, _IONBF, 0);
        }
        const bool main = speaker == ESpeaker::Main;
        char head[160];
        std::snprintf(head, sizeof head, "%s - %u/%u %s\t", Stamp().c_str(), m_nProcess,
                      m_nProcess + (main ? 4 : 8), main ? "MAIN_THREAD" : "WRK:Starting jdeCallObject");
        std::string line = head + text;
#ifdef _WIN32
        line += "\r\n";
#else
        line += "\n";
#endif
        std::fwrite(line.data(), line.size(), 1, m_pFile);
    }

private:
    static std::string Stamp() {
        constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                           "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
        const auto now = std::chrono::system_clock::now();
        const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
        const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(
                                      now - std::chrono::system_clock::from_time_t(seconds))
                                      .count();
        const std::tm* const time = std::localtime(&seconds);
        char text[64];
        std::snprintf(text, sizeof text, "%s %2d %02d:%02d:%02d.%06d", kMonths[time->tm_mon], time->tm_mday,
                      time->tm_hour, time->tm_min, time->tm_sec, static_cast<int>(microseconds));
        return text;
    }

    std::filesystem::path m_path;
    std::uint32_t m_nProcess;
    std::FILE* m_pFile = nullptr;
};

int Usage() {
    std::fputs("usage: jde-simulator --log FILE [--user NAME] [--environment NAME] [--tracing] [--pace MS]\n",
               stderr);
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    std::string logPath;
    std::string user = "DEMO";
    std::string environment = "JDV920";
    bool tracing = false;
    int pace = 120;
    for (int n = 1; n < argc; ++n) {
        const std::string option = argv[n];
        if (option == "--tracing") {
            tracing = true;
            continue;
        }
        if (++n == argc) {
            return Usage();
        }
        if (option == "--log") {
            logPath = argv[n];
        } else if (option == "--user") {
            user = argv[n];
        } else if (option == "--environment") {
            environment = argv[n];
        } else if (option == "--pace") {
            pace = std::atoi(argv[n]);
        } else {
            return Usage();
        }
    }
    CProcessState state;
    state.m_nProcess = OwnProcess();
    state.m_nTracing = tracing ? 1 : 0;
    if (logPath.empty() || !SetText(state.m_debugFile, logPath) || !SetText(state.m_user, user) ||
        !SetText(state.m_environment, environment)) {
        return Usage();
    }
    CStateFile file;
    if (!file.Create(state)) {
        std::fprintf(stderr, "cannot write %s\n", StatePath(state.m_nProcess).string().c_str());
        return 1;
    }

    // Outlives everything: the thread may still be reading when the program ends.
    auto& input = *new CInput;
    std::thread([&input] {
        for (std::string line; std::getline(std::cin, line);) {
            const std::lock_guard lock(input.m_mutex);
            if (line.starts_with("round")) {
                ++input.m_nRounds;
            }
            input.m_changed.notify_all();
        }
        const std::lock_guard lock(input.m_mutex);
        input.m_bEnded = true;
        input.m_changed.notify_all();
    }).detach();

    CDebugLog log(std::filesystem::path(reinterpret_cast<const char8_t*>(logPath.c_str())), state.m_nProcess);
    CScenario scenario(file, state.m_nProcess, user);
    std::deque<CStep> steps;
    std::uint32_t clearings = 0;
    std::uint32_t rounds = 0;
    bool wanted = false;  // a round that was asked for has not begun
    bool isRound = false; // the steps are those of a round
    for (;;) {
        {
            std::unique_lock lock(input.m_mutex);
            // Also without orders somebody may clear the caches.
            input.m_changed.wait_for(lock, std::chrono::milliseconds(pace == 0 ? 20 : pace), [&] {
                return input.m_bEnded || (pace == 0 && (wanted || input.m_nRounds > 0));
            });
            if (input.m_bEnded) {
                break;
            }
            if (pace == 0 && !wanted && input.m_nRounds > 0) {
                --input.m_nRounds;
                wanted = true;
            }
        }
        CProcessState seen;
        if (!file.Read(seen)) {
            break; // the workstation is being taken down
        }
        if (seen.m_nClearings != clearings) {
            clearings = seen.m_nClearings;
            // The rest of the order under way speaks of caches that are gone.
            std::vector<CStep> cleared = scenario.Cleared(clearings);
            steps.assign(std::make_move_iterator(cleared.begin()), std::make_move_iterator(cleared.end()));
            isRound = false;
        } else if (steps.empty() && (pace > 0 || wanted)) {
            std::vector<CStep> round = scenario.NextRound();
            steps.assign(std::make_move_iterator(round.begin()), std::make_move_iterator(round.end()));
            isRound = true;
            wanted = false;
        }
        while (!steps.empty()) {
            const CStep step = std::move(steps.front());
            steps.pop_front();
            if (step.m_fnDo) {
                step.m_fnDo();
            }
            if (seen.m_nTracing != 0) {
                log.Write(step.m_nSpeaker, step.m_strText);
            }
            if (steps.empty() && isRound) {
                file.WriteRounds(++rounds);
            }
            if (pace > 0) {
                break;
            }
        }
    }
    file.Close();
    std::error_code error;
    std::filesystem::remove(StatePath(state.m_nProcess), error);
    std::fflush(nullptr);
    // The reading thread cannot be joined while its input is open.
    std::_Exit(0);
}
