// One line of a JAS web log.
#include "logcore/CarvelotDoc.h"

#include "logcore/ByteScan.h"
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

// Reads the fields ahead of the text. False for a line that is no record: an empty one, or one whose second
// word is no month, which is what continuation lines and stack traces are.
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
    text = TrimStatement(tokens.Rest());
    return true;
}

// The one form that nearly every line has: "29 Jun 2016 12:08:30,122 [APP   ] USER - [JDBJ]   text". Gives
// what ReadFields gives, without looking at each character as a possible delimiter. False, with nothing
// changed that matters, for any other form.
bool ReadUsualFields(std::string_view line, CLogDetail& detail, std::string_view& text) {
    const auto digit = [](char c) { return c - '0'; };
    const auto bracketIn = [](std::string_view in) {
        std::size_t at = 0;
        while (at < in.size() && !kBrackets(in[at])) {
            ++at;
        }
        return at;
    };
    const std::size_t dayDigits = line.size() > 1 && IsDigit(line[1]) ? 2 : 1;
    // Behind the day: " Jun 2016 12:08:30,122 [".
    constexpr std::size_t stampLength = 24;
    if (line.size() < dayDigits + stampLength || !IsDigit(line[0])) {
        return false;
    }
    const char* const p = line.data() + dayDigits;
    // Of the sixteen characters from the year on all but these are digits: "2016 12:08:30,122".
    constexpr std::uint32_t digitColumns = 0xFFFF & ~((1U << 4) | (1U << 7) | (1U << 10) | (1U << 13));
    if ((DigitsAmong16(p + 5) & digitColumns) != digitColumns || !IsDigit(p[21])) {
        return false;
    }
    if (p[0] != ' ' || p[4] != ' ' || p[9] != ' ' || p[12] != ':' || p[15] != ':' || p[18] != ',' ||
        p[22] != ' ' || p[23] != '[' || !IsMonthName({p + 1, 3})) {
        return false;
    }
    std::string_view rest = line.substr(dayDigits + stampLength);
    const std::size_t levelEnd = bracketIn(rest);
    if (levelEnd == rest.size() || levelEnd == 0 || rest[levelEnd] != ']') {
        return false;
    }
    const std::string_view level = rest.substr(0, levelEnd);
    rest.remove_prefix(levelEnd + 1);
    // Nothing, or one word, and the dash, each with one blank ahead.
    std::string_view user;
    if (!Starts(rest, " - [")) {
        const std::size_t userEnd = rest.find(' ', 1);
        if (userEnd == std::string_view::npos || userEnd == 1 || rest.front() != ' ' || rest[1] == '-' ||
            !Starts(rest.substr(userEnd), " - [") ||
            rest.substr(0, userEnd).find('\t') != std::string_view::npos) {
            return false;
        }
        user = rest.substr(1, userEnd - 1);
        rest.remove_prefix(userEnd);
    }
    rest.remove_prefix(4);
    const std::size_t sourceEnd = bracketIn(rest);
    if (sourceEnd == rest.size() || sourceEnd == 0) {
        return false;
    }
    const auto two = [&](std::size_t at) { return digit(p[at]) * 10 + digit(p[at + 1]); };
    detail.m_nDay = dayDigits == 2 ? digit(line[0]) * 10 + digit(line[1]) : digit(line[0]);
    detail.m_strMonth = {p + 1, 3};
    detail.m_nHour = two(10);
    detail.m_nMinute = two(13);
    detail.m_nSecond = two(16);
    detail.m_nMicrosecond = (two(19) * 10 + digit(p[21])) * 1000;
    detail.m_strLevel = TrimRight(TrimLeft(level, " "), " ");
    detail.m_strUser = user;
    detail.m_strSource = rest.substr(0, sourceEnd);
    text = TrimStatement(rest.substr(sourceEnd + 1));
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
    if (!ReadUsualFields(whole, detail, detail.m_strText) && !ReadFields(whole, detail, detail.m_strText)) {
        return;
    }
    // While a statement awaits parameters no test looks for words inside a text.
    TextSigns signs;
    if (m_pendingStatement.parameters <= 0) {
        signs = line.hints.IsComplete() ? FindSigns(detail.m_strText, whole, line.hints)
                                        : FindSigns(detail.m_strText);
    }
    Classification result =
        ClassifyJASStatement(detail.m_strLevel, detail.m_strText, signs, m_pendingStatement, m_strFinished);
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
    const bool ascii =
        detail.m_strText.data() == m_strFinished.data() ? platform::IsAscii(detail.m_strText) : line.ascii;
    const RecordIndex record = m_listDetails.Append(detail, ascii);
    CommitToUser(record, detail.m_nTime);
    CommitDetail(record, detail.m_nTime);
}

} // namespace carvelot
