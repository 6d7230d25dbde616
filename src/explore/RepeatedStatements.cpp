// Statements that run again and again: below one function or event, or one right behind the other.
#include "explore/FindingRules.h"
#include "text/Release.h"

#include <algorithm>
#include <string>
#include <utility>

namespace carvelot {

namespace {

constexpr std::uint32_t kMany = 10;
constexpr std::int64_t kLongestPause = 1'000'000;

// Executions of one shape, as a list linked in CExecutionLinks.
struct Executions {
    std::uint32_t first = kNoFrame;
    std::uint32_t last = kNoFrame;
    std::uint32_t count = 0;
};

class CExecutionLinks {
public:
    explicit CExecutionLinks(std::uint32_t frames) : m_next(frames, kNoFrame) {}

    void Append(Executions& list, const Executions& more) {
        if (more.count == 0) {
            return;
        }
        (list.count == 0 ? list.first : m_next[list.last]) = more.first;
        list.last = more.last;
        list.count += more.count;
    }
    template <class Take> void ForEach(const Executions& list, Take take) const {
        std::uint32_t frame = list.first;
        for (std::uint32_t i = 0; i < list.count; ++i) {
            take(frame);
            frame = m_next[frame];
        }
    }

private:
    CLargeVector<std::uint32_t> m_next; // by frame
};

// What of a shape stands below a frame. As long as it is fewer than ten executions, all of them are the
// frame's share, and its parent's too. From then on the shape is heavy there: only what comes to the frame
// itself is its share.
struct ShapeBelow {
    Executions executions;
    std::uint32_t owner = kNoFrame; // of a heavy one: the frame whose share it is, for any other it is none
    bool heavy = false;

    bool IsShareOf(std::uint32_t frame) const { return !heavy || owner == frame; }
};

// What a finding tells of executions that come in any order.
class CFoundExecutions {
public:
    void Add(const Frame& execution) {
        ++m_nCount;
        m_nCost = AddTimes(m_nCost, execution.Total());
        m_records.push_back(execution.record);
        if (m_records.size() == 4 * Finding::kMostRecords) {
            KeepFirst();
        }
    }
    bool IsEmpty() const { return m_nCount == 0; }
    Finding Tell(std::string subject) {
        KeepFirst();
        std::sort(m_records.begin(), m_records.end());
        return {FindingRule::RepeatedStatement, std::move(subject), m_nCount, m_nCost, std::move(m_records)};
    }

private:
    void KeepFirst() {
        if (m_records.size() > Finding::kMostRecords) {
            const auto behind = m_records.begin() + Finding::kMostRecords;
            std::nth_element(m_records.begin(), behind, m_records.end());
            m_records.erase(behind, m_records.end());
        }
    }

    std::uint64_t m_nCount = 0;
    std::int64_t m_nCost = 0;
    std::vector<RecordIndex> m_records; // the first ones, and others until these are dropped
};

// By shape. Most frames hold a few, among which a look tells more quickly than a look-up.
class CShapesBelow {
public:
    struct Entry {
        std::uint32_t shape;
        ShapeBelow held;
    };

    ShapeBelow& At(std::uint32_t shape) {
        if (m_entries.size() <= kFew) {
            for (Entry& entry : m_entries) {
                if (entry.shape == shape) {
                    return entry.held;
                }
            }
            if (m_entries.size() == kFew) {
                for (std::uint32_t i = 0; i < kFew; ++i) {
                    m_places.FindOrAdd(m_entries[i].shape, i);
                }
            }
            if (m_entries.size() < kFew) {
                return m_entries.emplace_back(Entry{shape, {}}).held;
            }
        }
        const auto [place, isNew] = m_places.FindOrAdd(shape, static_cast<std::uint32_t>(m_entries.size()));
        if (isNew) {
            m_entries.push_back({shape, {}});
        }
        return m_entries[place].held;
    }
    std::size_t Size() const { return m_entries.size(); }
    const std::vector<Entry>& Entries() const { return m_entries; }
    // A large table is given back: it would cost each of its next users its whole size.
    void Clear() {
        if (m_entries.size() > kFew) {
            Release(m_entries);
            m_places = {};
        } else {
            m_entries.clear();
        }
    }

private:
    static constexpr std::uint32_t kFew = 12;

