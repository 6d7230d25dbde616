#include "explore/lists/EdgeRows.h"

#include "explore/lists/ExploreNames.h"
#include "explore/lists/FunctionRows.h"

namespace carvelot {

namespace {

// The edges with a key at one end, by the key at the other; they stand by total, then by that key.
std::vector<EdgeRow> MakeRows(const CFrameKeys& keys, const CProfile& profile, std::uint32_t CallEdge::*here,
                              std::uint32_t CallEdge::*there, std::uint32_t key) {
    std::vector<EdgeRow> rows;
    std::int64_t most = 0; // the first one's
    for (const CallEdge& edge : profile.m_edges) {
        if (edge.*here == key) {
            most = rows.empty() ? edge.total : most;
            rows.push_back({edge.*there, LetterAndName(keys, edge.*there), edge.calls, edge.total,
                            ShareOf(edge.total, most)});
        }
    }
    return rows;
}

} // namespace

CColumnTable<EdgeRow> EdgeRow::Columns() {
    using Row = EdgeRow;
    static constexpr CListColumn<Row> columns[] = {
        {"Function", 220, EAlign::Left, &TextOf<&Row::name>, &KeyOf<&Row::name>},
        {"Calls", 70, EAlign::Right, &DigitsOf<&Row::calls>,
         [](const Row& row) { return SortKey(static_cast<std::int64_t>(row.calls)); }},
        {"Total (s)", 120, EAlign::Right, [](const Row& row) { return SecondsWithPlaces(row.total); },
         &KeyOf<&Row::total>, [](const Row& row) { return row.share; }},
    };
    return columns;
}

std::vector<EdgeRow> MakeCallerRows(const CFrameKeys& keys, const CProfile& profile, std::uint32_t callee) {
    return MakeRows(keys, profile, &CallEdge::callee, &CallEdge::caller, callee);
}

std::vector<EdgeRow> MakeCalleeRows(const CFrameKeys& keys, const CProfile& profile, std::uint32_t caller) {
    return MakeRows(keys, profile, &CallEdge::caller, &CallEdge::callee, caller);
}

} // namespace carvelot
