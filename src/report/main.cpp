// carvelot-report: the analysis of a log without a window.
#include "platform/CommandLine.h"
#include "platform/DynamicLibrary.h"
#include "report/ReportRun.h"

#include <iostream>

int main(int argc, char** argv) {
    carvelot::platform::CloseLibrarySearch();
    std::ios::sync_with_stdio(false);
    std::vector<std::string> arguments = carvelot::platform::Arguments(argc, argv);
    if (!arguments.empty()) {
        arguments.erase(arguments.begin());
    }
    return carvelot::RunReport(arguments, std::cout, std::cerr);
}
