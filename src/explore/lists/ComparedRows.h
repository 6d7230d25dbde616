// The rows of what differs from one log to another. A row stands for its numbers on either side and refers to
// the sides' names and texts.
#pragma once

#include "explore/Comparison.h"
#include "text/ColumnTable.h"

#include <optional>
#include <string_view>
#include <vector>

namespace carvelot {

// "both", or which log alone has it: "base alone", "log alone".
std::string_view PresenceText(ComparedPresence in);

// A row's columns are those of its differences, of the base (IsOfBase) or of the log. Its bar is that of its
// difference of total (of a finding: of cost) against the largest one.
struct ComparedFunctionRow {
    ComparedFunction m_compared;
    double m_fShare = 0;

    enum { DIFFERENCE, BASE, LOG, IN, KIND, NAME, CALLS, BASE_CALLS, LOG_CALLS, SELF, BASE_SELF, LOG_SELF };
    static bool IsOfBase(int column) { return column == BASE || column == BASE_CALLS || column == BASE_SELF; }
    static CColumnTable<ComparedFunctionRow> Columns();
};

struct ComparedShapeRow {
    ComparedShape m_compared;
    double m_fShare = 0;

    enum { DIFFERENCE, BASE, LOG, IN, COUNT, BASE_COUNT, LOG_COUNT, LONGEST, SHAPE };
    static bool IsOfBase(int column) { return column == BASE || column == BASE_COUNT; }
    static CColumnTable<ComparedShapeRow> Columns();
};

struct ComparedFindingRow {
    ComparedFinding m_compared;
    double m_fShare = 0;

    enum { DIFFERENCE, BASE, LOG, IN, COUNT, BASE_COUNT, LOG_COUNT, SEVERITY, SUBJECT, MEANING };
    static bool IsOfBase(int column) { return column == BASE || column == BASE_COUNT; }
    static CColumnTable<ComparedFindingRow> Columns();
};

// In the order of the comparison.
std::vector<ComparedFunctionRow> MakeComparedFunctionRows(const Comparison& comparison);
std::vector<ComparedShapeRow> MakeComparedShapeRows(const Comparison& comparison);
std::vector<ComparedFindingRow> MakeComparedFindingRows(const Comparison& comparison);

// Where a row leads on one of the sides: to the first record of what it compares. Nothing where the side
// lacks it, or where no record stands for it.
std::optional<RecordIndex> RecordOn(const ComparedSide& side, const ComparedFunction& function);
std::optional<RecordIndex> RecordOn(const ComparedSide& side, const ComparedShape& shape);
std::optional<RecordIndex> RecordOn(const ComparedSide& side, const ComparedFinding& finding);

} // namespace carvelot
