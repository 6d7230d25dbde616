#include "support/Workstation.h"

#include "simulator/ProcessState.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <thread>

#ifdef _WIN32
#include <windows.h>
#else
#include <csignal>
#endif

namespace carvelot::test {

namespace {

bool WaitFor(const std::function<bool()>& done) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < end) {
        if (done()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return false;
}

} // namespace

SimulatedProcess::SimulatedProcess(const TestFolder& folder, const std::string& imageName,
                                   const std::string& options)
    : m_folder(folder), m_strImageName(imageName), m_strDebugFile(folder.Path(imageName + ".log")) {
    const std::string program = folder.Path(imageName);
#ifdef _WIN32
    const char* const simulator = CARVELOT_SIMULATOR "/jde-simulator.exe";
#else
    const char* const simulator = CARVELOT_SIMULATOR "/jde-simulator";
#endif
    std::error_code error;
    std::filesystem::copy_file(simulator, ToPath(program), error);
    const std::vector<std::string> before = folder.Names();
    std::string command = program + " --pace 0 --log " + m_strDebugFile + " " + options;
#ifdef _WIN32
    std::replace(command.begin(), command.end(), '/', '\\');
    m_hPipe = _popen(command.c_str(), "w");
#else
    m_hPipe = popen(("exec " + command).c_str(), "w");
#endif
    WaitFor([&] {
        for (const std::string& name : folder.Names()) {
            if (name.ends_with(".jde") && std::ranges::find(before, name) == before.end()) {
                m_nProcess = static_cast<std::uint32_t>(std::strtoul(name.c_str(), nullptr, 10));
            }
        }
        return m_nProcess != 0;
    });
}

SimulatedProcess::~SimulatedProcess() {
    if (m_hPipe == nullptr) {
        return;
    }
#ifdef _WIN32
    _pclose(m_hPipe);
#else
    pclose(m_hPipe);
#endif
}

void SimulatedProcess::Order(int rounds) {
    if (m_hPipe == nullptr) {
        return;
    }
    for (int n = 0; n < rounds; ++n) {
        std::fputs("round\n", m_hPipe);
    }
    std::fflush(m_hPipe);
    m_nRounds += static_cast<std::uint32_t>(rounds);
}

bool SimulatedProcess::Work(int rounds) {
    Order(rounds);
    return m_nProcess != 0 && WaitFor([&] {
               simulator::CStateFile file;
               simulator::CProcessState state;
               return file.Open(m_nProcess) && file.Read(state) && state.m_nRounds >= m_nRounds;
           });
}

void SimulatedProcess::Kill() {
#ifdef _WIN32
    const HANDLE process = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, m_nProcess);
    TerminateProcess(process, 1);
    WaitForSingleObject(process, 30'000);
    CloseHandle(process);
#else
    kill(static_cast<pid_t>(m_nProcess), SIGKILL);
#endif
    WaitFor([&] { return !simulator::IsRunning(m_nProcess); });
}

Workstation::Workstation() : m_state("CARVELOT_SIMULATOR_DIR", m_folder.Path().c_str()) {
#ifndef _WIN32
    // A write to a killed process is an error, not our end.
    std::signal(SIGPIPE, SIG_IGN);
#endif
    UseLibraries(CARVELOT_SIMULATOR "/libraries");
}

SimulatedProcess& Workstation::Start(const std::string& name, const std::string& options) {
    return m_listProcesses.emplace_back(m_folder, name + std::to_string(simulator::OwnProcess()) + ".exe",
                                        options);
}

void Workstation::UseLibrariesWithout(const std::string& entryPoint) {
    UseLibraries(entryPoint.empty() ? m_folder.Path() : CARVELOT_SIMULATOR "/without/" + entryPoint);
}

void Workstation::UseLibraries(const std::string& folder) {
    m_pLibraries.reset();
#ifdef _WIN32
    std::string path = folder + ";" + std::getenv("PATH");
    std::replace(path.begin(), path.end(), '/', '\\');
    m_pLibraries = std::make_unique<EnvironmentGuard>("PATH", path.c_str());
#else
    m_pLibraries = std::make_unique<EnvironmentGuard>("CARVELOT_LIBRARY_DIR", folder.c_str());
#endif
}

} // namespace carvelot::test
