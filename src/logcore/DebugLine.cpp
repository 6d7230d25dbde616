// One line of a debug log.
#include "logcore/CarvelotDoc.h"

#include "logcore/ByteScan.h"
#include "logcore/Columns.h"
#include "logcore/LineTokens.h"
#include "logcore/Numbers.h"
#include "logcore/SQLAnalysis.h"
#include "platform/CodePage.h"

#include <cstring>

namespace carvelot {

namespace {

constexpr std::string_view kNoMonth = "MONTH";
constexpr std::size_t kUBELevelColumn = 8;

// "%d:%d:%d.%d", or else "%d:%d:%d" without a fraction.
bool ScanTime(std::string_view token, CLogDetail& detail) {
    std::size_t pos = 0;
    const auto colon = [&] { return pos < token.size() && token[pos] == ':' && ++pos > 0; };
    if (!ScanInteger(token, pos, detail.m_nHour) || !colon() || !ScanInteger(token, pos, detail.m_nMinute) ||
        !colon() || !ScanInteger(token, pos, detail.m_nSecond)) {
        return false;
    }
    if (pos < token.size() && token[pos] == '.') {
        ++pos;
        ScanInteger(token, pos, detail.m_nMicrosecond);
    }
    return true;
}

void ScanProcessAndThread(std::string_view token, CLogDetail& detail) {
    std::size_t pos = 0;
    std::int32_t process = 0;
    std::int32_t thread = 0;
    if (ScanInteger(token, pos, process) && pos < token.size() && token[pos] == '/') {
        ++pos;
        ScanInteger(token, pos, thread);
    }
    detail.m_nProcessID = static_cast<std::uint32_t>(process);
    detail.m_nThreadID = static_cast<std::uint32_t>(thread);
}

constexpr std::int32_t Digit(char c) { return c - '0'; }

// The number of an unsigned run of at most nine digits that ends at `end`; false leaves the rest to the
// general scan.
bool PlainNumber(const char*& at, const char* limit, std::uint32_t& value) {
    const char* const first = at;
    std::uint32_t sum = 0;
    while (at != limit && IsDigit(*at)) {
        sum = sum * 10 + static_cast<std::uint32_t>(Digit(*at));
        ++at;
    }
    value = sum;
    return at != first && at - first <= 9;
}

// The one form that nearly every line has: "Sep 22 16:36:42.440295 - 4576/3268 label". Gives what ReadFields
// gives, without looking at each character as a possible delimiter. False, with nothing changed that matters,
// for any other form.
bool ReadUsualFields(std::string_view line, CLogDetail& detail, bool& dashForm) {
    constexpr std::size_t idsColumn = 25;
    if (line.size() <= idsColumn) {
        return false;
    }
    const char* const p = line.data();
    // Of the sixteen characters from column 5 on all but these are digits: " 16:36:42.440295".
    constexpr std::uint32_t digitColumns = 0xFFFF & ~((1U << 1) | (1U << 4) | (1U << 7) | (1U << 10));
    if ((DigitsAmong16(p + 5) & digitColumns) != digitColumns || !IsDigit(p[21])) {
        return false;
    }
    if (std::memcmp(p + 22, " - ", 3) != 0 || p[3] != ' ' || p[6] != ' ' || p[9] != ':' || p[12] != ':' ||
        p[15] != '.' || (p[4] != ' ' && !IsDigit(p[4]))) {
        return false;
    }
    const std::string_view month = line.substr(0, 3);
    if (!IsMonthName(month)) {
        return false;
    }
    const char* at = p + idsColumn;
    const char* const end = p + line.size();
    if (!PlainNumber(at, end, detail.m_nProcessID) || at == end || *at != '/' ||
        !PlainNumber(++at, end, detail.m_nThreadID) || (at != end && *at != ' ' && *at != '\t')) {
        detail.m_nProcessID = detail.m_nThreadID = 0;
        return false;
    }
    const auto two = [p](std::size_t column) { return Digit(p[column]) * 10 + Digit(p[column + 1]); };
    detail.m_strMonth = month;
    detail.m_nDay = (p[4] == ' ' ? 0 : Digit(p[4]) * 10) + Digit(p[5]);
    detail.m_nHour = two(7);
    detail.m_nMinute = two(10);
    detail.m_nSecond = two(13);
    detail.m_nMicrosecond = (two(16) * 100 + two(18)) * 100 + two(20);
    dashForm = true;
    // The delimiter behind the ids is stepped over; from there on only a tab is one.
    at += at != end ? 1 : 0;
    while (at != end && *at == '\t') {
        ++at;
    }
    if (at != end) {
        const std::string_view rest(at, static_cast<std::size_t>(end - at));
        detail.m_strThreadLabel.own = rest.substr(0, rest.find('\t'));
    }
    return true;
}

// Reads the fields up to the label. False for a line that is no record: one without a word, or whose third
// word is no time, which is what most continuation lines are.
bool ReadFields(std::string_view line, CLogDetail& detail, bool& dashForm) {
    CLineTokens tokens(line);
    std::string_view token;
    if (!tokens.Next(kBlankOrTab, token)) {
        return false;
    }
    detail.m_strMonth = IsMonth(token) ? token : kNoMonth;
    if (!tokens.Next(kBlankOrTab, token)) {
        return true;
    }
    detail.m_nDay = ReadInteger(token);
    if (!tokens.Next(kBlankOrTab, token)) {
        return true;
    }
    if (!ScanTime(token, detail)) {
        return false;
    }
    // The marker may be far along the line: every other word ahead of it is passed over.
    do {
        if (!tokens.Next(kBlankOrTab, token)) {
            return true;
        }
    } while (token != "-" && token != "**");
    dashForm = token == "-";
    if (!tokens.Next(kBlankOrTab, token)) {
        return true;
    }
    ScanProcessAndThread(token, detail);
    if (dashForm && tokens.Next(kTab, token)) {
        detail.m_strThreadLabel.own = token;
    }
    return true;
}

} // namespace

std::string_view CCarvelotDoc::StatementText(std::string_view line, bool ascii) {
    if (m_nTextColumn == 0 && m_nTabCount > 0) {
        // A search that finds no tab makes the next one start over from the line's start.
        std::size_t tab = std::string_view::npos;
        std::int32_t searches = 0;
        for (std::int32_t left = m_nTabCount; left > 0;) {
            tab = line.find('\t', tab == std::string_view::npos ? 0 : tab + 1);
            --left;
            ++searches;
            if (tab == std::string_view::npos) {
                // The rest repeats what was found so far: whole rounds of it change nothing.
                left %= searches;
            }
        }
        if (tab == std::string_view::npos) {
            return {};
        }
        std::string_view text = line.substr(tab + 1);
        if (!text.starts_with(" - ")) {
            return TrimStatement(text);
        }
        // From this line on the text column is fixed for the session.
        m_nTextColumn = static_cast<std::int32_t>(ColumnOf(line, tab + 1) + 3);
    }
    if (m_nTextColumn == 0) {
        return {};
    }
    const auto column = static_cast<std::size_t>(m_nTextColumn);
    if (ascii) {
        return column < line.size() ? TrimStatement(line.substr(column)) : std::string_view{};
    }
    return TrimStatement(FromColumn(line, column, m_strCut));
}

void CCarvelotDoc::ParseDebugLine(LogLine& line) {
    std::string_view text = line.bytes;
    if (!line.ascii) {
        text = platform::BytesToUtf8(line.bytes, m_strConverted);
        if (text.data() != line.bytes.data()) {
            line.bytes = text;
            line.hints.Invalidate();
        }
    }
    CLogDetail detail;
    if (!ReadUsualFields(text, detail, m_bDashForm) && !ReadFields(text, detail, m_bDashForm)) {
        return;
    }
    detail.m_strText = StatementText(text, line.ascii);
    if (HoldsUBE(line)) {
        detail.m_nProcessID = m_nUBEProcessID;
        detail.m_nThreadID = m_nUBEThreadID;
        m_bUBELog = true;
        detail.m_bUBE = true;
        detail.m_strText = text;
        detail.m_nUBELevel = DigitValue(AsciiAtColumn(text, kUBELevelColumn));
    }
    const bool isSlice = detail.m_strText.data() != m_strCut.data();
    Classification result = ClassifyDebugStatement(
        detail.m_strText, isSlice && line.hints.IsComplete() ? FindSigns(detail.m_strText, text, line.hints)
                                                             : FindSigns(detail.m_strText));
    if (m_nProcessFilter != 0 && m_nProcessFilter != detail.m_nProcessID) {
        return;
    }
    detail.m_nKind = result.kind;
    detail.m_nReturnCode = result.returnCode;
    detail.m_strName = result.name;
    detail.m_nTime = LogTime(detail.m_nHour, detail.m_nMinute, detail.m_nSecond, detail.m_nMicrosecond);
    if (detail.m_nKind == LOG_SQL) {
        const SqlParts parts = SplitSQLStatement(detail.m_strText, m_strTable);
        detail.m_nSQLOperation = parts.operation;
        detail.m_strTable = parts.table;
    }
    CommitDetail(m_listDetails.Append(detail, line.ascii), detail.m_nTime);
}

} // namespace carvelot
