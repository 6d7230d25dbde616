// Caches and cursors that nothing ended.
#include "explore/FindingRules.h"

#include <algorithm>

namespace carvelot {

void FindOpenCaches(const ExploredSession& explored, FindingList& findings) {
    using CCache = CCacheAnalysis::CCache;
    for (const auto& process : explored.session.m_listProcesses) {
        for (const CCache& cache : process->m_pCacheAnalysis.m_caches) {
            const auto& operations = cache.m_operations;
            const bool isTerminated = std::any_of(
                operations.begin(), operations.end(), [](const CCache::CCacheOperation& operation) {
                    return operation.m_op == CCacheAnalysis::CACHE_TERMINATE ||
                           operation.m_op == CCacheAnalysis::CACHE_TERMINATE_ALL;
                });
            if (isTerminated) {
                continue;
            }
            Finding created{FindingRule::CacheNotTerminated, {}, 1, 0, {}, std::string(cache.m_strName)};
            for (const CCache::CCacheOperation& operation : operations) {
                if (operation.m_op == CCacheAnalysis::CACHE_INIT_NEW) {
                    created.AddRecord(operation.m_pRecord);
                }
            }
            if (!created.records.empty()) {
                created.subject.append(cache.m_strName).append(" ").append(cache.m_strHandle);
                findings.push_back(std::move(created));
            }
            for (const CCache::CCacheCursor& cursor : cache.m_cursors) {
                if (cursor.m_pClose == kNoRecord) {
                    findings.push_back({FindingRule::CursorNotClosed,
                                        std::string(cursor.m_strHandle),
                                        1,
                                        0,
                                        {cursor.m_pOpen},
                                        std::string(cache.m_strName)});
                }
            }
        }
    }
}

} // namespace carvelot
