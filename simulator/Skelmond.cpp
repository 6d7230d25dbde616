// The stand-in for the companion library. It reaches into simulated processes only, and answers 0 or one of
// these codes:
//   1  there is no such process
//   2  there is no such cache, or it is gone
//   3  an argument makes no sense
// The file "switches" can make any entry point fail with any other code ("fail ENTRY CODE [PROCESS]"), or a
// handle stale ("stale HANDLE [ROWS]": after so many rows).
#include "simulator/Export.h"
#include "simulator/ProcessState.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <utility>

using namespace simulator;

namespace {

enum : std::int32_t { kNoProcess = 1, kNoCache = 2, kBadArgument = 3 };

template <std::size_t N> [[maybe_unused]] void CopyText(const char16_t (&from)[N], char16_t* pTo) {
    const std::size_t nLength = static_cast<std::size_t>(std::find(from, from + N - 1, u'\0') - from);
    std::copy_n(from, nLength, pTo);
    pTo[nLength] = u'\0';
}

bool Reach(std::uint32_t nProcess, CStateFile& file, CProcessState& state) {
    return file.Open(nProcess) && file.Read(state);
}

[[maybe_unused]] const CCacheState* FindCache(const CProcessState& state, std::uint64_t nHandle) {
    for (const CCacheState& cache : state.m_caches) {
        if (nHandle != 0 && cache.m_nHandle == nHandle && cache.m_nGeneration == state.m_nClearings &&
            cache.m_nRowSize >= 0 && cache.m_nRowSize <= static_cast<std::int32_t>(kMostRowSize))
            return &cache;
    }
    return nullptr;
}

[[maybe_unused]] std::string HandleText(std::uint64_t nHandle) {
    char text[20];
    std::snprintf(text, sizeof text, "%08llX", static_cast<unsigned long long>(nHandle));
    return text;
}

} // namespace

#ifndef WITHOUT_SkelmondGetSetProcInfo
SIMULATOR_EXPORT std::int32_t SkelmondGetSetProcInfo(std::uint32_t nProcess, char16_t* pDebugFile,
                                                     char16_t* pUser, char16_t* pEnvironment,
                                                     char16_t* pScratch, std::int32_t nMode,
                                                     std::int32_t* pTracing) {
    if (const std::int32_t nCode = FailureCode("SkelmondGetSetProcInfo", nProcess, nMode); nCode != 0)
        return nCode;
    if (pDebugFile == nullptr || pUser == nullptr || pEnvironment == nullptr || pScratch == nullptr ||
        pTracing == nullptr || nMode < 1 || nMode > 3)
        return kBadArgument;
    CStateFile file;
    CProcessState state;
    if (!Reach(nProcess, file, state))
        return kNoProcess;
    // Callers never read it: whatever stands here must not matter.
    std::fill_n(pScratch, 512, u'~');
    switch (nMode) {
    case 1:
        CopyText(state.m_debugFile, pDebugFile);
        *pTracing = state.m_nTracing;
        return 0;
    case 2:
        if (!file.WriteTracing(state.m_nTracing == 0 ? 1 : 0))
            return kNoProcess;
        *pTracing = state.m_nTracing == 0 ? 1 : 0;
        return 0;
    default:
        CopyText(state.m_user, pUser);
        CopyText(state.m_environment, pEnvironment);
        *pTracing = state.m_nTracing;
        return 0;
    }
}
#endif

#ifndef WITHOUT_SkelmondCacheFetchProcessor
SIMULATOR_EXPORT std::int32_t SkelmondCacheFetchProcessor(std::uint32_t nProcess, std::uint64_t nHandle,
                                                          std::uint64_t* pCursor, void* pRow,
                                                          std::int32_t nRowSize, std::int32_t nFirst) {
    // Where each fetch stands. The caller's word only says whether there is a row.
    static std::map<std::pair<std::uint32_t, std::uint64_t>, std::int32_t> s_mapFetches;

    if (pCursor == nullptr || pRow == nullptr || nRowSize < 0)
        return kBadArgument;
    *pCursor = 0;
    if (const std::int32_t nCode = FailureCode("SkelmondCacheFetchProcessor", nProcess); nCode != 0)
        return nCode;
    CStateFile file;
    CProcessState state;
    if (!Reach(nProcess, file, state))
        return kNoProcess;
    const CCacheState* const pCache = FindCache(state, nHandle);
    const auto listStale = FindSwitch("stale", HandleText(nHandle));
    if (pCache == nullptr || (listStale && listStale->empty()))
        return kNoCache;
    const auto key = std::pair(nProcess, nHandle);
    if (nFirst != 0) {
        s_mapFetches[key] = 0;
        return 0;
    }
    const auto it = s_mapFetches.find(key);
    if (it == s_mapFetches.end())
        return kBadArgument;
    const std::int32_t nRow = it->second;
    if (listStale && nRow >= std::atoi(listStale->front().c_str()))
        return kNoCache;
    if (nRow >= std::min(pCache->m_nRows, static_cast<std::int32_t>(kMostRows))) {
        s_mapFetches.erase(it);
        return 0;
    }
    unsigned char bytes[kMostRowSize] = {};
    const auto nCache = static_cast<std::size_t>(pCache - state.m_caches);
    if (!file.ReadRow(nCache, static_cast<std::size_t>(nRow), bytes,
                      static_cast<std::size_t>(pCache->m_nRowSize)))
        return kNoCache;
    std::memcpy(pRow, bytes, static_cast<std::size_t>(std::min(nRowSize, pCache->m_nRowSize)));
    ++it->second;
    *pCursor = static_cast<std::uint64_t>(nRow) + 1;
    return 0;
}
#endif

#ifndef WITHOUT_SkelmondClearCacheProcessor
SIMULATOR_EXPORT std::int32_t SkelmondClearCacheProcessor(std::uint32_t nProcess, std::int32_t nWord) {
    if (const std::int32_t nCode = FailureCode("SkelmondClearCacheProcessor", nProcess); nCode != 0)
        return nCode;
    if (nWord != 1)
        return kBadArgument;
    CStateFile file;
    CProcessState state;
    if (!Reach(nProcess, file, state) || !file.WriteClearings(state.m_nClearings + 1))
        return kNoProcess;
    return 0;
}
#endif
