#include "explore/pictures/FlameLayout.h"

#include "explore/lists/ExploreNames.h"
#include "text/FindText.h"

#include <algorithm>

namespace carvelot {

CFlameLayout::CFlameLayout(const CLargeVector<CallTreeNode>& tree) : m_tree(tree) {
    constexpr std::uint32_t none = CallTreeNode::kNone;
    const std::size_t count = tree.size() + 1;
    m_starts.reserve(count);
    m_ends.reserve(count);
    m_nodes.reserve(count);
    m_parents.reserve(count);
    m_children.reserve(count + 1);
    const auto add = [this](std::uint32_t node, Place parent, std::int64_t start, std::int64_t end) {
        m_nodes.push_back(node);
        m_parents.push_back(parent);
        m_starts.push_back(start);
        m_ends.push_back(end);
    };
    std::int64_t whole = 0;
    for (const CallTreeNode& node : tree) {
        whole = node.parent == none ? AddTimes(whole, node.total) : whole;
        m_nMostSelf = std::max(m_nMostSelf, node.self);
    }
    add(none, kNoPlace, 0, whole);
    m_levels.push_back(0);
    for (Place place = 0; place < m_nodes.size(); ++place) {
        if (place == m_levels.back()) {
            m_levels.push_back(static_cast<Place>(m_nodes.size())); // of the children of this level
        }
        m_children.push_back(static_cast<Place>(m_nodes.size()));
        std::int64_t start = m_starts[place];
        const std::uint32_t parent = m_nodes[place];
        const std::uint32_t first = parent != none ? tree[parent].firstChild : tree.empty() ? none : 0;
        for (std::uint32_t node = first; node != none; node = tree[node].nextSibling) {
            // Times that 64 bits do not hold are cut.
            const std::int64_t end = std::min(AddTimes(start, tree[node].total), m_ends[place]);
            add(node, place, start, end);
            start = end;
        }
    }
    m_children.push_back(static_cast<Place>(m_nodes.size()));
}

std::uint32_t CFlameLayout::LevelOf(Place place) const {
    return static_cast<std::uint32_t>(std::upper_bound(m_levels.begin(), m_levels.end(), place) -
                                      m_levels.begin() - 1);
}

std::uint32_t CFlameLayout::Calls(Place place) const {
    return place == kWhole ? 0 : m_tree[m_nodes[place]].calls;
}

std::int64_t CFlameLayout::Self(Place place) const {
    return place == kWhole ? 0 : m_tree[m_nodes[place]].self;
}

std::uint32_t CFlameLayout::Key(Place place) const {
    return place == kWhole ? kNoKey : m_tree[m_nodes[place]].key;
}

CFlameLayout::Place CFlameLayout::WidestChild(Place place) const {
    Place widest = kNoPlace;
    for (Place child = ChildBegin(place); child < ChildEnd(place); ++child) {
        widest = widest == kNoPlace || Total(child) > Total(widest) ? child : widest;
    }
    return widest;
}

CFlameLayout::Place CFlameLayout::FirstEndingBehind(std::uint32_t level, Place from,
                                                    std::int64_t time) const {
    // Mostly it is near: steps of doubled width, then halving.
    const Place end = m_levels[level + 1];
    Place step = 1;
    Place low = from;
    while (low + step < end && m_ends[low + step] <= time) {
        low += step;
        step *= 2;
    }
    const Place high = std::min(end, low + step + 1);
    return static_cast<Place>(std::upper_bound(m_ends.begin() + low, m_ends.begin() + high, time) -
                              m_ends.begin());
}

CFlameLayout::Place CFlameLayout::At(std::uint32_t level, std::int64_t time) const {
    if (level >= Levels()) {
        return kNoPlace;
    }
    const Place place = FirstEndingBehind(level, LevelBegin(level), time);
    return place < LevelBegin(level + 1) && m_starts[place] <= time ? place : kNoPlace;
}

CFlameSearch::CFlameSearch(const CFlameLayout& layout, const CFrameKeys& keys, std::string_view text)
    : m_bOn(!text.empty()) {
    if (!m_bOn) {
        return;
    }
    const CFindText find(text);
    std::vector<bool> found(keys.Count());
    for (std::uint32_t key = 0; key < keys.Count(); ++key) {
        found[key] = find.IsIn(ShownName(keys.Name(key)), false);
    }
    using Place = CFlameLayout::Place;
    std::vector<bool> below(layout.Count()); // a hit, or below one
    m_hitsAhead.reserve(std::size_t{layout.Count()} + 1);
    m_hitsAhead.push_back(0);
    for (Place place = 0; place < layout.Count(); ++place) {
        const bool isHit = place != CFlameLayout::kWhole && found[layout.Key(place)];
        const bool isBelow = place != CFlameLayout::kWhole && below[layout.Parent(place)];
        below[place] = isHit || isBelow;
        m_hitsAhead.push_back(m_hitsAhead.back() + (isHit ? 1 : 0));
        if (isHit) {
            m_hits.push_back(place);
            m_nTotal = isBelow ? m_nTotal : AddTimes(m_nTotal, layout.Total(place));
        }
    }
    // They stand by level.
    std::stable_sort(m_hits.begin(), m_hits.end(),
                     [&](Place one, Place other) { return layout.Start(one) < layout.Start(other); });
}

} // namespace carvelot
