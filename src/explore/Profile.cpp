#include "explore/Profile.h"

#include "explore/GroupedTimes.h"

#include <algorithm>
#include <utility>

namespace carvelot {

namespace {

template <class Take> void ForEachFrame(const CCut& cut, CExploreProgress* progress, Take take) {
    const CFrames& frames = cut.Frames();
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        CheckAt(progress, i);
        if (cut.Holds(i)) {
            take(i, frames[i]);
        }
    }
}

// Finds nodes of a tree by parent and key. Most keys come up once below a node, which a bit for some of all
// keys tells; most others are among a few children, where a look tells more quickly than a look-up in a large
// table does.
class CTreeNodes {
public:
    explicit CTreeNodes(CLargeVector<CallTreeNode>& tree) : m_tree(tree) { m_below.reserve(tree.capacity()); }

    std::uint32_t FindOrAdd(std::uint32_t parent, std::uint32_t key) {
        Below& below = parent == kNone ? m_atTop : m_below[parent];
        const std::uint64_t bit = std::uint64_t{1} << (key % 64U);
        if ((below.keys & bit) != 0) {
            std::uint32_t looked = 0;
            std::uint32_t node = parent == kNone ? 0 : m_tree[parent].firstChild;
            for (; node != kNone && looked < kFew; node = m_tree[node].nextSibling, ++looked) {
                if (m_tree[node].key == key) {
                    return node;
                }
            }
        }
        const auto added = static_cast<std::uint32_t>(m_tree.size());
        if (below.children >= kFew) {
            const auto [place, isNew] = m_further.FindOrAdd(PairOf(parent, key), added);
            if (!isNew) {
                return place;
            }
        }
        below.keys |= bit;
        ++below.children;
        const std::uint32_t last = std::exchange(below.lastChild, added);
        if (last != kNone) {
            m_tree[last].nextSibling = added;
        } else if (parent != kNone) {
            m_tree[parent].firstChild = added;
        }
        m_tree.push_back({key, parent});
        m_below.push_back({});
        return added;
    }

private:
    static constexpr std::uint32_t kNone = CallTreeNode::kNone;
    static constexpr std::uint32_t kFew = 32;

    struct Below {
        std::uint64_t keys = 0; // a bit for each key's number modulo 64
        std::uint32_t children = 0;
        std::uint32_t lastChild = kNone;
    };

    CLargeVector<CallTreeNode>& m_tree;
    CLargeVector<Below> m_below; // by node
    Below m_atTop;
    CNumberMap m_further; // children behind the first few
};

} // namespace

CProfile::CProfile(const CCut& cut, CExploreProgress* progress) {
    std::vector<FunctionProfile> functions(cut.Frames().Keys().Count()); // by key
    AddTree(cut, functions, progress);
    AddFunctions(cut, functions, progress);
    AddEdges(cut.Frames().Keys(), progress);
    AddPart(progress, ExploreParts::kProfile);
}

void CProfile::AddTree(const CCut& cut, std::vector<FunctionProfile>& functions, CExploreProgress* progress) {
    const CLargeVector<std::int64_t> selfs = cut.SelfTimes(progress);
    m_tree.reserve(cut.Frames().Count());
    CTreeNodes nodes(m_tree);
    CLargeVector<std::uint32_t> nodeOf(cut.Frames().Count(), CallTreeNode::kNone); // by frame
    ForEachFrame(cut, progress, [&](std::uint32_t i, const Frame& frame) {
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

void CProfile::AddFunctions(const CCut& cut, std::vector<FunctionProfile>& functions,
                            CExploreProgress* progress) {
    const CFrameKeys& keys = cut.Frames().Keys();
    std::vector<std::uint32_t> counts;
    for (const FunctionProfile& function : functions) {
        counts.push_back(function.calls);
    }
    CGroupedTimes times(counts);
    ForEachFrame(cut, progress,
                 [&](std::uint32_t i, const Frame& frame) { times.Add(frame.key, cut.Total(i)); });
    for (std::uint32_t key = 0; key < keys.Count(); ++key) {
        // A return without its call has made a key that no frame has.
        if (functions[key].calls != 0) {
            CheckAt(progress, 0);
            functions[key].key = key;
            functions[key].p95 = times.Percentile(key, 95);
            functions[key].p50 = times.Percentile(key, 50);
            m_functions.push_back(functions[key]);
        }
    }
    std::sort(m_functions.begin(), m_functions.end(),
              [&keys](const FunctionProfile& one, const FunctionProfile& other) {
                  return one.total != other.total ? one.total > other.total : keys.Less(one.key, other.key);
              });
}

// What stands below nodes of one key, in the tree, adds up to the edges.
void CProfile::AddEdges(const CFrameKeys& keys, CExploreProgress* progress) {
    CNumberMap places;
    std::uint32_t step = 0;
    for (const CallTreeNode& node : m_tree) {
        CheckAt(progress, step++);
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
