// What a load reads of the user's settings. The application owns the one object; a change takes effect at the
// next load.
#pragma once

namespace carvelot {

struct AnalysisSettings {
    float m_fThreshold = 1.0F;    // seconds; strictly above it a task is long and a silence a gap
    bool m_bCacheAnalysis = true; // cache records feed the cache analysis
};

} // namespace carvelot
