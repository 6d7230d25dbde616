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

std::size_t CacheOffset(std::size_t nCache) {
    return offsetof(CProcessState, m_caches) + nCache * sizeof(CCacheState);
}

std::size_t RowOffset(std::size_t nCache, std::size_t nRow) {
    return sizeof(CProcessState) + (nCache * kMostRows + nRow) * kMostRowSize;
}

std::FILE* OpenFile(const std::filesystem::path& path, bool bCreate) {
#ifdef _WIN32
    std::FILE* pFile = _wfopen(path.c_str(), bCreate ? L"w+b" : L"r+b");
#else
    std::FILE* pFile = std::fopen(path.c_str(), bCreate ? "w+b" : "r+b");
#endif
    if (pFile != nullptr)
        std::setvbuf(pFile, nullptr, _IONBF, 0);
    return pFile;
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
    if (m_pFile == nullptr || !WriteAt(0, &state, sizeof state))
        return false;
    // An open file cannot be renamed everywhere.
    Close();
    std::filesystem::rename(made, path, error);
    m_pFile = error ? nullptr : OpenFile(path, false);
    return m_pFile != nullptr;
}

bool CStateFile::Open(std::uint32_t nProcess) {
    Close();
    if (!IsRunning(nProcess))
        return false;
    m_pFile = OpenFile(StatePath(nProcess), false);
    return m_pFile != nullptr;
}

void CStateFile::Close() {
    if (m_pFile != nullptr)
        std::fclose(m_pFile);
    m_pFile = nullptr;
}

bool CStateFile::Read(CProcessState& state) {
    return ReadAt(0, &state, sizeof state) && state.m_nMagic == CProcessState::kMagic;
}

bool CStateFile::WriteTracing(std::int32_t nTracing) {
    return WriteAt(offsetof(CProcessState, m_nTracing), &nTracing, sizeof nTracing);
}

bool CStateFile::WriteClearings(std::uint32_t nClearings) {
    return WriteAt(offsetof(CProcessState, m_nClearings), &nClearings, sizeof nClearings);
}

bool CStateFile::WriteRounds(std::uint32_t nRounds) {
    return WriteAt(offsetof(CProcessState, m_nRounds), &nRounds, sizeof nRounds);
}

bool CStateFile::WriteCache(std::size_t nCache, const CCacheState& cache) {
    return nCache < kMostCaches && WriteAt(CacheOffset(nCache), &cache, sizeof cache);
}

bool CStateFile::WriteRow(std::size_t nCache, std::size_t nRow, const std::vector<unsigned char>& bytes) {
    return nCache < kMostCaches && nRow < kMostRows && bytes.size() <= kMostRowSize &&
           WriteAt(RowOffset(nCache, nRow), bytes.data(), bytes.size());
}

bool CStateFile::ReadRow(std::size_t nCache, std::size_t nRow, void* pBytes, std::size_t nSize) {
    return nCache < kMostCaches && nRow < kMostRows && nSize <= kMostRowSize &&
           ReadAt(RowOffset(nCache, nRow), pBytes, nSize);
}

bool CStateFile::ReadAt(std::size_t nOffset, void* pBytes, std::size_t nSize) {
    return m_pFile != nullptr && std::fseek(m_pFile, static_cast<long>(nOffset), SEEK_SET) == 0 &&
           (nSize == 0 || std::fread(pBytes, nSize, 1, m_pFile) == 1);
}

bool CStateFile::WriteAt(std::size_t nOffset, const void* pBytes, std::size_t nSize) {
    return m_pFile != nullptr && std::fseek(m_pFile, static_cast<long>(nOffset), SEEK_SET) == 0 &&
           (nSize == 0 || std::fwrite(pBytes, nSize, 1, m_pFile) == 1);
}

std::filesystem::path WorkstationFolder() {
#ifdef _WIN32
    // The system's own environment: the C library's copy may be another one than our caller's.
    wchar_t value[1024];
    const DWORD nLength = GetEnvironmentVariableW(L"CARVELOT_SIMULATOR_DIR", value, 1024);
    if (nLength > 0 && nLength < 1024)
        return std::wstring(value, nLength);
#else
    if (const char* pszFolder = std::getenv("CARVELOT_SIMULATOR_DIR");
        pszFolder != nullptr && *pszFolder != '\0')
        return pszFolder;
#endif
    std::error_code error;
    return std::filesystem::temp_directory_path(error) / "carvelot-simulator";
}

std::filesystem::path StatePath(std::uint32_t nProcess) {
    return WorkstationFolder() / (std::to_string(nProcess) + ".jde");
}

std::uint32_t OwnProcess() {
#ifdef _WIN32
    return GetCurrentProcessId();
#else
    return static_cast<std::uint32_t>(getpid());
#endif
}

bool IsRunning(std::uint32_t nProcess) {
#ifdef _WIN32
    const HANDLE hProcess = OpenProcess(SYNCHRONIZE, FALSE, nProcess);
    if (hProcess == nullptr)
        return false;
    const bool bRunning = WaitForSingleObject(hProcess, 0) == WAIT_TIMEOUT;
    CloseHandle(hProcess);
    return bRunning;
#else
    // One that has ended and whose parent does not know it yet has no program any more.
    char target[8];
    return readlink(("/proc/" + std::to_string(nProcess) + "/exe").c_str(), target, sizeof target) > 0;
#endif
}

std::optional<std::vector<std::string>> FindSwitch(const std::string& strName, const std::string& strFirst) {
    std::ifstream file(WorkstationFolder() / "switches");
    for (std::string strLine; std::getline(file, strLine);) {
        std::istringstream words(strLine);
        std::string strWord;
        std::vector<std::string> listWords;
        while (words >> strWord)
            listWords.push_back(strWord);
        if (listWords.size() >= 2 && listWords[0] == strName && listWords[1] == strFirst)
            return std::vector<std::string>(listWords.begin() + 2, listWords.end());
    }
    return std::nullopt;
}

std::int32_t FailureCode(const std::string& strEntryPoint, std::uint32_t nProcess, std::int32_t nMode) {
    std::vector<std::string> listNames = {strEntryPoint};
    if (nMode != 0)
        listNames.insert(listNames.begin(), strEntryPoint + "." + std::to_string(nMode));
    for (const std::string& strName : listNames) {
        const auto listArguments = FindSwitch("fail", strName);
        if (!listArguments || listArguments->empty())
            continue;
        if (listArguments->size() < 2 || (*listArguments)[1] == std::to_string(nProcess))
            return static_cast<std::int32_t>(std::strtol((*listArguments)[0].c_str(), nullptr, 10));
    }
    return 0;
}

} // namespace simulator
