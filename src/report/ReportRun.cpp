#include "report/ReportRun.h"

#include "explore/PieceOrder.h"
#include "explore/Scope.h"
#include "lists/GapExport.h"
#include "platform/PipeFile.h"
#include "platform/Terminal.h"
#include "report/ExploreRun.h"
#include "report/JsonReport.h"
#include "report/ReportOptions.h"
#include "report/TextReport.h"
#include "sources/PipeSource.h"
#include "sqlite/LogDatabase.h"
#include "tables/RowWriter.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
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
        : m_options(options), m_err(err), m_host(err) {}

    bool Load(const std::string& path, const std::vector<std::string>& members = {}) {
        if (path == "-") {
            return LoadPipe(path, platform::PipeFile::StandardInput(), members);
        }
        if (platform::PipeFile::IsAt(path)) {
            return LoadPipe(path, platform::PipeFile::Open(path), members);
        }
        return LoadWithDialects([&](CCarvelotDoc& session) { return session.OnOpenDocument(path, members); });
    }
    bool Load(const ReportOptions& options) {
        if (options.logs.size() == 1) {
            return Load(options.logs.front(), options.members);
        }
        return LoadWithDialects([&](CCarvelotDoc& session) {
            return session.OnOpenPieces(options.asGiven ? PiecesAsGiven(options.logs)
                                                        : PiecesByTime(options.logs, session.m_dialects));
        });
    }
    const CCarvelotDoc& Session() const { return *m_session; }
    // Of a report that has been printed: it is a part of one if the log ended ahead of its end.
    int Status() const { return m_session->LoadFailure().empty() ? REPORT_DONE : REPORT_FAILED; }

private:
    bool LoadPipe(const std::string& path, platform::PipeFile pipe, const std::vector<std::string>& members) {
        if (!pipe) {
            m_host.ShowMessage("Failed to open file.");
            return false;
        }
        CCarvelotDoc& session = NewSession(m_options.dialects);
        session.m_strLogPath = path;
        session.m_listMembers = members;
        CPipeSource source(pipe);
        if (!session.LoadPackedOrPlain(source)) {
            return false;
        }
        if (m_options.helpfulDialects && !Helpful().Empty()) {
            m_err << path << ": a pipe is read only once: more of it would be read with --dialect "
                  << Helpful().Names() << '\n';
        }
        return true;
    }

    template <class Open> bool LoadWithDialects(Open open) {
        CDialects dialects = m_options.dialects;
        if (!open(NewSession(dialects))) {
            return false;
        }
        if (!m_options.helpfulDialects) {
            return true;
        }
        // What one dialect reads may ask for another.
        for (CDialects more = Helpful(); !more.Empty(); more = Helpful()) {
            dialects.Add(more);
            if (!open(NewSession(dialects))) {
                return false;
            }
        }
        const CDialects taken = dialects.Without(m_options.dialects);
        m_err << m_session->m_strLogPath
              << (taken.Empty() ? ": no dialect reads more of it" : ": read with the dialect ")
              << taken.Names() << '\n';
        return true;
    }
    // Each load has a session of its own: nothing of an earlier one must be known.
    CCarvelotDoc& NewSession(CDialects dialects) {
        m_session.reset();
        m_pending = {};
        CCarvelotDoc& session = m_session.emplace(m_options.settings, m_pending, m_host);
        session.m_nProcessFilter = m_options.processFilter;
        session.m_bNumberLines = m_options.explore.has_value() || m_options.rows.has_value();
        session.m_dialects = dialects;
        // For tests, and for a doubt whether the short ways of the parser read what is there.
        const char* const plain = std::getenv("CARVELOT_PLAIN_PARSE");
        session.m_bPlainParse = plain != nullptr && std::strcmp(plain, "1") == 0;
        return session;
    }
    CDialects Helpful() const { return m_session->Notes().m_helpful; }

    const ReportOptions& m_options;
    std::ostream& m_err;
    CReportHost m_host;
    PendingStatement m_pending;
    std::optional<CCarvelotDoc> m_session;
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

// A log that can't be read is told of, and the others are printed.
int RunRows(const ReportOptions& options, std::ostream& out, std::ostream& err) {
    int status = REPORT_DONE;
    CRowWriter writer(out, *options.rows->table, options.rows->format);
    for (const std::string& path : options.logs) {
        CLoadedLog log(options, err);
        if (!log.Load(path, options.members)) {
            status = REPORT_FAILED;
            continue;
        }
        writer.WriteRows(CTableSource(log.Session(), options.settings, options.rows->tables));
        if (!out) {
            break;
        }
        status = std::max(status, log.Status());
    }
    return status;
}

// All logs or none: a week that lacks a day would be taken for a whole one.
int WriteDatabase(const ReportOptions& options, std::ostream& err) {
    const std::string& path = *options.rows->database;
    int status = REPORT_DONE;
    CLogDatabase database;
    std::string problem;
    bool isDone = database.Create(path, options.rows->append, problem);
    for (const std::string& log : options.logs) {
        if (!isDone) {
            break;
        }
        CLoadedLog loaded(options, err);
        if (!loaded.Load(log, options.members)) {
            return REPORT_FAILED;
        }
        isDone =
            database.Add(CTableSource(loaded.Session(), options.settings, options.rows->tables), problem);
        status = std::max(status, loaded.Status());
    }
    isDone = isDone && database.Commit(problem);
    if (!isDone) {
        err << path << ": " << problem << '\n';
        return REPORT_FAILED;
    }
    return status;
}

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err, std::size_t width) {
    int status = REPORT_DONE;
    std::optional<ReportOptions> options = ReadReportOptions(arguments, out, err, status);
    if (!options) {
        return status;
    }
    options->width = width;
    if (options->rows && options->rows->database) {
        return WriteDatabase(*options, err);
    }
    if (options->rows) {
        platform::KeepLineEnds();
    }
    status = options->explore ? RunExplore(*options, out, err)
             : options->rows  ? RunRows(*options, out, err)
                              : RunOverSession(*options, out, err);
    out.flush();
    if (!out) {
        if (options->rows && platform::IsReaderGone()) {
            return REPORT_FAILED;
        }
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
