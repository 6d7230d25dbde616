#include "report/ExploreRun.h"

#include "report/ExploreJson.h"
#include "report/Scope.h"

#include <ostream>

namespace carvelot {

int Explore(const CCarvelotDoc& session, const ReportOptions& options, std::ostream& out, std::ostream& err) {
    const ExploreOptions& asked = *options.explore;
    Selection selection;
    if (asked.scope) {
        const std::optional<Selection> found = FindScope(session, *asked.scope);
        if (!found) {
            err << "No such scope: " << *asked.scope << '\n';
            return REPORT_FAILED;
        }
        selection = *found;
    }
    const ExploredSession explored(session, options.settings);
    const ExploredScope scope(explored, selection, asked.range);
    WriteExploredJson(explored, scope, FindAll(explored), options.log, out);
    return REPORT_DONE;
}

} // namespace carvelot
