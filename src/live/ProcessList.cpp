#include "live/ProcessList.h"

#include "platform/SharedFile.h"
#include "text/CaseText.h"

#include <algorithm>
#include <stdexcept>

namespace carvelot {

namespace {

constexpr std::string_view kUndetermined = "Undetermined";
constexpr std::string_view kNoLibrary = "Cannot Load Skelmond.DLL";
constexpr std::string_view kNoEntryPoint = "Get Proc address failed";

class CFlag {
public:
    explicit CFlag(bool& flag) : m_bFlag(flag) { m_bFlag = true; }
    ~CFlag() { m_bFlag = false; }
    CFlag(const CFlag&) = delete;
    CFlag& operator=(const CFlag&) = delete;

private:
    bool& m_bFlag;
};

std::string TracingText(const ProcessListRow& row) { return row.m_bTracing ? "On" : "Off"; }

std::string SizeText(const ProcessListRow& row) { return GroupedNumber(row.m_nFileSize); }

std::string ProcInfoError(std::int32_t status) {
    return "Error SkelmondGetSetProcInfo returned: " + std::to_string(status);
}

} // namespace

std::string GroupedNumber(std::int32_t number) {
    const std::string digits = std::to_string(number);
    std::string result;
    int group = 0;
    for (std::size_t n = digits.size(); n-- > 0;) {
        result.push_back(digits[n]);
        if (++group == 3 && n > 0) {
            result.push_back(',');
            group = 0;
        }
    }
    std::ranges::reverse(result);
    return result;
}

CColumnTable<ProcessListRow> ProcessListRow::Columns() {
    using enum EAlign;
    using R = ProcessListRow;
    // In the order of EProcessColumn. No column sorts: the rows stand in the system's order.
    // clang-format off
    static constexpr CListColumn<ProcessListRow> columns[PROCESS_COLUMNS] = {
        {"Process",           100, Left, DigitsOf<&R::m_nProcess>},
        {"Image Name",        120, Left, TextOf<&R::m_strImageName>},
        {"Tracing",           100, Left, TracingText},
        {"Debug File",        300, Left, TextOf<&R::m_strDebugFile>},
        {"File Size (Bytes)", 100, Left, SizeText},
        {"User",              100, Left, TextOf<&R::m_strUser>},
        {"Env.",              100, Left, TextOf<&R::m_strEnvironment>},
    };
    // clang-format on
    return columns;
}

void CProcessList::RefreshProcessList() {
    if (m_bRefreshing) {
        return;
    }
    const CFlag refreshing(m_bRefreshing);
    for (const auto& [process, row] : m_processes) {
        row->alive = 0;
        row->selected = false;
    }
    for (const int rowIndex : SelectedRows()) {
        const auto it = m_processes.find(static_cast<std::uint32_t>(RowAt(rowIndex).m_nProcess));
        if (it == m_processes.end()) {
            throw std::out_of_range("invalid map<K, T> key");
        }
        it->second->selected = true;
    }
    m_host.BeginRebuild();
    m_listRows.clear();
    std::vector<platform::ProcessEntry> processes;
    if (!m_host.EnumerateProcesses(processes)) {
        return;
    }
    for (const platform::ProcessEntry& entry : processes) {
        if (entry.m_nProcess == 0 || !IsTraceApp(entry.m_strImageName)) {
            continue;
        }
        std::unique_ptr<ProcessRow>& row = m_processes[entry.m_nProcess];
        if (row == nullptr) {
            row = std::make_unique<ProcessRow>();
            row->pid = entry.m_nProcess;
            row->imageName = entry.m_strImageName;
        }
        row->alive = 1;
        // A number that the system has given to another program shows that program's name.
        GatherTracing(*row);
        m_listRows.push_back({static_cast<std::int32_t>(entry.m_nProcess), entry.m_strImageName, row->tracing,
                              row->debugFile, platform::SharedFileSize(row->debugFile), row->user,
                              row->environment, row->selected});
    }
    m_host.EndRebuild();
    std::erase_if(m_processes, [](const auto& item) { return item.second->alive == 0; });
}

bool CProcessList::IsTraceApp(std::string_view imageName) const {
    return std::ranges::any_of(m_host.TraceApps(), [&](const tagTraceApp& app) {
        return app.m_bEnabled && EqualNoCase(app.m_strName, imageName);
    });
}

void CProcessList::GatherTracing(ProcessRow& row) {
    const FGetSetProcInfo pfnGetSetProcInfo = m_host.GetSetProcInfo();
    if (pfnGetSetProcInfo == nullptr) {
        row.debugFile = kUndetermined;
        return;
    }
    CProcInfoBuffers buffers;
    std::int32_t tracing = 0;
    const auto call = [&](ETraceMode mode) {
        buffers.Clear();
        return pfnGetSetProcInfo(row.pid, buffers.m_debugFile, buffers.m_user, buffers.m_environment,
                                 buffers.m_scratch, mode, &tracing);
    };
    if (const std::int32_t status = call(TRACE_READ); status != 0) {
        m_host.ShowMessage(ProcInfoError(status));
        return;
    }
    row.debugFile = BufferText(buffers.m_debugFile);
    if (row.user.empty()) {
        // A process that has nobody logged on yet answers with an empty user, and is asked again next time.
        call(TRACE_IDENTITY);
        row.user = BufferText(buffers.m_user);
        row.environment = BufferText(buffers.m_environment);
    }
    row.tracing = tracing != 0;
}

int CProcessList::NextSelected(int after) const {
    for (std::size_t rowIndex = static_cast<std::size_t>(after) + 1; rowIndex < m_listRows.size();
         ++rowIndex) {
        if (m_listRows[rowIndex].m_bSelected) {
            return static_cast<int>(rowIndex);
        }
    }
    return -1;
}

ProcessListRow CProcessList::RowAt(int rowIndex) const {
    const auto at = static_cast<std::size_t>(rowIndex);
    return at < m_listRows.size() ? m_listRows[at] : ProcessListRow();
}

// The next row is looked up before the present one is handled: handling can rebuild the list.
template <typename FHandle> void CProcessList::WalkSelected(FHandle handle) {
    int next = NextSelected(-1);
    while (next >= 0) {
        const int rowIndex = next;
        next = NextSelected(rowIndex);
        if (!handle(rowIndex)) {
            return;
        }
    }
}

void CProcessList::OnToggleTracing() {
    std::int32_t tracing = 0;
    WalkSelected([&](int rowIndex) {
        const std::int32_t process = RowAt(rowIndex).m_nProcess;
        if (process == 0) {
            return true;
        }
        const FGetSetProcInfo pfnGetSetProcInfo = m_host.GetSetProcInfo();
        if (pfnGetSetProcInfo == nullptr) {
            m_host.ShowMessage(kNoLibrary);
            return false;
        }
        CProcInfoBuffers buffers;
        buffers.Clear();
        const std::int32_t status =
            pfnGetSetProcInfo(static_cast<std::uint32_t>(process), buffers.m_debugFile, buffers.m_user,
                              buffers.m_environment, buffers.m_scratch, TRACE_TOGGLE, &tracing);
        if (status != 0) {
            m_host.ShowMessage(ProcInfoError(status));
            return true;
        }
        m_listRows[static_cast<std::size_t>(rowIndex)].m_bTracing = tracing != 0;
        m_host.RowChanged(static_cast<std::size_t>(rowIndex));
        return true;
    });
}

void CProcessList::OnTruncDebugFile() {
    WalkSelected([&](int rowIndex) {
        platform::TruncateShared(RowAt(rowIndex).m_strDebugFile);
        RefreshProcessList();
        return true;
    });
}

void CProcessList::OnClearCaches() {
    WalkSelected([&](int rowIndex) {
        const std::int32_t process = RowAt(rowIndex).m_nProcess;
        if (process == 0) {
            return true;
        }
        platform::CDynamicLibrary library;
        std::uint32_t error = 0;
        if (!library.Load(kCompanionLibrary, error)) {
            m_host.ShowMessage(kNoLibrary);
            return false;
        }
        const auto pfnClear =
            reinterpret_cast<FClearCaches>(library.Symbol("SkelmondClearCacheProcessor", error));
        if (pfnClear == nullptr) {
            m_host.ShowMessage(kNoEntryPoint);
            return false;
        }
        if (const std::int32_t status = pfnClear(static_cast<std::uint32_t>(process), 1); status != 0) {
            m_host.ShowMessage("Error SkelmondClearCache returned: " + std::to_string(status));
        }
        return true;
    });
}

void CProcessList::OnAnalyzeProcess() {
    WalkSelected([&](int rowIndex) {
        const ProcessListRow row = RowAt(rowIndex);
        m_host.AnalyzeProcess(row.m_strImageName, row.m_strDebugFile, row.m_nProcess);
        return true;
    });
}

void CProcessList::Select(const std::vector<int>& rows) {
    for (ProcessListRow& row : m_listRows) {
        row.m_bSelected = false;
    }
    for (const int rowIndex : rows) {
        if (rowIndex >= 0 && static_cast<std::size_t>(rowIndex) < m_listRows.size()) {
            m_listRows[static_cast<std::size_t>(rowIndex)].m_bSelected = true;
        }
    }
}

std::vector<int> CProcessList::SelectedRows() const {
    std::vector<int> rows;
    for (int rowIndex = NextSelected(-1); rowIndex >= 0; rowIndex = NextSelected(rowIndex)) {
        rows.push_back(rowIndex);
    }
    return rows;
}

int CProcessList::FocusedRow() const {
    const std::vector<int> rows = SelectedRows();
    return rows.empty() ? -1 : rows.back();
}

std::string CProcessList::Text(std::size_t rowIndex, int column) const {
    return rowIndex < m_listRows.size() ? CellText(m_listRows[rowIndex], column) : std::string();
}

} // namespace carvelot
