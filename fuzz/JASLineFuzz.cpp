// Lines of a JAS web log, behind six that tell the format.
//
// Lines that begin as earlier ones did are read a short way, and words looked for where the line scan says:
// without either the same bytes must give the same session, with a process filter an empty one.
#include "platform/CodePage.h"
#include "support/FuzzSession.h"
#include "support/ScanChecks.h"

#include <algorithm>

using namespace carvelot;

namespace {

std::string Lead() {
    std::string lead;
    for (int i = 0; i < 6; ++i) {
        lead += "15 Jan 2024 08:00:00,000 [APP   ] INIT - [RUNTIME] starting\n";
    }
    return lead;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view lines = fuzz::AsText(data, size);
    fuzz::CheckScans(HintSet::Jas, lines,
                     TextSigns::SIGN_CACHE | TextSigns::SIGN_EVENT_STARTS | TextSigns::SIGN_EVENT_ENDS |
                         TextSigns::SIGN_ER_LINE | TextSigns::SIGN_OBJECT_CALLED);
    std::string converted;
    std::string scratch;
    const std::string_view firstLine = lines.substr(0, lines.find_first_of("\r\n"));
    (void)ParseJASParam(platform::BytesToUtf8(firstLine, converted), scratch);

    static const std::string lead = Lead();
    std::string log = lead;
    log.append(lines).append("\n");
    // Lines of a debug log among them make one of it.
    fuzz::RequireSameBothWays(log, size % 8 == 0 ? 4120 : 0);
    return 0;
}
