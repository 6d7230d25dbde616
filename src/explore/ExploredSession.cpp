#include "explore/ExploredSession.h"

namespace carvelot {

ExploredSession::ExploredSession(const CCarvelotDoc& session, const AnalysisSettings& settings,
                                 std::span<const RecordRange> pieces, CExploreProgress* progress)
    : ExploredSession(session, settings, pieces, progress, StartReading(session.m_listDetails, progress)) {}

// Where no thread can be had, they are read when they are asked for. A failure of theirs comes out there,
// too.
ExploredSession::Readers ExploredSession::StartReading(const CDetailList& details,
                                                       CExploreProgress* progress) {
    return {std::async([&details, progress] { return CRecordShapes(details, progress); }),
            std::async([&details, progress] { return FindTransactionSteps(details, progress); })};
}

ExploredSession::ExploredSession(const CCarvelotDoc& session, const AnalysisSettings& settings,
                                 std::span<const RecordRange> pieces, CExploreProgress* progress,
                                 Readers readers)
    : session(session), settings(settings),
      clock(pieces.empty() ? CClock(session.m_listDetails, progress)
                           : CClock(session.m_listDetails, pieces, progress)),
      streams(session), frames(session, clock, streams, ShortestSilence(settings.m_fThreshold), progress),
      recordShapes(readers.shapes.get()), shapes(recordShapes, frames, progress),
      transactionSteps(readers.transactionSteps.get()) {}

ExploredScope::ExploredScope(const ExploredSession& explored, const Selection& scope, const ClockRange& range,
                             CExploreProgress* progress)
    : cut(explored.frames, explored.streams, scope, range, progress),
      m_shapesBeside(std::async([this, &explored, progress] {
          return ProfileShapes(explored.session, explored.shapes, cut, progress);
      })),
      profile(cut, progress), shapes(m_shapesBeside.get()) {}

} // namespace carvelot
