// A whole log in either format: load, trees, every analysis, lists, searches, exports and JSON. The first
// byte chooses the settings, the rest is the log.
#include "support/FuzzSession.h"

using namespace carvelot;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    if (input.empty()) {
        return 0;
    }
    fuzz::CFuzzSession::Options options;
    options.settings.m_fThreshold = (input[0] & 1) != 0 ? 0.0F : 1.0F;
    options.settings.m_bCacheAnalysis = (input[0] & 2) == 0;
    const std::string_view log = input.substr(1);
    static fuzz::CFuzzSession session;
    session.Load(log, options);
    fuzz::WalkSession(session);
    // The same log once more, as Analyze reads it.
    const std::size_t records = session.m_doc.m_listDetails.Size();
    session.LoadAgain(log);
    fuzz::Require(session.m_doc.m_nLogFormat != LOG_FORMAT_DEBUG ||
                      session.m_doc.m_listDetails.Size() == records,
                  "a second analysis makes as many records");
    return 0;
}
