// Lines of a JAS web log, behind six that tell the format.
//
// A line with one blank more ahead of it takes the general way instead of the one for lines of the usual
// form: both must read the same. Words that the hints of the line scan lead to are those of a whole search.
#include "platform/CodePage.h"
#include "support/FuzzSession.h"
#include "support/ScanChecks.h"

#include <algorithm>

using namespace carvelot;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view lines = fuzz::AsText(data, size);
    fuzz::CheckScans(HintSet::Jas, lines,
                     TextSigns::SIGN_CACHE | TextSigns::SIGN_EVENT_STARTS | TextSigns::SIGN_EVENT_ENDS |
                         TextSigns::SIGN_ER_LINE | TextSigns::SIGN_OBJECT_CALLED);
    std::string scratch;
    std::string usual;
    for (int i = 0; i < 6; ++i) {
        usual += "15 Jan 2024 08:00:00,000 [APP   ] INIT - [RUNTIME] starting\n";
    }
    std::string shifted = usual;
    for (std::string_view rest = lines; !rest.empty();) {
        const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
        const std::string_view line = rest.substr(0, std::min<std::size_t>(end, 8000));
        usual.append(line).append("\n");
        shifted.append(" ").append(line).append("\n");
        rest.remove_prefix(std::min(end + 1, rest.size()));

        std::string converted;
        (void)ParseJASParam(platform::BytesToUtf8(line, converted), scratch);
    }
    fuzz::CFuzzSession session(usual);
    // Lines of a debug log or a UBE among them can make another format of it.
    if (session.m_doc.m_nLogFormat == LOG_FORMAT_JAS) {
        const fuzz::CFuzzSession other(shifted);
        if (other.m_doc.m_nLogFormat == LOG_FORMAT_JAS) {
            fuzz::RequireSameRecords(session, other);
        }
    }
    fuzz::WalkSession(session);
    return 0;
}
