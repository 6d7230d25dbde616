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
void ScanTimeOfDay(std::string_view token, CLogDetail& detail) {
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

// Whether a line goes on with a name in brackets.
bool BeginsWithName(std::string_view rest) {
    const std::size_t end = rest.find_first_of("[]", 1);
    return rest.starts_with('[') && end != std::string_view::npos && end > 1 && rest[end] == ']';
}

// The English name of the month that the second word is in another language; empty if it is none. `year` is
// what stands behind it, `bytes` the line as the log holds it.
std::string_view ForeignMonth(std::string_view day, std::string_view month, std::string_view year,
                              std::string_view bytes, CJASLineParser& parser) {
    // A word of another language is a month only as part of a stamp.
    const std::size_t yearAt = year.find_first_not_of(" \t");
    if (!IsDigit(day.front()) || yearAt == std::string_view::npos || !IsDigit(year[yearAt])) {
        return {};
    }
    CLineTokens tokens(bytes);
    std::string_view token;
    tokens.Next(kBlank, token);
    tokens.Next(kBlankOrTab, token);
    return parser.ForeignMonth(month, token);
}

// Reads the fields ahead of the text. False for a line that is no record: an empty one, or one whose second
// word is no month, which is what continuation lines and stack traces are.
bool ReadFields(std::string_view line, std::string_view bytes, CJASLineParser& parser, CLogDetail& detail) {
    CLineTokens tokens(line);
    detail.m_strText = {};
    std::string_view token;
    if (!tokens.Next(kBlank, token)) {
        return false;
    }
    detail.m_nDay = ReadInteger(token);
    const std::string_view day = token;
    if (!tokens.Next(kBlankOrTab, token)) {
        return true;
    }
    detail.m_strMonth = IsMonth(token) ? token : ForeignMonth(day, token, tokens.Rest(), bytes, parser);
    if (detail.m_strMonth.empty()) {
        parser.m_refused.Take(RefusalReason::NoMonth, line);
        return false;
    }
    if (!tokens.Next(kBlankOrTab, token) || !tokens.Next(kBlankOrTab, token)) {
        return true;
    }
    ScanTimeOfDay(token, detail);
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
        if (CJASLineParser::IsNumber(token) && BeginsWithName(tokens.Rest()) &&
            parser.AsksFor(Dialect::Numbered)) {
            tokens.Next(kBrackets, token);
            detail.m_strSource = token;
        }
    }
    detail.m_strText = TrimStatement(tokens.Rest());
    return true;
}

} // namespace

bool CJASLineParser::IsNumber(std::string_view source) {
    return !source.empty() && std::all_of(source.begin(), source.end(), IsDigit);
}

bool CJASLineParser::ParseJASLine(const LogLine& line, std::uint32_t processFilter, CLogDetail& detail,
                                  bool& ascii) {
    const std::string_view whole = TextOf(line);
    if (!ReadFields(whole, line.bytes, *this, detail)) {
        return false;
    }
    Classification result;
    result.kind = KindOfLevel(detail.m_strLevel);
    if (result.kind == LOG_NONE) {
        result = ClassifyJASStatement(detail.m_strText, m_pending, m_strName);
    }
    if (processFilter != 0) {
        m_refused.Take(RefusalReason::Filtered, whole);
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
