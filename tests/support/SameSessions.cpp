#include "support/SameSessions.h"

#include <algorithm>
#include <tuple>

namespace carvelot::test {

namespace {

template <class List> bool Same(const List& one, const List& other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end());
}

template <class Numbers> bool SameNumbers(const Numbers& one, const Numbers& other) {
    bool same = one.Size() == other.Size();
    for (std::uint32_t i = 0; same && i < one.Size(); ++i) {
        same = one[i] == other[i];
    }
    return same;
}

bool SameStatements(const CSQLAnalysis& a, const CSQLAnalysis& b) {
    return Same(a.m_listLongTasks, b.m_listLongTasks) &&
           std::equal(a.m_listTables.begin(), a.m_listTables.end(), b.m_listTables.begin(),
                      b.m_listTables.end(), [](const auto& x, const auto& y) {
                          return x.m_strTable == y.m_strTable &&
                                 std::tie(x.m_nSelects, x.m_nInserts, x.m_nUpdates, x.m_nDeletes) ==
                                     std::tie(y.m_nSelects, y.m_nInserts, y.m_nUpdates, y.m_nDeletes);
                      });
}

bool SameFunctions(const CBSFNAnalysis& a, const CBSFNAnalysis& b) {
    const auto sameInstance = [](const auto& x, const auto& y) {
        return std::tie(x.m_pStart, x.m_level, x.m_endTime, x.m_duration, x.m_result) ==
               std::tie(y.m_pStart, y.m_level, y.m_endTime, y.m_duration, y.m_result);
    };
    return Same(a.m_listLongTasks, b.m_listLongTasks) &&
           std::equal(a.m_functions.begin(), a.m_functions.end(), b.m_functions.begin(), b.m_functions.end(),
                      [&](const auto& x, const auto& y) {
                          return std::tie(x.m_strName, x.m_strLocation, x.m_longest, x.m_shortest,
                                          x.m_totalTime) == std::tie(y.m_strName, y.m_strLocation,
                                                                     y.m_longest, y.m_shortest,
                                                                     y.m_totalTime) &&
                                 std::equal(x.m_instances.begin(), x.m_instances.end(), y.m_instances.begin(),
                                            y.m_instances.end(), sameInstance);
                      });
}

bool SameCaches(const CCacheAnalysis& a, const CCacheAnalysis& b) {
    const auto sameOperation = [](const auto& x, const auto& y) {
        return std::tie(x.m_pRecord, x.m_nCursor, x.m_op, x.m_bFailed) ==
               std::tie(y.m_pRecord, y.m_nCursor, y.m_op, y.m_bFailed);
    };
    const auto sameCursor = [](const auto& x, const auto& y) {
        return std::tie(x.m_strHandle, x.m_pOpen, x.m_pClose) ==
               std::tie(y.m_strHandle, y.m_pOpen, y.m_pClose);
    };
    return std::equal(a.m_caches.begin(), a.m_caches.end(), b.m_caches.begin(), b.m_caches.end(),
                      [&](const auto& x, const auto& y) {
                          return std::tie(x.m_strName, x.m_strHandle, x.m_strInstance, x.m_processId,
                                          x.m_instanceCount) == std::tie(y.m_strName, y.m_strHandle,
                                                                         y.m_strInstance, y.m_processId,
                                                                         y.m_instanceCount) &&
                                 std::equal(x.m_operations.begin(), x.m_operations.end(),
                                            y.m_operations.begin(), y.m_operations.end(), sameOperation) &&
                                 std::equal(x.m_cursors.begin(), x.m_cursors.end(), y.m_cursors.begin(),
                                            y.m_cursors.end(), sameCursor);
                      });
}

bool SameThread(const CThread& a, const CThread& b) {
    return a.m_nProcessID == b.m_nProcessID && a.m_nThreadID == b.m_nThreadID &&
           a.m_nStartTime == b.m_nStartTime && a.m_nEndTime == b.m_nEndTime &&
           Same(a.m_listDetails, b.m_listDetails) && Same(a.m_listErrors, b.m_listErrors) &&
           SameStatements(a.m_pSQLAnalysis, b.m_pSQLAnalysis) &&
           SameFunctions(a.m_pBSFNAnalysis, b.m_pBSFNAnalysis);
}

bool SameProcess(const CProcess& a, const CProcess& b) {
    return a.m_nProcessID == b.m_nProcessID && a.m_nStartTime == b.m_nStartTime &&
           a.m_nEndTime == b.m_nEndTime && Same(a.m_listErrors, b.m_listErrors) &&
           SameStatements(a.m_pSQLAnalysis, b.m_pSQLAnalysis) &&
           SameFunctions(a.m_pBSFNAnalysis, b.m_pBSFNAnalysis) &&
           SameCaches(a.m_pCacheAnalysis, b.m_pCacheAnalysis) &&
           std::equal(a.m_listThreads.begin(), a.m_listThreads.end(), b.m_listThreads.begin(),
                      b.m_listThreads.end(),
                      [](const auto& one, const auto& other) { return SameThread(*one, *other); });
}

bool SameRefusedLine(const RefusedLine& a, const RefusedLine& b) {
    return std::tie(a.reason, a.number, a.text) == std::tie(b.reason, b.number, b.text);
}

bool SameUser(const CJASUser& a, const CJASUser& b) {
    return a.m_strUser == b.m_strUser && Same(a.m_listDetails, b.m_listDetails) &&
           Same(a.m_listErrors, b.m_listErrors) && SameStatements(a.m_pSQLAnalysis, b.m_pSQLAnalysis) &&
           SameFunctions(a.m_pBSFNAnalysis, b.m_pBSFNAnalysis);
}

} // namespace

