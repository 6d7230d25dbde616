// Lines of a JAS web log.
//
// Lines that begin as earlier ones did are read a short way, and words looked for where the line scan says:
// without either the same bytes must give the same records, and leave the same statement to await its
// parameters.
#include "parse/JASLine.h"
#include "support/LineWays.h"
#include "support/ScanChecks.h"

using namespace carvelot;

namespace {

struct JASWay {
    void Start(std::uint32_t processFilter) {
        m_parser.ForgetBeginnings();
        m_pending = {};
        m_nProcessFilter = processFilter;
    }
    bool ReadUsual(const LogLine& line) {
        return m_parser.ParseUsual(line, [this](const UsualLine& usual) { m_details.AppendUsual(usual); });
    }
    void Read(LogLine& line) {
        CLogDetail detail;
        bool ascii = false;
        if (m_parser.Parse(line, m_nProcessFilter, detail, ascii)) {
            const RecordIndex record = m_details.Append(detail, ascii);
            m_parser.Learn(line, detail, m_details.ContextNumber(record));
        }
    }

    PendingStatement m_pending;
    CJASLineParser m_parser{m_pending};
    CDetailList m_details;
    std::uint32_t m_nProcessFilter = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view lines = fuzz::AsText(data, size);
    fuzz::CheckScans(HintSet::Jas, lines,
                     TextSigns::SIGN_CACHE | TextSigns::SIGN_EVENT_STARTS | TextSigns::SIGN_EVENT_ENDS |
                         TextSigns::SIGN_ER_LINE | TextSigns::SIGN_OBJECT_CALLED);
    static JASWay usual;
    static JASWay plain;
    const std::uint32_t processFilter = size % 16 == 15 ? 1 : 0;
    usual.Start(processFilter);
    plain.Start(processFilter);
    fuzz::RequireSameRecords(lines, HintSet::Jas, usual, plain);
    fuzz::Require(processFilter == 0 || usual.m_details.Size() == 0, "a process filter refuses all lines");
    fuzz::Require(usual.m_pending.statement == plain.m_pending.statement &&
                      usual.m_pending.parameters == plain.m_pending.parameters,
                  "read plainly, another statement awaits its parameters");
    return 0;
}
