// Where the nodes of a call tree lie in a flame graph: below each other by depth, beside each other by order
// of first appearance, as wide as their time. Laid out once; whatever is asked afterwards is found by
// halving.
#pragma once

#include "explore/Profile.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace carvelot {

class CFlameLayout {
public:
    // Nodes are numbered level by level, each level from left to right. The first one is the whole.
    using Place = std::uint32_t;
    static constexpr Place kWhole = 0;
    static constexpr Place kNoPlace = 0xFFFFFFFF;

    // Refers to the tree.
    explicit CFlameLayout(const CLargeVector<CallTreeNode>& tree);

    Place Count() const { return static_cast<Place>(m_starts.size()); }
    std::uint32_t Levels() const { return static_cast<std::uint32_t>(m_levels.size() - 1); }
    // A level's first place; for Levels() the end of all.
    Place LevelBegin(std::uint32_t level) const { return m_levels[level]; }
    std::uint32_t LevelOf(Place place) const;

    // Microseconds from the left edge of the whole.
    std::int64_t Start(Place place) const { return m_starts[place]; }
    std::int64_t End(Place place) const { return m_ends[place]; }
    std::int64_t Total(Place place) const { return m_ends[place] - m_starts[place]; }
    std::uint32_t Calls(Place place) const; // 0 of the whole
    std::int64_t Self(Place place) const;
    std::uint32_t Key(Place place) const;                        // kNoKey of the whole
    Place Parent(Place place) const { return m_parents[place]; } // kNoPlace of the whole
    Place ChildBegin(Place place) const { return m_children[place]; }
    Place ChildEnd(Place place) const { return m_children[place + 1]; }
    Place WidestChild(Place place) const; // kNoPlace without one

    // The first place of a level, from one on, that ends behind a time; the level's end without one.
    Place FirstEndingBehind(std::uint32_t level, Place from, std::int64_t time) const;
    // The place of a level that a time lies in, or kNoPlace.
    Place At(std::uint32_t level, std::int64_t time) const;
    // The largest own time of a node.
    std::int64_t MostSelf() const { return m_nMostSelf; }

private:
    const CLargeVector<CallTreeNode>& m_tree;
    std::vector<Place> m_levels; // first places, and the end
    CLargeVector<std::int64_t> m_starts;
    CLargeVector<std::int64_t> m_ends;
    CLargeVector<std::uint32_t> m_nodes; // of the tree, by place
    CLargeVector<Place> m_parents;
    CLargeVector<Place>
        m_children; // each place's first child, and the end; they stand in the order of their parents
    std::int64_t m_nMostSelf = 0;
};

// What a search marks: the places whose names hold a text, without regard to case.
class CFlameSearch {
public:
    // Nothing is searched for.
    CFlameSearch() = default;
    CFlameSearch(const CFlameLayout& layout, const CFrameKeys& keys, std::string_view text);

    bool IsOn() const { return m_bOn; }
    bool Marks(CFlameLayout::Place place) const { return m_hitsAhead[place] != m_hitsAhead[place + 1]; }
    // Whether one of some places, without the one at `end`, is marked.
    bool MarksAny(CFlameLayout::Place begin, CFlameLayout::Place end) const {
        return m_hitsAhead[begin] != m_hitsAhead[end];
    }
    std::size_t Count() const { return m_hits.size(); }
    // From left to right, and from the top down.
    const std::vector<CFlameLayout::Place>& Hits() const { return m_hits; }
    // The hits that stand below no other one.
    std::int64_t Total() const { return m_nTotal; }

private:
    bool m_bOn = false;
    CLargeVector<std::uint32_t> m_hitsAhead; // by place, and the end
    std::vector<CFlameLayout::Place> m_hits;
    std::int64_t m_nTotal = 0;
};

} // namespace carvelot
