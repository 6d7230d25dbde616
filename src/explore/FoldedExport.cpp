#include "explore/ExportFormats.h"

#include "records/Interner.h"
#include "records/NumberMap.h"

#include <algorithm>
#include <numeric>
#include <ostream>

namespace carvelot {

namespace {

// Every path is written out, so that of a hundred thousand nested calls each would name all that it stands
// in.
constexpr std::size_t kMostFrames = 500;

// What frames merged by their names below their parents have added up to, a stream's ahead of them.
class CFoldedPaths {
public:
    explicit CFoldedPaths(const ExportedProfile& profile)
        : m_cut(profile.cut), m_nameOfKey(profile.cut.Frames().Keys().Count(), kNone) {}

    std::uint32_t Name(std::string_view text) {
        text = ExportedName(text, m_strScratch);
        if (text.find(';') != std::string_view::npos) {
            std::string colons(text);
            std::replace(colons.begin(), colons.end(), ';', ':');
            return m_names.Id(colons);
        }
        return m_names.Id(text);
    }

    // Begins anew with the paths of streams of this name.
    void Start(std::uint32_t streamName) {
        m_nodes.assign(1, {kNone, streamName, 0});
        m_children = CNumberMap();
    }

    void Add(std::span<const std::uint32_t> frames) {
        std::vector<std::uint32_t> path{0};
        WalkStream(
            m_cut.Frames(), frames,
            [&](std::uint32_t frame) {
                // A frame deeper than that adds its time to the node in which its parent's stands.
                path.push_back(path.size() > kMostFrames ? path.back() : Child(path.back(), frame));
                const std::int64_t total = m_cut.Total(frame);
                if (path.size() > 2) {
                    m_nodes[path.end()[-2]].self -= total;
                }
                m_nodes[path.back()].self += total;
            },
            [&path](std::uint32_t) { path.pop_back(); });
    }

    void Write(std::ostream& out) const {
        std::vector<std::uint32_t> path;
        for (std::uint32_t node = 1; node < m_nodes.size(); ++node) {
            path.clear();
            for (std::uint32_t at = node; at != kNone; at = m_nodes[at].parent) {
                path.push_back(m_nodes[at].name);
            }
            for (std::size_t i = path.size(); i-- > 0;) {
                out << m_names.Text(path[i]) << (i == 0 ? ' ' : ';');
            }
            out << m_nodes[node].self << '\n';
        }
    }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFE;

    struct Node {
        std::uint32_t parent;
        std::uint32_t name;
        std::int64_t self;
    };

    std::uint32_t Child(std::uint32_t parent, std::uint32_t frame) {
        const std::uint32_t key = m_cut.Frames()[frame].key;
        std::uint32_t& name = m_nameOfKey[key];
        if (name == kNone) {
            name = Name(m_cut.Frames().Keys().Name(key));
        }
        const auto added = static_cast<std::uint32_t>(m_nodes.size());
        const auto [node, isNew] = m_children.FindOrAdd(PairOf(parent, name), added);
        if (isNew) {
            m_nodes.push_back({parent, name, 0});
        }
        return node;
    }

    const CCut& m_cut;
    CInterner m_names;
    std::vector<std::uint32_t> m_nameOfKey;
    std::vector<Node> m_nodes; // the stream's first, then by first appearance
    CNumberMap m_children;     // by parent and name
    std::string m_strScratch;
};

} // namespace

void WriteFolded(const ExportedProfile& profile, std::ostream& out) {
    const CFramesByStream streamFrames(profile);
    CFoldedPaths paths(profile);
    // Streams whose names look alike once they are written share their paths.
    std::vector<std::uint32_t> names;
    for (std::uint32_t stream = 0; stream < profile.streams.Count(); ++stream) {
        names.push_back(paths.Name(profile.streams.Name(stream)));
    }
    std::vector<std::uint32_t> order(names.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(),
                     [&names](std::uint32_t one, std::uint32_t other) { return names[one] < names[other]; });
    for (std::size_t i = 0; i < order.size();) {
        const std::uint32_t name = names[order[i]];
        paths.Start(name);
        for (; i < order.size() && names[order[i]] == name; ++i) {
            paths.Add(streamFrames.Of(order[i]));
        }
        paths.Write(out);
    }
}

} // namespace carvelot
