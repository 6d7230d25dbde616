#include "report/ExploreRun.h"

#include "explore/ProfileExport.h"
#include "report/ExploreJson.h"
#include "report/Scope.h"

#include <ostream>
#include <system_error>

namespace carvelot {

namespace {

int ExportProfile(const CCarvelotDoc& session, const Selection& selection, const ExploreOptions& asked,
                  std::ostream& err) {
    const std::string& path = *asked.exportProfile;
    const CClock clock(session.m_listDetails);
    const CStreams streams(session);
    const CFrames frames(session, clock, streams);
    const CCut cut(frames, streams, selection, asked.range);
    int error = 0;
    if (!WriteProfileExport(path, *ProfileFormatOf(path), {session, streams, cut}, error)) {
        err << path << ": " << std::system_category().message(error) << '\n';
        return REPORT_FAILED;
    }
    return REPORT_DONE;
}

} // namespace

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
    if (asked.exportProfile) {
        return ExportProfile(session, selection, asked, err);
    }
    const ExploredSession explored(session, options.settings);
    const ExploredScope scope(explored, selection, asked.range);
    WriteExploredJson(explored, scope, FindAll(explored), options.log, out);
    return REPORT_DONE;
}

} // namespace carvelot
