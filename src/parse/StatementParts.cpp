#include "parse/StatementParts.h"

#include "text/ByteScan.h"
#include "text/TextColumns.h"

namespace carvelot {

std::string_view ExtractTableName(std::string_view text, std::string_view keyword, SqlOperation operation,
                                  std::string& scratch) {
    // One character behind the keyword is passed over. A keyword that is not there counts as standing one
    // before the text's start.
    const std::size_t place = FindWord(text, keyword);
    std::string_view rest = place == std::string_view::npos
                                ? FromColumn(text, keyword.size(), scratch)
                                : FromColumn(text.substr(place + keyword.size()), 1, scratch);
    rest = TrimLeft(TrimRight(rest, " "), " ");
    std::string_view table = rest.substr(0, rest.find(' '));
    if (operation == SQL_SELECT && FindWord(rest, "T0") != std::string_view::npos) {
        const std::size_t where = FindWord(rest, "WHERE");
        if (where != std::string_view::npos) {
            table = WithoutLastUnit(rest.substr(0, where), scratch);
        }
    }
    if (operation == SQL_INSERT) {
        table = table.substr(0, table.find('('));
    }
    return table;
}

SqlParts SplitSQLStatement(std::string_view text, std::string& scratch) {
    if (Starts(text, "SELECT ")) {
        return {SQL_SELECT, ExtractTableName(text, "FROM", SQL_SELECT, scratch)};
    }
    if (Starts(text, "UPDATE ")) {
        return {SQL_UPDATE, ExtractTableName(text, "UPDATE", SQL_UPDATE, scratch)};
    }
    if (Starts(text, "DELETE ")) {
        return {SQL_DELETE, ExtractTableName(text, "FROM", SQL_DELETE, scratch)};
    }
    if (Starts(text, "INSERT ")) {
        return {SQL_INSERT, ExtractTableName(text, "INTO", SQL_INSERT, scratch)};
    }
    return {};
}

} // namespace carvelot
