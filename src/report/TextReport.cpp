#include "report/TextReport.h"

#include "lists/PaneRows.h"
#include "records/NodeText.h"
#include "report/TextTable.h"
#include "text/NumberText.h"
#include "text/TextColumns.h"
#include "trees/ThreadTree.h"

#include <algorithm>
#include <array>
#include <ostream>

namespace carvelot {

namespace {

// Lists are cut here: the first rows are the ones that matter, and the window shows the rest.
constexpr std::size_t kMostRows = 15;

void PrintKinds(const CCarvelotDoc& session, std::ostream& out) {
    std::array<std::size_t, 23> counts{};
    for (std::uint32_t i = 0; i < session.m_listDetails.Size(); ++i) {
        ++counts[session.m_listDetails.Kind(RecordIndex{i})];
    }
    CTextTable table({{"kind", L}, {"records", R}});
    for (std::size_t kind = 0; kind < counts.size(); ++kind) {
        if (counts[kind] > 0) {
            table.Add({std::string(KindName(static_cast<LogKind>(kind))), Grouped(counts[kind])});
        }
    }
    table.Print(out, "Records by kind", session.m_listDetails.Size());
}

// The owners of a log's analyses: its processes, or its users.
struct Scope {
    std::string name;
    const CBSFNAnalysis& functions;
    const CSQLAnalysis& statements;
};

std::vector<Scope> Scopes(const CCarvelotDoc& session) {
    std::vector<Scope> scopes;
    if (session.m_nLogFormat == LOG_FORMAT_JAS) {
        for (const auto& user : session.m_listUsers) {
            scopes.push_back({OneLine(user->m_strUser), user->m_pBSFNAnalysis, user->m_pSQLAnalysis});
        }
    } else {
        for (const auto& process : session.m_listProcesses) {
            scopes.push_back(
                {IdText(process->m_nProcessID), process->m_pBSFNAnalysis, process->m_pSQLAnalysis});
        }
    }
    return scopes;
}

std::string_view ScopeTitle(const CCarvelotDoc& session) {
    return session.m_nLogFormat == LOG_FORMAT_JAS ? "user" : "process";
}

void PrintOwners(const CCarvelotDoc& session, std::ostream& out) {
    if (session.m_nLogFormat == LOG_FORMAT_JAS) {
        CTextTable table({{"user", L}, {"records", R}, {"long tasks", R}, {"warnings and errors", R}});
        for (const auto& user : session.m_listUsers) {
            table.Add({OneLine(user->m_strUser), Grouped(user->m_listDetails.size()),
                       Grouped(user->m_pBSFNAnalysis.m_listLongTasks.size() +
                               user->m_pSQLAnalysis.m_listLongTasks.size()),
                       Grouped(user->m_listErrors.size())});
        }
        table.Print(out, "Users", session.m_listUsers.size());
        return;
    }
    CTextTable table(
        {{"process / thread", L}, {"elapsed", R}, {"kept", R}, {"long tasks", R}, {"errors", R}});
    std::size_t rows = 0;
    std::size_t total = 0;
    const auto add = [&](std::string name, std::uint64_t start, std::uint64_t end, std::size_t kept,
                         const CBSFNAnalysis& functions, const CSQLAnalysis& statements, std::size_t errors) {
        ++total;
        if (rows < kMostRows * 2) {
            ++rows;
            table.Add({std::move(name), SecondsText(ElapsedSeconds(end, start)), Grouped(kept),
                       Grouped(functions.m_listLongTasks.size() + statements.m_listLongTasks.size()),
                       Grouped(errors)});
        }
    };
    for (const auto& process : session.m_listProcesses) {
        std::size_t kept = 0;
        for (const auto& thread : process->m_listThreads) {
            kept += thread->m_listDetails.size();
        }
        add(IdText(process->m_nProcessID), process->m_nStartTime, process->m_nEndTime, kept,
            process->m_pBSFNAnalysis, process->m_pSQLAnalysis, process->m_listErrors.size());
        for (const auto& thread : process->m_listThreads) {
            add(std::string(2, ' ').append(IdText(thread->m_nThreadID)), thread->m_nStartTime,
                thread->m_nEndTime, thread->m_listDetails.size(), thread->m_pBSFNAnalysis,
                thread->m_pSQLAnalysis, thread->m_listErrors.size());
        }
    }
    table.Print(out, "Processes and threads", total);
}

void PrintFunctions(const CCarvelotDoc& session, std::ostream& out) {
    struct Entry {
        std::string scope;
        BSFNRow row;
    };
    std::vector<Entry> entries;
    for (const Scope& scope : Scopes(session)) {
        for (BSFNRow& row : MakeBSFNRows(scope.functions)) {
            entries.push_back({scope.name, std::move(row)});
        }
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.row.m_nTotal > b.row.m_nTotal; });
    CTextTable table({{ScopeTitle(session), L},
                      {"business function", L},
                      {"calls", R},
                      {"total", R},
                      {"shortest", R},
                      {"longest", R},
                      {"average", R}});
    for (std::size_t i = 0; i < std::min(entries.size(), kMostRows); ++i) {
        const BSFNRow& row = entries[i].row;
        table.Add({entries[i].scope, OneLine(row.m_strName), CellText(row, 1), CellText(row, 2),
                   CellText(row, 3), CellText(row, 4), CellText(row, 5)});
    }
    table.Print(out, "Business functions, by total time", entries.size());
}

void PrintTables(const CCarvelotDoc& session, std::ostream& out) {
    struct Entry {
        std::string scope;
        TableRow row;
        std::int64_t statements;
    };
    std::vector<Entry> entries;
    for (const Scope& scope : Scopes(session)) {
        for (TableRow& row : MakeTableRows(scope.statements)) {
            const std::int64_t statements =
                std::int64_t{row.m_nSelects} + row.m_nInserts + row.m_nUpdates + row.m_nDeletes;
            entries.push_back({scope.name, std::move(row), statements});
        }
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.statements > b.statements; });
    CTextTable table({{ScopeTitle(session), L},
                      {"table", L},
                      {"selects", R},
                      {"inserts", R},
                      {"updates", R},
                      {"deletes", R}});
    for (std::size_t i = 0; i < std::min(entries.size(), kMostRows); ++i) {
        const TableRow& row = entries[i].row;
        table.Add({entries[i].scope, OneLine(row.m_strTable, 50), CellText(row, 1), CellText(row, 2),
                   CellText(row, 3), CellText(row, 4)});
    }
    table.Print(out, "Tables, by statements", entries.size());
}

