// What the statement text of a line is.
#pragma once

#include "logcore/LogDetail.h"
#include "logcore/LogReader.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

struct Classification {
    LogKind kind = LOG_NONE;
    std::int32_t returnCode = 0;
    std::string_view name; // display name of an event rules start, else empty; stands in the scratch string
};

// Which of the words that a classifier looks for anywhere in a text are there.
struct TextSigns {
    bool cache = false;        // jdeCache, hCache:, hCursor:, Found existing cache
    bool jdbCode = false;      // one of the listed CAC and JDB codes
    bool sqlDone = false;      // Exiting DBPerformRequest
    bool ube = false;          // --UBE--
    bool eventStarts = false;  // Event Starts :
    bool eventEnds = false;    // Event Ends:
    bool erLine = false;       // at ER Line
    bool objectCalled = false; // Object Called:
    bool lineHoldsUBE = false; // --UBE-- anywhere in the line; told from hints only
};

// Searches the text as a whole.
TextSigns FindSigns(std::string_view text);
// Looks at the hinted places of the line that the text is a slice of.
TextSigns FindSigns(std::string_view text, std::string_view line, const LineHints& hints);
// Whether "--UBE--" stands anywhere in the line.
bool HoldsUBE(const LogLine& line);

Classification ClassifyDebugStatement(std::string_view text, const TextSigns& signs, std::string& scratch);

// The JAS classifier's memory of the latest SQL statement. There is one for the whole run: nothing resets it
// between lines, sessions or re-analyses.
struct PendingStatement {
    std::string statement;       // its "?" marks numbered, and filled in as far as parameters have come
    std::int64_t parameters = 0; // how many it still awaits
};

// The kind of a JAS line whose level alone decides it, else LOG_NONE.
LogKind KindOfLevel(std::string_view level);

// For a line whose level decides nothing. `text` may come to view `pending.statement` instead: a statement
// with its marks numbered, or the finished statement.
Classification ClassifyJASStatement(std::string_view& text, const TextSigns& signs, PendingStatement& pending,
                                    std::string& scratch);

// One parameter line of a prepared statement, as "Param2: 1000_Types.DECIMAL,".
struct JASParam {
    std::int32_t index = 0;
    std::string_view value; // as the line writes it, or in the scratch string
    bool quoted = false;    // a text value, which stands in single quotes in a statement
};
JASParam ParseJASParam(std::string_view text, std::string& scratch);

} // namespace carvelot
