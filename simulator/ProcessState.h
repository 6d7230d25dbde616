// ProcessState.h - what the stand-in libraries see of a simulated process: one file for each, "<process
// id>.jde" in the workstation's folder. Every field has one writer, nobody ever waits for another, and a file
// that its process left behind is told by the process being gone: so a process can be killed at any moment.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace simulator {

inline constexpr std::size_t kMostCaches = 4;
inline constexpr std::size_t kMostRows = 64;
inline constexpr std::size_t kMostRowSize = 256;

struct CCacheState {
    std::uint64_t m_nHandle = 0;     // 0: no such cache at present
    std::uint32_t m_nGeneration = 0; // the number of clearings before it was made
    std::int32_t m_nRowSize = 0;
    std::int32_t m_nRows = 0;
    std::int32_t m_nReserved = 0;
    char m_name[48] = {};
};

// Written by the process, except for the first two numbers, which are the library's after the start.
struct CProcessState {
    std::int32_t m_nTracing = 0;
    std::uint32_t m_nClearings = 0; // caches of an earlier generation are gone
    std::uint32_t m_nMagic = kMagic;
    std::uint32_t m_nProcess = 0;
    std::uint32_t m_nRounds = 0; // rounds of work done so far
    std::uint32_t m_nReserved = 0;
    char16_t m_debugFile[260] = {};
    char16_t m_user[22] = {};
    char16_t m_environment[22] = {};
    CCacheState m_caches[kMostCaches] = {};

    static constexpr std::uint32_t kMagic = 0x3153444A;
};

// The file, open for reading and writing and shared with everybody.
class CStateFile {
public:
    CStateFile() = default;
    ~CStateFile() { Close(); }
    CStateFile(const CStateFile&) = delete;
    CStateFile& operator=(const CStateFile&) = delete;

    // Makes the file of this process. It appears under its name complete.
    bool Create(const CProcessState& state);
    // The file of a process that runs; false when there is none or the process has ended.
    bool Open(std::uint32_t process);
    void Close();

    bool Read(CProcessState& state);
    bool WriteTracing(std::int32_t tracing);
    bool WriteClearings(std::uint32_t clearings);
    bool WriteRounds(std::uint32_t rounds);
    bool WriteCache(std::size_t cacheNumber, const CCacheState& cache);
    bool WriteRow(std::size_t cacheNumber, std::size_t row, const std::vector<unsigned char>& bytes);
    bool ReadRow(std::size_t cacheNumber, std::size_t row, void* bytes, std::size_t size);

private:
    bool ReadAt(std::size_t offset, void* bytes, std::size_t size);
    bool WriteAt(std::size_t offset, const void* bytes, std::size_t size);

    std::FILE* m_pFile = nullptr;
};

// CARVELOT_SIMULATOR_DIR, else a folder beside other temporary files.
std::filesystem::path WorkstationFolder();
std::filesystem::path StatePath(std::uint32_t process);
std::uint32_t OwnProcess();
bool IsRunning(std::uint32_t process);

// The line "NAME ARGUMENT..." of the file "switches" in the workstation's folder that fits, as its arguments.
// It is read at every call, so that a switch works at once.
std::optional<std::vector<std::string>> FindSwitch(const std::string& name, const std::string& first);
// The code that "fail ENTRY CODE [PROCESS]" sets for an entry point, 0 without one. "ENTRY.MODE" is looked
// for first when a mode is given.
std::int32_t FailureCode(const std::string& entryPoint, std::uint32_t process, std::int32_t mode = 0);

} // namespace simulator
