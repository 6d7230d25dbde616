// Lines of a debug log, behind lines that tell the format: with texts behind the first tab or the third, at a
// fixed column, at one that a dash fixes, in a log of a UBE.
//
// Lines that begin as earlier ones did are read a short way, and words looked for where the line scan says:
// without either the same bytes must give the same session. The first byte chooses.
#include "support/FuzzSession.h"
#include "support/ScanChecks.h"

using namespace carvelot;

namespace {

constexpr std::string_view kLeads[] = {
    "Jan 15 08:00:00.000001 - 1/1 Worker\tEntering JDB_OpenTable\n",
    "Jan 15 08:00:00.000001 - 1/1 Worker      Entering JDB_OpenTable\n",
    "Jan 15 08:00:00.000001 - 1/1 Worker\tx\ty\tEntering JDB_OpenTable\n",
    "Jan 15 08:00:00.000001 - 1/1 Worker\t - Entering JDB_OpenTable\n",
};
constexpr std::string_view kUBELine = "--UBE--[2] Started\n";

constexpr std::uint32_t kSigns =
    TextSigns::SIGN_CACHE | TextSigns::SIGN_JDB_CODE | TextSigns::SIGN_SQL_DONE | TextSigns::SIGN_UBE;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    if (input.empty()) {
        return 0;
    }
    const auto choice = static_cast<unsigned char>(input[0]);
    const std::string_view lines = input.substr(1);
    fuzz::CheckScans(HintSet::Debug, lines, kSigns);
    std::string log(kLeads[choice & 3U]);
    if ((choice & 4U) != 0) {
        log.append(kUBELine);
    }
    log.append(lines).append("\n");
    fuzz::RequireSameBothWays(log, (choice & 8U) != 0 ? 4120 : 0);
    return 0;
}
