// One line of a JAS web log.
#include "logcore/CarvelotDoc.h"

#include "logcore/Columns.h"
#include "logcore/LineTokens.h"
#include "logcore/Numbers.h"
#include "logcore/SQLAnalysis.h"
#include "platform/CodePage.h"

#include <algorithm>
#include <limits>

namespace carvelot {

namespace {

// "%d:%d:%d,%d"; what does not scan stays 0. The last number is milliseconds.
void ScanTime(std::string_view token, CLogDetail& detail) {
    std::size_t pos = 0;
    const auto next = [&](char c) { return pos < token.size() && token[pos] == c && ++pos > 0; };
    std::int32_t milliseconds = 0;
    if (ScanInteger(token, pos, detail.m_nHour) && next(':') && ScanInteger(token, pos, detail.m_nMinute) &&
        next(':') && ScanInteger(token, pos, detail.m_nSecond) && next(',')) {
        ScanInteger(token, pos, milliseconds);
    }
    constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
    detail.m_nMicrosecond =
        static_cast<std::int32_t>(std::clamp(std::int64_t{milliseconds} * 1000, lowest, highest));
}

// Reads the fields ahead of the text. False for a line that is no record: an empty one, or one whose second word is no
// month, which is what continuation lines and stack traces are.
bool ReadFields(std::string_view line, CLogDetail& detail, std::string_view& text) {
    CLineTokens tokens(line);
    text = {};
    std::string_view token;
    if (!tokens.Next(kBlank, token)) {
        return false;
    }
    detail.m_nDay = ReadInteger(token);
    if (!tokens.Next(kBlankOrTab, token)) {
        return true;
    }
    if (!IsMonth(token)) {
        return false;
    }
    detail.m_strMonth = token;
    if (!tokens.Next(kBlankOrTab, token) || !tokens.Next(kBlankOrTab, token)) {
        return true;
    }
    ScanTime(token, detail);
    if (!tokens.Next(kBrackets, token)) {
        return true;
    }
    detail.m_strLevel = TrimRight(TrimLeft(token, "[] "), "[] ");
    for (;;) {
        if (!tokens.Next(kBlankOrTab, token)) {
            return true;
        }
        if (token.starts_with('-')) {
            break;
        }
        detail.m_strUser = token;
    }
    if (tokens.Next(kBrackets, token)) {
        detail.m_strSource = token;
    }
    text = TrimRight(TrimLeft(tokens.Rest(), " \t"), " ");
    return true;
}

} // namespace

void CCarvelotDoc::ParseJASLine(LogLine& line) {
    std::string_view whole = line.bytes;
    if (!line.ascii) {
        whole = platform::BytesToUtf8(line.bytes, m_strConverted);
        if (whole.data() != line.bytes.data()) {
            line.bytes = whole;
            line.hints.Invalidate();
        }
    }
    CLogDetail detail;
    if (!ReadFields(whole, detail, detail.m_strText)) {
        return;
    }
    Classification result = ClassifyJASStatement(detail.m_strLevel, detail.m_strText,
                                                 line.hints.IsComplete()
                                                     ? FindSigns(detail.m_strText, whole, line.hints)
                                                     : FindSigns(detail.m_strText),
                                                 m_pendingStatement, m_strFinished);
    if (m_nProcessFilter != 0) {
        return;
    }
    detail.m_nKind = result.kind;
    detail.m_nReturnCode = result.returnCode;
    detail.m_strName = result.name;
    if (detail.m_strUser.empty()) {
        detail.m_strUser = kSystemLevelUser;
    }
    detail.m_nTime = LogTime(detail.m_nHour, detail.m_nMinute, detail.m_nSecond, detail.m_nMicrosecond);
    if (detail.m_nKind == LOG_SQL) {
        const SqlParts parts = SplitSQLStatement(detail.m_strText, m_strTable);
        detail.m_nSQLOperation = parts.operation;
        detail.m_strTable = parts.table;
    }
    // A finished statement may hold what earlier lines brought.
    const bool ascii = detail.m_strText.data() == m_strFinished.data() ? platform::IsAscii(detail.m_strText)
                                                                        : line.ascii;
    const RecordIndex record = m_listDetails.Append(detail, ascii);
    CommitToUser(record, detail.m_nTime);
    CommitDetail(record, detail.m_nTime);
}

} // namespace carvelot
