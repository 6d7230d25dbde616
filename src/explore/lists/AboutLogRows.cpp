#include "explore/lists/AboutLogRows.h"

#include "explore/lists/ListTexts.h"
#include "text/NumberText.h"

namespace carvelot {

std::vector<AboutFact> AboutFacts(const LogFacts& facts) {
    std::string refused;
    for (const RefusedFor& entry : facts.refused) {
        refused.append(refused.empty() ? "" : ", ").append(Grouped(entry.count)).append(": ");
        refused.append(entry.reason);
    }
    return {{"Size", Grouped(facts.bytes) + " bytes"},
            {"Lines", Grouped(facts.lines)},
            {"Records", Grouped(facts.records)},
            {"Lines that are no records", refused.empty() ? "none" : refused},
            {"Format", std::string(facts.format)},
            {"Columns", facts.columns},
            {"Code page", facts.codePage},
            {"Clock", facts.from.empty() ? "no record bears a time" : facts.from + " to " + facts.to},
            {"Pieces", Grouped(facts.pieces)},
            {"Dialect", facts.dialects.Empty() ? "none" : facts.dialects.Names()}};
}

CColumnTable<RefusedRow> RefusedRow::Columns() {
    using Row = RefusedRow;
    static constexpr CListColumn<Row> columns[] = {
        {"Line", 80, EAlign::Right, [](const Row& row) { return Grouped(row.line.number); },
         [](const Row& row) { return SortKey(static_cast<std::int64_t>(row.line.number)); }},
        {"Reason", 200, EAlign::Left, [](const Row& row) { return std::string(row.reason); },
         [](const Row& row) { return SortKey(row.reason); }},
        {"Text", 700, EAlign::Left, [](const Row& row) { return OnOneLine(row.line.text); },
         [](const Row& row) { return SortKey(std::string_view(row.line.text)); }},
    };
    return columns;
}

std::vector<RefusedRow> MakeRefusedRows(const LogFacts& facts) {
    std::vector<RefusedRow> rows;
    for (const RefusedFor& entry : facts.refused) {
        for (const RefusedLine& line : entry.first) {
            rows.push_back({entry.reason, line});
        }
    }
    return rows;
}

std::string_view DialectSentence(Dialect dialect) {
    return dialect == Dialect::Months ? "months: short month names of other languages"
                                      : "numbered: a number ahead of a line's source";
}

} // namespace carvelot