std::string DifferenceOf(const CCarvelotDoc& one, const CCarvelotDoc& other) {
    if (one.m_nLogFormat != other.m_nLogFormat) {
        return "the format";
    }
    if (one.m_nTextColumn != other.m_nTextColumn || one.m_nTabCount != other.m_nTabCount) {
        return "where the text stands";
    }
    if (one.m_bDashForm != other.m_bDashForm || one.m_bUBELog != other.m_bUBELog) {
        return "the form of the last line, or whether there are lines of a UBE";
    }
    const RefusedLines& a = one.Refused();
    const RefusedLines& b = other.Refused();
    if (std::tie(a.noTime, a.noMonth, a.filtered) != std::tie(b.noTime, b.noMonth, b.filtered) ||
        !std::equal(a.first.begin(), a.first.end(), b.first.begin(), b.first.end(), SameRefusedLine)) {
        return "how many lines became no record";
    }
    if (!(one.Notes().m_helpful == other.Notes().m_helpful) ||
        one.Notes().m_bytes.utf8 != other.Notes().m_bytes.utf8 ||
        one.Notes().m_bytes.codePage != other.Notes().m_bytes.codePage) {
        return "which dialects would help, or what bytes there are";
    }
    if (one.m_nLines != other.m_nLines || !SameNumbers(one.m_listLineNumbers, other.m_listLineNumbers)) {
        return "the numbers of the lines";
    }
    if (std::string difference = DifferenceOf(one.m_listDetails, other.m_listDetails); !difference.empty()) {
        return difference;
    }
    if (!Same(one.m_listGaps, other.m_listGaps)) {
        return "the gaps";
    }
    if (!std::equal(one.m_listProcesses.begin(), one.m_listProcesses.end(), other.m_listProcesses.begin(),
                    other.m_listProcesses.end(),
                    [](const auto& x, const auto& y) { return SameProcess(*x, *y); })) {
        return "a process";
    }
    if (!std::equal(one.m_listUsers.begin(), one.m_listUsers.end(), other.m_listUsers.begin(),
                    other.m_listUsers.end(), [](const auto& x, const auto& y) { return SameUser(*x, *y); })) {
        return "a user";
    }
    return {};
}

} // namespace carvelot::test
