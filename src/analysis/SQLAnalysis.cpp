#include "analysis/SQLAnalysis.h"

#include "text/ByteScan.h"
#include "text/Columns.h"

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

void CSQLAnalysis::AddStatement(const CDetailList& details, RecordIndex record, std::uint32_t key) {
    const auto [place, isNew] = m_placeByKey.FindOrAdd(key, static_cast<std::uint32_t>(m_listTables.size()));
    if (isNew) {
        m_listTables.push_back({details.TableName(record)});
    }
    CSQLTable& table = m_listTables[place];
    switch (details.Operation(record)) {
    case SQL_SELECT:
        ++table.m_nSelects;
        break;
    case SQL_INSERT:
        ++table.m_nInserts;
        break;
    case SQL_UPDATE:
        ++table.m_nUpdates;
        break;
    case SQL_DELETE:
        ++table.m_nDeletes;
        break;
    case SQL_NONE:
        break;
    }
}

} // namespace carvelot
