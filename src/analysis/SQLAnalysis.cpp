#include "analysis/SQLAnalysis.h"

namespace carvelot {

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
