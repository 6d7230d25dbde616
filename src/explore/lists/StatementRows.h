// The rows of what is told of statements: by shape, by who ran them, and one by one.
#pragma once

#include "explore/ExploredSession.h"
#include "text/ColumnTable.h"

#include <cstdint>
#include <vector>

namespace carvelot {

struct ShapeRow {
    ShapeProfile m_profile;
    double m_fShare = 0; // of the largest total

    enum { TOTAL, COUNT, LONGEST, P95, CALLER, SHAPE };
    static CColumnTable<ShapeRow, ExploredSession> Columns();
};
// The largest total first.
std::vector<ShapeRow> MakeShapeRows(const ExploredScope& scope);

// What ran a shape, and how often.
struct ShapeCallerRow {
    std::uint32_t m_nKey = kNoKey; // none at the top
    std::uint32_t m_nCount = 0;
    std::int64_t m_nTotal = 0;
    double m_fShare = 0; // of the largest total

    enum { TOTAL, COUNT, CALLER };
    static CColumnTable<ShapeCallerRow, ExploredSession> Columns();
};

struct ExecutionRow {
    std::uint32_t m_nFrame = kNoFrame;
    float m_fShare = 0;        // of the longest one
    std::int64_t m_nTotal = 0; // what of it lies in the range

    enum { STAMP, OWNER, DURATION, CALLER, STATEMENT };
    static CColumnTable<ExecutionRow, ExploredSession> Columns();
};

// All runs of one shape in a part of a log.
struct ShapeRuns {
    ShapeRuns(const ExploredSession& explored, const ExploredScope& scope, std::uint32_t shape);

    std::vector<ExecutionRow> m_listExecutions; // by time
    std::vector<ShapeCallerRow> m_listCallers;  // the largest total first, then the largest count
};

// The shape that a record is a run of; kNoShape where it is no statement.
std::uint32_t ShapeOfRecord(const ExploredSession& explored, RecordIndex record);

} // namespace carvelot
