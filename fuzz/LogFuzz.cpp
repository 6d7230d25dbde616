// A whole log in either format: load, trees, every analysis, lists, searches, exports and JSON; and the same
// log read plainly, without the short ways of the parsers. The first byte chooses the settings and a process
// filter, the rest is the log.
#include "support/FuzzSession.h"

using namespace carvelot;

namespace {

// A fuzzer, for which inputs a second count, asks for one thing an input, by its length; other programs,
// which run few, for all.
#if defined(CARVELOT_FUZZ_ALL)
constexpr bool kAll = true;
#else
constexpr bool kAll = false;
#endif

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    if (input.empty()) {
        return 0;
    }
    const fuzz::CFuzzSession::Options options = fuzz::OptionsOf(input[0]);
    const std::string_view log = input.substr(1);
    static fuzz::CFuzzSession session;
    session.Load(log, options);
    const auto asks = [&](std::size_t part) { return kAll || size % 4 == part; };
    if (asks(0)) {
        fuzz::WalkRecords(session);
        fuzz::WalkLists(session);
    }
    if (asks(1)) {
        fuzz::WalkTrees(session);
    }
    if (asks(2)) {
        fuzz::WalkReports(session);
    }
    if (asks(3)) {
        fuzz::RequireSameReadPlainly(session, log, options);
        // The same log once more, as Analyze reads it.
        const std::size_t records = session.m_doc.m_listDetails.Size();
        session.LoadAgain(log);
        fuzz::Require(session.m_doc.m_nLogFormat != LOG_FORMAT_DEBUG ||
                          session.m_doc.m_listDetails.Size() == records,
                      "a second analysis makes as many records");
    }
    return 0;
}
