#include "live/ui/ProcessPane.h"

#include "resources/ui/Icons.h"
#include "shell/Commands.h"
#include "shell/ui/CarvelotApp.h"

#include <QAction>
#include <QScopedValueRollback>
#include <QTimer>

#include <algorithm>
#include <cstdint>

namespace carvelot {

namespace {

constexpr CColumnSpec kColumns[] = {
    {"Process", 100}, {"Image Name", 120}, {"Tracing", 100}, {"Debug File", 300}, {"File Size (Bytes)", 100},
    {"User", 100},    {"Env.", 100},
};

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

CProcessPane::CProcessPane() : CDockablePane(tr("JDE Processes"), QStringLiteral("ProcessPane"), {100, 200}) {
    m_pToolBar = new QToolBar(Client());
    m_pToolBar->setMovable(false);
    m_pToolBar->setIconSize({16, 16});
    m_pToolBar->setAccessibleName(tr("JDE process commands"));
    for (const CButton& button : kButtons) {
        QAction* pAction = m_pToolBar->addAction(CommandIcon(button.m_nId), tr(button.m_pszText));
        pAction->setStatusTip(tr(button.m_pszStatusTip));
        pAction->setToolTip(tr(button.m_pszToolTip));
        pAction->setData(button.m_nId);
        pAction->setEnabled(false);
        m_mapActions[button.m_nId] = pAction;
    }

    m_pList = new CListCtrl(kColumns, windowTitle(), Client());
    m_pList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_pList->Model().SetSortable(false);

    m_pTimer = new QTimer(this);
    connect(m_pTimer, &QTimer::timeout, this, &CProcessPane::RefreshProcessList);
    RestartTimer();
}

void CProcessPane::SetCommand(int nId, std::function<void()> fnRun) {
    QAction* pAction = m_mapActions.at(nId);
    pAction->disconnect(this);
    connect(pAction, &QAction::triggered, this, [fnRun = std::move(fnRun)] { fnRun(); });
    pAction->setEnabled(true);
}

void CProcessPane::RefreshProcessList() {
    if (m_bRefreshing || !m_fnRefresh)
        return;
    const QScopedValueRollback refreshing(m_bRefreshing, true);
    m_fnRefresh();
}

void CProcessPane::RestartTimer() {
    m_pTimer->stop();
    if (!theApp().m_bAutoRefresh)
        return;
    // The period wraps at 32 bits and is kept between the least and the most that a window timer has.
    const std::uint32_t nPeriod = static_cast<std::uint32_t>(theApp().m_nRefreshRate) * 1000U;
    m_pTimer->start(static_cast<int>(std::clamp(nPeriod, 10U, 0x7FFFFFFFU)));
}

bool CProcessPane::IsTimerRunning() const { return m_pTimer->isActive(); }

int CProcessPane::TimerPeriod() const { return m_pTimer->interval(); }

void CProcessPane::OnSize(int nWidth, int nHeight) {
    const int nToolBar = m_pToolBar->sizeHint().height();
    m_pToolBar->setGeometry(0, 0, nWidth, nToolBar);
    m_pList->setGeometry(0, nToolBar, nWidth, std::max(0, nHeight - nToolBar));
}

} // namespace carvelot
