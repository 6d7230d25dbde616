// Lines of a debug log: date, time, marker, process and thread, label, and the statement text.
#pragma once

#include "text/ByteScan.h"
#include "parse/Classifier.h"
#include "text/Columns.h"
#include "records/LineHead.h"
#include "parse/LogReader.h"
#include "parse/StatementParts.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace carvelot {

// Takes the lines of a log in their order, and knows nothing of what becomes of them.
class CDebugLineParser {
public:
    // What goes from line to line; the first two are what the format's detection learnt, to begin with.
    std::int32_t m_nTextColumn = 0;    // fixed column of statement text, 0 while unknown
    std::int32_t m_nTabCount = 0;      // tabs ahead of statement text, 0 while unknown
    bool m_bDashForm = false;          // the marker of the latest line was "-"
    bool m_bUBELog = false;            // for good, once a "--UBE--" line was parsed
    std::uint32_t m_nUBEProcessID = 0; // of UBE lines; nothing assigns them
    std::uint32_t m_nUBEThreadID = 0;

    // Reads a line word by word. False for a line that is no record, or one of another process than the
    // filter names, if it names one. The texts are views of the line or of the parser, valid until the next
    // line. A line that is no UTF-8 becomes the converted one.
    bool Parse(LogLine& line, std::uint32_t processFilter, CLogDetail& detail);
    // Remembers what that line, unchanged, began with: such lines are records of this context, and come
    // through ParseUsual from now on.
    void Learn(const LogLine& line, const CLogDetail& detail, std::uint32_t context);
    // Forgets that again: the contexts are gone.
    void ForgetBeginnings();

    // For lines that begin as earlier ones did: calls take(const UsualLine&). False leaves a line to Parse.
    template <class Take> bool ParseUsual(const LogLine& line, const Take& take);

private:
    // Date and time of the one form that nearly every line has: "Sep 22 16:36:42.440295 - 4576/3268 label".
    static constexpr std::size_t kIDsColumn = 25;
    static constexpr std::size_t kSecondsLength = 16; // up to the point

    static bool ReadStamp(const char* line, LineStamp& stamp);
    std::string_view StatementText(std::string_view line, bool ascii);

    // How lines begin.
    LineStamp m_stamp;
    CLineHeads m_heads;
    // How many bytes of the latest line put its text where it is, whatever stands behind them; 0 when what
    // does has a say.
    std::size_t m_nHead = 0;

    std::string m_strConverted; // the current line, when its bytes are no UTF-8
    std::string m_strCut;       // its statement text, when a column cut a surrogate pair
    std::string m_strName;      // its display name
    std::string m_strTable;     // its table, when that is no slice of the text
};

template <class Take> bool CDebugLineParser::ParseUsual(const LogLine& line, const Take& take) {
    const char* const p = line.bytes.data();
    const std::size_t size = line.bytes.size();
    if (!line.ascii || size <= kIDsColumn) {
        return false;
    }
    std::uint32_t fraction = 0;
    if ((!m_stamp.IsStartOf(p) && !ReadStamp(p, m_stamp)) ||
        !SixDigitsAndDash(p + kSecondsLength, fraction) || p[kIDsColumn - 1] != ' ') {
        m_stamp.length = 0;
        return false;
    }
    const LineHead* const known = m_heads.Find(p + kIDsColumn, size - kIDsColumn, m_stamp.month);
    if (known == nullptr) {
        return false;
    }
    const LineHead& head = *known;
    const char* const first = p + kIDsColumn + head.length;
    const char* const end = p + size;
    const std::string_view text = TrimPaddedStatement({first, static_cast<std::size_t>(end - first)});
    if (text.empty()) {
        return false;
    }
    std::size_t blanks = 0;
    if (head.labelRunsOn) {
        blanks = static_cast<std::size_t>(text.data() - first);
        // A tab ahead of the text would end the label.
        if (blanks > LineHead::kMostBlanks || LeadingBlanksAmong16(first).holdTab) {
            return false;
        }
    }
    const std::uint32_t context = head.contexts[blanks];
    if (context == LineHead::kUnknown ||
        (m_nTextColumn == 0 && Starts({first, static_cast<std::size_t>(end - first)}, " - "))) {
        return false;
    }
    TextSigns signs;
    if (!line.hints.Empty()) {
        signs = FindSigns(text, line.bytes, line.hints);
        if (signs.Hold(TextSigns::SIGN_UBE_IN_LINE)) {
            return false;
        }
    }
    m_bDashForm = true;
    const Classification result = ClassifyDebugStatement(text, signs, m_strName);
    SqlOperation operation = SQL_NONE;
    std::string_view name = result.Name(m_strName);
    if (result.kind == LOG_SQL) {
        const SqlParts parts = SplitSQLStatement(text, m_strTable);
        operation = parts.operation;
        name = parts.table;
    }
    std::string_view stored = text;
    if (head.labelRunsOn && end[-1] == ' ' && std::memchr(text.data(), '\t', text.size()) == nullptr) {
        stored = {text.data(), static_cast<std::size_t>(end - text.data())};
    }
    take(UsualLine{m_stamp, fraction, context, result.kind, result.returnCode, operation, true,
                   head.labelRunsOn, text, stored, name});
    return true;
}

} // namespace carvelot
