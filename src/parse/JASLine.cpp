#include "parse/JASLine.h"

#include "records/DetailList.h"
#include "text/LineTokens.h"
#include "text/Numbers.h"

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

} // namespace

// Reads the stamp up to the comma; false for any other form, and for numbers that no clock shows.
bool CJASLineParser::ReadStamp(const char* line, LineStamp& stamp) {
    const std::size_t dayDigits = IsDigit(line[1]) ? 2 : 1;
    const char* const p = line + dayDigits;
    // Of the sixteen characters from the year on all but these are digits: "2016 12:08:30,122".
    constexpr std::uint32_t digitColumns = 0xFFFF & ~((1U << 4) | (1U << 7) | (1U << 10) | (1U << 13));
    if (!IsDigit(line[0]) || (DigitsAmong16(p + 5) & digitColumns) != digitColumns || p[0] != ' ' ||
        p[4] != ' ' || p[9] != ' ' || p[12] != ':' || p[15] != ':' || p[18] != ',' ||
        !IsMonthName({p + 1, 3})) {
        return false;
    }
    const auto digit = [](char c) { return c - '0'; };
    const auto two = [&](std::size_t at) { return digit(p[at]) * 10 + digit(p[at + 1]); };
    stamp.day = dayDigits == 2 ? digit(line[0]) * 10 + digit(line[1]) : digit(line[0]);
    stamp.hour = two(10);
    stamp.minute = two(13);
    stamp.second = two(16);
    stamp.SetBytes({line, dayDigits + 19}, {p + 1, 3});
    stamp.packed = CDetailList::PackStamp(stamp);
    return stamp.IsOfAClock();
}

bool CJASLineParser::Parse(LogLine& line, std::uint32_t processFilter, CLogDetail& detail, bool& ascii) {
    std::string_view whole = line.bytes;
    if (!line.ascii) {
        whole = platform::BytesToUtf8(line.bytes, m_strConverted);
        if (whole.data() != line.bytes.data()) {
            line.bytes = whole;
            line.hints.Invalidate();
        }
    }
    if (!ReadFields(whole, detail, detail.m_strText)) {
        return false;
    }
    const LogKind levelKind = KindOfLevel(detail.m_strLevel);
    Classification result{levelKind, false, 0};
    if (levelKind == LOG_NONE) {
        result =
            ClassifyJASStatement(detail.m_strText, SignsOf(line, detail.m_strText), m_pending, m_strName);
    }
    if (processFilter != 0) {
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
    ascii = IsOfThePending(detail.m_strText) ? platform::IsAscii(detail.m_strText) : line.ascii;
    return true;
}

void CJASLineParser::Learn(const LogLine& line, const CLogDetail& detail, std::uint32_t context) {
    const std::string_view whole = line.bytes;
    const std::string_view source = detail.m_strSource;
    if (m_stamp.length == 0 || !line.ascii || source.empty() || whole.size() < kLongestStamp) {
        return;
    }
    // The head ends with the bracket behind the source.
    const std::size_t headStart = m_stamp.length + kFractionLength;
    const auto headEnd = static_cast<std::size_t>(source.data() + source.size() + 1 - whole.data());
    if (headEnd <= whole.size()) {
        m_heads.Learn(whole.substr(headStart, headEnd - headStart), m_stamp.month, false, 0, context,
                      KindOfLevel(detail.m_strLevel));
    }
}

void CJASLineParser::ForgetBeginnings() {
    m_stamp = {};
    m_heads.Clear();
}

} // namespace carvelot
