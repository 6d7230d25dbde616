// What the frames of a part of a log add up to: by function, by caller and callee, and as a tree of calls.
// Times are microseconds.
#pragma once

#include "explore/Cut.h"

#include <cstdint>
#include <vector>

namespace carvelot {

// All frames of one key, of whatever kind.
struct FunctionProfile {
    std::uint32_t key = kNoKey;
    std::uint32_t calls = 0;
    std::uint32_t unclosed = 0;
    std::uint32_t failed = 0;
    std::uint32_t warned = 0;
    std::int64_t total = 0; // of those that stand in none of the same key
    std::int64_t self = 0;
    std::int64_t shortest = 0;
    std::int64_t longest = 0;
    std::int64_t p50 = 0;
    std::int64_t p95 = 0;
};

struct CallEdge {
    std::uint32_t caller = kNoKey; // none at the top
    std::uint32_t callee = kNoKey;
    std::uint32_t calls = 0;
    std::int64_t total = 0;
};

struct CallTreeNode {
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    std::uint32_t key = kNoKey;
    std::uint32_t parent = kNone; // a node ahead of this one
    std::uint32_t firstChild = kNone;
    std::uint32_t nextSibling = kNone; // both by first appearance
    std::uint32_t calls = 0;
    std::int64_t total = 0;
    std::int64_t self = 0;
};

class CProfile {
public:
    explicit CProfile(const CCut& cut, CExploreProgress* progress = nullptr);

    std::vector<FunctionProfile> m_functions; // by total falling, then kind and name
    std::vector<CallEdge> m_edges;            // by total falling, then caller and callee
    CLargeVector<CallTreeNode> m_tree;        // by first appearance; those without a parent are siblings

private:
    void AddTree(const CCut& cut, std::vector<FunctionProfile>& functions, CExploreProgress* progress);
    void AddFunctions(const CCut& cut, std::vector<FunctionProfile>& functions, CExploreProgress* progress);
    void AddEdges(const CFrameKeys& keys, CExploreProgress* progress);
};

} // namespace carvelot
