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
    explicit CFlag(bool& bFlag) : m_bFlag(bFlag) { m_bFlag = true; }
    ~CFlag() { m_bFlag = false; }
    CFlag(const CFlag&) = delete;
    CFlag& operator=(const CFlag&) = delete;

private:
    bool& m_bFlag;
};

std::string TracingText(const ProcessListRow& row) { return row.m_bTracing ? "On" : "Off"; }

std::string SizeText(const ProcessListRow& row) { return GroupedNumber(row.m_nFileSize); }

std::string ProcInfoError(std::int32_t nStatus) {
    return "Error SkelmondGetSetProcInfo returned: " + std::to_string(nStatus);
}

} // namespace

std::string GroupedNumber(std::int32_t nNumber) {
    const std::string strDigits = std::to_string(nNumber);
    std::string strResult;
    int nGroup = 0;
    for (std::size_t n = strDigits.size(); n-- > 0;) {
        strResult.push_back(strDigits[n]);
        if (++nGroup == 3 && n > 0) {
            strResult.push_back(',');
            nGroup = 0;
        }
    }
    std::ranges::reverse(strResult);
    return strResult;
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
    if (m_bRefreshing)
        return;
    const CFlag refreshing(m_bRefreshing);
    for (const auto& [nProcess, pRow] : m_processes) {
        pRow->alive = 0;
        pRow->selected = false;
    }
    for (const int nRow : SelectedRows()) {
        const auto it = m_processes.find(static_cast<std::uint32_t>(RowAt(nRow).m_nProcess));
        if (it == m_processes.end())
            throw std::out_of_range("invalid map<K, T> key");
        it->second->selected = true;
    }
    m_host.BeginRebuild();
    m_listRows.clear();
    std::vector<platform::ProcessEntry> listProcesses;
    if (!m_host.EnumerateProcesses(listProcesses))
        return;
    for (const platform::ProcessEntry& entry : listProcesses) {
        if (entry.m_nProcess == 0 || !IsTraceApp(entry.m_strImageName))
            continue;
        std::unique_ptr<ProcessRow>& pRow = m_processes[entry.m_nProcess];
        if (pRow == nullptr) {
            pRow = std::make_unique<ProcessRow>();
            pRow->pid = entry.m_nProcess;
            pRow->imageName = entry.m_strImageName;
        }
        pRow->alive = 1;
        // A number that the system has given to another program shows that program's name.
        GatherTracing(*pRow);
        m_listRows.push_back({static_cast<std::int32_t>(entry.m_nProcess), entry.m_strImageName,
                              pRow->tracing, pRow->debugFile, platform::SharedFileSize(pRow->debugFile),
                              pRow->user, pRow->environment, pRow->selected});
    }
    m_host.EndRebuild();
    std::erase_if(m_processes, [](const auto& item) { return item.second->alive == 0; });
}

bool CProcessList::IsTraceApp(std::string_view strImageName) const {
    return std::ranges::any_of(m_host.TraceApps(), [&](const tagTraceApp& app) {
        return app.m_bEnabled && EqualNoCase(app.m_strName, strImageName);
    });
}

void CProcessList::GatherTracing(ProcessRow& row) {
    const FGetSetProcInfo pfnGetSetProcInfo = m_host.GetSetProcInfo();
    if (pfnGetSetProcInfo == nullptr) {
        row.debugFile = kUndetermined;
        return;
    }
    CProcInfoBuffers buffers;
    std::int32_t nTracing = 0;
    const auto call = [&](ETraceMode nMode) {
        buffers.Clear();
        return pfnGetSetProcInfo(row.pid, buffers.m_debugFile, buffers.m_user, buffers.m_environment,
                                 buffers.m_scratch, nMode, &nTracing);
    };
    if (const std::int32_t nStatus = call(TRACE_READ); nStatus != 0) {
        m_host.ShowMessage(ProcInfoError(nStatus));
        return;
    }
    row.debugFile = BufferText(buffers.m_debugFile);
    if (row.user.empty()) {
        // A process that has nobody logged on yet answers with an empty user, and is asked again next time.
        call(TRACE_IDENTITY);
        row.user = BufferText(buffers.m_user);
        row.environment = BufferText(buffers.m_environment);
    }
    row.tracing = nTracing != 0;
}

