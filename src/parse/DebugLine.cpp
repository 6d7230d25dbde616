#include "parse/DebugLine.h"

#include "parse/Classifier.h"
#include "parse/StatementParts.h"
#include "text/Integers.h"
#include "text/LineTokens.h"
#include "text/TextColumns.h"

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

std::string_view FirstWord(std::string_view line) {
    std::string_view token;
    CLineTokens(line).Next(kBlankOrTab, token);
    return token;
}

// Reads the fields up to the label. False for a line that is no record: one without a word, or whose third
// word is no time, which is what most continuation lines are. `bytes` is the line as the log holds it.
bool ReadFields(std::string_view line, std::string_view bytes, CDebugLineParser& parser, CLogDetail& detail) {
    CLineTokens tokens(line);
    std::string_view token;
    if (!tokens.Next(kBlankOrTab, token)) {
        return false;
    }
    const std::string_view first = token;
    const bool isEnglish = IsMonth(first);
    detail.m_strMonth = isEnglish ? first : kNoMonth;
    if (!tokens.Next(kBlankOrTab, token)) {
        return true;
    }
    detail.m_nDay = ReadInteger(token);
    const bool hasDay = IsDigit(token.front());
    if (!tokens.Next(kBlankOrTab, token)) {
        return true;
    }
    if (!ScanTime(token, detail)) {
        parser.m_refused.Take(RefusalReason::NoTime, line);
        return false;
    }
    // A word of another language is a month only as part of a stamp.
    if (!isEnglish && hasDay) {
        const std::string_view month = parser.ForeignMonth(first, FirstWord(bytes));
        detail.m_strMonth = month.empty() ? kNoMonth : month;
    }
    // The marker may be far along the line: every other word ahead of it is passed over.
    do {
        if (!tokens.Next(kBlankOrTab, token)) {
            return true;
        }
    } while (token != "-" && token != "**");
    parser.m_bDashForm = token == "-";
    if (!tokens.Next(kBlankOrTab, token)) {
        return true;
    }
    ScanProcessAndThread(token, detail);
    if (parser.m_bDashForm && tokens.Next(kTab, token)) {
        detail.m_strThreadLabel.own = token;
    }
    return true;
}

} // namespace

std::string_view CDebugLineParser::StatementText(std::string_view line) {
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
        const std::string_view text = line.substr(tab + 1);
        if (!text.starts_with(" - ")) {
            return TrimStatement(text);
        }
        // From this line on the text column is fixed for the session.
        m_nTextColumn = static_cast<std::int32_t>(ColumnOf(line, tab + 1) + 3);
    }
    if (m_nTextColumn == 0) {
        return {};
    }
    return TrimStatement(FromColumn(line, static_cast<std::size_t>(m_nTextColumn), m_strCut));
}

bool CDebugLineParser::ParseDebugLine(const LogLine& line, std::uint32_t processFilter, CLogDetail& detail) {
    const std::string_view text = TextOf(line);
    if (!ReadFields(text, line.bytes, *this, detail)) {
        return false;
    }
    detail.m_strText = StatementText(text);
    if (text.find(kUBESign) != std::string_view::npos) {
        detail.m_nProcessID = m_nUBEProcessID;
        detail.m_nThreadID = m_nUBEThreadID;
        m_bUBELog = true;
        detail.m_bUBE = true;
        detail.m_strText = text;
        detail.m_nUBELevel = DigitValue(AsciiAtColumn(text, kUBELevelColumn));
    }
    const Classification result = ClassifyDebugStatement(detail.m_strText, m_strName);
    if (processFilter != 0 && processFilter != detail.m_nProcessID) {
        m_refused.Take(RefusalReason::Filtered, text);
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
    return true;
}

} // namespace carvelot
