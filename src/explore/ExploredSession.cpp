#include "explore/ExploredSession.h"

namespace carvelot {

std::vector<RecordRange> PiecesOf(const CCarvelotDoc& session) {
    const auto count = static_cast<std::uint32_t>(session.m_listDetails.Size());
    std::vector<RecordRange> pieces;
    for (const LogPiece& piece : session.m_listPieces) {
        if (!pieces.empty()) {
            pieces.back().end = piece.firstRecord;
        }
        pieces.push_back({piece.firstRecord, count});
    }
    return pieces.empty() ? std::vector{RecordRange{0, count}} : pieces;
}

ExploredSession::ExploredSession(const CCarvelotDoc& session, const AnalysisSettings& settings,
                                 CExploreProgress* progress, ShapeReading reading)
    : ExploredSession(session, settings, progress, StartReading(session.m_listDetails, progress, reading)) {}

// Where no thread can be had, they are read when they are asked for. A failure of theirs comes out there,
// too.
ExploredSession::Readers ExploredSession::StartReading(const CDetailList& details, CExploreProgress* progress,
                                                       ShapeReading reading) {
    return {std::async([&details, progress, reading] { return CRecordShapes(details, progress, reading); }),
            std::async([&details, progress] { return FindTransactionSteps(details, progress); })};
}

ExploredSession::ExploredSession(const CCarvelotDoc& session, const AnalysisSettings& settings,
                                 CExploreProgress* progress, Readers readers)
    : session(session), settings(settings), clock(session.m_listDetails, PiecesOf(session), progress),
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
