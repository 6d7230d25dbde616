// The rows of what asks for a look, and of the records of one finding.
#pragma once

#include "explore/Findings.h"
#include "explore/lists/ExploredSource.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// "● 2 errors   ▲ 1 warning": how many of each there are; empty of none.
std::string SeverityCounts(const std::vector<Finding>& findings);

struct FindingRow {
    const Finding* m_pFinding = nullptr;
    std::size_t m_nFinding = 0; // its place among all
    double m_fShare = 0;        // of the largest cost

    enum { SEVERITY, SENTENCE, COUNT, COST, MEANING };
    static CColumnTable<FindingRow, ExploredSession> Columns();
};
// In their own order: errors, warnings, notes, the worst of each first.
std::vector<FindingRow> MakeFindingRows(const std::vector<Finding>& findings);

// Keeps errors, warnings and notes together by whatever column they are sorted.
class CFindingSource final : public CExploredSource<FindingRow> {
public:
    // Descending by another column than that of the severity turns the order round within each severity.
    void Sort(std::vector<std::size_t>& order, int column, bool descending) const override;
};

struct FindingRecordRow {
    RecordIndex m_pRecord = kNoRecord;

    enum { STAMP, OWNER, MESSAGE };
    static CColumnTable<FindingRecordRow, ExploredSession> Columns();
};
std::vector<FindingRecordRow> MakeFindingRecordRows(const Finding& finding);

} // namespace carvelot
