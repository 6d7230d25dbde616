// ProcessPane.h - the pane "JDE Processes": the running JDE processes and their tracing.
#pragma once

#include "analysis/panes/ui/DockablePane.h"
#include "analysis/panes/ui/ListCtrl.h"

#include <QToolBar>

#include <functional>
#include <map>

class QTimer;

namespace carvelot {

class CProcessPane : public CDockablePane {
    Q_OBJECT

public:
    CProcessPane();

    CListCtrl& List() { return *m_pList; }
    QWidget* MainControl() const override { return m_pList; }

    // Rebuilds the list. Ticks of the timer that come during it are ignored.
    void RefreshProcessList();
    // Stops the timer and starts it again when the settings ask for it.
    void RestartTimer();
    bool IsTimerRunning() const;
    int TimerPeriod() const; // milliseconds

    // Gives a button its work and enables it.
    void SetCommand(int nId, std::function<void()> fnRun);

    // What a refresh does; set by the part that knows the processes.
    std::function<void()> m_fnRefresh;

protected:
    void OnSize(int nWidth, int nHeight) override;

private:
    QToolBar* m_pToolBar; // the CProcessPaneToolBar
    CListCtrl* m_pList;
    QTimer* m_pTimer;
    bool m_bRefreshing = false;
    std::map<int, QAction*> m_mapActions;
};

} // namespace carvelot
