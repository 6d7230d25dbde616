// Lines of a debug log: date, time, marker, process and thread, label, and the statement text.
#pragma once

#include "parse/LineReading.h"
#include "parse/LogReader.h"
#include "records/LogDetail.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

// Takes the lines of a log in their order, each by the plain rules, and knows nothing of what becomes of
// them.
class CDebugLineParser : public CLineReading {
public:
    // What goes from line to line; the first two are what the format's detection learnt, to begin with.
    std::int32_t m_nTextColumn = 0;    // fixed column of statement text, 0 while unknown
    std::int32_t m_nTabCount = 0;      // tabs ahead of statement text, 0 while unknown
    bool m_bDashForm = false;          // the marker of the latest line was "-"
    bool m_bUBELog = false;            // for good, once a "--UBE--" line was parsed
    std::uint32_t m_nUBEProcessID = 0; // of UBE lines; nothing assigns them
    std::uint32_t m_nUBEThreadID = 0;

    // False for a line that is no record, or one of another process than the filter names, if it names one.
    // The texts are views of the line or of the parser, valid until the next line.
    bool ParseDebugLine(const LogLine& line, std::uint32_t processFilter, CLogDetail& detail);

private:
    std::string_view StatementText(std::string_view line);

    std::string m_strCut;   // its statement text, when a column cut a surrogate pair
    std::string m_strName;  // its display name
    std::string m_strTable; // its table, when that is no slice of the text
};

} // namespace carvelot
