// Texts that a user types: the search text, dates, numbers, the command line of the report, an export's name.
// The first line is the text, the rest is what is searched.
#include "explore/Scope.h"
#include "lists/GapExport.h"
#include "platform/CodePage.h"
#include "records/NodeText.h"
#include "report/ReportOptions.h"
#include "settings/StartArguments.h"
#include "support/FuzzFile.h"
#include "text/CaseText.h"
#include "text/FindText.h"
#include "text/Integers.h"
#include "text/TextColumns.h"
#include "text/TypedNumber.h"
#include "tools/JulianDate.h"

#include <algorithm>
#include <sstream>

using namespace carvelot;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    const std::size_t end = std::min(input.find('\n'), input.size());
    // Texts come from the window as UTF-8.
    const std::string text = WithReplacements(input.substr(0, end));
    std::string scratch;
    const std::string_view searched =
        platform::BytesToUtf8(input.substr(std::min(end + 1, input.size())), scratch);

    const CFindText find(text);
    const bool found = FoldedCase(searched).find(FoldedCase(text)) != std::string::npos;
    const bool ascii = platform::IsAscii(searched);
    fuzz::Require(find.IsIn(searched, false) == found, "a search is one of the folded texts");
    if (ascii) {
        fuzz::Require(find.IsIn(searched, true) == found, "ASCII is searched with the same outcome");
    }
    fuzz::Require(CompareNoCase(text, searched) == -CompareNoCase(searched, text), "an order has two sides");
    fuzz::Require(CompareNoCase(text, text) == 0, "a text equals itself");

    const std::size_t units = UnitCount(text);
    for (const std::size_t column : {std::size_t{0}, std::size_t{1}, units / 2, units, units + 1}) {
        std::string cut;
        const std::string_view rest = FromColumn(text, column, cut);
        fuzz::Require(UnitCount(rest) == units - std::min(column, units), "a cut leaves the other units");
        (void)AsciiAtColumn(text, column);
    }

    if (const auto date = JulianToGregorian(text)) {
        fuzz::Require(date->m_nMonth >= 1 && date->m_nMonth <= 12 && date->m_nDay >= 1 && date->m_nDay <= 31,
                      "a date is one of the calendar");
        (void)GregorianToJulian(date);
    }
    const double number = TextToDouble(text);
    (void)SecondsText(number);
    (void)ReadInteger(text);
    (void)ParseId(text);
    (void)GapExportFormatOf(text);
    (void)FileToOpen({text, std::string(searched)});

    std::vector<std::string> arguments;
    for (std::string_view rest = searched; !rest.empty() && arguments.size() < 20;) {
        const std::size_t blank = std::min(rest.find(' '), rest.size());
        arguments.emplace_back(rest.substr(0, blank));
        rest.remove_prefix(std::min(blank + 1, rest.size()));
    }
    std::ostringstream out;
    std::ostringstream err;
    int status = REPORT_DONE;
    const auto options = ReadReportOptions(arguments, out, err, status);
    fuzz::Require(options.has_value() || status != REPORT_DONE || !out.str().empty(),
                  "a command line that asks for nothing is told why");
    fuzz::Require(status == REPORT_DONE || out.str().empty(), "wrong usage writes no output");
    return 0;
}
