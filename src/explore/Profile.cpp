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

std::uint32_t CallerOf(const CFrames& frames, const Frame& frame) {
    return frame.parent == kNoFrame ? kNoKey : frames[frame.parent].key;
}

// By frame; taken of what lies in the range.
std::vector<std::int64_t> SelfTimes(const CCut& cut) {
    std::vector<std::int64_t> selfs(cut.Frames().Count(), 0);
    ForEachFrame(cut, [&](std::uint32_t i, const Frame& frame) {
        const std::int64_t total = cut.Total(i);
        selfs[i] += total;
        if (frame.parent != kNoFrame) {
            selfs[frame.parent] -= total;
        }
    });
    return selfs;
}

} // namespace

CProfile::CProfile(const CCut& cut) {
    const std::vector<std::int64_t> selfs = SelfTimes(cut);
    AddFunctions(cut, selfs);
    AddEdges(cut);
    AddTree(cut, selfs);
}

void CProfile::AddFunctions(const CCut& cut, const std::vector<std::int64_t>& selfs) {
    const CFrameKeys& keys = cut.Frames().Keys();
    std::vector<FunctionProfile> functions(keys.Count());
    std::vector<std::uint32_t> counts(keys.Count(), 0);
    ForEachFrame(cut, [&](std::uint32_t i, const Frame& frame) {
        FunctionProfile& function = functions[frame.key];
        const std::int64_t total = cut.Total(i);
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
        ++counts[frame.key];
    });
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

void CProfile::AddEdges(const CCut& cut) {
    const CFrames& frames = cut.Frames();
    CNumberMap places;
    ForEachFrame(cut, [&](std::uint32_t i, const Frame& frame) {
        const std::uint32_t caller = CallerOf(frames, frame);
        const auto [place, isNew] =
            places.FindOrAdd(PairOf(caller, frame.key), static_cast<std::uint32_t>(m_edges.size()));
        if (isNew) {
            m_edges.push_back({caller, frame.key});
        }
        CallEdge& edge = m_edges[place];
        ++edge.calls;
        edge.total = AddTimes(edge.total, cut.Total(i));
    });
    std::sort(m_edges.begin(), m_edges.end(),
              [&keys = frames.Keys()](const CallEdge& one, const CallEdge& other) {
                  if (one.total != other.total) {
                      return one.total > other.total;
                  }
                  return one.caller != other.caller ? keys.Less(one.caller, other.caller)
                                                    : keys.Less(one.callee, other.callee);
              });
}

void CProfile::AddTree(const CCut& cut, const std::vector<std::int64_t>& selfs) {
    constexpr std::uint32_t none = CallTreeNode::kNone;
    CNumberMap places;                                             // by parent and key
    std::vector<std::uint32_t> nodeOf(cut.Frames().Count(), none); // by frame
    std::vector<std::uint32_t> lastChild;                          // by node
    std::uint32_t lastAtTop = none;
    ForEachFrame(cut, [&](std::uint32_t i, const Frame& frame) {
        const std::uint32_t parent = frame.parent == kNoFrame ? none : nodeOf[frame.parent];
        const auto [place, isNew] =
            places.FindOrAdd(PairOf(parent, frame.key), static_cast<std::uint32_t>(m_tree.size()));
        if (isNew) {
            std::uint32_t& last = parent == none ? lastAtTop : lastChild[parent];
            if (last != none) {
                m_tree[last].nextSibling = place;
            } else if (parent != none) {
                m_tree[parent].firstChild = place;
            }
            last = place;
            lastChild.push_back(none);
            m_tree.push_back({frame.key, parent});
        }
        nodeOf[i] = place;
        CallTreeNode& node = m_tree[place];
        ++node.calls;
        node.total = AddTimes(node.total, cut.Total(i));
        node.self = AddTimes(node.self, selfs[i]);
    });
}

} // namespace carvelot
