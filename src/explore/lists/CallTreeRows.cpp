#include "explore/lists/CallTreeRows.h"

#include "explore/lists/ExploreNames.h"
#include "explore/lists/FunctionRows.h"

#include <algorithm>

namespace carvelot {

CColumnTable<CallTreeRow> CallTreeRow::Columns() {
    using Row = CallTreeRow;
    static constexpr CListColumn<Row> columns[] = {
        {"Call", 360, EAlign::Left, &TextOf<&Row::name>},
        {"Total (s)", 130, EAlign::Right, [](const Row& row) { return SecondsWithPlaces(row.total); },
         nullptr, [](const Row& row) { return row.share; }},
        {"Self (s)", 110, EAlign::Right, [](const Row& row) { return SecondsWithPlaces(row.self); }},
        {"Calls", 80, EAlign::Right, &DigitsOf<&Row::calls>},
    };
    return columns;
}

CCallTreeRows::CCallTreeRows(const CFrameKeys& keys, const CProfile& profile)
    : m_keys(keys), m_tree(profile.m_tree) {
    const auto count = static_cast<Node>(m_tree.size());
    m_parents.resize(count);
    m_rows.resize(count);
    m_children.resize(count);
    m_first.resize(std::size_t{count} + 2, 0);
    CLargeVector<std::uint32_t> depths(count);
    // Parents stand ahead of their children.
    for (Node node = 0; node < count; ++node) {
        const Node parent = m_tree[node].parent;
        depths[node] = parent == kRoot ? 0 : depths[parent] + 1;
        // From the last level on, what its parent stands below.
        m_parents[node] = depths[node] < kDeepest ? parent : m_parents[parent];
        ++m_first[Slot(m_parents[node]) + 1];
        if (parent == kRoot) {
            m_nWhole = AddTimes(m_nWhole, m_tree[node].total);
        }
    }
    for (std::size_t slot = 1; slot < m_first.size(); ++slot) {
        m_first[slot] += m_first[slot - 1];
    }
    CLargeVector<std::uint32_t> next(m_first.begin(), m_first.end());
    for (Node node = 0; node < count; ++node) {
        m_children[next[Slot(m_parents[node])]++] = node;
    }
    const auto isDearer = [this](Node one, Node other) {
        return m_tree[one].total != m_tree[other].total ? m_tree[one].total > m_tree[other].total
                                                        : one < other;
    };
    for (std::size_t slot = 0; slot + 1 < m_first.size(); ++slot) {
        const auto first = m_children.begin() + m_first[slot];
        const auto end = m_children.begin() + m_first[slot + 1];
        if (slot == 0 || depths[slot - 1] < kDeepest - 2) {
            std::sort(first, end, isDearer);
        }
        for (auto at = first; at != end; ++at) {
            m_rows[*at] = static_cast<std::uint32_t>(at - first);
        }
    }
}

CallTreeRow CCallTreeRows::Cells(Node node) const {
    const CallTreeNode& counts = m_tree[node];
    return {LetterAndName(m_keys, counts.key), counts.total, counts.self, counts.calls,
            ShareOf(counts.total, m_nWhole)};
}

} // namespace carvelot
