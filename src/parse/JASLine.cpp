#include "parse/JASLine.h"

#include "parse/StatementParts.h"
#include "platform/CodePage.h"
#include "text/Integers.h"
#include "text/LineTokens.h"
#include "text/TextColumns.h"

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

// Reads the fields ahead of the text. False for a line that is no record: an empty one, or one whose second
// word is no month, which is what continuation lines and stack traces are.
bool ReadFields(std::string_view line, CLogDetail& detail, std::string_view& text, std::uint64_t& unread) {
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
        ++unread;
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
    text = TrimStatement(tokens.Rest());
    return true;
}

} // namespace

bool CJASLineParser::ParseJASLine(const LogLine& line, std::uint32_t processFilter, CLogDetail& detail,
                                  bool& ascii) {
    const std::string_view whole =
        line.ascii ? line.bytes : platform::BytesToUtf8(line.bytes, m_strConverted);
    if (!ReadFields(whole, detail, detail.m_strText, m_refused.noMonth)) {
        return false;
    }
    Classification result;
    result.kind = KindOfLevel(detail.m_strLevel);
    if (result.kind == LOG_NONE) {
        result = ClassifyJASStatement(detail.m_strText, m_pending, m_strName);
    }
    if (processFilter != 0) {
        ++m_refused.filtered;
        return false;
    }
    detail.m_nKind = result.kind;
    detail.m_nReturnCode = result.returnCode;
    detail.m_strName = result.Name(m_strName);
    detail.m_nTime = LogTime(detail.m_nHour, detail.m_nMinute, detail.m_nSecond, detail.m_nMicrosecond);
    if (detail.m_nKind == LOG_SQL) {
        const SqlParts parts = SplitSQLStatement(detail.m_strText, m_strTable);
        detail.m_nSQLOperation = parts.operation;
        detail.m_strTable = parts.table;
    }
    ascii = result.made == Classification::Made::Text ? platform::IsAscii(detail.m_strText) : line.ascii;
    return true;
}

} // namespace carvelot
