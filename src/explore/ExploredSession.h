// A loaded session with what all answers are made from: the clock of its records, its streams, its frames and
// the shapes of its statements. Whoever asks pays for it; a session that nobody explores does not.
#pragma once

#include "explore/ExploreProgress.h"
#include "explore/Profile.h"
#include "explore/RecordShapes.h"
#include "explore/Shapes.h"
#include "explore/Transactions.h"
#include "records/AnalysisSettings.h"

#include <future>
#include <vector>

namespace carvelot {

// The records of each piece of a session's log, in their order; all of them where it is none of pieces.
std::vector<RecordRange> PiecesOf(const CCarvelotDoc& session);

struct ExploredSession {
    // Refers to the session, whose load has ended, and to the settings that it was loaded with. `progress`,
    // where there is one, can end it: then it throws ExploringEnded.
    ExploredSession(const CCarvelotDoc& session, const AnalysisSettings& settings,
                    CExploreProgress* progress = nullptr, ShapeReading reading = ShapeReading::Plain);

    const CCarvelotDoc& session;
    const AnalysisSettings& settings;
    const CClock clock;
    const CStreams streams;
    const CFrames frames;
    const CRecordShapes recordShapes;
    const CStatementShapes shapes;
    const std::vector<TransactionStep> transactionSteps;

private:
    // What texts tell by themselves is read by threads of their own, beside the rest.
    struct Readers {
        std::future<CRecordShapes> shapes;
        std::future<std::vector<TransactionStep>> transactionSteps;
    };
    static Readers StartReading(const CDetailList& details, CExploreProgress* progress, ShapeReading reading);

    ExploredSession(const CCarvelotDoc& session, const AnalysisSettings& settings, CExploreProgress* progress,
                    Readers readers);
};

// What a part of it adds up to.
struct ExploredScope {
    // `progress`, where there is one, can end it, as above.
    ExploredScope(const ExploredSession& explored, const Selection& scope, const ClockRange& range,
                  CExploreProgress* progress = nullptr);

    const CCut cut;

private:
    std::future<std::vector<ShapeProfile>> m_shapesBeside; // made while the profile is

public:
    const CProfile profile;
    const std::vector<ShapeProfile> shapes;
};

} // namespace carvelot
