// carvelot-report: the analysis of a log without a window.
#include "platform/CommandLine.h"
#include "platform/CrashDump.h"
#include "platform/DynamicLibrary.h"
#include "platform/Terminal.h"
#include "report/ReportRun.h"

#include <algorithm>
#include <iostream>

int main(int argc, char** argv) {
    carvelot::platform::KeepCrashDumps(carvelot::platform::ECrashNotice::Line);
    carvelot::platform::CloseLibrarySearch();
    std::ios::sync_with_stdio(false);
    std::vector<std::string> arguments = carvelot::platform::Arguments(argc, argv);
    if (!arguments.empty()) {
        arguments.erase(arguments.begin());
    }
    // In a very narrow terminal lines are wrapped, for otherwise they would say nothing.
    constexpr std::size_t narrowest = 60;
    const std::size_t width =
        carvelot::platform::TerminalColumns().value_or(carvelot::ReportOptions::kUsualWidth);
    return carvelot::RunReport(arguments, std::cout, std::cerr, std::max(width, narrowest));
}
