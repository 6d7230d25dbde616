#include "report/ReportRun.h"

#include "explore/PieceOrder.h"
#include "explore/Scope.h"
#include "lists/GapExport.h"
#include "platform/PipeFile.h"
#include "report/ExploreRun.h"
#include "report/JsonReport.h"
#include "report/ReportOptions.h"
#include "report/TextReport.h"
#include "sources/PipeSource.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <ostream>
#include <system_error>

namespace carvelot {

namespace {

// Messages go to standard error; there is nothing else that the command line shows of a load.
class CReportHost : public ISessionHost {
public:
    explicit CReportHost(std::ostream& err) : m_err(err) {}
    void ShowMessage(std::string_view text) override { m_err << text << '\n'; }
    void PrintOutput(std::string_view text) override { m_err << text; }
    std::vector<std::size_t> ChooseMembers(const CCarvelotDoc& session,
                                           const std::vector<PackedMember>& members) override {
        m_err << session.m_strLogPath << " holds several members, of which --member takes one or more:\n";
        for (const PackedMember& member : members) {
            m_err << "  " << Harmless(member.name);
            if (member.size) {
                m_err << ", " << *member.size << " bytes";
            }
            m_err << '\n';
        }
        return {};
    }

private:
    // What a terminal would obey is shown as a question mark.
    static std::string Harmless(std::string name) {
        std::replace_if(
            name.begin(), name.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
        return name;
    }

    std::ostream& m_err;
};

// Fills the tree of a scope. False when the log has no such scope.
bool FillScope(const CCarvelotDoc& session, std::string_view name, CDetailTree& tree) {
    const std::optional<Selection> scope = FindScope(session, name);
    if (!scope) {
        return false;
    }
    if (const CProcess* const process = scope->Process()) {
        for (const auto& thread : process->m_listThreads) {
            tree.FillDetails(false, thread->m_listDetails);
        }
    } else if (const CThread* const thread = scope->Thread()) {
        tree.FillDetails(true, thread->m_listDetails);
    } else if (const CJASUser* const user = scope->User()) {
        tree.FillDetails(true, user->m_listDetails);
    }
    return true;
}

int ExportGapsTo(const CCarvelotDoc& session, const std::string& path, std::ostream& err) {
    const std::optional<GapExportFormat> format = GapExportFormatOf(path);
    if (!format) {
        err << "Invalid file type\n";
        return REPORT_FAILED;
    }
    std::vector<GapRow> rows = MakeGapRows(session);
    int error = 0;
    if (!WriteGapExport(path, ExportGaps(session, rows, *format), error)) {
        err << path << ": " << std::system_category().message(error) << '\n';
        return REPORT_FAILED;
    }
    return REPORT_DONE;
}

// One log with all that its load needs and leaves behind: what a JAS log's last statement awaits is not for
// another log.
class CLoadedLog {
public:
    CLoadedLog(const ReportOptions& options, std::ostream& err)
        : m_host(err), m_session(options.settings, m_pending, m_host) {
        m_session.m_nProcessFilter = options.processFilter;
        m_session.m_bNumberLines = options.explore.has_value();
        // For tests, and for a doubt whether the short ways of the parser read what is there.
        const char* const plain = std::getenv("CARVELOT_PLAIN_PARSE");
        m_session.m_bPlainParse = plain != nullptr && std::strcmp(plain, "1") == 0;
    }

    bool Load(const std::string& path, const std::vector<std::string>& members = {}) {
        if (path == "-") {
            return LoadPipe(path, platform::PipeFile::StandardInput(), members);
        }
        if (platform::PipeFile::IsAt(path)) {
            return LoadPipe(path, platform::PipeFile::Open(path), members);
        }
        return m_session.OnOpenDocument(path, members);
    }
    bool Load(const ReportOptions& options) {
        if (options.logs.size() == 1) {
            return Load(options.logs.front(), options.members);
        }
        return m_session.OnOpenPieces(options.asGiven ? PiecesAsGiven(options.logs)
                                                      : PiecesByTime(options.logs));
    }
    const CCarvelotDoc& Session() const { return m_session; }
    // Of a report that has been printed: it is a part of one if the log ended ahead of its end.
    int Status() const { return m_session.LoadFailure().empty() ? REPORT_DONE : REPORT_FAILED; }

private:
    bool LoadPipe(const std::string& path, platform::PipeFile pipe, const std::vector<std::string>& members) {
        if (!pipe) {
            m_host.ShowMessage("Failed to open file.");
            return false;
        }
        m_session.m_strLogPath = path;
        m_session.m_listMembers = members;
        CPipeSource source(pipe);
        return m_session.LoadPackedOrPlain(source);
    }

    CReportHost m_host;
    PendingStatement m_pending;
    CCarvelotDoc m_session;
};

int RunExplore(const ReportOptions& options, std::ostream& out, std::ostream& err) {
    const std::optional<std::string>& base = options.explore->compareWith;
    std::optional<CLoadedLog> loadedBase;
    if (base && !loadedBase.emplace(options, err).Load(*base)) {
        return REPORT_FAILED;
    }
    CLoadedLog log(options, err);
    if (!log.Load(options)) {
        return REPORT_FAILED;
    }
    const int status = base ? Compare(loadedBase->Session(), log.Session(), options, out, err)
                            : Explore(log.Session(), options, out, err);
    return std::max({status, log.Status(), base ? loadedBase->Status() : REPORT_DONE});
}

int RunOverSession(const ReportOptions& options, std::ostream& out, std::ostream& err) {
    CLoadedLog log(options, err);
    if (!log.Load(options)) {
        return REPORT_FAILED;
    }
    const CCarvelotDoc& session = log.Session();
    if (options.exportGaps) {
        return std::max(ExportGapsTo(session, *options.exportGaps, err), log.Status());
    }
    if (options.tree) {
        CDetailTree tree(session);
        if (!FillScope(session, *options.tree, tree)) {
            err << "No such scope: " << *options.tree << '\n';
            return REPORT_FAILED;
        }
        if (options.json) {
            WriteTreeJson(tree, *options.tree, out);
        } else {
            WriteTree(tree, out);
        }
    } else if (options.find) {
        const std::vector<RecordIndex> hits = session.FindDetails(*options.find);
        if (options.json) {
            WriteHitsJson(hits, out);
        } else {
            WriteHits(session, hits, out);
        }
    } else if (options.json) {
        WriteSessionJson(session, session.m_strLogPath, out);
    } else {
        WriteSummary(session, session.m_strLogPath, out);
    }
    return log.Status();
}

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err, std::size_t width) {
    int status = REPORT_DONE;
    std::optional<ReportOptions> options = ReadReportOptions(arguments, out, err, status);
    if (!options) {
        return status;
    }
    options->width = width;
    status = options->explore ? RunExplore(*options, out, err) : RunOverSession(*options, out, err);
    out.flush();
    if (!out) {
        err << "Failed to write the report.\n";
        return REPORT_FAILED;
    }
    return status;
}

} // namespace

int RunReport(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
              std::size_t width) {
    try {
        return Run(arguments, out, err, width);
    } catch (const std::bad_alloc&) {
        err << "There is not enough memory for this report.\n";
        return REPORT_FAILED;
    }
}

} // namespace carvelot
