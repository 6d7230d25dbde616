// A process seen in a log.
#pragma once

#include "analysis/BSFNAnalysis.h"
#include "analysis/CacheAnalysis.h"
#include "analysis/SQLAnalysis.h"
#include "session/Thread.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace carvelot {

class CProcess {
public:
    CProcess(std::uint32_t id, std::uint64_t startTime) : m_nProcessID(id), m_nStartTime(startTime) {}

    std::vector<std::unique_ptr<CThread>> m_listThreads; // in order of first appearance
    std::unordered_map<std::uint32_t, CThread*> m_mapThreads;
    std::uint32_t m_nProcessID;
    CSQLAnalysis m_pSQLAnalysis;
    CCacheAnalysis m_pCacheAnalysis;
    CBSFNAnalysis m_pBSFNAnalysis;
    std::uint64_t m_nStartTime;
    std::uint64_t m_nEndTime = 0;
    std::vector<RecordIndex> m_listErrors; // in log order
};

} // namespace carvelot
