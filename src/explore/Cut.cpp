#include "explore/Cut.h"

namespace carvelot {

namespace {

bool Reaches(const Frame& frame, const ClockRange& range) {
    return frame.start < range.to &&
           (frame.end > range.from || (frame.start == frame.end && frame.start >= range.from));
}

} // namespace

CCut::CCut(const CFrames& frames, const CStreams& streams, const Selection& scope, const ClockRange& range,
           CExploreProgress* progress)
    : m_frames(frames), m_range(range),
      m_bWhole(range.IsWhole() && scope.What() == Selection::Kind::Nothing) {
    if (m_bWhole) {
        AddPart(progress, ExploreParts::kCut);
        return;
    }
    m_stays.resize(frames.Count(), 0);
    if (range.to <= range.from) {
        AddPart(progress, ExploreParts::kCut);
        return;
    }
    std::vector<bool> inScope;
    for (std::uint32_t stream = 0; stream < streams.Count(); ++stream) {
        inScope.push_back(streams.IsIn(stream, scope));
    }
    // From the last one on: what a frame stands in is ahead of it.
    for (std::uint32_t i = frames.Count(); i-- > 0;) {
        CheckAt(progress, i);
        const Frame& frame = frames[i];
        if (m_stays[i] == 0) {
            m_stays[i] = inScope[frame.stream] && Reaches(frame, range) ? 1 : 0;
        }
        if (m_stays[i] != 0 && frame.parent != kNoFrame) {
            m_stays[frame.parent] = 1;
        }
    }
    AddPart(progress, ExploreParts::kCut);
}

CLargeVector<std::int64_t> CCut::SelfTimes(CExploreProgress* progress) const {
    CLargeVector<std::int64_t> times(m_frames.Count(), 0);
    for (std::uint32_t i = 0; i < m_frames.Count(); ++i) {
        CheckAt(progress, i);
        if (Holds(i)) {
            times[i] += Total(i);
            if (m_frames[i].parent != kNoFrame) {
                times[m_frames[i].parent] -= Total(i);
            }
        }
    }
    return times;
}

} // namespace carvelot