int CProcessList::NextSelected(int nAfter) const {
    for (std::size_t nRow = static_cast<std::size_t>(nAfter + 1); nRow < m_listRows.size(); ++nRow) {
        if (m_listRows[nRow].m_bSelected)
            return static_cast<int>(nRow);
    }
    return -1;
}

ProcessListRow CProcessList::RowAt(int nRow) const {
    const auto at = static_cast<std::size_t>(nRow);
    return at < m_listRows.size() ? m_listRows[at] : ProcessListRow();
}

// The next row is looked up before the present one is handled: handling can rebuild the list.
template <typename FHandle> void CProcessList::WalkSelected(FHandle handle) {
    int nNext = NextSelected(-1);
    while (nNext >= 0) {
        const int nRow = nNext;
        nNext = NextSelected(nRow);
        if (!handle(nRow))
            return;
    }
}

void CProcessList::OnToggleTracing() {
    std::int32_t nTracing = 0;
    WalkSelected([&](int nRow) {
        const std::int32_t nProcess = RowAt(nRow).m_nProcess;
        if (nProcess == 0)
            return true;
        const FGetSetProcInfo pfnGetSetProcInfo = m_host.GetSetProcInfo();
        if (pfnGetSetProcInfo == nullptr) {
            m_host.ShowMessage(kNoLibrary);
            return false;
        }
        CProcInfoBuffers buffers;
        buffers.Clear();
        const std::int32_t nStatus =
            pfnGetSetProcInfo(static_cast<std::uint32_t>(nProcess), buffers.m_debugFile, buffers.m_user,
                              buffers.m_environment, buffers.m_scratch, TRACE_TOGGLE, &nTracing);
        if (nStatus != 0) {
            m_host.ShowMessage(ProcInfoError(nStatus));
            return true;
        }
        m_listRows[static_cast<std::size_t>(nRow)].m_bTracing = nTracing != 0;
        m_host.RowChanged(static_cast<std::size_t>(nRow));
        return true;
    });
}

void CProcessList::OnTruncDebugFile() {
    WalkSelected([&](int nRow) {
        platform::TruncateShared(RowAt(nRow).m_strDebugFile);
        RefreshProcessList();
        return true;
    });
}

void CProcessList::OnClearCaches() {
    WalkSelected([&](int nRow) {
        const std::int32_t nProcess = RowAt(nRow).m_nProcess;
        if (nProcess == 0)
            return true;
        platform::CDynamicLibrary library;
        std::uint32_t nError = 0;
        if (!library.Load(kCompanionLibrary, nError)) {
            m_host.ShowMessage(kNoLibrary);
            return false;
        }
        const auto pfnClear =
            reinterpret_cast<FClearCaches>(library.Symbol("SkelmondClearCacheProcessor", nError));
        if (pfnClear == nullptr) {
            m_host.ShowMessage(kNoEntryPoint);
            return false;
        }
        if (const std::int32_t nStatus = pfnClear(static_cast<std::uint32_t>(nProcess), 1); nStatus != 0)
            m_host.ShowMessage("Error SkelmondClearCache returned: " + std::to_string(nStatus));
        return true;
    });
}

void CProcessList::OnAnalyzeProcess() {
    WalkSelected([&](int nRow) {
        const ProcessListRow row = RowAt(nRow);
        m_host.AnalyzeProcess(row.m_strImageName, row.m_strDebugFile, row.m_nProcess);
        return true;
    });
}

void CProcessList::Select(const std::vector<int>& listRows) {
    for (ProcessListRow& row : m_listRows)
        row.m_bSelected = false;
    for (const int nRow : listRows) {
        if (nRow >= 0 && static_cast<std::size_t>(nRow) < m_listRows.size())
            m_listRows[static_cast<std::size_t>(nRow)].m_bSelected = true;
    }
}

std::vector<int> CProcessList::SelectedRows() const {
    std::vector<int> listRows;
    for (int nRow = NextSelected(-1); nRow >= 0; nRow = NextSelected(nRow))
        listRows.push_back(nRow);
    return listRows;
}

int CProcessList::FocusedRow() const {
    const std::vector<int> listRows = SelectedRows();
    return listRows.empty() ? -1 : listRows.back();
}

std::string CProcessList::Text(std::size_t nRow, int nColumn) const {
    return nRow < m_listRows.size() ? CellText(m_listRows[nRow], nColumn) : std::string();
}

} // namespace carvelot
