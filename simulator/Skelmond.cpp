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

template <std::size_t N> [[maybe_unused]] void CopyText(const char16_t (&from)[N], char16_t* to) {
    const std::size_t length = static_cast<std::size_t>(std::find(from, from + N - 1, u'\0') - from);
    std::copy_n(from, length, to);
    to[length] = u'\0';
}

bool Reach(std::uint32_t process, CStateFile& file, CProcessState& state) {
    return file.Open(process) && file.Read(state);
}

[[maybe_unused]] const CCacheState* FindCache(const CProcessState& state, std::uint64_t handle) {
    for (const CCacheState& cache : state.m_caches) {
        if (handle != 0 && cache.m_nHandle == handle && cache.m_nGeneration == state.m_nClearings &&
            cache.m_nRowSize >= 0 && cache.m_nRowSize <= static_cast<std::int32_t>(kMostRowSize)) {
            return &cache;
        }
    }
    return nullptr;
}

[[maybe_unused]] std::string HandleText(std::uint64_t handle) {
    char text[20];
    std::snprintf(text, sizeof text, "%08llX", static_cast<unsigned long long>(handle));
    return text;
}

} // namespace

#ifndef WITHOUT_SkelmondGetSetProcInfo
SIMULATOR_EXPORT std::int32_t SkelmondGetSetProcInfo(std::uint32_t process, char16_t* debugFile,
                                                     char16_t* user, char16_t* environment, char16_t* scratch,
                                                     std::int32_t mode, std::int32_t* tracing) {
    if (const std::int32_t code = FailureCode("SkelmondGetSetProcInfo", process, mode); code != 0) {
        return code;
    }
    if (debugFile == nullptr || user == nullptr || environment == nullptr || scratch == nullptr ||
        tracing == nullptr || mode < 1 || mode > 3) {
        return kBadArgument;
    }
    CStateFile file;
    CProcessState state;
    if (!Reach(process, file, state)) {
        return kNoProcess;
    }
    // Callers never read it: whatever stands here must not matter.
    std::fill_n(scratch, 512, u'~');
    switch (mode) {
    case 1:
        CopyText(state.m_debugFile, debugFile);
        *tracing = state.m_nTracing;
        return 0;
    case 2:
        if (!file.WriteTracing(state.m_nTracing == 0 ? 1 : 0)) {
            return kNoProcess;
        }
        *tracing = state.m_nTracing == 0 ? 1 : 0;
        return 0;
    default:
        CopyText(state.m_user, user);
        CopyText(state.m_environment, environment);
        *tracing = state.m_nTracing;
        return 0;
    }
}
#endif

#ifndef WITHOUT_SkelmondCacheFetchProcessor
SIMULATOR_EXPORT std::int32_t SkelmondCacheFetchProcessor(std::uint32_t process, std::uint64_t handle,
                                                          std::uint64_t* cursor, void* row,
                                                          std::int32_t rowSize, std::int32_t first) {
    // Where each fetch stands. The caller's word only says whether there is a row.
    static std::map<std::pair<std::uint32_t, std::uint64_t>, std::int32_t> s_mapFetches;

    if (cursor == nullptr || row == nullptr || rowSize < 0) {
        return kBadArgument;
    }
    *cursor = 0;
    if (const std::int32_t code = FailureCode("SkelmondCacheFetchProcessor", process); code != 0) {
        return code;
    }
    CStateFile file;
    CProcessState state;
    if (!Reach(process, file, state)) {
        return kNoProcess;
    }
    const CCacheState* const cache = FindCache(state, handle);
    const auto stale = FindSwitch("stale", HandleText(handle));
    if (cache == nullptr || (stale && stale->empty())) {
        return kNoCache;
    }
    const auto key = std::pair(process, handle);
    if (first != 0) {
        s_mapFetches[key] = 0;
        return 0;
    }
    const auto it = s_mapFetches.find(key);
    if (it == s_mapFetches.end()) {
        return kBadArgument;
    }
    const std::int32_t rowNumber = it->second;
    if (stale && rowNumber >= std::atoi(stale->front().c_str())) {
        return kNoCache;
    }
    if (rowNumber >= std::min(cache->m_nRows, static_cast<std::int32_t>(kMostRows))) {
        s_mapFetches.erase(it);
        return 0;
    }
    unsigned char bytes[kMostRowSize] = {};
    const auto cacheNumber = static_cast<std::size_t>(cache - state.m_caches);
    if (!file.ReadRow(cacheNumber, static_cast<std::size_t>(rowNumber), bytes,
                      static_cast<std::size_t>(cache->m_nRowSize))) {
        return kNoCache;
    }
    std::memcpy(row, bytes, static_cast<std::size_t>(std::min(rowSize, cache->m_nRowSize)));
    ++it->second;
    *cursor = static_cast<std::uint64_t>(rowNumber) + 1;
    return 0;
}
#endif

#ifndef WITHOUT_SkelmondClearCacheProcessor
SIMULATOR_EXPORT std::int32_t SkelmondClearCacheProcessor(std::uint32_t process, std::int32_t word) {
    if (const std::int32_t code = FailureCode("SkelmondClearCacheProcessor", process); code != 0) {
        return code;
    }
    if (word != 1) {
        return kBadArgument;
    }
    CStateFile file;
    CProcessState state;
    if (!Reach(process, file, state) || !file.WriteClearings(state.m_nClearings + 1)) {
        return kNoProcess;
    }
    return 0;
}
#endif
