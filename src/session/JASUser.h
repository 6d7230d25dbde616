// A user of the web tier.
#pragma once

#include "analysis/BSFNAnalysis.h"
#include "analysis/SQLAnalysis.h"
#include "records/HeadList.h"

#include <cstdint>
#include <string>
#include <vector>

namespace carvelot {

// The user that holds the lines which name none.
inline constexpr std::string_view kSystemLevelUser = "SYSTEM LEVEL";

class CJASUser {
public:
    explicit CJASUser(std::string name) : m_strUser(std::move(name)) {}

    std::vector<RecordIndex> m_listDetails; // all records of the user
    std::string m_strUser;
    CSQLAnalysis m_pSQLAnalysis;
    CBSFNAnalysis m_pBSFNAnalysis;
    RecordIndex m_pPendingSQL = kNoRecord;    // lasts until the user's next record
    RecordIndex m_pPendingObject = kNoRecord; // likewise
    std::uint32_t m_nPendingFunction = 0;     // of that object call, in m_pBSFNAnalysis
    CHeadList<RecordIndex> m_listErrors;      // newest first
};

} // namespace carvelot
