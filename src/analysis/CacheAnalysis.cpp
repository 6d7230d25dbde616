#include "analysis/CacheAnalysis.h"

#include "records/NodeText.h"
#include "text/ByteScan.h"
#include "text/TextColumns.h"

#include <algorithm>

namespace carvelot {

namespace {

// What stands between a marker that ends at `place` and the next "]". Nothing checks that the marker is
// there: a missing one counts as standing one before the message's start.
std::string_view Between(std::string_view message, std::size_t place, std::string_view marker,
                         std::string& scratch) {
    return UpTo(place == CacheWords::kNone ? FromColumn(message, marker.size() - 1, scratch)
                                           : message.substr(place),
                ']');
}

std::string_view HandleIn(std::string_view message, const CacheWords& words, std::string& scratch) {
    return Between(message, words.handle, "hCache:[", scratch);
}

std::string_view CursorIn(std::string_view message, const CacheWords& words, std::string& scratch) {
    return Between(message, words.cursor, "hCursor:[", scratch);
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
        text.append(words).append(details.Name(operation.m_nCursor)).append("]");
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

std::uint32_t CCacheAnalysis::LatestName::Intern(CDetailList& details, std::string_view name) {
    if (!SameShortText(text, name)) {
        number = details.InternName(name);
        text = details.Name(number);
    }
    return number;
}

void CCacheAnalysis::COpenCursors::Add(CursorPlace place) {
    if (m_pSeveral != nullptr) {
        m_pSeveral->insert(place);
    } else if (m_bOne) {
        m_pSeveral = std::make_unique<std::set<CursorPlace>>(std::set{m_one, place});
        m_bOne = false;
    } else {
        m_one = place;
        m_bOne = true;
    }
}

void CCacheAnalysis::COpenCursors::Remove(CursorPlace place) {
    if (m_pSeveral != nullptr) {
        m_pSeveral->erase(place);
    } else if (m_one == place) {
        m_bOne = false;
    }
}

const CCacheAnalysis::CursorPlace* CCacheAnalysis::COpenCursors::Newest() const {
    if (m_pSeveral != nullptr) {
        return m_pSeveral->empty() ? nullptr : &*m_pSeveral->rbegin();
    }
    return m_bOne ? &m_one : nullptr;
}

void CCacheAnalysis::AddLine(CDetailList& details, RecordIndex record) {
    if (details.Kind(record) != LOG_CACHE) {
        return;
    }
    const std::string_view message = details.Text(record);
    const CacheWords words = FindCacheWords(message);
    if (m_pendingOp != CACHE_NONE) {
        Confirm(details, record, message, words);
        m_pendingOp = CACHE_NONE;
    }
    Announce(details, record, message, words);
}

void CCacheAnalysis::Confirm(CDetailList& details, RecordIndex record, std::string_view message,
                             const CacheWords& words) {
    if (words.instance == CacheWords::kNone) {
        if (m_pendingOp == CACHE_FETCH) {
            // The newest cache with an open cursor of that handle, and there the newest such cursor.
            const std::uint32_t open = m_placeOfOpen.Find(m_pendingCursor);
            const CursorPlace* const newest =
                open == CNumberMap::kNone ? nullptr : m_openCursors[open].Newest();
            if (newest != nullptr) {
                AddOperation(details, newest->cache, m_pPendingRecord, CACHE_FETCH, true, m_pendingCursor, 0);
            }
        }
        return;
    }
    std::string scratch;
    const std::uint32_t handle = m_latestHandle.Intern(details, HandleIn(message, words, scratch));
    const std::uint32_t handleKey = details.FoldedName(handle);
    const std::uint32_t known = m_newestByHandle.Find(handleKey);
    const std::uint32_t place =
        known != CNumberMap::kNone ? known : AddCache(details, record, handle, handle, handleKey);
    CCache& cache = m_caches[place];
    if (cache.m_strInstance.empty()) {
        const std::string_view instance = Between(message, words.instance, "Nm:[", scratch);
        cache.m_strInstance = details.Name(details.InternName(instance));
    }
    const auto cursorOfPending = [&] {
        return m_latestCursor.Intern(details,
                                     CursorIn(details.Text(m_pPendingRecord), m_pendingWords, scratch));
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

void CCacheAnalysis::Announce(CDetailList& details, RecordIndex record, std::string_view message,
                              const CacheWords& words) {
    m_pPendingRecord = record;
    m_pendingWords = words;
    if (words.calls == 0) {
        return;
    }
    std::string scratch;
    if (words.Hold(CacheWords::CALL_CACHE_INIT)) {
        m_pendingName = details.InternName(Between(message, words.name, "Name:[", scratch));
    }
    if (words.Hold(CacheWords::CALL_CREATED)) {
        const std::uint32_t handle = details.InternName(HandleIn(message, words, scratch));
        AddCache(details, record, m_pendingName, handle, details.FoldedName(handle));
        m_pendingOp = CACHE_INIT_NEW;
    }
    if (words.Hold(CacheWords::CALL_FOUND)) {
        m_pendingOp = CACHE_INIT_EXISTING;
    }
    if (words.Hold(CacheWords::CALL_CACHE_FETCH)) {
        m_pendingCursor = m_latestCursor.Intern(details, CursorIn(message, words, scratch));
        m_pendingOp = CACHE_FETCH;
    }
    if (words.Hold(CacheWords::CALL_CACHE_TERMINATE)) {
        m_pendingOp =
            words.Hold(CacheWords::CALL_CACHE_TERMINATE_ALL) ? CACHE_TERMINATE_ALL : CACHE_TERMINATE;
    } else if (words.Hold(CacheWords::CALL_CACHE_ADD)) {
        m_pendingOp = CACHE_ADD;
    } else if (words.Hold(CacheWords::CALL_CACHE_UPDATE)) {
        m_pendingOp = CACHE_UPDATE;
    } else if (words.Hold(CacheWords::CALL_CACHE_DELETE)) {
        m_pendingOp = words.Hold(CacheWords::CALL_CACHE_DELETE_ALL) ? CACHE_DELETE_ALL : CACHE_DELETE;
    } else if (words.Hold(CacheWords::CALL_CURSOR_OPEN)) {
        m_pendingOp = CACHE_OPEN_CURSOR;
    } else if (words.Hold(CacheWords::CALL_CACHE_RESET_CURSOR)) {
        m_pendingOp = CACHE_RESET_CURSOR;
    } else if (words.Hold(CacheWords::CALL_CACHE_CLOSE_CURSOR)) {
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
    m_newestByHandle.At(handleKey, place) = place;
    return place;
}

void CCacheAnalysis::AddOperation(const CDetailList& details, std::uint32_t place, RecordIndex record,
                                  CacheOp op, bool failed, std::uint32_t shownCursor, std::uint32_t cursor) {
    CCache& cache = m_caches[place];
    if (op == CACHE_OPEN_CURSOR) {
        const auto index = static_cast<std::uint32_t>(cache.m_cursors.size());
        cache.m_cursors.push_back({details.Name(cursor), record});
        const auto [open, isNew] =
            m_placeOfOpen.FindOrAdd(cursor, static_cast<std::uint32_t>(m_openCursors.size()));
        if (isNew) {
            m_openCursors.emplace_back().m_first = {place, index};
        } else if (m_openCursors[open].m_first.cache != place) {
            cache.m_firstCursor.FindOrAdd(cursor, index);
        }
        m_openCursors[open].Add({place, index});
    } else if (op == CACHE_CLOSE_CURSOR || op == CACHE_RESET_CURSOR) {
        // The first cursor of that handle, open or not.
        const std::uint32_t open = m_placeOfOpen.Find(cursor);
        const std::uint32_t first = open == CNumberMap::kNone ? CNumberMap::kNone
                                    : m_openCursors[open].m_first.cache == place
                                        ? m_openCursors[open].m_first.cursor
                                        : cache.m_firstCursor.Find(cursor);
        if (first != CNumberMap::kNone) {
            cache.m_cursors[first].m_pClose = record;
            m_openCursors[open].Remove({place, first});
        }
    }
    cache.m_operations.push_back({record, shownCursor, op, failed});
}

} // namespace carvelot
