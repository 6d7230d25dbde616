// What one process did to its jdeCache caches, rebuilt from the trace lines of a debug log.
#pragma once

#include "analysis/CacheWords.h"
#include "records/DetailList.h"
#include "records/NumberMap.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <set>
#include <string>
#include <string_view>
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
            RecordIndex m_pRecord;   // the line that announced the operation
            std::uint32_t m_nCursor; // number of the handle's interned name, for the codes that show one
            CacheOp m_op;
            bool m_bFailed;             // a fetch that found nothing
            std::int32_t Image() const; // index into the cache image strip
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
        CNumberMap m_firstCursor; // by the number of its handle, where another cache had that first
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

    // The open cursors of one handle, which are nearly always one or none.
    class COpenCursors {
    public:
        void Add(CursorPlace place);
        void Remove(CursorPlace place);
        // In the newest cache the newest cursor; null when none is open.
        const CursorPlace* Newest() const;

        CursorPlace m_first{}; // of all cursors of the handle, open or not

    private:
        CursorPlace m_one{};
        bool m_bOne = false;
        std::unique_ptr<std::set<CursorPlace>> m_pSeveral; // has all of them from the second one on
    };

    void Confirm(CDetailList& details, RecordIndex record, std::string_view message, const CacheWords& words);
    void Announce(CDetailList& details, RecordIndex record, std::string_view message,
                  const CacheWords& words);
    std::uint32_t AddCache(const CDetailList& details, RecordIndex record, std::uint32_t name,
                           std::uint32_t handle, std::uint32_t handleKey);
    void AddOperation(const CDetailList& details, std::uint32_t cache, RecordIndex record, CacheOp op,
                      bool failed, std::uint32_t shownCursor, std::uint32_t cursor);

    // The latest name of one kind with its number: that of the next line is mostly the same.
    struct LatestName {
        std::string_view text;
        std::uint32_t number = 0;

        std::uint32_t Intern(CDetailList& details, std::string_view name);
    };

    LatestName m_latestHandle;
    LatestName m_latestCursor;
    std::uint32_t m_pendingName = 0; // numbers of interned names, as all names in the operations below
    std::uint32_t m_pendingCursor = 0;
    CacheOp m_pendingOp = CACHE_NONE;
    RecordIndex m_pPendingRecord = kNoRecord;
    CacheWords m_pendingWords; // of that record

    CNumberMap m_newestByHandle; // by the number that the handle has whatever its case
    CNumberMap m_placeOfOpen;    // in m_openCursors, by the number of the cursor's handle
    std::vector<COpenCursors> m_openCursors;
};

} // namespace carvelot
