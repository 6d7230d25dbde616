// A loaded session with what all answers are made from: the clock of its records, its streams, its frames and
// the shapes of its statements. Whoever asks pays for it; a session that nobody explores does not.
#pragma once

#include "explore/Profile.h"
#include "explore/Shapes.h"
#include "records/AnalysisSettings.h"

#include <span>
#include <vector>

namespace carvelot {

struct ExploredSession {
    // Refers to the session, whose load has ended, and to the settings that it was loaded with. `pieces`: of
    // a log of several ones, the records of each.
    ExploredSession(const CCarvelotDoc& session, const AnalysisSettings& settings,
                    std::span<const RecordRange> pieces = {});

    const CCarvelotDoc& session;
    const AnalysisSettings& settings;
    const CClock clock;
    const CStreams streams;
    const CFrames frames;
    const CStatementShapes shapes;
};

// What a part of it adds up to.
struct ExploredScope {
    ExploredScope(const ExploredSession& explored, const Selection& scope, const ClockRange& range);

    const CCut cut;
    const CProfile profile;
    const std::vector<ShapeProfile> shapes;
};

} // namespace carvelot
