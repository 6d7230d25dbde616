#include "simulator/ProcessState.h"

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <sstream>

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace simulator {

namespace {

std::size_t CacheOffset(std::size_t cacheNumber) {
    return offsetof(CProcessState, m_caches) + cacheNumber * sizeof(CCacheState);
}

std::size_t RowOffset(std::size_t cacheNumber, std::size_t row) {
    return sizeof(CProcessState) + (cacheNumber * kMostRows + row) * kMostRowSize;
}

std::FILE* OpenFile(const std::filesystem::path& path, bool create) {
#ifdef _WIN32
    std::FILE* file = _wfopen(path.c_str(), create ? L"w+b" : L"r+b");
#else
    std::FILE* file = std::fopen(path.c_str(), create ? "w+b" : "r+b");
#endif
    if (file != nullptr) {
        std::setvbuf(file, nullptr, _IONBF, 0);
    }
    return file;
}

} // namespace

bool CStateFile::Create(const CProcessState& state) {
    Close();
    std::error_code error;
    std::filesystem::create_directories(WorkstationFolder(), error);
    const std::filesystem::path path = StatePath(state.m_nProcess);
    std::filesystem::path made = path;
    made += ".new";
    m_pFile = OpenFile(made, true);
    if (m_pFile == nullptr || !WriteAt(0, &state, sizeof state)) {
        return false;
    }
    // An open file cannot be renamed everywhere.
    Close();
    std::filesystem::rename(made, path, error);
    m_pFile = error ? nullptr : OpenFile(path, false);
    return m_pFile != nullptr;
}

bool CStateFile::Open(std::uint32_t process) {
    Close();
    if (!IsRunning(process)) {
        return false;
    }
    m_pFile = OpenFile(StatePath(process), false);
    return m_pFile != nullptr;
}

void CStateFile::Close() {
    if (m_pFile != nullptr) {
        std::fclose(m_pFile);
    }
    m_pFile = nullptr;
}

bool CStateFile::Read(CProcessState& state) {
    return ReadAt(0, &state, sizeof state) && state.m_nMagic == CProcessState::kMagic;
}

bool CStateFile::WriteTracing(std::int32_t tracing) {
    return WriteAt(offsetof(CProcessState, m_nTracing), &tracing, sizeof tracing);
}

bool CStateFile::WriteClearings(std::uint32_t clearings) {
    return WriteAt(offsetof(CProcessState, m_nClearings), &clearings, sizeof clearings);
}

bool CStateFile::WriteRounds(std::uint32_t rounds) {
    return WriteAt(offsetof(CProcessState, m_nRounds), &rounds, sizeof rounds);
}

bool CStateFile::WriteCache(std::size_t cacheNumber, const CCacheState& cache) {
    return cacheNumber < kMostCaches && WriteAt(CacheOffset(cacheNumber), &cache, sizeof cache);
}

bool CStateFile::WriteRow(std::size_t cacheNumber, std::size_t row, const std::vector<unsigned char>& bytes) {
    return cacheNumber < kMostCaches && row < kMostRows && bytes.size() <= kMostRowSize &&
           WriteAt(RowOffset(cacheNumber, row), bytes.data(), bytes.size());
}

bool CStateFile::ReadRow(std::size_t cacheNumber, std::size_t row, void* bytes, std::size_t size) {
    return cacheNumber < kMostCaches && row < kMostRows && size <= kMostRowSize &&
           ReadAt(RowOffset(cacheNumber, row), bytes, size);
}

bool CStateFile::ReadAt(std::size_t offset, void* bytes, std::size_t size) {
    return m_pFile != nullptr && std::fseek(m_pFile, static_cast<long>(offset), SEEK_SET) == 0 &&
           (size == 0 || std::fread(bytes, size, 1, m_pFile) == 1);
}

bool CStateFile::WriteAt(std::size_t offset, const void* bytes, std::size_t size) {
    return m_pFile != nullptr && std::fseek(m_pFile, static_cast<long>(offset), SEEK_SET) == 0 &&
           (size == 0 || std::fwrite(bytes, size, 1, m_pFile) == 1);
}

std::filesystem::path WorkstationFolder() {
#ifdef _WIN32
    // The system's own environment: the C library's copy may be another one than our caller's.
    wchar_t value[1024];
    const DWORD length = GetEnvironmentVariableW(L"CARVELOT_SIMULATOR_DIR", value, 1024);
    if (length > 0 && length < 1024) {
        return std::wstring(value, length);
    }
#else
    if (const char* folder = std::getenv("CARVELOT_SIMULATOR_DIR"); folder != nullptr && *folder != '\0') {
        return folder;
    }
#endif
    std::error_code error;
    return std::filesystem::temp_directory_path(error) / "carvelot-simulator";
}

std::filesystem::path StatePath(std::uint32_t process) {
    return WorkstationFolder() / (std::to_string(process) + ".jde");
}

std::uint32_t OwnProcess() {
#ifdef _WIN32
    return GetCurrentProcessId();
#else
    return static_cast<std::uint32_t>(getpid());
#endif
}

bool IsRunning(std::uint32_t process) {
#ifdef _WIN32
    const HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, process);
    if (handle == nullptr) {
        return false;
    }
    const bool running = WaitForSingleObject(handle, 0) == WAIT_TIMEOUT;
    CloseHandle(handle);
    return running;
#else
    // One that has ended and whose parent does not know it yet has no program any more.
    char target[8];
    return readlink(("/proc/" + std::to_string(process) + "/exe").c_str(), target, sizeof target) > 0;
#endif
}

std::optional<std::vector<std::string>> FindSwitch(const std::string& name, const std::string& first) {
    std::ifstream file(WorkstationFolder() / "switches");
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string word;
        std::vector<std::string> folded;
        while (words >> word) {
            folded.push_back(word);
        }
        if (folded.size() >= 2 && folded[0] == name && folded[1] == first) {
            return std::vector<std::string>(folded.begin() + 2, folded.end());
        }
    }
    return std::nullopt;
}

std::int32_t FailureCode(const std::string& entryPoint, std::uint32_t process, std::int32_t mode) {
    std::vector<std::string> names = {entryPoint};
    if (mode != 0) {
        names.insert(names.begin(), entryPoint + "." + std::to_string(mode));
    }
    for (const std::string& name : names) {
        const auto arguments = FindSwitch("fail", name);
        if (!arguments || arguments->empty()) {
            continue;
        }
        if (arguments->size() < 2 || (*arguments)[1] == std::to_string(process)) {
            return static_cast<std::int32_t>(std::strtol((*arguments)[0].c_str(), nullptr, 10));
        }
    }
    return 0;
}

} // namespace simulator
