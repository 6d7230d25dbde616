#include "parse/DebugLine.h"

#include "records/DetailList.h"
#include "text/LineTokens.h"
#include "text/Numbers.h"
#include "platform/CodePage.h"

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

// Reads the stamp up to the whole second; false for any other form, and for numbers that no clock shows.
bool CDebugLineParser::ReadStamp(const char* p, LineStamp& stamp) {
    // Of the sixteen characters from column 5 on all but these are digits: " 16:36:42.440295".
    constexpr std::uint32_t digitColumns = 0xFFFF & ~((1U << 1) | (1U << 4) | (1U << 7) | (1U << 10));
    if ((DigitsAmong16(p + 5) & digitColumns) != digitColumns || p[3] != ' ' || p[6] != ' ' || p[9] != ':' ||
        p[12] != ':' || p[15] != '.' || (p[4] != ' ' && !IsDigit(p[4])) || !IsMonthName({p, 3})) {
        return false;
    }
    const auto two = [p](std::size_t column) { return Digit(p[column]) * 10 + Digit(p[column + 1]); };
    stamp.day = (p[4] == ' ' ? 0 : Digit(p[4]) * 10) + Digit(p[5]);
    stamp.hour = two(7);
    stamp.minute = two(10);
    stamp.second = two(13);
    stamp.SetBytes({p, kSecondsLength}, {p, 3});
    stamp.packed = CDetailList::PackStamp(stamp);
    return stamp.IsOfAClock();
}

std::string_view CDebugLineParser::StatementText(std::string_view line, bool ascii) {
    m_nHead = 0;
    if (m_nTextColumn == 0 && m_nTabCount > 0) {
        // A search that finds no tab makes the next one start over from the line's start.
        std::size_t tab = std::string_view::npos;
        std::int32_t searches = 0;
        bool startedOver = false;
        for (std::int32_t left = m_nTabCount; left > 0;) {
            tab = line.find('\t', tab == std::string_view::npos ? 0 : tab + 1);
            --left;
            ++searches;
            if (tab == std::string_view::npos) {
                startedOver = true;
                // The rest repeats what was found so far: whole rounds of it change nothing.
                left %= searches;
            }
        }
        if (tab == std::string_view::npos) {
            return {};
        }
        std::string_view text = line.substr(tab + 1);
        if (!text.starts_with(" - ")) {
            m_nHead = startedOver ? 0 : tab + 1;
            return TrimStatement(text);
        }
        // From this line on the text column is fixed for the session.
        m_nTextColumn = static_cast<std::int32_t>(ColumnOf(line, tab + 1) + 3);
        m_heads.Clear();
    }
    if (m_nTextColumn == 0) {
        return {};
    }
    const auto column = static_cast<std::size_t>(m_nTextColumn);
    if (ascii) {
        m_nHead = column;
        return column < line.size() ? TrimStatement(line.substr(column)) : std::string_view{};
    }
    return TrimStatement(FromColumn(line, column, m_strCut));
}

void CDebugLineParser::Learn(const LogLine& line, const CLogDetail& detail, std::uint32_t context) {
    if (m_stamp.length == 0 || !line.ascii || detail.m_bUBE || detail.m_strText.empty()) {
        return;
    }
    const std::string_view whole = line.bytes;
    const std::string_view label = detail.m_strThreadLabel.own;
    const auto column = [&](const char* at) { return static_cast<std::size_t>(at - whole.data()); };
    if (m_nHead <= kIDsColumn || label.empty() || column(label.data()) >= m_nHead) {
        return;
    }
    // A label that ends right at the head's end would go on in another line.
    const std::size_t labelEnd = column(label.data() + label.size());
    const bool runsOn = labelEnd >= m_nHead;
    const std::size_t textStart = column(detail.m_strText.data());
    if (!runsOn || labelEnd > textStart) {
        m_heads.Learn(whole.substr(kIDsColumn, m_nHead - kIDsColumn), m_stamp.month, runsOn,
                      runsOn ? textStart - m_nHead : 0, context, LOG_NONE);
    }
}

void CDebugLineParser::ForgetBeginnings() {
    m_stamp = {};
    m_heads.Clear();
}

bool CDebugLineParser::Parse(LogLine& line, std::uint32_t processFilter, CLogDetail& detail) {
    std::string_view text = line.bytes;
    if (!line.ascii) {
        text = platform::BytesToUtf8(line.bytes, m_strConverted);
        if (text.data() != line.bytes.data()) {
            line.bytes = text;
            line.hints.Invalidate();
        }
    }
    if (!ReadFields(text, detail, m_bDashForm)) {
        return false;
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
    const Classification result = ClassifyDebugStatement(detail.m_strText,
                                                         isSlice && line.hints.IsComplete()
                                                             ? FindSigns(detail.m_strText, text, line.hints)
                                                             : FindSigns(detail.m_strText),
                                                         m_strName);
    if (processFilter != 0 && processFilter != detail.m_nProcessID) {
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
