#include "report/ExploreText.h"

#include "report/ExploreWords.h"
#include "report/TextTable.h"
#include "text/NumberText.h"

#include <algorithm>
#include <ostream>

namespace carvelot {

namespace {

class CExploredText {
public:
    CExploredText(const ExploredSession& explored, const ReportOptions& options, std::ostream& out)
        : m_explored(explored), m_details(explored.session.m_listDetails), m_keys(explored.frames.Keys()),
          m_nTop(options.explore->top), m_nWidth(options.width), m_out(out) {}

    void PrintFindings(const std::vector<Finding>& findings) const {
        if (findings.empty()) {
            m_out << "\nNothing asks for a look\n";
            return;
        }
        const std::vector<Finding> shown(findings.begin(), End(findings));
        CTextTable table({{"cost", R}, {"times", R}, {"line", R}, {"", L}}, m_nWidth);
        ForEachByRule(
            shown, [&](FindingRule rule) { table.AddLine(RuleLines(rule, m_nWidth)); },
            [&](const Finding& finding) { AddFinding(table, finding); });
        table.Print(m_out, "What asks for a look: " + SeverityCounts(findings), findings.size());
    }

    // By what they took themselves.
    void PrintFunctions(const CProfile& profile) const {
        std::vector<FunctionProfile> functions = profile.m_functions;
        std::stable_sort(
            functions.begin(), functions.end(),
            [](const FunctionProfile& one, const FunctionProfile& other) { return one.self > other.self; });
        std::int64_t all = 0;
        for (const FunctionProfile& function : functions) {
            all = AddTimes(all, function.self);
        }
        CTextTable table({{"self", R}, {"share", L}, {"total", R}, {"calls", R}, {"failed", R}, {"", L}},
                         m_nWidth);
        for (auto function = functions.begin(); function != End(functions); ++function) {
            table.Add({DurationText(function->self), ShareBar(function->self, all),
                       DurationText(function->total), Grouped(function->calls),
                       function->failed > 0 ? Grouped(function->failed) : "", KeyText(function->key)});
        }
        table.Print(m_out, "Where the time went, by self time", functions.size());
        m_out << kLetters << '\n';
        PrintCallers(profile, functions);
    }

    void PrintShapes(const std::vector<ShapeProfile>& shapes) const {
        if (shapes.empty()) {
            m_out << "\nNo statement\n";
            return;
        }
        std::int64_t all = 0;
        for (const ShapeProfile& shape : shapes) {
            all = AddTimes(all, shape.total);
        }
        CTextTable table(
            {{"total", R}, {"share", L}, {"times", R}, {"longest", R}, {"p95", R}, {"most run by", L}},
            m_nWidth);
        for (auto shape = shapes.begin(); shape != End(shapes); ++shape) {
            table.Add({DurationText(shape->total), ShareBar(shape->total, all), Grouped(shape->count),
                       DurationText(shape->longest), DurationText(shape->p95), KeyText(shape->topCaller)});
            table.AddLine(NoteLine(m_explored.shapes.Text(shape->shape), m_nWidth));
        }
        table.Print(m_out, "Statements alike but for their values, by total time", shapes.size());
    }

private:
    // Behind the rows that are shown.
    template <class Rows> typename Rows::const_iterator End(const Rows& rows) const {
        return rows.begin() + static_cast<std::ptrdiff_t>(std::min(rows.size(), m_nTop));
    }

    static std::string SeverityCounts(const std::vector<Finding>& findings) {
        std::string text;
        for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
            const auto count =
                std::count_if(findings.begin(), findings.end(), [severity](const Finding& finding) {
                    return SeverityOf(finding.rule) == severity;
                });
            if (count > 0) {
                text.append(text.empty() ? "" : ", ");
                text.append(Counted(static_cast<std::uint64_t>(count), NameOf(severity)));
            }
        }
        return text;
    }

    void AddFinding(CTextTable& table, const Finding& finding) const {
        const bool hasRecord = !finding.records.empty();
        table.Add({finding.cost > 0 ? DurationText(finding.cost) : "", Grouped(finding.count),
                   hasRecord ? std::to_string(LineOf(finding.records.front())) : "", SubjectText(finding)});
        if (hasRecord && SeverityOf(finding.rule) == Severity::Error) {
            table.AddLine(NoteLine(m_details.Text(finding.records.front()), m_nWidth));
        }
    }

    std::uint32_t LineOf(RecordIndex record) const {
        return m_explored.session.m_listLineNumbers[Number(record)];
    }

    std::string KeyText(std::uint32_t key) const {
        return key == kNoKey ? "(top)" : NamedText(m_keys.Kind(key), m_keys.Name(key));
    }

    // Who called the worst ones: a few of each.
    void PrintCallers(const CProfile& profile, const std::vector<FunctionProfile>& functions) const {
        const std::size_t few = (m_nTop - 1) / 4 + 1;
        struct Callers {
            std::uint32_t callee;
            std::vector<CallEdge> most; // by total falling, as all edges
        };
        std::vector<Callers> worst;
        CNumberMap places; // by callee
        for (auto function = functions.begin(); function != End(functions) && worst.size() < few;
             ++function) {
            if (function->self > 0) {
                places.FindOrAdd(function->key, static_cast<std::uint32_t>(worst.size()));
                worst.push_back({function->key, {}});
            }
        }
        std::uint64_t count = 0;
        for (const CallEdge& edge : profile.m_edges) {
            const std::uint32_t place = places.Find(edge.callee);
            if (place != CNumberMap::kNone) {
                ++count;
                if (worst[place].most.size() < few) {
                    worst[place].most.push_back(edge);
                }
            }
        }
        if (count == 0) {
            return;
        }
        CTextTable table({{"total", R}, {"calls", R}, {"", L}}, m_nWidth);
        for (const Callers& callers : worst) {
            table.AddLine(OneLineWithin("  " + KeyText(callers.callee), m_nWidth));
            for (const CallEdge& edge : callers.most) {
                table.Add({DurationText(edge.total), Grouped(edge.calls), "from " + KeyText(edge.caller)});
            }
        }
        table.Print(m_out, "Who called the worst of them", count);
    }

    const ExploredSession& m_explored;
    const CDetailList& m_details;
    const CFrameKeys& m_keys;
    const std::size_t m_nTop;
    const std::size_t m_nWidth;
    std::ostream& m_out;
};

} // namespace

void WriteExploredText(const ExploredSession& explored, const ExploredScope& scope,
                       const std::vector<Finding>& findings, const ReportOptions& options,
                       std::ostream& out) {
    PrintLog(explored, explored.session.m_strLogPath, out);
    PrintPart(*options.explore, out);
    const CExploredText text(explored, options, out);
    text.PrintFindings(findings);
    if (scope.profile.m_functions.empty()) {
        out << "\nNo call, no event, no statement\n";
        return;
    }
    text.PrintFunctions(scope.profile);
    text.PrintShapes(scope.shapes);
}

} // namespace carvelot
