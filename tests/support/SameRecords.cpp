#include "support/SameRecords.h"

#include <algorithm>
#include <tuple>

namespace carvelot::test {

namespace {

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

} // namespace carvelot::test
