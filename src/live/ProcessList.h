// ProcessList.h - the JDE processes of this workstation: the rows of the pane, what is remembered of each
// process, and the commands on the selected rows.
#pragma once

#include "live/CompanionLibrary.h"
#include "platform/Processes.h"
#include "settings/AppSettings.h"
#include "text/ColumnTable.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// What the list asks of the program around it.
class IProcessHost {
public:
    virtual ~IProcessHost() = default;

    // A message box with an OK button. Events of the window may be handled while it is up.
    virtual void ShowMessage(std::string_view text) = 0;
    // The running processes in the system's order; false when it gives no list.
    virtual bool EnumerateProcesses(std::vector<platform::ProcessEntry>& processes) = 0;
    virtual const std::vector<tagTraceApp>& TraceApps() const = 0;
    // Null while the companion library is not bound.
    virtual FGetSetProcInfo GetSetProcInfo() const = 0;
    // Opens a process's debug file as a session.
    virtual void AnalyzeProcess(const std::string& imageName, const std::string& debugFile,
                                std::int32_t process) = 0;
    // The rows are about to go; nothing is drawn until EndRebuild, by when the rows are new.
    virtual void BeginRebuild() {}
    virtual void EndRebuild() {}
    virtual void RowChanged(std::size_t /*nRow*/) {}
};

// What is remembered of a process from one refresh to the next.
struct ProcessRow {
    std::uint32_t pid = 0;
    std::string imageName; // as it was at first sight
    std::string debugFile; // full path, or "Undetermined"
    std::string user;      // empty until the companion library has told it
    std::string environment;
    bool tracing = false;
    std::int32_t alive = 0; // found in the present refresh
    bool selected = false;  // its row was selected when the present refresh began
};

enum EProcessColumn {
    COLUMN_PROCESS,
    COLUMN_IMAGE_NAME,
    COLUMN_TRACING,
    COLUMN_DEBUG_FILE,
    COLUMN_FILE_SIZE,
    COLUMN_USER,
    COLUMN_ENVIRONMENT,
    PROCESS_COLUMNS,
};

// A process as the list shows it.
struct ProcessListRow {
    std::int32_t m_nProcess = 0;
    std::string m_strImageName;
    bool m_bTracing = false;
    std::string m_strDebugFile;
    std::int32_t m_nFileSize = 0;
    std::string m_strUser;
    std::string m_strEnvironment;
    bool m_bSelected = false;

    static CColumnTable<ProcessListRow> Columns();
};

// A number in decimal with a comma before each group of three characters; the sign counts as one.
std::string GroupedNumber(std::int32_t number);

// The rows stand in the system's order of processes. The window keeps the selection up to date with Select
// and shows what a rebuild makes of it.
class CProcessList : public CListSource {
public:
    explicit CProcessList(IProcessHost& host) : m_host(host) {}

    // Builds all rows anew. Ignored while it runs already. When the system gives no list, the rows are gone
    // and drawing stays off until a refresh succeeds.
    void RefreshProcessList();

    // The commands walk the selected rows upwards from the first.
    void OnToggleTracing();
    void OnTruncDebugFile();
    void OnClearCaches();
    void OnAnalyzeProcess();

    void Select(const std::vector<int>& rows);
    std::vector<int> SelectedRows() const;
    // The row with the focus after a rebuild: the last of those selected; -1 without one.
    int FocusedRow() const;

    std::size_t RowCount() const override { return m_listRows.size(); }
    // Empty for a row that is not there.
    std::string Text(std::size_t row, int column) const override;

    std::map<std::uint32_t, std::unique_ptr<ProcessRow>> m_processes;

private:
    bool IsTraceApp(std::string_view imageName) const;
    void GatherTracing(ProcessRow& row);
    int NextSelected(int after) const;
    // A row of nothing where there is none.
    ProcessListRow RowAt(int row) const;
    template <typename FHandle> void WalkSelected(FHandle handle);

    IProcessHost& m_host;
    std::vector<ProcessListRow> m_listRows;
    bool m_bRefreshing = false;
};

} // namespace carvelot
