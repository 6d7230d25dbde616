// The call tree as a tree view shows it: who a node's parent is and where it stands are look-ups.
#pragma once

#include "explore/Profile.h"
#include "text/ColumnTable.h"

#include <cstdint>
#include <string>

namespace carvelot {

// A node's cells.
struct CallTreeRow {
    std::string name; // with its kind's letter
    std::int64_t total = 0;
    std::int64_t self = 0;
    std::uint32_t calls = 0;
    double share = 0; // the total's of the whole tree

    static CColumnTable<CallTreeRow> Columns();
};

// Children stand by total falling, then by first appearance. Every call that never returns leaves one level
// open, so that a damaged log nests without end, which no view can show: from kDeepest on, nodes stand one
// below the other in the order of their first appearance instead.
class CCallTreeRows {
public:
    using Node = std::uint32_t; // its place in the profile's tree

    static constexpr Node kRoot = CallTreeNode::kNone;
    static constexpr std::uint32_t kDeepest = 500; // levels

    // Refers to both.
    CCallTreeRows(const CFrameKeys& keys, const CProfile& profile);

    std::uint32_t ChildCount(Node parent) const { return m_first[Slot(parent) + 1] - m_first[Slot(parent)]; }
    Node Child(Node parent, std::uint32_t row) const { return m_children[m_first[Slot(parent)] + row]; }
    Node Parent(Node node) const { return m_parents[node]; }
    std::uint32_t Row(Node node) const { return m_rows[node]; }
    CallTreeRow Cells(Node node) const;

private:
    static std::size_t Slot(Node parent) { return parent == kRoot ? 0 : std::size_t{parent} + 1; }

    const CFrameKeys& m_keys;
    const CLargeVector<CallTreeNode>& m_tree;
    std::int64_t m_nWhole = 0;             // microseconds
    CLargeVector<std::uint32_t> m_parents; // by node, as shown
    CLargeVector<std::uint32_t> m_rows;    // by node
    CLargeVector<std::uint32_t> m_first;   // in m_children, by parent, the root first
    CLargeVector<Node> m_children;
};

} // namespace carvelot
