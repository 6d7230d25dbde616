// The lines of a JAS web log, fast: those that begin as earlier ones did are not taken apart.
#pragma once

#include "parse/JASLine.h"
#include "parse/StatementParts.h"
#include "parse/fast/LineBeginnings.h"
#include "parse/fast/LineScan.h"
#include "parse/fast/MarkedSigns.h"
#include "parse/fast/ParseWay.h"
#include "parse/fast/StampBytes.h"
#include "platform/CodePage.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

// Reads a log for one list of records, whose contexts it remembers.
class CFastJASLines {
public:
    CFastJASLines(CJASLineParser& parser, ParseWay way) : m_parser(parser), m_way(way) {}

    // What the lines' reader must scan its blocks with.
    BlockScan Scan() const { return m_way == ParseWay::Fast ? FastScan(LOG_FORMAT_JAS) : FindLineEnds; }

    // Gives the record of a line, if it is one and there is no filter, to `records`: to AddUsual(const
    // UsualLine&) or to Add(const CLogDetail&, bool ascii), which tells the record's context, or kNoContext
    // for a record that no UsualLine could have brought.
    template <class Records>
    void ParseJASLine(const LogLine& line, std::uint32_t processFilter, Records&& records) {
        if (m_way == ParseWay::Plain || !ParseUsual(line, records)) {
            ParseAny(line, processFilter, records);
        }
    }

private:
    // The stamp of the one form that nearly every line has: "29 Jun 2016 12:08:30,122 [".
    static constexpr std::size_t kLongestStamp = 26;
    static constexpr std::size_t kFractionLength = 4; // and the blank behind it

    // A function of its own, whose values stay in registers.
    template <class Records> [[gnu::noinline]] bool ParseUsual(const LogLine& line, Records& records);
    template <class Records>
    void ParseAny(const LogLine& line, std::uint32_t processFilter, Records& records) {
        CLogDetail detail;
        bool ascii = false;
        if (!m_parser.ParseJASLine(line, processFilter, detail, ascii)) {
            return;
        }
        const std::uint32_t context = records.Add(detail, ascii);
        if (m_way == ParseWay::Fast && context != kNoContext) {
            Learn(line, detail, context);
        }
    }
    static bool ReadStamp(const char* line, KnownStamp& stamp);
    void Learn(const LogLine& line, const CLogDetail& detail, std::uint32_t context);

    CJASLineParser& m_parser;
    ParseWay m_way;
    KnownStamp m_stamp;
    CLineBeginnings m_beginnings;
    std::string m_strName;  // a line's display name
    std::string m_strTable; // its table, when that is no slice of the text
};

template <class Records> bool CFastJASLines::ParseUsual(const LogLine& line, Records& records) {
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
    const char* const start = p + m_stamp.length + kFractionLength;
    const char* const end = p + size;
    const LineBeginning* const known =
        m_beginnings.Find(start, static_cast<std::size_t>(end - start), m_stamp.month);
    if (known == nullptr) {
        return false;
    }
    const LineBeginning& beginning = *known;
    const char* const first = start + beginning.length;
    std::string_view text = TrimPaddedStatement({first, static_cast<std::size_t>(end - first)});
    PendingStatement& pending = m_parser.m_pending;
    Classification result;
    result.kind = beginning.levelKind;
    if (result.kind == LOG_NONE) {
        const bool asked = pending.parameters == 0 && !line.marks.Empty();
        result = ClassifyJASStatement(
            text, asked ? FindSigns(text, line.bytes, line.marks).inText : TextSigns{}, pending, m_strName);
    }
    SqlOperation operation = SQL_NONE;
    std::string_view name = result.Name(m_strName);
    if (result.kind == LOG_SQL) {
        const SqlParts parts = SplitSQLStatement(text, m_strTable);
        operation = parts.operation;
        name = parts.table;
    }
    const bool ascii = result.made != Classification::Made::Text || pending.ascii || platform::IsAscii(text);
    records.AddUsual(UsualLine{m_stamp, fraction, beginning.contexts[0], result.kind, result.returnCode,
                               operation, ascii, false, text, text, name});
    return true;
}

} // namespace carvelot
