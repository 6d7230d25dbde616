// What the statement text of a line is.
#pragma once

#include "records/LogDetail.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

struct Classification {
    // What the classifier made anew: the display name of an event rules start, which the scratch string
    // holds; or the text, which is now that of the pending statement.
    enum class Made : std::uint8_t { Nothing, Name, Text };

    LogKind kind = LOG_NONE;
    Made made = Made::Nothing;
    std::int32_t returnCode = 0;

    std::string_view Name(std::string_view scratch) const {
        return made == Made::Name ? scratch : std::string_view{};
    }
};

// Which of the words that a classifier looks for anywhere in a text are there.
struct TextSigns {
    enum Sign : std::uint32_t {
        SIGN_CACHE = 1U << 0U,         // jdeCache, hCache:, hCursor:, Found existing cache
        SIGN_JDB_CODE = 1U << 1U,      // one of the listed CAC and JDB codes
        SIGN_SQL_DONE = 1U << 2U,      // Exiting DBPerformRequest
        SIGN_UBE = 1U << 3U,           // --UBE--
        SIGN_EVENT_STARTS = 1U << 4U,  // Event Starts :
        SIGN_EVENT_ENDS = 1U << 5U,    // Event Ends:
        SIGN_ER_LINE = 1U << 6U,       // at ER Line
        SIGN_OBJECT_CALLED = 1U << 7U, // Object Called:
    };

    std::uint32_t found = 0;

    bool Hold(Sign sign) const { return (found & sign) != 0; }
};

TextSigns FindSigns(std::string_view text);
// Whether one of the listed CAC and JDB codes stands at a place of a text.
bool StartsListedCode(std::string_view text, std::size_t at);
// A line of a batch job, whose whole is its text, holds this anywhere.
inline constexpr std::string_view kUBESign = "--UBE--";

Classification ClassifyDebugStatement(std::string_view text, std::string& scratch);
// The same for a text whose signs are known.
Classification ClassifyDebugStatement(std::string_view text, TextSigns signs, std::string& scratch);

// The word that makes a text a SQL statement, where it stands in the text: the one that the text begins with
// or, behind "[JDBOLEDB] ", the first one of the known words (not of the text) that is there. Empty for any
// other text.
std::string_view FindOperationWord(std::string_view text);

// The JAS classifier's memory of the latest SQL statement. There is one for the whole run: nothing resets it
// between lines, sessions or re-analyses.
struct PendingStatement {
    std::string statement;       // its "?" marks numbered, and filled in as far as parameters have come
    std::int64_t parameters = 0; // how many it still awaits
    bool ascii = false;          // all lines that went into the statement were known to be ASCII
    std::size_t begin = 0;       // of the part of the statement that may still hold a "?"
};

// The kind of a JAS line whose level alone decides it, else LOG_NONE.
LogKind KindOfLevel(std::string_view level);

// For a line whose level decides nothing. `text` may come to view `pending.statement` instead: a statement
// with its marks numbered, or the finished statement.
Classification ClassifyJASStatement(std::string_view& text, PendingStatement& pending, std::string& scratch);
// The same for a text that is ASCII and whose signs are known; none need be while a statement awaits its
// parameters.
Classification ClassifyJASStatement(std::string_view& text, TextSigns signs, PendingStatement& pending,
                                    std::string& scratch);

// One parameter line of a prepared statement, as "Param2: 1000_Types.DECIMAL,".
struct JASParam {
    std::int32_t index = 0;
    std::string_view value; // as the line writes it, or in the scratch string
    bool quoted = false;    // a text value, which stands in single quotes in a statement
};
JASParam ParseJASParam(std::string_view text, std::string& scratch, bool ascii = false);

} // namespace carvelot
