// carvelot-report as its user meets it: arguments in, a status and two texts out.
#pragma once

#include "report/ReportOptions.h"
#include "report/ReportRun.h"

#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

namespace carvelot::test {

inline const std::string kSample = std::string(CARVELOT_SOURCE_FOLDER) + "/samples/order-entry.log";

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

inline Outcome RunTool(const std::vector<std::string>& arguments,
                       std::size_t width = ReportOptions::kUsualWidth) {
    std::ostringstream out;
    std::ostringstream err;
    const int status = RunReport(arguments, out, err, width);
    return {status, out.str(), err.str()};
}

} // namespace carvelot::test