    std::vector<Entry> m_entries;
    CNumberMap m_places; // of all, once there are more than a few
};

struct Below {
    CShapesBelow shapes;
    std::vector<std::uint32_t> heavyShapes; // of which the frame may have a share
};

class CRepeatedStatements {
public:
    CRepeatedStatements(const ExploredSession& explored, FindingList& findings, CExploreProgress* progress)
        : m_explored(explored), m_frames(explored.frames), m_findings(findings), m_pProgress(progress),
          m_links(m_frames.Count()), m_placeBelow(m_frames.Count(), kNoPlace), m_counted(m_frames.Count()) {}

    void Find() {
        CountShapes();
        // From the last frame on: all that stands below a frame comes ahead of it.
        for (std::uint32_t i = m_frames.Count(); i-- > 0;) {
            CheckAt(m_pProgress, i);
            const std::uint32_t shape = m_explored.shapes.Of(i);
            if (shape != kNoShape) {
                if (IsFrequent(shape) && m_frames[i].parent != kNoFrame) {
                    const std::uint32_t parent = m_frames[i].parent;
                    Add(parent, BelowOf(parent), shape, {{i, i, 1}});
                }
            } else if (m_placeBelow[i] != kNoPlace) {
                TakeShares(i);
                GiveToParent(i);
            }
        }
        ReportShares();
        FindRuns();
    }

private:
    static constexpr std::uint32_t kNoPlace = 0xFFFFFFFF;

    void CountShapes() {
        m_executions.assign(m_explored.shapes.Count(), 0);
        for (std::uint32_t i = 0; i < m_frames.Count(); ++i) {
            CheckAt(m_pProgress, i);
            const std::uint32_t shape = m_explored.shapes.Of(i);
            if (shape != kNoShape) {
                ++m_executions[shape];
            }
        }
    }
    bool IsFrequent(std::uint32_t shape) const { return m_executions[shape] >= kMany; }

    Below& BelowOf(std::uint32_t frame) {
        std::uint32_t& place = m_placeBelow[frame];
        if (place == kNoPlace) {
            if (m_free.empty()) {
                place = static_cast<std::uint32_t>(m_below.size());
                m_below.emplace_back();
            } else {
                place = m_free.back();
                m_free.pop_back();
            }
        }
        return m_below[place];
    }

    // Adds what one of its children, or the frame itself so far, holds of a shape.
    void Add(std::uint32_t frame, Below& below, std::uint32_t shape, const ShapeBelow& more) {
        ShapeBelow& held = below.shapes.At(shape);
        const bool isListed = (held.heavy && held.owner == frame) || (more.heavy && more.owner == frame);
        if (!held.IsShareOf(frame)) {
            held.executions = {};
        }
        if (more.IsShareOf(frame)) {
            m_links.Append(held.executions, more.executions);
        }
        held.heavy = held.heavy || more.heavy || held.executions.count >= kMany;
        held.owner = frame;
        if (held.heavy && !isListed) {
            below.heavyShapes.push_back(shape);
        }
    }

    // The shares of a frame are whole: nothing more comes to it.
    void TakeShares(std::uint32_t frame) {
        Below& below = m_below[m_placeBelow[frame]];
        for (const std::uint32_t shape : below.heavyShapes) {
            const Executions& share = below.shapes.At(shape).executions;
            if (share.count >= kMany) {
                const auto [place, isNew] = m_placeOfPair.FindOrAdd(
                    PairOf(m_frames[frame].key, shape), static_cast<std::uint32_t>(m_pairs.size()));
                if (isNew) {
                    m_pairs.push_back({m_frames[frame].key, shape, {}});
                }
                CFoundExecutions& found = m_pairs[place].found;
                m_links.ForEach(share, [&](std::uint32_t execution) {
                    m_counted[execution] = true;
                    found.Add(m_frames[execution]);
                });
            }
        }
        below.heavyShapes.clear();
    }

