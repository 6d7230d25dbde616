#include "soak/WindowState.h"

#include "ui/app/CarvelotApp.h"
#include "ui/app/FrameToolBars.h"
#include "ui/app/MainFrame.h"
#include "ui/app/StatusBar.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/DockablePane.h"
#include "ui/kit/PersonalMenu.h"
#include "ui/kit/StoredLayout.h"
#include "ui/kit/Text.h"
#include "ui/kit/ToolBar.h"

namespace carvelot::soak {

namespace {

QString Size(const QSize& size) { return QStringLiteral("%1x%2").arg(size.width()).arg(size.height()); }

QString PaneState(CMainFrame& frame, CDockablePane& pane) {
    const QString name = QStringLiteral("pane %1: ").arg(pane.objectName());
    if (frame.AutoHide().IsFolded(pane)) {
        return name + QStringLiteral("folded away");
    }
    if (pane.isHidden()) {
        return name + QStringLiteral("closed");
    }
    // Panes that float together stand in a window of the toolkit's.
    if (pane.isFloating()) {
        return name + QStringLiteral("floats, ") + Size(pane.size());
    }
    QStringList others;
    for (const QDockWidget* other : frame.tabifiedDockWidgets(&pane)) {
        others << other->objectName();
    }
    others.sort();
    return name + QStringLiteral("%1, with [%2], %3")
                      .arg(QLatin1String(EdgeName(frame.dockWidgetArea(&pane))), others.join(u' '),
                           pane.IsInFront() ? QStringLiteral("in front, ") + Size(pane.size())
                                            : QStringLiteral("behind"));
}

} // namespace

QStringList StateOf(CMainFrame& frame) {
    QStringList lines;
    lines << QStringLiteral("window: ") +
                 (frame.isMaximized() ? QStringLiteral("maximized") : Size(frame.size()));
    for (CDockablePane* const pane : frame.Panes()) {
        lines << PaneState(frame, *pane);
    }
    lines << QStringLiteral("folds: ") + ToQString(WriteFolds(frame.AutoHide().Folds()));
    for (const CToolBar* const bar : frame.Bars().All()) {
        lines << QStringLiteral("toolbar %1 \"%2\": area %3, %4, %5, %6")
                     .arg(bar->objectName(), bar->windowTitle())
                     .arg(frame.toolBarArea(bar))
                     .arg(bar->isHidden() ? QLatin1String("hidden") : QLatin1String("shown"),
                          bar->isFloating() ? QLatin1String("floats") : QLatin1String("docked"),
                          ToQString(WriteCommands(bar->Commands())));
    }
    lines << QStringLiteral("tips: %1").arg(frame.Bars().ShowsToolTips());
    lines << QStringLiteral("status bar: %1").arg(!frame.StatusBar().isHidden());
    const CMenuHabits& habits = frame.MenuHabits();
    QStringList used;
    for (const int id : habits.m_setUsed) {
        used << QString::number(id);
    }
    lines << QStringLiteral("menus: %1 %2 used %3")
                 .arg(habits.m_bRecentlyUsedMenus)
                 .arg(habits.m_bFullMenusAfterDelay)
                 .arg(used.join(u' '));
    const CCarvelotApp& app = theApp();
    lines << QStringLiteral("look: %1").arg(app.m_nAppLook);
    lines << QStringLiteral("refresh: %1 %2").arg(app.m_bAutoRefresh).arg(app.m_nRefreshRate);
    lines << QStringLiteral("threshold: %1").arg(static_cast<double>(app.m_fThreshold));
    for (const tagTraceApp& trace : app.m_traceApps) {
        lines << QStringLiteral("application %1: %2").arg(ToQString(trace.m_strName)).arg(trace.m_bEnabled);
    }
    for (std::size_t n = 0; n < app.m_recentFiles.m_listPaths.size(); ++n) {
        lines << QStringLiteral("recent %1: %2").arg(n).arg(ToQString(app.m_recentFiles.m_listPaths[n]));
    }
    return lines;
}

QStringList Differences(const QStringList& before, const QStringList& after) {
    QStringList lines;
    for (const QString& line : before) {
        if (!after.contains(line)) {
            lines << u'-' + line;
        }
    }
    for (const QString& line : after) {
        if (!before.contains(line)) {
            lines << u'+' + line;
        }
    }
    return lines;
}

} // namespace carvelot::soak
