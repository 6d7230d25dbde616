#include "explore/Profile.h"

#include "explore/GroupedTimes.h"

#include <algorithm>

namespace carvelot {

namespace {

template <class Take> void ForEachFrame(const CCut& cut, Take take) {
    const CFrames& frames = cut.Frames();
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        if (cut.Holds(i)) {
            take(i, frames[i]);
        }
    }
}

// Finds nodes by parent and key. Most have few children, among which a look tells more quickly than a look-up
// in a large table does.
class CTreeNodes {
public:
    CTreeNodes(CLargeVector<CallTreeNode>& tree, std::size_t most) : m_tree(tree) {
        m_tree.reserve(most);
        m_lastChild.reserve(most);
    }

    std::uint32_t FindOrAdd(std::uint32_t parent, std::uint32_t key) {
        std::uint32_t looked = 0;
        std::uint32_t node = parent == kNone ? m_nFirstAtTop : m_tree[parent].firstChild;
        for (; node != kNone && looked < kFew; node = m_tree[node].nextSibling, ++looked) {
            if (m_tree[node].key == key) {
                return node;
            }
        }
        const auto added = static_cast<std::uint32_t>(m_tree.size());
        if (looked == kFew) {
            const auto [place, isNew] = m_further.FindOrAdd(PairOf(parent, key), added);
            if (!isNew) {
                return place;
            }
        }
        std::uint32_t& last = parent == kNone ? m_nLastAtTop : m_lastChild[parent];
        if (last != kNone) {
            m_tree[last].nextSibling = added;
        } else {
            (parent == kNone ? m_nFirstAtTop : m_tree[parent].firstChild) = added;
        }
        last = added;
        m_lastChild.push_back(kNone);
        m_tree.push_back({key, parent});
        return added;
    }

private:
    static constexpr std::uint32_t kNone = CallTreeNode::kNone;
    static constexpr std::uint32_t kFew = 8;

    CLargeVector<CallTreeNode>& m_tree;
    CLargeVector<std::uint32_t> m_lastChild; // by node
    std::uint32_t m_nFirstAtTop = kNone;
    std::uint32_t m_nLastAtTop = kNone;
    CNumberMap m_further; // children behind the first few
};

} // namespace

CProfile::CProfile(const CCut& cut) {
    std::vector<FunctionProfile> functions(cut.Frames().Keys().Count()); // by key
    AddTree(cut, functions);
    AddFunctions(cut, functions);
    AddEdges(cut.Frames().Keys());
}

void CProfile::AddTree(const CCut& cut, std::vector<FunctionProfile>& functions) {
    const CLargeVector<std::int64_t> selfs = cut.SelfTimes();
    CTreeNodes nodes(m_tree, cut.Frames().Count());
    CLargeVector<std::uint32_t> nodeOf(cut.Frames().Count(), CallTreeNode::kNone); // by frame
    ForEachFrame(cut, [&](std::uint32_t i, const Frame& frame) {
        const std::int64_t total = cut.Total(i);
        const std::uint32_t parent = frame.parent == kNoFrame ? CallTreeNode::kNone : nodeOf[frame.parent];
        nodeOf[i] = nodes.FindOrAdd(parent, frame.key);
        CallTreeNode& node = m_tree[nodeOf[i]];
        ++node.calls;
        node.total = AddTimes(node.total, total);
        node.self = AddTimes(node.self, selfs[i]);

        FunctionProfile& function = functions[frame.key];
        function.unclosed += frame.closed ? 0 : 1;
        function.failed += frame.IsFailed() ? 1 : 0;
        function.warned += frame.IsWarned() ? 1 : 0;
        if (!frame.withinItsKey) {
            function.total = AddTimes(function.total, total);
        }
        function.self = AddTimes(function.self, selfs[i]);
        function.shortest = function.calls == 0 ? total : std::min(function.shortest, total);
        function.longest = std::max(function.longest, total);
        ++function.calls;
    });
}

void CProfile::AddFunctions(const CCut& cut, std::vector<FunctionProfile>& functions) {
    const CFrameKeys& keys = cut.Frames().Keys();
    std::vector<std::uint32_t> counts;
    for (const FunctionProfile& function : functions) {
        counts.push_back(function.calls);
    }
    CGroupedTimes times(counts);
    ForEachFrame(cut, [&](std::uint32_t i, const Frame& frame) { times.Add(frame.key, cut.Total(i)); });
    for (std::uint32_t key = 0; key < keys.Count(); ++key) {
        // A return without its call has made a key that no frame has.
        if (functions[key].calls != 0) {
            functions[key].key = key;
            functions[key].p50 = times.Percentile(key, 50);
            functions[key].p95 = times.Percentile(key, 95);
            m_functions.push_back(functions[key]);
        }
    }
    std::sort(m_functions.begin(), m_functions.end(),
              [&keys](const FunctionProfile& one, const FunctionProfile& other) {
                  return one.total != other.total ? one.total > other.total : keys.Less(one.key, other.key);
              });
}

// What stands below nodes of one key, in the tree, adds up to the edges.
void CProfile::AddEdges(const CFrameKeys& keys) {
    CNumberMap places;
    for (const CallTreeNode& node : m_tree) {
        const std::uint32_t caller = node.parent == CallTreeNode::kNone ? kNoKey : m_tree[node.parent].key;
        const auto [place, isNew] =
            places.FindOrAdd(PairOf(caller, node.key), static_cast<std::uint32_t>(m_edges.size()));
        if (isNew) {
            m_edges.push_back({caller, node.key});
        }
        CallEdge& edge = m_edges[place];
        edge.calls += node.calls;
        edge.total = AddTimes(edge.total, node.total);
    }
    std::sort(m_edges.begin(), m_edges.end(), [&keys](const CallEdge& one, const CallEdge& other) {
        if (one.total != other.total) {
            return one.total > other.total;
        }
        return one.caller != other.caller ? keys.Less(one.caller, other.caller)
                                          : keys.Less(one.callee, other.callee);
    });
}

} // namespace carvelot
