#include "report/ExploreRun.h"

#include "explore/ProfileExport.h"
#include "explore/Scope.h"
#include "report/CompareJson.h"
#include "report/CompareText.h"
#include "report/ExploreJson.h"
#include "report/ExploreText.h"

#include <future>
#include <ostream>
#include <system_error>

namespace carvelot {

namespace {

// What is asked for in one session. Nothing when it has no such scope.
std::optional<Selection> AskedScope(const CCarvelotDoc& session, const ExploreOptions& asked) {
    return asked.scope ? FindScope(session, *asked.scope) : Selection();
}

int FailOnScope(const ExploreOptions& asked, std::ostream& err) {
    err << "No such scope: " << *asked.scope << '\n';
    return REPORT_FAILED;
}

// A session explored, with nothing in its scope where it lacks that one.
struct Side {
    Side(const CCarvelotDoc& session, const std::optional<Selection>& selection, const ReportOptions& options)
        : explored(session, options.settings), foundBeside(std::async([this] { return FindAll(explored); })),
          scope(ExploreIfThere(explored, selection, options.explore->range)), findings(foundBeside.get()) {}

    ComparedSide Compared() const { return {explored, scope, findings}; }

    const ExploredSession explored;
    std::future<std::vector<Finding>> foundBeside;
    const ExploredScope scope;
    const std::vector<Finding> findings;
};

int ExportProfile(const CCarvelotDoc& session, const Selection& selection, const ExploreOptions& asked,
                  std::ostream& err) {
    const std::string& path = *asked.exportProfile;
    const CClock clock(session.m_listDetails, PiecesOf(session));
    const CStreams streams(session);
    const CFrames frames(session, clock, streams);
    const CCut cut(frames, streams, selection, asked.range);
    const ExportedProfile profile{session, streams, cut,
                                  session.m_bNumberLines ? &session.m_listLineNumbers : nullptr};
    int error = 0;
    if (!WriteProfileExport(path, *ProfileFormatOf(path), profile, error)) {
        err << path << ": " << std::system_category().message(error) << '\n';
        return REPORT_FAILED;
    }
    return REPORT_DONE;
}

} // namespace

int Explore(const CCarvelotDoc& session, const ReportOptions& options, std::ostream& out, std::ostream& err) {
    const std::optional<Selection> selection = AskedScope(session, *options.explore);
    if (!selection) {
        return FailOnScope(*options.explore, err);
    }
    if (options.explore->exportProfile) {
        return ExportProfile(session, *selection, *options.explore, err);
    }
    const Side side(session, selection, options);
    if (options.json) {
        WriteExploredJson(side.explored, side.scope, side.findings, session.m_strLogPath, out);
    } else {
        WriteExploredText(side.explored, side.scope, side.findings, options, out);
    }
    return REPORT_DONE;
}

int Compare(const CCarvelotDoc& base, const CCarvelotDoc& session, const ReportOptions& options,
            std::ostream& out, std::ostream& err) {
    const std::optional<Selection> baseSelection = AskedScope(base, *options.explore);
    const std::optional<Selection> selection = AskedScope(session, *options.explore);
    if (!baseSelection && !selection) {
        return FailOnScope(*options.explore, err);
    }
    const Side baseSide(base, baseSelection, options);
    const Side side(session, selection, options);
    const Comparison comparison(baseSide.Compared(), side.Compared());
    if (options.json) {
        WriteComparisonJson(comparison, *options.explore->compareWith, session.m_strLogPath, out);
    } else {
        WriteComparisonText(comparison, baseSide.explored, side.explored, options, out);
    }
    return REPORT_DONE;
}

} // namespace carvelot