    // The smaller table goes into the larger one, so that no entry moves often however deep the calls are.
    void GiveToParent(std::uint32_t frame) {
        const std::uint32_t parent = m_frames[frame].parent;
        const std::uint32_t place = std::exchange(m_placeBelow[frame], kNoPlace);
        if (parent != kNoFrame && m_placeBelow[parent] == kNoPlace) {
            m_placeBelow[parent] = place;
            return;
        }
        Below& below = m_below[place];
        if (parent != kNoFrame) {
            Below& above = m_below[m_placeBelow[parent]];
            if (above.shapes.Size() < below.shapes.Size()) {
                std::swap(above.shapes, below.shapes);
            }
            for (const auto& [shape, held] : below.shapes.Entries()) {
                Add(parent, above, shape, held);
            }
        }
        below.shapes.Clear();
        m_free.push_back(place);
    }

    struct Pair {
        std::uint32_t key;
        std::uint32_t shape;
        CFoundExecutions found;
    };

    void ReportShares() {
        for (Pair& pair : m_pairs) {
            std::string subject(m_frames.Keys().Name(pair.key));
            m_findings.push_back(
                pair.found.Tell(subject.append(" > ").append(m_explored.shapes.Text(pair.shape))));
        }
    }

    // Of what no share counts: in each stream, what follows the one before of its shape soon.
    void FindRuns() {
        struct Run {
            std::uint32_t shape;
            std::int64_t end;
            Executions executions;
        };
        CNumberMap places; // by stream and shape
        std::vector<Run> runs;
        std::vector<CFoundExecutions> found(m_explored.shapes.Count()); // by shape
        const auto endRun = [&](Run& run) {
            if (run.executions.count >= kMany) {
                m_links.ForEach(run.executions,
                                [&](std::uint32_t execution) { found[run.shape].Add(m_frames[execution]); });
            }
            run.executions = {};
        };
        for (std::uint32_t i = 0; i < m_frames.Count(); ++i) {
            CheckAt(m_pProgress, i);
            const std::uint32_t shape = m_explored.shapes.Of(i);
            if (shape == kNoShape || !IsFrequent(shape) || m_counted[i]) {
                continue;
            }
            const Frame& frame = m_frames[i];
            const auto [place, isNew] =
                places.FindOrAdd(PairOf(frame.stream, shape), static_cast<std::uint32_t>(runs.size()));
            if (isNew) {
                runs.push_back({shape, frame.start, {}});
            }
            Run& run = runs[place];
            if (frame.start - run.end > kLongestPause) {
                endRun(run);
            }
            m_links.Append(run.executions, {i, i, 1});
            run.end = frame.end;
        }
        for (Run& run : runs) {
            endRun(run);
        }
        for (std::uint32_t shape = 0; shape < found.size(); ++shape) {
            if (!found[shape].IsEmpty()) {
                m_findings.push_back(
                    found[shape].Tell(std::string("(top) > ").append(m_explored.shapes.Text(shape))));
            }
        }
    }

    const ExploredSession& m_explored;
    const CFrames& m_frames;
    FindingList& m_findings;
    CExploreProgress* const m_pProgress;
    CExecutionLinks m_links;
    std::vector<std::uint32_t> m_executions;  // how many, by shape
    CLargeVector<std::uint32_t> m_placeBelow; // in m_below, by frame
    std::vector<bool> m_counted;              // by frame
    std::vector<Below> m_below;
    std::vector<std::uint32_t> m_free; // places in m_below
    CNumberMap m_placeOfPair;
    std::vector<Pair> m_pairs;
};

} // namespace

void FindRepeatedStatements(const ExploredSession& explored, FindingList& findings,
                            CExploreProgress* progress) {
    CRepeatedStatements(explored, findings, progress).Find();
}

} // namespace carvelot
