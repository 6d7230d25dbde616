#include "explore/lists/OverviewRows.h"

#include "explore/lists/ExploreNames.h"
#include "explore/lists/FindingSentence.h"
#include "text/NumberText.h"

#include <algorithm>

namespace carvelot {

namespace {

constexpr std::string_view kDot = " \u00B7 ";

// "12.345 s", "1 m 22.510 s", "3 h 0 m 7.000 s".
std::string SpanText(std::int64_t microseconds) {
    const std::int64_t milliseconds = (microseconds + 500) / 1000;
    const std::int64_t minutes = milliseconds / 60'000;
    const std::string places = std::to_string(1000 + milliseconds % 1000);
    std::string text;
    if (minutes >= 60) {
        text += Grouped(static_cast<std::uint64_t>(minutes / 60)) + " h ";
    }
    if (minutes > 0) {
        text += std::to_string(minutes % 60) + " m ";
    }
    return text + std::to_string(milliseconds / 1000 % 60) + '.' + places.substr(1) + " s";
}

std::string CountedProcesses(std::size_t count) {
    return Grouped(count) + (count == 1 ? " process" : " processes");
}

std::string CountText(std::uint64_t count) { return Grouped(count) + " x"; }

} // namespace

std::string OverviewLine(const ExploredSession& explored) {
    const CCarvelotDoc& session = explored.session;
    const bool isJAS = session.m_nLogFormat == LOG_FORMAT_JAS;
    std::string line = isJAS ? "JAS log" : "debug log";
    line.append(kDot);
    line.append(explored.clock.FirstRecord() ? SpanText(explored.clock.Length()) : "no record bears a time");
    line.append(kDot);
    if (isJAS) {
        line.append(Counted(explored.streams.Count(), "user"));
    } else {
        line.append(CountedProcesses(session.m_listProcesses.size())).append(", ");
        line.append(Counted(explored.streams.Count(), "thread"));
    }
    line.append(kDot).append(Counted(session.m_listDetails.Size(), "record"));
    const RefusedLines& refused = session.Refused();
    const std::uint64_t unread = refused.noTime + refused.noMonth + refused.filtered;
    if (unread > 0) {
        line.append(kDot).append(Counted(unread, "line")).append(" unread");
    }
    return line;
}

CColumnTable<OverviewFinding> OverviewFinding::Columns() {
    using Row = OverviewFinding;
    static constexpr CListColumn<Row> columns[] = {
        {"Finding", 620, EAlign::Left, &TextOf<&Row::sentence>, &KeyOf<&Row::sentence>},
        {"Count", 80, EAlign::Right, [](const Row& row) { return CountText(row.count); },
         [](const Row& row) { return SortKey(static_cast<std::int64_t>(row.count)); }},
        {"Cost (s)", 110, EAlign::Right,
         [](const Row& row) { return row.cost > 0 ? SecondsWithPlaces(row.cost) : std::string(); },
         &KeyOf<&Row::cost>},
    };
    return columns;
}

std::vector<OverviewFinding> MakeOverviewFindings(const ExploredSession& explored,
                                                  const std::vector<Finding>& findings) {
    std::vector<OverviewFinding> rows;
    for (std::size_t at = 0; at < findings.size(); ++at) {
        const Finding& finding = findings[at];
        rows.push_back(
            {std::string(SignOf(SeverityOf(finding.rule))) + "  " + FindingSentence(explored, finding),
             finding.count, finding.cost, at});
    }
    return rows;
}

CColumnTable<OverviewCost> OverviewCost::Columns() {
    using Row = OverviewCost;
    static constexpr CListColumn<Row> columns[] = {
        {"Name", 260, EAlign::Left, &TextOf<&Row::name>, &KeyOf<&Row::name>},
        {"Time (s)", 130, EAlign::Right, [](const Row& row) { return SecondsWithPlaces(row.time); },
         &KeyOf<&Row::time>, [](const Row& row) { return row.share; }},
        {"Count", 80, EAlign::Right, [](const Row& row) { return CountText(row.count); },
         [](const Row& row) { return SortKey(static_cast<std::int64_t>(row.count)); }},
    };
    return columns;
}

std::vector<OverviewCost> MakeOverviewFunctions(const ExploredSession& explored, const CProfile& profile) {
    std::vector<FunctionProfile> functions = profile.m_functions;
    std::erase_if(functions, [](const FunctionProfile& function) { return function.self <= 0; });
    std::ranges::stable_sort(functions, std::ranges::greater(), &FunctionProfile::self);
    functions.resize(std::min(functions.size(), kOverviewRows));
    std::vector<OverviewCost> rows;
    const CFrameKeys& keys = explored.frames.Keys();
    for (const FunctionProfile& function : functions) {
        rows.push_back({std::string(LetterOf(keys.Kind(function.key))) + "  " +
                            std::string(ShownKey(keys, function.key)),
                        function.self, function.calls,
                        static_cast<double>(function.self) / static_cast<double>(functions.front().self),
                        function.key});
    }
    return rows;
}

std::vector<OverviewCost> MakeOverviewStatements(const ExploredSession& explored,
                                                 const std::vector<ShapeProfile>& shapes) {
    std::vector<OverviewCost> rows;
    for (std::size_t at = 0; at < std::min(shapes.size(), kOverviewRows); ++at) {
        const ShapeProfile& shape = shapes[at];
        const double most = static_cast<double>(shapes.front().total);
        rows.push_back({std::string(explored.shapes.Text(shape.shape)), shape.total, shape.count,
                        most > 0 ? static_cast<double>(shape.total) / most : 0, shape.shape});
    }
    return rows;
}

} // namespace carvelot
