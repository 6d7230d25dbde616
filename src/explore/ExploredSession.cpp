#include "explore/ExploredSession.h"

namespace carvelot {

ExploredSession::ExploredSession(const CCarvelotDoc& session, const AnalysisSettings& settings,
                                 std::span<const RecordRange> pieces)
    : session(session), settings(settings),
      clock(pieces.empty() ? CClock(session.m_listDetails) : CClock(session.m_listDetails, pieces)),
      streams(session), frames(session, clock, streams), shapes(session, frames) {}

ExploredScope::ExploredScope(const ExploredSession& explored, const Selection& scope, const ClockRange& range)
    : cut(explored.frames, explored.streams, scope, range), profile(cut),
      shapes(ProfileShapes(explored.session, explored.shapes, cut)) {}

} // namespace carvelot
