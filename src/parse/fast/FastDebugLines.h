// The lines of a debug log, fast: those that begin as earlier ones did are not taken apart.
#pragma once

#include "parse/DebugLine.h"
#include "parse/StatementParts.h"
#include "parse/fast/LineBeginnings.h"
#include "parse/fast/LineScan.h"
#include "parse/fast/MarkedSigns.h"
#include "parse/fast/ParseWay.h"
#include "parse/fast/StampBytes.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace carvelot {

// Reads a log for one list of records, whose contexts it remembers.
class CFastDebugLines {
public:
    CFastDebugLines(CDebugLineParser& parser, ParseWay way) : m_parser(parser), m_way(way) {}

    // What the lines' reader must scan its blocks with.
    BlockScan Scan() const { return m_way == ParseWay::Fast ? FastScan(LOG_FORMAT_DEBUG) : FindLineEnds; }

    // Gives the record of a line, if it is one that the filter lets pass, to `records`: to AddUsual(const
    // UsualLine&) or to Add(const CLogDetail&, bool ascii), which tells the record's context, or kNoContext
    // for a record that no UsualLine could have brought.
    template <class Records>
    void ParseDebugLine(const LogLine& line, std::uint32_t processFilter, Records&& records) {
        if (m_way == ParseWay::Plain || !ParseUsual(line, records)) {
            ParseAny(line, processFilter, records);
        }
    }

private:
    // Date and time of the one form that nearly every line has: "Sep 22 16:36:42.440295 - 4576/3268 label".
    static constexpr std::size_t kIDsColumn = 25;
    static constexpr std::size_t kSecondsLength = 16; // up to the point

    // A function of its own, whose values stay in registers.
    template <class Records> [[gnu::noinline]] bool ParseUsual(const LogLine& line, Records& records);
    template <class Records>
    void ParseAny(const LogLine& line, std::uint32_t processFilter, Records& records) {
        CLogDetail detail;
        const std::int32_t column = m_parser.m_nTextColumn;
        const bool isRecord = m_parser.ParseDebugLine(line, processFilter, detail);
        if (m_parser.m_nTextColumn != column) {
            // What was known was known by tabs.
            m_beginnings.Clear();
        }
        if (!isRecord) {
            return;
        }
        const std::uint32_t context = records.Add(detail, line.ascii);
        if (m_way == ParseWay::Fast && context != kNoContext) {
            Learn(line, detail, context);
        }
    }
    static bool ReadStamp(const char* line, KnownStamp& stamp);
    // Where the beginning of a line ends that the parser has just read: how many of its bytes put its text
    // where it is, whatever stands behind them. 0 when what does has a say.
    std::size_t EndOfBeginning(std::string_view line) const;
    void Learn(const LogLine& line, const CLogDetail& detail, std::uint32_t context);

    CDebugLineParser& m_parser;
    ParseWay m_way;
    KnownStamp m_stamp;
    CLineBeginnings m_beginnings;
    std::string m_strName;  // a line's display name
    std::string m_strTable; // its table, when that is no slice of the text
};

template <class Records> bool CFastDebugLines::ParseUsual(const LogLine& line, Records& records) {
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
    const LineBeginning* const known = m_beginnings.Find(p + kIDsColumn, size - kIDsColumn, m_stamp.month);
    if (known == nullptr) {
        return false;
    }
    const LineBeginning& beginning = *known;
    const char* const first = p + kIDsColumn + beginning.length;
    const char* const end = p + size;
    const std::string_view text = TrimPaddedStatement({first, static_cast<std::size_t>(end - first)});
    if (text.empty()) {
        return false;
    }
    std::size_t blanks = 0;
    if (beginning.labelRunsOn) {
        blanks = static_cast<std::size_t>(text.data() - first);
        // A tab ahead of the text would end the label.
        if (blanks > LineBeginning::kMostBlanks || LeadingBlanksAmong16(first).holdTab) {
            return false;
        }
    }
    const std::uint32_t context = beginning.contexts[blanks];
    if (context == kNoContext ||
        (m_parser.m_nTextColumn == 0 && Starts({first, static_cast<std::size_t>(end - first)}, " - "))) {
        return false;
    }
    TextSigns signs;
    if (!line.marks.Empty()) {
        const LineSigns found = FindSigns(text, line.bytes, line.marks);
        if (found.ubeInLine) {
            return false;
        }
        signs = found.inText;
    }
    m_parser.m_bDashForm = true;
    const Classification result = ClassifyDebugStatement(text, signs, m_strName);
    SqlOperation operation = SQL_NONE;
    std::string_view name = result.Name(m_strName);
    if (result.kind == LOG_SQL) {
        const SqlParts parts = SplitSQLStatement(text, m_strTable);
        operation = parts.operation;
        name = parts.table;
    }
    std::string_view stored = text;
    if (beginning.labelRunsOn && end[-1] == ' ' && std::memchr(text.data(), '\t', text.size()) == nullptr) {
        stored = {text.data(), static_cast<std::size_t>(end - text.data())};
    }
    records.AddUsual(UsualLine{m_stamp, fraction, context, result.kind, result.returnCode, operation, true,
                               beginning.labelRunsOn, text, stored, name});
    return true;
}

} // namespace carvelot
