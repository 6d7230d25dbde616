// Lines of a JAS web log.
//
// Lines that begin as earlier ones did are read a short way, and words looked for where the line scan says:
// without either the same bytes must give the same records, and leave the same statement to await its
// parameters.
#include "parse/fast/FastJASLines.h"
#include "support/LineWays.h"
#include "support/ScanChecks.h"

#include <optional>

using namespace carvelot;

namespace {

struct JASWay {
    explicit JASWay(ParseWay way) : m_way(way) {}

    void Start(std::uint32_t processFilter) {
        m_lines.emplace(m_parser, m_way);
        m_pending = {};
        m_nProcessFilter = processFilter;
    }
    void Read(const LogLine& line) { m_lines->ParseJASLine(line, m_nProcessFilter, m_records); }

    PendingStatement m_pending;
    CJASLineParser m_parser{m_pending};
    ParseWay m_way;
    std::optional<CFastJASLines> m_lines;
    CDetailList m_details;
    fuzz::Records m_records{m_details};
    std::uint32_t m_nProcessFilter = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view lines = fuzz::AsText(data, size);
    fuzz::CheckScans(LOG_FORMAT_JAS, lines,
                     TextSigns::SIGN_CACHE | TextSigns::SIGN_EVENT_STARTS | TextSigns::SIGN_EVENT_ENDS |
                         TextSigns::SIGN_ER_LINE | TextSigns::SIGN_OBJECT_CALLED);
    static JASWay fast(ParseWay::Fast);
    static JASWay ahead(ParseWay::Fast);
    static JASWay plain(ParseWay::Plain);
    const std::uint32_t processFilter = size % 16 == 15 ? 1 : 0;
    for (JASWay* const way : {&fast, &ahead, &plain}) {
        way->Start(processFilter);
    }
    fuzz::RequireSameRecords(lines, fast, ahead, plain);
    fuzz::Require(processFilter == 0 || fast.m_details.Size() == 0, "a process filter refuses all lines");
    for (const JASWay* const way : {&fast, &ahead}) {
        fuzz::Require(way->m_pending.statement == plain.m_pending.statement &&
                          way->m_pending.parameters == plain.m_pending.parameters,
                      "read plainly, another statement awaits its parameters");
    }
    return 0;
}
