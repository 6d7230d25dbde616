#include "report/CompareText.h"

#include "explore/Scope.h"
#include "report/ExploreWords.h"
#include "report/TextTable.h"
#include "text/NumberText.h"

#include <algorithm>
#include <iterator>
#include <ostream>
#include <utility>
#include <vector>

namespace carvelot {

namespace {

// What stands in one log alone.
std::string MarkOf(ComparedPresence in) { return in.inBase && in.inLog ? "" : in.inLog ? "+" : "-"; }

bool Differ(const ComparedFunction& row) {
    const auto numbers = {row.calls, row.unclosed, row.failed,  row.warned, row.total,
                          row.self,  row.shortest, row.longest, row.p50,    row.p95};
    return std::any_of(numbers.begin(), numbers.end(),
                       [](ComparedNumber number) { return number.Difference() != 0; });
}
bool Differ(const ComparedShape& row) {
    const auto numbers = {row.count, row.total, row.longest, row.p95};
    return std::any_of(numbers.begin(), numbers.end(),
                       [](ComparedNumber number) { return number.Difference() != 0; });
}
bool Differ(const ComparedFinding& row) { return row.count.Difference() != 0 || row.cost.Difference() != 0; }

class CComparisonText {
public:
    CComparisonText(const ReportOptions& options, std::ostream& out)
        : m_nTop(options.explore->top), m_nWidth(options.width), m_out(out) {}

    // Errors, warnings, notes.
    void PrintFindings(const std::vector<ComparedFinding>& all) const {
        std::vector<ComparedFinding> rows = Differing(all);
        std::stable_sort(rows.begin(), rows.end(),
                         [](const ComparedFinding& one, const ComparedFinding& other) {
                             return SeverityOf(one.rule) < SeverityOf(other.rule);
                         });
        const std::size_t count = rows.size();
        rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(std::min(count, m_nTop)), rows.end());
        CTextTable table({{"cost", R}, {"times", R}, {"base", R}, {"log", R}, {"", L}, {"", L}}, m_nWidth);
        ForEachByRule(
            rows, [&](FindingRule rule) { table.AddLine(RuleLines(rule, m_nWidth)); },
            [&table](const ComparedFinding& row) {
                const bool costs = row.cost.base != 0 || row.cost.log != 0;
                table.Add({costs ? DifferenceText(row.cost.Difference()) : "",
                           CountDifferenceText(row.count.Difference()), CountText(row.count.base),
                           CountText(row.count.log), MarkOf(row.in),
                           std::string(ShownSubject(row.rule, row.subject))});
            });
        Print(table, "What asks for a look", count);
    }

    void PrintFunctions(const std::vector<ComparedFunction>& all) const {
        const std::vector<ComparedFunction> rows = Differing(all);
        // In a narrow terminal the names need the room.
        const bool showsSelf = m_nWidth >= 100;
        std::vector<CTextTable::Column> columns{{"total", R},  {"base", R}, {"log", R}, {"calls", R},
                                                {"failed", R}, {"", L},     {"", L}};
        if (showsSelf) {
            columns.insert(columns.begin() + kSelfColumn, {"self", R});
        }
        CTextTable table(std::move(columns), m_nWidth);
        for (std::size_t i = 0; i < std::min(rows.size(), m_nTop); ++i) {
            const ComparedFunction& row = rows[i];
            const std::int64_t failed = row.failed.Difference();
            std::vector<std::string> cells{DifferenceText(row.total.Difference()),
                                           DurationText(row.total.base),
                                           DurationText(row.total.log),
                                           CountDifferenceText(row.calls.Difference()),
                                           failed != 0 ? CountDifferenceText(failed) : "",
                                           MarkOf(row.in),
                                           NamedText(row.kind, row.name)};
            if (showsSelf) {
                cells.insert(cells.begin() + kSelfColumn, DifferenceText(row.self.Difference()));
            }
            table.Add(std::move(cells));
        }
        Print(table, "Where the time went", rows.size());
        if (!rows.empty()) {
            m_out << kLetters << '\n';
        }
    }

    void PrintShapes(const std::vector<ComparedShape>& all) const {
        const std::vector<ComparedShape> rows = Differing(all);
        CTextTable table({{"total", R}, {"base", R}, {"log", R}, {"times", R}, {"longest", R}, {"", L}},
                         m_nWidth);
        for (std::size_t i = 0; i < std::min(rows.size(), m_nTop); ++i) {
            const ComparedShape& row = rows[i];
            table.Add({DifferenceText(row.total.Difference()), DurationText(row.total.base),
                       DurationText(row.total.log), CountDifferenceText(row.count.Difference()),
                       DifferenceText(row.longest.Difference()), MarkOf(row.in)});
            table.AddLine(NoteLine(row.text, m_nWidth));
        }
        Print(table, "Statements alike but for their values", rows.size());
    }

private:
    template <class Row> static std::vector<Row> Differing(const std::vector<Row>& all) {
        std::vector<Row> rows;
        std::copy_if(all.begin(), all.end(), std::back_inserter(rows),
                     [](const Row& row) { return Differ(row); });
        return rows;
    }

    static std::string CountText(std::int64_t count) { return Grouped(static_cast<std::uint64_t>(count)); }

    void Print(const CTextTable& table, const std::string& title, std::size_t count) const {
        if (count == 0) {
            m_out << '\n' << title << ": no difference\n";
        } else {
            table.Print(m_out, title, count);
        }
    }

    static constexpr std::ptrdiff_t kSelfColumn = 3;

    const std::size_t m_nTop;
    const std::size_t m_nWidth;
    std::ostream& m_out;
};

// Nothing is told of a side that lacks what is asked for.
void PrintLack(const ExploredSession& side, std::string_view name, const ReportOptions& options,
               std::ostream& out) {
    const std::optional<std::string>& scope = options.explore->scope;
    if (scope && !FindScope(side.session, *scope)) {
        out << "  The " << name << " has no " << OneLine(*scope) << '\n';
    }
}

} // namespace

void WriteComparisonText(const Comparison& comparison, const ExploredSession& base,
                         const ExploredSession& log, const ReportOptions& options, std::ostream& out) {
    PrintLog(log, log.session.m_strLogPath, out);
    out << "compared with ";
    PrintLog(base, *options.explore->compareWith, out);
    PrintPart(*options.explore, out);
    PrintLack(base, "base", options, out);
    PrintLack(log, "log", options, out);
    const CComparisonText text(options, out);
    text.PrintFindings(comparison.findings);
    text.PrintFunctions(comparison.functions);
    text.PrintShapes(comparison.shapes);
    out << "\nDifferences: the log less the base. + in the log alone, - in the base alone.\n";
}

} // namespace carvelot