void PrintCaches(const CCarvelotDoc& session, std::ostream& out) {
    CTextTable table({{"process", R},
                      {"cache", L},
                      {"handle", L},
                      {"instance", L},
                      {"operations", R},
                      {"cursors", R},
                      {"left open", R}});
    std::size_t total = 0;
    for (const auto& process : session.m_listProcesses) {
        for (const auto& cache : process->m_pCacheAnalysis.m_caches) {
            if (total++ >= kMostRows) {
                continue;
            }
            const auto open = std::count_if(cache.m_cursors.begin(), cache.m_cursors.end(),
                                            [](const auto& cursor) { return cursor.m_pClose == kNoRecord; });
            table.Add({IdText(cache.m_processId), OneLine(cache.m_strName, 40),
                       OneLine(cache.m_strHandle, 20), OneLine(cache.m_strInstance, 40),
                       Grouped(cache.m_operations.size()), Grouped(cache.m_cursors.size()),
                       Grouped(static_cast<std::size_t>(open))});
        }
    }
    if (total > 0) {
        table.Print(out, "Caches", total);
    }
}

void PrintLongTasks(const CCarvelotDoc& session, std::ostream& out) {
    std::vector<TaskRow> rows;
    for (const Scope& scope : Scopes(session)) {
        const std::vector<TaskRow> more = MakeTaskRows(session, scope.functions, scope.statements);
        rows.insert(rows.end(), more.begin(), more.end());
    }
    SortRows(session, rows, 2, true);
    CTextTable table({{"duration", R},
                      {"type", L},
                      {session.m_nLogFormat == LOG_FORMAT_JAS ? "user" : "thread", L},
                      {"record", R},
                      {"message", L}});
    for (std::size_t i = 0; i < std::min(rows.size(), kMostRows); ++i) {
        const TaskRow& row = rows[i];
        table.Add({CellText(row, 2, session), CellText(row, 1, session),
                   OneLine(CellText(row, 0, session), 30), std::to_string(Number(row.m_pRecord)),
                   OneLine(CellText(row, 3, session))});
    }
    table.Print(out, "Long tasks, longest first", rows.size());
}

