// A whole log in either format, as a file holds it: load, trees, every analysis, lists, searches, exports and
// JSON. The first byte chooses the settings, the rest is the file.
#include "support/FuzzSession.h"

using namespace carvelot;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    if (input.empty()) {
        return 0;
    }
    AnalysisSettings settings;
    settings.m_fThreshold = (input[0] & 1) != 0 ? 0.0F : 1.0F;
    settings.m_bCacheAnalysis = (input[0] & 2) == 0;
    fuzz::CFuzzSession session(input.substr(1), settings);
    fuzz::WalkSession(session);
    // The same file once more, as Analyze reads it.
    const std::size_t records = session.m_doc.m_listDetails.Size();
    session.m_doc.OnAnalyze();
    fuzz::Require(session.m_doc.m_nLogFormat != LOG_FORMAT_DEBUG ||
                      session.m_doc.m_listDetails.Size() == records,
                  "a second analysis makes as many records");
    return 0;
}
