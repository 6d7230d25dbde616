// Lines of a JAS web log: date, time, level, user, source, and the statement text.
#pragma once

#include "text/ByteScan.h"
#include "parse/Classifier.h"
#include "text/Columns.h"
#include "records/LineHead.h"
#include "parse/LogReader.h"
#include "parse/StatementParts.h"
#include "platform/CodePage.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

// Takes the lines of a log in their order, and knows nothing of what becomes of them.
class CJASLineParser {
public:
    // The statement that awaits its parameters goes from line to line, and from log to log.
    explicit CJASLineParser(PendingStatement& pending) : m_pending(pending) {}

    // Reads a line word by word. False for a line that is no record, which under a process filter none is.
    // The texts are views of the line, of the parser or of the pending statement, valid until the next line.
    // A line that is no UTF-8 becomes the converted one. `ascii` tells whether the text is known to be ASCII.
    bool Parse(LogLine& line, std::uint32_t processFilter, CLogDetail& detail, bool& ascii);
    // Remembers what that line, unchanged, began with: such lines are records of this context, and come
    // through ParseUsual from now on.
    void Learn(const LogLine& line, const CLogDetail& detail, std::uint32_t context);
    // Forgets that again: the contexts are gone.
    void ForgetBeginnings();

    // For lines that begin as earlier ones did: calls take(const UsualLine&). False leaves a line to Parse.
    template <class Take> bool ParseUsual(const LogLine& line, const Take& take);

private:
    // The stamp of the one form that nearly every line has: "29 Jun 2016 12:08:30,122 [".
    static constexpr std::size_t kLongestStamp = 26;
    static constexpr std::size_t kFractionLength = 4; // and the blank behind it

    static bool ReadStamp(const char* line, LineStamp& stamp);
    TextSigns SignsOf(const LogLine& line, std::string_view text) const;
    // A finished statement may hold what earlier lines brought.
    bool IsOfThePending(std::string_view text) const { return text.data() == m_pending.statement.data(); }

    PendingStatement& m_pending;

    // How lines begin.
    LineStamp m_stamp;
    CLineHeads m_heads;

    std::string m_strConverted; // the current line, when its bytes are no UTF-8
    std::string m_strName;      // its display name
    std::string m_strTable;     // its table, when that is no slice of the text
};

template <class Take> bool CJASLineParser::ParseUsual(const LogLine& line, const Take& take) {
    const char* const p = line.bytes.data();
    const std::size_t size = line.bytes.size();
    if (!line.ascii || size < kLongestStamp) {
        return false;
    }
    std::uint32_t fraction = 0;
    if ((!m_stamp.IsStartOf(p) && !ReadStamp(p, m_stamp)) ||
        !ThreeDigitsAndBracket(p + m_stamp.length, fraction)) {
        m_stamp.length = 0;
        return false;
    }
    const char* const headStart = p + m_stamp.length + kFractionLength;
    const char* const end = p + size;
    const LineHead* const known =
        m_heads.Find(headStart, static_cast<std::size_t>(end - headStart), m_stamp.month);
    if (known == nullptr) {
        return false;
    }
    const LineHead& head = *known;
    const char* const first = headStart + head.length;
    std::string_view text = TrimPaddedStatement({first, static_cast<std::size_t>(end - first)});
    Classification result{head.levelKind, false, 0};
    if (head.levelKind == LOG_NONE) {
        result = ClassifyJASStatement(text, SignsOf(line, text), m_pending, m_strName, true);
    }
    SqlOperation operation = SQL_NONE;
    std::string_view name = result.Name(m_strName);
    if (result.kind == LOG_SQL) {
        const SqlParts parts = SplitSQLStatement(text, m_strTable);
        operation = parts.operation;
        name = parts.table;
    }
    const bool ascii = !IsOfThePending(text) || m_pending.ascii || platform::IsAscii(text);
    take(UsualLine{m_stamp, fraction, head.contexts[0], result.kind, result.returnCode, operation, ascii,
                   false, text, text, name});
    return true;
}

inline TextSigns CJASLineParser::SignsOf(const LogLine& line, std::string_view text) const {
    // While a statement awaits parameters no test looks for words inside a text.
    if (m_pending.parameters > 0 || line.hints.Empty()) {
        return {};
    }
    return line.hints.IsComplete() ? FindSigns(text, line.bytes, line.hints) : FindSigns(text);
}

} // namespace carvelot
