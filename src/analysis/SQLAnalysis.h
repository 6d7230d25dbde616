// The SQL of one process, thread or user: statements by table, and those that ran long.
#pragma once

#include "records/DetailList.h"
#include "records/HeadList.h"
#include "records/NumberMap.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

class CSQLAnalysis {
public:
    struct CSQLTable {
        std::string_view m_strTable; // as first seen
        std::uint32_t m_nSelects = 0;
        std::uint32_t m_nInserts = 0;
        std::uint32_t m_nUpdates = 0;
        std::uint32_t m_nDeletes = 0;
    };

    // Counts a SQL record, whose table counts under `key`.
    void AddStatement(const CDetailList& details, RecordIndex record, std::uint32_t key);

    std::vector<CSQLTable> m_listTables; // in order of first appearance
    CHeadList<RecordIndex> m_listLongTasks;

private:
    CNumberMap m_placeByKey;
};

} // namespace carvelot
