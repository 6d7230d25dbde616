// What every parser of lines is told of a log, and what it notes of it beside the records.
#pragma once

#include "parse/Dialects.h"
#include "parse/LogReader.h"
#include "parse/RefusedLines.h"

#include <string>
#include <string_view>

namespace carvelot {

// What the bytes beyond ASCII of a log were taken for, line by line.
struct LineBytes {
    bool utf8 = false;
    bool codePage = false;
};

class CLineReading {
public:
    CDialects m_dialects; // chosen for the log
    // Not chosen, but lines ask for them; nothing else depends on this.
    CDialects m_helpful;
    RefusedLines m_refused;
    LineBytes m_bytes;

    // Nothing is noted yet; what was chosen stands.
    void ForgetNotes();

    std::string_view TextOf(const LogLine& line) { return line.ascii ? line.bytes : ConvertedTextOf(line); }
    // Whether a line asks for a dialect that is chosen; if it is not, this is noted.
    bool AsksFor(Dialect dialect);
    // The English name of the month that a word names in the dialect, or empty. `bytes` is the word as the
    // log holds it: it may be UTF-8 where the code page is another.
    std::string_view ForeignMonth(std::string_view word, std::string_view bytes);

private:
    std::string_view ConvertedTextOf(const LogLine& line);

    std::string m_strConverted; // the current line, when its bytes are no UTF-8
};

} // namespace carvelot
