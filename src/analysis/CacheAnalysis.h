// What one process did to its jdeCache caches, rebuilt from the trace lines of a debug log.
#pragma once

#include "logcore/DetailList.h"

#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace carvelot {

// The trace of one cache call spans two or more lines: the first tells what happens, a later one (with
// "Nm:[") names the cache. A line therefore first confirms the operation left pending by an earlier line of
// the process, whatever thread wrote it, and then announces one of its own.
class CCacheAnalysis {
public:
    enum CacheOp : std::uint8_t {
        CACHE_NONE = 0,
        CACHE_INIT_NEW = 1,
        CACHE_INIT_EXISTING = 2,
        CACHE_ADD = 3,
        CACHE_UPDATE = 4, // known, but never recorded
        CACHE_DELETE = 5,
        CACHE_FETCH = 6,
        CACHE_OPEN_CURSOR = 7,
        CACHE_CLOSE_CURSOR = 8,
        CACHE_TERMINATE = 9,
        CACHE_TERMINATE_ALL = 10,
        CACHE_RESET_CURSOR = 11,
        CACHE_DELETE_ALL = 12,
    };

    class CCache {
    public:
        struct CCacheOperation {
            RecordIndex m_pRecord; // the line that announced the operation
            CacheOp m_op;
            bool m_bFailed;               // a fetch that found nothing
            std::string_view m_strCursor; // for the codes that show one
            std::int32_t Image() const;   // index into the cache image strip
        };
        struct CCacheCursor {
            std::string_view m_strHandle;
            RecordIndex m_pOpen;
            RecordIndex m_pClose = kNoRecord;
        };

        std::string_view m_strName;
        std::string_view m_strHandle; // hexadecimal, as the log prints it
        std::string_view m_strInstance;
        std::uint32_t m_processId = 0;
        std::int32_t m_instanceCount = 1;
        std::vector<CCacheOperation> m_operations; // in log order, as the cursors
        std::vector<CCacheCursor> m_cursors;

    private:
        friend class CCacheAnalysis;
        std::unordered_map<std::string_view, std::uint32_t> m_firstCursor; // by handle
    };

    // Takes the LOG_CACHE records of the process in the order of the log.
    void AddLine(CDetailList& details, RecordIndex record);

    // The text of an operation's node: the time of its line and what was done.
    static std::string OperationText(const CDetailList& details, const CCache::CCacheOperation& operation);
    // The text of a cache's node.
    static std::string CacheText(const CCache& cache);

    std::deque<CCache> m_caches; // oldest first

private:
    struct CursorPlace {
        std::uint32_t cache;
        std::uint32_t cursor;
        auto operator<=>(const CursorPlace&) const = default;
    };

    void Confirm(CDetailList& details, RecordIndex record, std::string_view message);
    void Announce(CDetailList& details, RecordIndex record, std::string_view message);
    std::uint32_t AddCache(CDetailList& details, RecordIndex record, std::string_view name,
                           std::string_view handle);
    void AddOperation(std::uint32_t cache, RecordIndex record, CacheOp op, bool failed,
                      std::string_view shownCursor, std::string_view cursor);

    std::string_view m_strPendingName;
    std::string_view m_strPendingCursor;
    CacheOp m_pendingOp = CACHE_NONE;
    RecordIndex m_pPendingRecord = kNoRecord;

    std::unordered_map<std::string, std::uint32_t> m_newestByHandle; // by the handle in upper case
    std::unordered_map<std::string_view, std::set<CursorPlace>> m_openCursors;
};

} // namespace carvelot
