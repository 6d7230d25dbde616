// The call tree that a flat, time-ordered list of records describes: calls open a level, returns close it,
// parameters hang in groups of their own, and each call's image tells after the fact how it ended.
#pragma once

#include "records/LogDetail.h"
#include "records/PageAllocator.h"
#include "session/CarvelotDoc.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace carvelot {

// Index into the strip of images that both session trees share.
enum TreeImage : std::uint8_t {
    IMAGE_FAILED = 0,  // red no-entry disc
    IMAGE_WARNING = 1, // yellow triangle
    IMAGE_OK = 2,      // green tick
    IMAGE_SQL = 3,
    IMAGE_PARM_IN = 4,
    IMAGE_PARM_OUT = 5,
    IMAGE_ER = 6,
    IMAGE_THREAD = 8,
    IMAGE_PROCESS = 9,
    IMAGE_OK_FAILED_BELOW = 10,
    IMAGE_WARNING_FAILED_BELOW = 11,
    IMAGE_INFORMATION = 12,
    IMAGE_USER = 13,
    IMAGE_SYSTEM_LEVEL = 14,
    IMAGE_OBJECT_CALL = 15,
    IMAGE_CACHE = 17,
    IMAGE_UBE = 21,
    IMAGE_GAP = 22,
    IMAGE_COUNT = 23,
};

class CDetailTree {
public:
    // A node of the tree, valid until the next ResetTree.
    using Node = std::uint32_t;
    static constexpr Node kRoot = 0xFFFFFFFF;

    explicit CDetailTree(const CCarvelotDoc& session) : m_session(session) {}

    void ResetTree();
    // Lays out a list of records. With `singleThread` the list becomes the whole content; without, it is
    // appended to what is there, nesting anew from the root, and every record's text starts with its thread
    // number.
    void FillDetails(bool singleThread, std::span<const RecordIndex> records);

    // The tree as a window walks it; rows count from 0.
    std::size_t ChildCount(Node parent) const;
    Node Child(Node parent, std::size_t row) const;
    Node Parent(Node node) const { return m_nodes[node].parent; }
    std::size_t Row(Node node) const;
    std::size_t NodeCount() const { return m_nodes.size(); }

    std::string Text(Node node) const;
    int Image(Node node) const { return m_nodes[node].image; }
    // The record that the node's data refers to: its own; for "PARMS IN" the first parameter's; for "PARMS
    // OUT" and "UBE" kNoRecord.
    RecordIndex Record(Node node) const { return m_nodes[node].record; }
    // The record's own node, kRoot when the present tree has none.
    Node NodeOf(RecordIndex record) const;

    // By which a node is known again after a fill with the same records and more.
    struct NodeKey {
        RecordIndex record; // the node's, or else that of the node behind it
        std::uint8_t kind;

        bool operator==(const NodeKey&) const = default;
    };
    NodeKey KeyOf(Node node) const;
    // The present nodes of those keys, of which the nodes were these before; kRoot where there is none.
    std::vector<Node> NodesOf(std::span<const NodeKey> keys, std::span<const Node> before) const;

    // What the Raw Data pane shows of a node: the record's whole statement, else the node's words.
    std::string RawText(Node node) const;
    bool OffersCopyParms(Node node) const;
    // The parameters of the node's group as they go to the clipboard: three blanks before each, and two
    // behind the last.
    std::string CopyParmsText(Node node) const;

private:
    enum class NodeKind : std::uint8_t { Record, Ube, ParmsIn, ParmsOut };
    struct NodeData {
        RecordIndex record;
        Node parent;
        std::uint8_t image;
        NodeKind kind;
        bool passed; // by a failure's walk to the top: the records from here on up are marked
        bool removed;
    };

    Node Add(Node parent, RecordIndex record, int image, NodeKind kind);
    bool HasFailedBelow(Node node) const;
    void MarkFailedBelow(Node node);
    void LayOut() const;
    // A parent's place in m_firstChild.
    static std::size_t SlotOf(Node parent) { return parent == kRoot ? 0 : std::size_t{parent} + 1; }

    const CCarvelotDoc& m_session;
    CLargeVector<NodeData> m_nodes;
    bool m_bSingleThread = true;
    // By record: a call below one of its nodes returned 2. A mark stays from fill to fill, as long as the
    // session holds the record. Empty while there is none.
    std::vector<bool> m_failedBelow;
    std::uint64_t m_nMarkedLoad = 0;

    // The children of all nodes, one parent's after the other's, made when first asked for after a fill.
    mutable bool m_bLaidOut = false;
    mutable CLargeVector<std::uint32_t> m_firstChild; // in m_children; see SlotOf; one more at the end
    mutable CLargeVector<Node> m_children;            // in rising order below each parent
};

} // namespace carvelot
