#include "ui/live/ProcessPane.h"

#include "settings/Commands.h"
#include "ui/kit/Icons.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"

#include <QAction>
#include <QItemSelectionModel>
#include <QScopedValueRollback>
#include <QTimer>

#include <algorithm>
#include <cstdint>

namespace carvelot {

namespace {

struct CButton {
    int m_nId;
    const char* m_pszText;
    const char* m_pszStatusTip;
    const char* m_pszToolTip;
};

constexpr CButton kButtons[] = {
    {ID_PROCESS_ANALYZE, "Analyze", "Analyze selected process", "Analyze"},
    {ID_PROCESS_REFRESH, "Refresh", "Refresh Process List", "Refresh"},
    {ID_PROCESS_TOGGLE, "Toggle", "Toggle Debug Tracing On or Off", "Toggle Tracing"},
    {ID_PROCESS_TRUNC, "Trunc", "Clear Debug File", "Clear File"},
    {ID_PROCESS_CLEAR_CACHE, "Clear Cache", "Clears all caches for the process", "Clear All Caches"},
};

} // namespace

CProcessPane::CProcessPane()
    : CListPane(tr("JDE Processes"), QStringLiteral("ProcessPane"), {100, 200},
                static_cast<IProcessHost&>(*this)),
      m_fnRefresh([this] { m_rows.RefreshProcessList(); }),
      m_fnEnumerateProcesses(platform::EnumerateProcesses) {
    m_pToolBar = new QToolBar(Client());
    m_pToolBar->setMovable(false);
    m_pToolBar->setIconSize({16, 16});
    m_pToolBar->setAccessibleName(tr("JDE process commands"));
    for (const CButton& button : kButtons) {
        QAction* action = m_pToolBar->addAction(CommandIcon(button.m_nId), tr(button.m_pszText));
        action->setStatusTip(tr(button.m_pszStatusTip));
        action->setToolTip(tr(button.m_pszToolTip));
        action->setData(button.m_nId);
        m_mapActions[button.m_nId] = action;
    }

    AddList();
    m_pList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_pList->Model().EndFill(&m_rows);
    connect(m_pList->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!m_bRebuilding) {
            m_rows.Select(m_pList->SelectedRows());
        }
    });

    SetCommand(ID_PROCESS_ANALYZE, [this] { m_rows.OnAnalyzeProcess(); });
    SetCommand(ID_PROCESS_REFRESH, [this] { RefreshProcessList(); });
    SetCommand(ID_PROCESS_TOGGLE, [this] { m_rows.OnToggleTracing(); });
    SetCommand(ID_PROCESS_TRUNC, [this] { m_rows.OnTruncDebugFile(); });
    SetCommand(ID_PROCESS_CLEAR_CACHE, [this] { m_rows.OnClearCaches(); });

    m_pTimer = new QTimer(this);
    connect(m_pTimer, &QTimer::timeout, this, &CProcessPane::RefreshProcessList);
    RestartTimer();
}

void CProcessPane::SetCommand(int id, std::function<void()> run) {
    connect(m_mapActions.at(id), &QAction::triggered, this, [run = std::move(run)] { run(); });
}

void CProcessPane::RefreshProcessList() {
    if (m_bRefreshing || !m_fnRefresh) {
        return;
    }
    const QScopedValueRollback refreshing(m_bRefreshing, true);
    m_fnRefresh();
}

void CProcessPane::ShowMessage(std::string_view text) { UserInterface().ShowMessage(ToQString(text)); }

bool CProcessPane::EnumerateProcesses(std::vector<platform::ProcessEntry>& processes) {
    return m_fnEnumerateProcesses(processes);
}

const std::vector<tagTraceApp>& CProcessPane::TraceApps() const { return Settings().m_traceApps; }

FGetSetProcInfo CProcessPane::GetSetProcInfo() const {
    return m_fnGetSetProcInfo ? m_fnGetSetProcInfo() : nullptr;
}

void CProcessPane::AnalyzeProcess(const std::string& imageName, const std::string& debugFile,
                                  std::int32_t process) {
    if (m_fnAnalyze) {
        m_fnAnalyze(imageName, debugFile, process);
    }
}

void CProcessPane::BeginRebuild() {
    m_bRebuilding = true;
    m_pList->setUpdatesEnabled(false);
    m_pList->Model().BeginFill();
}

void CProcessPane::EndRebuild() {
    m_pList->Model().EndFill(&m_rows);
    // The focus goes with the selection, and neither scrolls the list under the user's hand.
    const bool autoScroll = m_pList->hasAutoScroll();
    m_pList->setAutoScroll(false);
    QItemSelection selection;
    for (const int row : m_rows.SelectedRows()) {
        selection.select(m_pList->Model().index(row, 0), m_pList->Model().index(row, PROCESS_COLUMNS - 1));
    }
    m_pList->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (const int focus = m_rows.FocusedRow(); focus >= 0) {
        m_pList->selectionModel()->setCurrentIndex(m_pList->Model().index(focus, 0),
                                                   QItemSelectionModel::NoUpdate);
    }
    m_pList->setAutoScroll(autoScroll);
    m_pList->setUpdatesEnabled(true);
    m_bRebuilding = false;
}

void CProcessPane::RowChanged(std::size_t row) {
    const int shownRow = static_cast<int>(row);
    emit m_pList->Model().dataChanged(m_pList->Model().index(shownRow, 0),
                                      m_pList->Model().index(shownRow, PROCESS_COLUMNS - 1));
}

void CProcessPane::RestartTimer() {
    m_pTimer->stop();
    if (!Settings().m_bAutoRefresh) {
        return;
    }
    // The period wraps at 32 bits and is kept between the least and the most that a window timer has.
    const std::uint32_t period = static_cast<std::uint32_t>(Settings().m_nRefreshRate) * 1000U;
    m_pTimer->start(static_cast<int>(std::clamp(period, 10U, 0x7FFFFFFFU)));
}

bool CProcessPane::IsTimerRunning() const { return m_pTimer->isActive(); }

int CProcessPane::TimerPeriod() const { return m_pTimer->interval(); }

int CProcessPane::LayOutAboveList(int width) {
    const int toolBar = m_pToolBar->sizeHint().height();
    m_pToolBar->setGeometry(0, 0, width, toolBar);
    return toolBar;
}

} // namespace carvelot
