#include "explore/ExploredSession.h"

namespace carvelot {

ExploredSession::ExploredSession(const CCarvelotDoc& session, const AnalysisSettings& settings,
                                 std::span<const RecordRange> pieces, CExploreProgress* progress)
    : ExploredSession(session, settings, pieces, progress, StartReading(session.m_listDetails)) {}

// Where no thread can be had, they are read when they are asked for.
ExploredSession::Readers ExploredSession::StartReading(const CDetailList& details) {
    return {std::async([&details] { return CRecordShapes(details); }),
            std::async([&details] { return FindTransactionSteps(details); })};
}

ExploredSession::ExploredSession(const CCarvelotDoc& session, const AnalysisSettings& settings,
                                 std::span<const RecordRange> pieces, CExploreProgress* progress,
                                 Readers readers)
    : session(session), settings(settings),
      clock(pieces.empty() ? CClock(session.m_listDetails) : CClock(session.m_listDetails, pieces)),
      streams(session), frames(session, clock, streams), recordShapes(readers.shapes.get()),
      shapes(recordShapes, frames), transactionSteps(readers.transactionSteps.get()) {
    if (progress != nullptr) {
        progress->Reach(60);
    }
}

ExploredScope::ExploredScope(const ExploredSession& explored, const Selection& scope, const ClockRange& range)
    : cut(explored.frames, explored.streams, scope, range), profile(cut),
      shapes(ProfileShapes(explored.session, explored.shapes, cut)) {}

} // namespace carvelot
