#include "explore/Shapes.h"

#include "explore/FrameNames.h"
#include "explore/GroupedTimes.h"

#include <algorithm>

namespace carvelot {

namespace {

// How often each caller ran each shape.
class CCallers {
public:
    explicit CCallers(std::uint32_t shapes) : m_best(shapes, kNone) {}

    void Count(std::uint32_t shape, std::uint32_t caller) {
        const auto [place, isNew] =
            m_places.FindOrAdd(PairOf(shape, caller), static_cast<std::uint32_t>(m_runs.size()));
        if (isNew) {
            m_runs.push_back({shape, caller, 0});
        }
        ++m_runs[place].count;
    }
    // To be asked for when all are counted.
    void FindBest() {
        for (std::uint32_t i = 0; i < m_runs.size(); ++i) {
            std::uint32_t& best = m_best[m_runs[i].shape];
            if (best == kNone || m_runs[i].count > m_runs[best].count) {
                best = i;
            }
        }
    }
    std::uint32_t Best(std::uint32_t shape) const { return m_runs[m_best[shape]].caller; }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    struct Runs {
        std::uint32_t shape;
        std::uint32_t caller;
        std::uint32_t count;
    };

    CNumberMap m_places;
    std::vector<Runs> m_runs; // by first one
    std::vector<std::uint32_t> m_best;
};

template <class Take>
void ForEachStatement(const CStatementShapes& shapes, const CCut& cut, CExploreProgress* progress,
                      Take take) {
    const CFrames& frames = cut.Frames();
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        CheckAt(progress, i);
        if (shapes.Of(i) != kNoShape && cut.Holds(i)) {
            take(shapes.Of(i), frames[i], cut.Total(i));
        }
    }
}

} // namespace

CStatementShapes::CStatementShapes(const CRecordShapes& shapes, const CFrames& frames,
                                   CExploreProgress* progress)
    : m_shapes(shapes), m_byFrame(frames.Count()) {
    // Every SQL record has a frame, and both stand by record.
    auto next = shapes.OfStatements().begin();
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        CheckAt(progress, i);
        m_byFrame[i] = frames.Keys().Kind(frames[i].key) == FrameKind::Statement ? *next++ : kNoShape;
    }
    AddPart(progress, ExploreParts::kStatementShapes);
}

std::vector<ShapeProfile> ProfileShapes(const CCarvelotDoc& session, const CStatementShapes& shapes,
                                        const CCut& cut, CExploreProgress* progress) {
    const CDetailList& details = session.m_listDetails;
    std::vector<ShapeProfile> all(shapes.Count());
    std::vector<std::uint32_t> counts(shapes.Count(), 0);
    CCallers callers(shapes.Count());
    ForEachStatement(shapes, cut, progress, [&](std::uint32_t shape, const Frame& frame, std::int64_t total) {
        ShapeProfile& profile = all[shape];
        if (profile.count == 0) {
            profile.shape = shape;
            profile.firstRecord = frame.record;
            profile.operation = OperationWordOf(details, frame.record);
            profile.table = details.TableName(frame.record);
        }
        if (profile.count == 0 || total > profile.longest) {
            profile.longest = total;
            profile.longestRecord = frame.record;
        }
        ++profile.count;
        ++counts[shape];
        profile.total = AddTimes(profile.total, total);
        callers.Count(shape, frame.parent == kNoFrame ? kNoKey : cut.Frames()[frame.parent].key);
    });
    CGroupedTimes times(counts);
    ForEachStatement(
        shapes, cut, progress,
        [&](std::uint32_t shape, const Frame& /*frame*/, std::int64_t total) { times.Add(shape, total); });
    callers.FindBest();
    std::erase_if(all, [](const ShapeProfile& profile) { return profile.count == 0; });
    for (ShapeProfile& profile : all) {
        CheckAt(progress, 0);
        profile.p95 = times.Percentile(profile.shape, 95);
        profile.topCaller = callers.Best(profile.shape);
    }
    std::sort(all.begin(), all.end(), [&shapes](const ShapeProfile& one, const ShapeProfile& other) {
        if (one.total != other.total) {
            return one.total > other.total;
        }
        return one.count != other.count ? one.count > other.count
                                        : shapes.Text(one.shape) < shapes.Text(other.shape);
    });
    AddPart(progress, ExploreParts::kShapeProfiles);
    return all;
}

} // namespace carvelot
