#include "report/ReportRun.h"

#include "lists/GapExport.h"
#include "report/JsonReport.h"
#include "report/ReportOptions.h"
#include "report/TextReport.h"

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

private:
    std::ostream& m_err;
};

// Fills the tree for "process:PID", "thread:PID/TID" or "user:NAME". False when the log has no such scope.
bool FillScope(const CCarvelotDoc& session, std::string_view scope, CDetailTree& tree) {
    const std::size_t colon = scope.find(':');
    if (colon == std::string_view::npos) {
        return false;
    }
    const std::string_view kind = scope.substr(0, colon);
    const std::string_view name = scope.substr(colon + 1);
    if (session.m_nLogFormat == LOG_FORMAT_JAS) {
        const CJASUser* const user = kind == "user" ? session.FindUser(name) : nullptr;
        if (user != nullptr) {
            tree.FillDetails(true, user->m_listDetails);
        }
        return user != nullptr;
    }
    const std::size_t slash = name.find('/');
    const bool isThread = kind == "thread" && slash != std::string_view::npos;
    if (!isThread && kind != "process") {
        return false;
    }
    const std::optional<std::uint32_t> processID = ParseId(isThread ? name.substr(0, slash) : name);
    const CProcess* const process = processID ? session.FindProcess(*processID) : nullptr;
    if (process == nullptr) {
        return false;
    }
    if (!isThread) {
        for (const auto& thread : process->m_listThreads) {
            tree.FillDetails(false, thread->m_listDetails);
        }
        return true;
    }
    const std::optional<std::uint32_t> threadID = ParseId(name.substr(slash + 1));
    const auto thread = threadID ? process->m_mapThreads.find(*threadID) : process->m_mapThreads.end();
    if (thread == process->m_mapThreads.end()) {
        return false;
    }
    tree.FillDetails(true, thread->second->m_listDetails);
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

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    int status = REPORT_DONE;
    const std::optional<ReportOptions> options = ReadReportOptions(arguments, out, err, status);
    if (!options) {
        return status;
    }
    CReportHost host(err);
    PendingStatement pending;
    CCarvelotDoc session(options->settings, pending, host);
    session.m_nProcessFilter = options->processFilter;
    // For tests, and for a doubt whether the short ways of the parser read what is there.
    const char* const plain = std::getenv("CARVELOT_PLAIN_PARSE");
    session.m_bPlainParse = plain != nullptr && std::strcmp(plain, "1") == 0;
    if (!session.OnOpenDocument(options->log)) {
        return REPORT_FAILED;
    }
    if (options->exportGaps) {
        return ExportGapsTo(session, *options->exportGaps, err);
    }
    if (options->tree) {
        CDetailTree tree(session);
        if (!FillScope(session, *options->tree, tree)) {
            err << "No such scope: " << *options->tree << '\n';
            return REPORT_FAILED;
        }
        if (options->json) {
            WriteTreeJson(tree, *options->tree, out);
        } else {
            WriteTree(tree, out);
        }
    } else if (options->find) {
        const std::vector<RecordIndex> hits = session.FindDetails(*options->find);
        if (options->json) {
            WriteHitsJson(hits, out);
        } else {
            WriteHits(session, hits, out);
        }
    } else if (options->json) {
        WriteSessionJson(session, options->log, out);
    } else {
        WriteSummary(session, options->log, out);
    }
    out.flush();
    if (!out) {
        err << "Failed to write the report.\n";
        return REPORT_FAILED;
    }
    return REPORT_DONE;
}

} // namespace

int RunReport(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    try {
        return Run(arguments, out, err);
    } catch (const std::bad_alloc&) {
        err << "There is not enough memory for this report.\n";
        return REPORT_FAILED;
    }
}

} // namespace carvelot
