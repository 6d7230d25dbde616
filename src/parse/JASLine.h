// Lines of a JAS web log: date, time, level, user, source, and the statement text.
#pragma once

#include "parse/Classifier.h"
#include "parse/LineReading.h"
#include "parse/LogReader.h"
#include "records/LogDetail.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

// Takes the lines of a log in their order, each by the plain rules, and knows nothing of what becomes of
// them.
class CJASLineParser : public CLineReading {
public:
    // The statement that awaits its parameters goes from line to line, and from log to log.
    explicit CJASLineParser(PendingStatement& pending) : m_pending(pending) {}

    PendingStatement& m_pending;

    // False for a line that is no record, which under a process filter none is. The texts are views of the
    // line, of the parser or of the pending statement, valid until the next line. `ascii` tells whether the
    // record's text is known to be ASCII.
    bool ParseJASLine(const LogLine& line, std::uint32_t processFilter, CLogDetail& detail, bool& ascii);

    // Whether what stands in a source's place is a number, behind which the source itself may stand.
    static bool IsNumber(std::string_view source);

private:
    std::string m_strName;  // its display name
    std::string m_strTable; // its table, when that is no slice of the text
};

} // namespace carvelot