void PrintErrors(const CCarvelotDoc& session, std::ostream& out) {
    std::vector<ErrorRow> rows;
    const auto add = [&](const std::vector<ErrorRow>& more) {
        rows.insert(rows.end(), more.begin(), more.end());
    };
    if (session.m_nLogFormat == LOG_FORMAT_JAS) {
        for (const auto& user : session.m_listUsers) {
            add(MakeErrorRows(user->m_listErrors));
        }
    } else {
        for (const auto& process : session.m_listProcesses) {
            add(MakeErrorRows(process->m_listErrors));
        }
    }
    // Failures before warnings, the latest first.
    const auto isWarning = [&](const ErrorRow& row) {
        const LogKind kind = session.m_listDetails.Kind(row.m_pRecord);
        return kind == LOG_WARN ||
               ErrorType(kind, session.m_listDetails.ReturnCode(row.m_pRecord)) == "BSFN Warning";
    };
    std::stable_sort(rows.begin(), rows.end(), [&](const ErrorRow& a, const ErrorRow& b) {
        const bool warnA = isWarning(a);
        const bool warnB = isWarning(b);
        return warnA != warnB ? warnB : a.m_pRecord > b.m_pRecord;
    });
    CTextTable table({{"type", L},
                      {session.m_nLogFormat == LOG_FORMAT_JAS ? "user" : "thread", L},
                      {"record", R},
                      {"message", L}});
    for (std::size_t i = 0; i < std::min(rows.size(), kMostRows); ++i) {
        const ErrorRow& row = rows[i];
        table.Add({CellText(row, 1, session), OneLine(CellText(row, 0, session), 30),
                   std::to_string(Number(row.m_pRecord)), OneLine(CellText(row, 2, session))});
    }
    table.Print(out, "Errors and warnings", rows.size());
}

void PrintGaps(const CCarvelotDoc& session, std::ostream& out) {
    std::vector<GapRow> rows = MakeGapRows(session);
    SortRows(session, rows, 2, true);
    CTextTable table({{"gap", R},
                      {"until", L},
                      {session.m_nLogFormat == LOG_FORMAT_JAS ? "user" : "thread", L},
                      {"record", R},
                      {"message", L}});
    for (std::size_t i = 0; i < std::min(rows.size(), kMostRows); ++i) {
        const GapRow& row = rows[i];
        table.Add({CellText(row, 2, session), std::string(TrimRight(row.TimeStamp(session), " ")),
                   OneLine(CellText(row, 0, session), 30), std::to_string(Number(row.m_pRecord)),
                   OneLine(CellText(row, 3, session))});
    }
    table.Print(out, "Timing gaps, longest first", rows.size());
}

} // namespace

void WriteSummary(const CCarvelotDoc& session, const std::string& log, std::ostream& out) {
    out << OneLine(log, 1000) << '\n';
    if (session.m_nLogFormat == LOG_FORMAT_JAS) {
        out << "  JAS log, " << Grouped(session.m_listDetails.Size()) << " records of "
            << Grouped(session.m_listUsers.size()) << " users\n";
    } else {
        std::size_t threads = 0;
        for (const auto& process : session.m_listProcesses) {
            threads += process->m_listThreads.size();
        }
        out << "  debug log, " << Grouped(session.m_listDetails.Size()) << " records of "
            << Grouped(session.m_listProcesses.size()) << " processes with " << Grouped(threads)
            << " threads\n";
    }
    PrintLongTasks(session, out);
    PrintErrors(session, out);
    PrintGaps(session, out);
    PrintFunctions(session, out);
    PrintTables(session, out);
    PrintCaches(session, out);
    PrintOwners(session, out);
    PrintKinds(session, out);
}

void WriteTree(const CDetailTree& tree, std::ostream& out) {
    // A call tree can be as deep as its log is long, so the walk keeps its own way back.
    struct Level {
        CDetailTree::Node parent;
        std::size_t next;
    };
    std::vector<Level> levels{{CDetailTree::kRoot, 0}};
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next == tree.ChildCount(level.parent)) {
            levels.pop_back();
            continue;
        }
        const CDetailTree::Node node = tree.Child(level.parent, level.next++);
        constexpr std::size_t deepestIndent = 100;
        out << std::string(std::min(levels.size() - 1, deepestIndent) * 2, ' ')
            << OneLine(tree.Text(node), 100'000) << '\n';
        levels.push_back({node, 0});
    }
}

void WriteHits(const CCarvelotDoc& session, const std::vector<RecordIndex>& hits, std::ostream& out) {
    for (const RecordIndex record : hits) {
        const CLogDetail detail = session.m_listDetails[record];
        const FindRow row{record};
        out << Number(record) << '\t' << TrimRight(TimeStampText(detail), " ") << '\t'
            << CellText(row, 0, session);
        if (session.m_nLogFormat == LOG_FORMAT_DEBUG) {
            out << '/' << CellText(row, 1, session);
        }
        out << '\t' << OneLine(CellText(row, 2, session), 100'000) << '\n';
    }
}

} // namespace carvelot
