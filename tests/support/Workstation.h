// A simulated workstation for one test: its processes and the libraries that reach into them end with it.
#pragma once

#include "support/TestFolder.h"

#include <cstdint>
#include <cstdio>
#include <list>
#include <memory>
#include <string>

namespace carvelot::test {

// One simulated JDE program. It works only when told to.
class SimulatedProcess {
public:
    SimulatedProcess(const TestFolder& folder, const std::string& imageName, const std::string& options);
    ~SimulatedProcess();
    SimulatedProcess(const SimulatedProcess&) = delete;
    SimulatedProcess& operator=(const SimulatedProcess&) = delete;

    std::uint32_t Number() const { return m_nProcess; } // 0 when it did not start
    const std::string& ImageName() const { return m_strImageName; }
    const std::string& DebugFile() const { return m_strDebugFile; }
    // Has it work on this many orders and waits until they are done.
    bool Work(int rounds);
    // The same without waiting.
    void Order(int rounds);
    // Ends it in the middle of whatever it does.
    void Kill();

private:
    const TestFolder& m_folder;
    std::string m_strImageName;
    std::string m_strDebugFile;
    std::FILE* m_hPipe = nullptr;
    std::uint32_t m_nProcess = 0;
    std::uint32_t m_nRounds = 0;
};

class Workstation {
public:
    Workstation();

    // name is made unique by the test's own process number and ".exe".
    SimulatedProcess& Start(const std::string& name, const std::string& options = {});
    // Lines for the stand-ins, such as "fail SkelmondGetSetProcInfo 7"; they replace those before.
    void Switch(const std::string& lines) { m_folder.Write("switches", lines); }
    // The libraries without one entry point; without any library for "".
    void UseLibrariesWithout(const std::string& entryPoint);
    const TestFolder& Folder() const { return m_folder; }

private:
    void UseLibraries(const std::string& folder);

    TestFolder m_folder;
    EnvironmentGuard m_state;
    std::unique_ptr<EnvironmentGuard> m_pLibraries;
    std::list<SimulatedProcess> m_listProcesses;
};

} // namespace carvelot::test
