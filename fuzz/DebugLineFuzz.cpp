// Lines of a debug log, with texts behind the first tab or the third, at a fixed column, or behind a tab
// until a dash fixes the column.
//
// Lines that begin as earlier ones did are read a short way, and words looked for where the line scan says:
// without either the same bytes must give the same records. The first byte chooses.
#include "parse/DebugLine.h"
#include "support/LineWays.h"
#include "support/ScanChecks.h"

using namespace carvelot;

namespace {

constexpr std::uint32_t kSigns =
    TextSigns::SIGN_CACHE | TextSigns::SIGN_JDB_CODE | TextSigns::SIGN_SQL_DONE | TextSigns::SIGN_UBE;

struct DebugWay {
    void Start(unsigned char choice) {
        m_parser.ForgetBeginnings();
        m_parser.m_nTabCount = (choice & 2) != 0 ? 3 : 1;
        m_parser.m_nTextColumn = (choice & 1) != 0 ? 41 : 0;
        m_parser.m_bDashForm = m_parser.m_bUBELog = false;
        m_nProcessFilter = (choice & 4) != 0 ? 4120 : 0;
    }
    bool ReadUsual(const LogLine& line) {
        return m_parser.ParseUsual(line, [this](const UsualLine& usual) { m_details.AppendUsual(usual); });
    }
    void Read(LogLine& line) {
        CLogDetail detail;
        if (m_parser.Parse(line, m_nProcessFilter, detail)) {
            const RecordIndex record = m_details.Append(detail, line.ascii);
            if (m_details.IsUsual(record)) {
                m_parser.Learn(line, detail, m_details.ContextNumber(record));
            }
        }
    }

    CDebugLineParser m_parser;
    CDetailList m_details;
    std::uint32_t m_nProcessFilter = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    if (input.empty()) {
        return 0;
    }
    const std::string_view lines = input.substr(1);
    fuzz::CheckScans(HintSet::Debug, lines, kSigns);
    static DebugWay usual;
    static DebugWay plain;
    usual.Start(static_cast<unsigned char>(input[0]));
    plain.Start(static_cast<unsigned char>(input[0]));
    fuzz::RequireSameRecords(lines, HintSet::Debug, usual, plain);
    const CDebugLineParser& a = usual.m_parser;
    const CDebugLineParser& b = plain.m_parser;
    fuzz::Require(a.m_nTextColumn == b.m_nTextColumn && a.m_bDashForm == b.m_bDashForm &&
                      a.m_bUBELog == b.m_bUBELog,
                  "read plainly, another state");
    return 0;
}
