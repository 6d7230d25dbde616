// Lines of a debug log, with texts behind the first tab or the third, at a fixed column, or behind a tab
// until a dash fixes the column.
//
// Lines that begin as earlier ones did are read a short way, perhaps ahead of their turn, and words looked
// for where the line scan says: without any of it the same bytes must give the same records. The first byte
// chooses.
#include "parse/fast/FastDebugLines.h"
#include "support/LineWays.h"
#include "support/ScanChecks.h"

#include <optional>

using namespace carvelot;

namespace {

constexpr std::uint32_t kSigns =
    TextSigns::SIGN_CACHE | TextSigns::SIGN_JDB_CODE | TextSigns::SIGN_SQL_DONE | TextSigns::SIGN_UBE;

struct DebugWay {
    explicit DebugWay(ParseWay way) : m_way(way) {}

    void Start(unsigned char choice) {
        m_lines.emplace(m_parser, m_way);
        m_parser.m_nTabCount = (choice & 2) != 0 ? 3 : 1;
        m_parser.m_nTextColumn = (choice & 1) != 0 ? 41 : 0;
        m_parser.m_bDashForm = m_parser.m_bUBELog = false;
        m_nProcessFilter = (choice & 4) != 0 ? 4120 : 0;
    }
    void Read(const LogLine& line) { m_lines->ParseDebugLine(line, m_nProcessFilter, m_records); }

    CDebugLineParser m_parser;
    ParseWay m_way;
    std::optional<CFastDebugLines> m_lines;
    CDetailList m_details;
    fuzz::Records m_records{m_details};
    std::uint32_t m_nProcessFilter = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    if (input.empty()) {
        return 0;
    }
    const std::string_view lines = input.substr(1);
    fuzz::CheckScans(LOG_FORMAT_DEBUG, lines, kSigns);
    static DebugWay fast(ParseWay::Fast);
    static DebugWay ahead(ParseWay::Fast);
    static DebugWay plain(ParseWay::Plain);
    for (DebugWay* const way : {&fast, &ahead, &plain}) {
        way->Start(static_cast<unsigned char>(input[0]));
    }
    fuzz::RequireSameRecords(lines, fast, ahead, plain);
    const CDebugLineParser& b = plain.m_parser;
    for (const DebugWay* const way : {&fast, &ahead}) {
        const CDebugLineParser& a = way->m_parser;
        fuzz::Require(a.m_nTextColumn == b.m_nTextColumn && a.m_bDashForm == b.m_bDashForm &&
                          a.m_bUBELog == b.m_bUBELog,
                      "read plainly, another state");
    }
    return 0;
}
