// What About This Log tells: the facts of a load, and the first lines that became no record.
#pragma once

#include "session/LogFacts.h"
#include "text/ColumnTable.h"

#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

struct AboutFact {
    std::string_view name; // "Code page"
    std::string text;
};
std::vector<AboutFact> AboutFacts(const LogFacts& facts);

struct RefusedRow {
    std::string_view reason;
    RefusedLine line;

    static CColumnTable<RefusedRow> Columns();
};
std::vector<RefusedRow> MakeRefusedRows(const LogFacts& facts);

// What a dialect reads, for one who has to choose: "months: ...".
std::string_view DialectSentence(Dialect dialect);

} // namespace carvelot
