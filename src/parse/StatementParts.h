// What a SQL statement does to which table.
#pragma once

#include "records/LogDetail.h"

#include <string>
#include <string_view>

namespace carvelot {

// Operation and table of a SQL statement. A statement of another kind (DROP, "[JDBOLEDB] ...") has neither.
struct SqlParts {
    SqlOperation operation = SQL_NONE;
    std::string_view table; // in the statement, or in the scratch string
};

SqlParts SplitSQLStatement(std::string_view text, std::string& scratch);

// The table name behind the first "FROM", "UPDATE" or "INTO" of the text, with its schema and, where the
// statement works on aliased tables ("T0") with a WHERE, the whole table list. The keyword is searched as a
// plain string.
std::string_view ExtractTableName(std::string_view text, std::string_view keyword, SqlOperation operation,
                                  std::string& scratch);

} // namespace carvelot
