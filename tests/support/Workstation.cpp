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

bool WaitFor(const std::function<bool()>& fnDone) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < end) {
        if (fnDone())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return false;
}

} // namespace

SimulatedProcess::SimulatedProcess(const TestFolder& folder, const std::string& strImageName,
                                   const std::string& strOptions)
    : m_folder(folder), m_strImageName(strImageName), m_strDebugFile(folder.Path(strImageName + ".log")) {
    const std::string strProgram = folder.Path(strImageName);
#ifdef _WIN32
    const char* const pszSimulator = CARVELOT_SIMULATOR "/jde-simulator.exe";
#else
    const char* const pszSimulator = CARVELOT_SIMULATOR "/jde-simulator";
#endif
    std::error_code error;
    std::filesystem::copy_file(pszSimulator, ToPath(strProgram), error);
    const std::vector<std::string> listBefore = folder.Names();
    std::string strCommand = strProgram + " --pace 0 --log " + m_strDebugFile + " " + strOptions;
#ifdef _WIN32
    std::replace(strCommand.begin(), strCommand.end(), '/', '\\');
    m_hPipe = _popen(strCommand.c_str(), "w");
#else
    m_hPipe = popen(("exec " + strCommand).c_str(), "w");
#endif
    WaitFor([&] {
        for (const std::string& strName : folder.Names()) {
            if (strName.ends_with(".jde") && std::ranges::find(listBefore, strName) == listBefore.end())
                m_nProcess = static_cast<std::uint32_t>(std::strtoul(strName.c_str(), nullptr, 10));
        }
        return m_nProcess != 0;
    });
}

SimulatedProcess::~SimulatedProcess() {
    if (m_hPipe == nullptr)
        return;
#ifdef _WIN32
    _pclose(m_hPipe);
#else
    pclose(m_hPipe);
#endif
}

void SimulatedProcess::Order(int nRounds) {
    if (m_hPipe == nullptr)
        return;
    for (int n = 0; n < nRounds; ++n)
        std::fputs("round\n", m_hPipe);
    std::fflush(m_hPipe);
    m_nRounds += static_cast<std::uint32_t>(nRounds);
}

bool SimulatedProcess::Work(int nRounds) {
    Order(nRounds);
    return m_nProcess != 0 && WaitFor([&] {
               simulator::CStateFile file;
               simulator::CProcessState state;
               return file.Open(m_nProcess) && file.Read(state) && state.m_nRounds >= m_nRounds;
           });
}

void SimulatedProcess::Kill() {
#ifdef _WIN32
    const HANDLE hProcess = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, m_nProcess);
    TerminateProcess(hProcess, 1);
    WaitForSingleObject(hProcess, 30'000);
    CloseHandle(hProcess);
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

SimulatedProcess& Workstation::Start(const std::string& strName, const std::string& strOptions) {
    return m_listProcesses.emplace_back(m_folder, strName + std::to_string(simulator::OwnProcess()) + ".exe",
                                        strOptions);
}

void Workstation::UseLibrariesWithout(const std::string& strEntryPoint) {
    UseLibraries(strEntryPoint.empty() ? m_folder.Path() : CARVELOT_SIMULATOR "/without/" + strEntryPoint);
}

void Workstation::UseLibraries(const std::string& strFolder) {
    m_pLibraries.reset();
#ifdef _WIN32
    std::string strPath = strFolder + ";" + std::getenv("PATH");
    std::replace(strPath.begin(), strPath.end(), '/', '\\');
    m_pLibraries = std::make_unique<EnvironmentGuard>("PATH", strPath.c_str());
#else
    m_pLibraries = std::make_unique<EnvironmentGuard>("CARVELOT_LIBRARY_DIR", strFolder.c_str());
#endif
}

} // namespace carvelot::test
