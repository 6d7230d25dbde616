#include "analysis/CacheAnalysis.h"

#include "logcore/ByteScan.h"
#include "logcore/Columns.h"
#include "logcore/NodeText.h"

#include <algorithm>

namespace carvelot {

namespace {

bool Holds(std::string_view text, std::string_view word) {
    return FindWord(text, word) != std::string_view::npos;
}

// What stands between a marker and the next "]". Nothing checks that the marker is there: a missing one
// counts as standing one before the text's start.
std::string_view Between(std::string_view text, std::string_view marker, std::string& scratch) {
    const std::size_t place = FindWord(text, marker);
    const std::string_view rest = place == std::string_view::npos
                                      ? FromColumn(text, marker.size() - 1, scratch)
                                      : text.substr(place + marker.size());
    return UpTo(rest, ']');
}

} // namespace

std::int32_t CCacheAnalysis::CCache::CCacheOperation::Image() const {
    switch (m_op) {
    case CACHE_INIT_NEW:
    case CACHE_INIT_EXISTING:
        return 4;
    case CACHE_ADD:
        return 1;
    case CACHE_DELETE:
    case CACHE_DELETE_ALL:
        return 2;
    case CACHE_FETCH:
        return 5;
    case CACHE_OPEN_CURSOR:
        return 9;
    case CACHE_CLOSE_CURSOR:
    case CACHE_RESET_CURSOR:
        return 8;
    case CACHE_TERMINATE:
    case CACHE_TERMINATE_ALL:
        return 10;
    case CACHE_NONE:
    case CACHE_UPDATE:
        break;
    }
    return 0;
}

std::string CCacheAnalysis::OperationText(const CDetailList& details,
                                          const CCache::CCacheOperation& operation) {
    std::string text = TimeStampText(details[operation.m_pRecord]);
    const auto withCursor = [&](std::string_view words) {
        text.append(words).append(operation.m_strCursor).append("]");
    };
    switch (operation.m_op) {
    case CACHE_INIT_NEW:
        return text.append("Cache Init (New)");
    case CACHE_INIT_EXISTING:
        return text.append("Cache Init (Existing)");
    case CACHE_ADD:
        return text.append("Cache Add");
    case CACHE_DELETE:
        return text.append("Cache Delete");
    case CACHE_DELETE_ALL:
        return text.append("Cache Delete All");
    case CACHE_TERMINATE:
        return text.append("Cache Terminate");
    case CACHE_TERMINATE_ALL:
        return text.append("Cache Terminate All");
    case CACHE_FETCH:
        withCursor(operation.m_bFailed ? "Fetch Failed.  Cursor [" : "Cache Fetch. Cursor [");
        break;
    case CACHE_OPEN_CURSOR:
        withCursor("Open Cursor [");
        break;
    case CACHE_CLOSE_CURSOR:
        withCursor("Close Cursor [");
        break;
    case CACHE_RESET_CURSOR:
        withCursor("Reset Cursor [");
        break;
    case CACHE_NONE:
    case CACHE_UPDATE:
        break;
    }
    return text;
}

std::string CCacheAnalysis::CacheText(const CCache& cache) {
    return std::string(cache.m_strName)
        .append(" Handle:[")
        .append(cache.m_strHandle)
        .append("] Instance:[")
        .append(cache.m_strInstance)
        .append("]");
}

void CCacheAnalysis::AddLine(CDetailList& details, RecordIndex record) {
    if (details.Kind(record) != LOG_CACHE) {
        return;
    }
    const std::string_view message = details.Text(record);
    if (m_pendingOp != CACHE_NONE) {
        Confirm(details, record, message);
        m_pendingOp = CACHE_NONE;
    }
    Announce(details, record, message);
}

void CCacheAnalysis::Confirm(CDetailList& details, RecordIndex record, std::string_view message) {
    if (!Holds(message, "Nm:[")) {
        if (m_pendingOp == CACHE_FETCH) {
            // The newest cache with an open cursor of that handle, and there the newest such cursor.
            const std::uint32_t open = m_placeOfOpen.Find(m_pendingCursor);
            if (open != CNumberMap::kNone && !m_openCursors[open].empty()) {
                AddOperation(details, m_openCursors[open].rbegin()->cache, m_pPendingRecord, CACHE_FETCH,
                             true, m_pendingCursor, 0);
            }
        }
        return;
    }
    std::string handleScratch;
    std::string instanceScratch;
    const std::uint32_t handle = details.InternName(Between(message, "hCache:[", handleScratch));
    const std::uint32_t handleKey = details.FoldedName(handle);
    const std::string_view instance = Between(message, "Nm:[", instanceScratch);
    const std::uint32_t known = m_newestByHandle.Find(handleKey);
    const std::uint32_t place =
        known != CNumberMap::kNone ? known : AddCache(details, record, handle, handle, handleKey);
    CCache& cache = m_caches[place];
    if (cache.m_strInstance.empty()) {
        cache.m_strInstance = details.Name(details.InternName(instance));
    }
    const auto cursorOfPending = [&] {
        std::string scratch;
        return details.InternName(Between(details.Text(m_pPendingRecord), "hCursor:[", scratch));
    };
    switch (m_pendingOp) {
    case CACHE_TERMINATE:
    case CACHE_TERMINATE_ALL:
        --cache.m_instanceCount;
        if (m_pendingOp == CACHE_TERMINATE_ALL || cache.m_instanceCount < 1) {
            cache.m_instanceCount = 0;
        }
        AddOperation(details, place, m_pPendingRecord, m_pendingOp, false, 0, 0);
        break;
    case CACHE_FETCH:
        AddOperation(details, place, m_pPendingRecord, m_pendingOp, false, m_pendingCursor, 0);
        break;
    case CACHE_OPEN_CURSOR:
    case CACHE_CLOSE_CURSOR: {
        const std::uint32_t cursor = cursorOfPending();
        AddOperation(details, place, m_pPendingRecord, m_pendingOp, false, cursor, cursor);
        break;
    }
    case CACHE_RESET_CURSOR:
        // Shows its cursor but does not hand it over: a reset closes nothing but a cursor without a handle.
        AddOperation(details, place, m_pPendingRecord, m_pendingOp, false, cursorOfPending(), 0);
        break;
    case CACHE_NONE:
    case CACHE_UPDATE:
        break;
    default:
        AddOperation(details, place, m_pPendingRecord, m_pendingOp, false, 0, 0);
        break;
    }
}

void CCacheAnalysis::Announce(CDetailList& details, RecordIndex record, std::string_view message) {
    std::string scratch;
    // Most lines name no call of the cache's interface.
    const bool namesCall = Holds(message, "jdeCache");
    if (namesCall && Holds(message, "jdeCacheInit")) {
        m_pendingName = details.InternName(Between(message, "Name:[", scratch));
    }
    if (Holds(message, "Created new cache")) {
        const std::uint32_t handle = details.InternName(Between(message, "hCache:[", scratch));
        AddCache(details, record, m_pendingName, handle, details.FoldedName(handle));
        m_pendingOp = CACHE_INIT_NEW;
    }
    if (Holds(message, "Found existing cache")) {
        m_pendingOp = CACHE_INIT_EXISTING;
    }
    if (namesCall && Holds(message, "jdeCacheFetch")) {
        m_pendingCursor = details.InternName(Between(message, "hCursor:[", scratch));
        m_pendingOp = CACHE_FETCH;
    }
    m_pPendingRecord = record;
    if (namesCall && Holds(message, "jdeCacheTerminate")) {
        m_pendingOp = Holds(message, "jdeCacheTerminateAll") ? CACHE_TERMINATE_ALL : CACHE_TERMINATE;
    } else if (namesCall && Holds(message, "jdeCacheAdd")) {
        m_pendingOp = CACHE_ADD;
    } else if (namesCall && Holds(message, "jdeCacheUpdate")) {
        m_pendingOp = CACHE_UPDATE;
    } else if (namesCall && Holds(message, "jdeCacheDelete")) {
        m_pendingOp = Holds(message, "jdeCacheDeleteAll") ? CACHE_DELETE_ALL : CACHE_DELETE;
    } else if (Holds(message, "Open Cursor Success")) {
        m_pendingOp = CACHE_OPEN_CURSOR;
    } else if (namesCall && Holds(message, "jdeCacheResetCursor")) {
        m_pendingOp = CACHE_RESET_CURSOR;
    } else if (namesCall && Holds(message, "jdeCacheCloseCursor")) {
        m_pendingOp = CACHE_CLOSE_CURSOR;
    }
}

std::uint32_t CCacheAnalysis::AddCache(const CDetailList& details, RecordIndex record, std::uint32_t name,
                                       std::uint32_t handle, std::uint32_t handleKey) {
    const auto place = static_cast<std::uint32_t>(m_caches.size());
    CCache& cache = m_caches.emplace_back();
    cache.m_strName = details.Name(name);
    cache.m_strHandle = details.Name(handle);
    cache.m_processId = details.Context(record).processID;
    m_newestByHandle.Set(handleKey, place);
    return place;
}

void CCacheAnalysis::AddOperation(const CDetailList& details, std::uint32_t place, RecordIndex record,
                                  CacheOp op, bool failed, std::uint32_t shownCursor, std::uint32_t cursor) {
    CCache& cache = m_caches[place];
    if (op == CACHE_OPEN_CURSOR) {
        const auto index = static_cast<std::uint32_t>(cache.m_cursors.size());
        cache.m_cursors.push_back({details.Name(cursor), record});
        cache.m_firstCursor.FindOrAdd(cursor, index);
        const auto [open, isNew] =
            m_placeOfOpen.FindOrAdd(cursor, static_cast<std::uint32_t>(m_openCursors.size()));
        if (isNew) {
            m_openCursors.emplace_back();
        }
        m_openCursors[open].insert({place, index});
    } else if (op == CACHE_CLOSE_CURSOR || op == CACHE_RESET_CURSOR) {
        // The first cursor of that handle, open or not.
        const std::uint32_t first = cache.m_firstCursor.Find(cursor);
        if (first != CNumberMap::kNone) {
            cache.m_cursors[first].m_pClose = record;
            m_openCursors[m_placeOfOpen.Find(cursor)].erase({place, first});
        }
    }
    cache.m_operations.push_back({record, op, failed, details.Name(shownCursor)});
}

} // namespace carvelot
