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

bool SameLabel(const LabelText& a, const LabelText& b) {
    if (a.shared.size() + a.own.size() != b.shared.size() + b.own.size()) {
        return false;
    }
    const auto at = [](const LabelText& label, std::size_t i) {
        return i < label.shared.size() ? label.shared[i] : label.own[i - label.shared.size()];
    };
    for (std::size_t i = 0; i < a.shared.size() + a.own.size(); ++i) {
        if (at(a, i) != at(b, i)) {
            return false;
        }
    }
    return true;
}

bool SameRecord(const CLogDetail& a, const CLogDetail& b) {
    return std::tie(a.m_nKind, a.m_nReturnCode, a.m_nSQLOperation, a.m_bUBE, a.m_nUBELevel) ==
               std::tie(b.m_nKind, b.m_nReturnCode, b.m_nSQLOperation, b.m_bUBE, b.m_nUBELevel) &&
           std::tie(a.m_strMonth, a.m_nDay, a.m_nHour, a.m_nMinute, a.m_nSecond, a.m_nMicrosecond,
                    a.m_nTime) == std::tie(b.m_strMonth, b.m_nDay, b.m_nHour, b.m_nMinute, b.m_nSecond,
                                           b.m_nMicrosecond, b.m_nTime) &&
           std::tie(a.m_nProcessID, a.m_nThreadID, a.m_strText, a.m_strName, a.m_strTable) ==
               std::tie(b.m_nProcessID, b.m_nThreadID, b.m_strText, b.m_strName, b.m_strTable) &&
           std::tie(a.m_strLevel, a.m_strUser, a.m_strSource, a.m_fDuration, a.m_fGap) ==
               std::tie(b.m_strLevel, b.m_strUser, b.m_strSource, b.m_fDuration, b.m_fGap) &&
           SameLabel(a.m_strThreadLabel, b.m_strThreadLabel);
}

bool SameThread(const CThread& a, const CThread& b) {
    return a.m_nProcessID == b.m_nProcessID && a.m_nThreadID == b.m_nThreadID &&
           a.m_nStartTime == b.m_nStartTime && a.m_nEndTime == b.m_nEndTime &&
           Same(a.m_listDetails, b.m_listDetails) && Same(a.m_listErrors, b.m_listErrors) &&
           Same(a.m_pSQLAnalysis.m_listLongTasks, b.m_pSQLAnalysis.m_listLongTasks);
}

bool SameProcess(const CProcess& a, const CProcess& b) {
    return a.m_nProcessID == b.m_nProcessID && a.m_nStartTime == b.m_nStartTime &&
           a.m_nEndTime == b.m_nEndTime && Same(a.m_listErrors, b.m_listErrors) &&
           std::equal(a.m_listThreads.begin(), a.m_listThreads.end(), b.m_listThreads.begin(),
                      b.m_listThreads.end(),
                      [](const auto& one, const auto& other) { return SameThread(*one, *other); });
}

bool SameUser(const CJASUser& a, const CJASUser& b) {
    return a.m_strUser == b.m_strUser && Same(a.m_listDetails, b.m_listDetails) &&
           Same(a.m_listErrors, b.m_listErrors) &&
           Same(a.m_pSQLAnalysis.m_listLongTasks, b.m_pSQLAnalysis.m_listLongTasks);
}

} // namespace

std::string DifferenceOf(const CDetailList& a, const CDetailList& b) {
    for (std::uint32_t i = 0; i < std::min(a.Size(), b.Size()); ++i) {
        const RecordIndex record{i};
        if (!SameRecord(a[record], b[record])) {
            return "record " + std::to_string(i) + ": \"" + std::string(a.Text(record)) + "\" and \"" +
                   std::string(b.Text(record)) + "\"";
        }
        if (a.TextIsAscii(record) != b.TextIsAscii(record)) {
            return "record " + std::to_string(i) + ": whether the text is ASCII";
        }
    }
    if (a.Size() != b.Size()) {
        return "the number of records";
    }
    return {};
}

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
    if (std::tie(a.noTime, a.noMonth, a.filtered) != std::tie(b.noTime, b.noMonth, b.filtered)) {
        return "how many lines became no record";
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
