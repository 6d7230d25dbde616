// ProcessPane.h - the pane "JDE Processes": the running JDE processes and their tracing.
#pragma once

#include "live/ProcessList.h"
#include "ui/kit/ListPane.h"

#include <QToolBar>

#include <functional>
#include <map>

class QTimer;

namespace carvelot {

class CProcessPane : public CListPane<ProcessListRow, CProcessList>, private IProcessHost {
    Q_OBJECT

public:
    CProcessPane();

    CProcessList& Processes() { return m_rows; }
    QToolBar& ToolBar() { return *m_pToolBar; }

    // Rebuilds the list. Ticks of the timer that come during it are ignored.
    void RefreshProcessList();
    // Stops the timer and starts it again when the settings ask for it.
    void RestartTimer();
    bool IsTimerRunning() const;
    int TimerPeriod() const; // milliseconds

    // The wish to analyse a process, and the companion library's entry point, or null.
    std::function<void(const std::string& imageName, const std::string& debugFile, std::int32_t process)>
        m_fnAnalyze;
    std::function<FGetSetProcInfo()> m_fnGetSetProcInfo;

    // What a refresh does, and where the processes come from; replaceable by tests.
    std::function<void()> m_fnRefresh;
    std::function<bool(std::vector<platform::ProcessEntry>&)> m_fnEnumerateProcesses;

protected:
    int LayOutAboveList(int width) override;

private:
    void ShowMessage(std::string_view text) override;
    bool EnumerateProcesses(std::vector<platform::ProcessEntry>& processes) override;
    const std::vector<tagTraceApp>& TraceApps() const override;
    FGetSetProcInfo GetSetProcInfo() const override;
    void AnalyzeProcess(const std::string& imageName, const std::string& debugFile,
                        std::int32_t process) override;
    void BeginRebuild() override;
    void EndRebuild() override;
    void RowChanged(std::size_t row) override;

    void SetCommand(int id, std::function<void()> run);

    QToolBar* m_pToolBar; // the CProcessPaneToolBar
    QTimer* m_pTimer;
    bool m_bRefreshing = false;
    bool m_bRebuilding = false; // the list's selection is not the user's
    std::map<int, QAction*> m_mapActions;
};

} // namespace carvelot
