// What a user arranged stands so after the next start.
#include "ui/UiSupport.h"

#include "ui/app/FrameToolBars.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/ToolBar.h"

#include <QTabBar>

#include <functional>

using namespace carvelot;
using namespace carvelot::test;

namespace {

void Settle() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

QString Text(const QRect& rect) {
    return QStringLiteral("%1,%2 %3x%4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
}

// Where each pane is, as a person sees it; the window's size, a line a pane, then the tabs of each group.
QStringList Arrangement(CMainFrame& frame) {
    QStringList lines(QStringLiteral("window: %1x%2").arg(frame.width()).arg(frame.height()));
    for (CDockablePane* pane : frame.Panes()) {
        QString place;
        if (frame.AutoHide().IsFolded(*pane)) {
            place = QStringLiteral("folded away");
        } else if (pane->isHidden()) {
            place = QStringLiteral("closed");
        } else if (pane->isFloating()) {
            place = QStringLiteral("floats at ") + Text(pane->geometry());
        } else if (pane->IsInFront()) {
            place = QStringLiteral("%1, %2").arg(frame.dockWidgetArea(pane)).arg(Text(pane->geometry()));
        } else {
            place = QStringLiteral("%1, behind").arg(frame.dockWidgetArea(pane));
        }
        lines << QStringLiteral("%1: %2").arg(pane->windowTitle(), place);
    }
    QStringList groups;
    for (const QTabBar* bar : frame.findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
        QStringList tabs;
        for (int n = 0; bar->isVisible() && n < bar->count(); ++n) {
            tabs << bar->tabText(n);
        }
        if (!tabs.isEmpty()) {
            groups << tabs.join(QLatin1Char('|'));
        }
    }
    groups.sort();
    return lines + groups + QStringList(ToQString(WriteFolds(frame.AutoHide().Folds())));
}

void Tabify(CMainFrame& frame, std::initializer_list<CDockablePane*> panes, Qt::DockWidgetArea area) {
    CDockablePane* before = nullptr;
    for (CDockablePane* pane : panes) {
        frame.addDockWidget(area, pane);
        if (before != nullptr) {
            frame.tabifyDockWidget(before, pane);
        }
        before = pane;
    }
    Settle();
}

using FArrange = std::function<void(CMainFrame&)>;

const std::vector<std::pair<const char*, FArrange>>& Arrangements() {
    static const std::vector<std::pair<const char*, FArrange>> list = {
        {"taller, another tab in front",
         [](CMainFrame& f) {
             f.resizeDocks({&f.m_wndBSFNPane}, {331}, Qt::Vertical);
             f.m_wndFindPane.raise();
         }},
        {"all at the right, narrow",
         [](CMainFrame& f) {
             Tabify(f,
                    {&f.m_wndProcessPane, &f.m_wndSQLPane, &f.m_wndTimingGapsPane, &f.m_wndFindPane,
                     &f.m_wndLongTasksPane, &f.m_wndRawDataPane, &f.m_wndCachePane, &f.m_wndErrorPane,
                     &f.m_wndBSFNPane},
                    Qt::RightDockWidgetArea);
             f.resizeDocks({&f.m_wndProcessPane}, {287}, Qt::Horizontal);
             f.m_wndProcessPane.raise();
         }},
        {"two groups",
         [](CMainFrame& f) {
             Tabify(f, {&f.m_wndFindPane, &f.m_wndErrorPane, &f.m_wndRawDataPane}, Qt::LeftDockWidgetArea);
             f.resizeDocks({&f.m_wndFindPane}, {263}, Qt::Horizontal);
             f.resizeDocks({&f.m_wndBSFNPane}, {177}, Qt::Vertical);
             f.m_wndErrorPane.raise();
             f.m_wndSQLPane.raise();
         }},
        {"something at each edge",
         [](CMainFrame& f) {
             Tabify(f, {&f.m_wndFindPane}, Qt::LeftDockWidgetArea);
             Tabify(f, {&f.m_wndErrorPane, &f.m_wndLongTasksPane}, Qt::RightDockWidgetArea);
             Tabify(f, {&f.m_wndRawDataPane}, Qt::TopDockWidgetArea);
             f.resizeDocks({&f.m_wndFindPane, &f.m_wndErrorPane}, {201, 307}, Qt::Horizontal);
             f.resizeDocks({&f.m_wndRawDataPane, &f.m_wndBSFNPane}, {122, 213}, Qt::Vertical);
             f.m_wndErrorPane.raise();
             f.m_wndTimingGapsPane.raise();
         }},
        {"side by side",
         [](CMainFrame& f) {
             f.addDockWidget(Qt::BottomDockWidgetArea, &f.m_wndRawDataPane, Qt::Horizontal);
             Settle();
             f.resizeDocks({&f.m_wndBSFNPane, &f.m_wndRawDataPane}, {731, 464}, Qt::Horizontal);
             f.resizeDocks({&f.m_wndBSFNPane}, {191}, Qt::Vertical);
             f.m_wndCachePane.raise();
         }},
        {"one above the other",
         [](CMainFrame& f) {
             f.addDockWidget(Qt::LeftDockWidgetArea, &f.m_wndFindPane);
             f.addDockWidget(Qt::LeftDockWidgetArea, &f.m_wndErrorPane, Qt::Vertical);
             Settle();
             f.resizeDocks({&f.m_wndFindPane, &f.m_wndErrorPane}, {301, 153}, Qt::Vertical);
             f.resizeDocks({&f.m_wndFindPane}, {333}, Qt::Horizontal);
             f.m_wndLongTasksPane.raise();
         }},
        {"folded away below, docked beside",
         [](CMainFrame& f) {
             Tabify(f, {&f.m_wndErrorPane, &f.m_wndLongTasksPane}, Qt::RightDockWidgetArea);
             f.resizeDocks({&f.m_wndErrorPane}, {345}, Qt::Horizontal);
             f.resizeDocks({&f.m_wndBSFNPane}, {222}, Qt::Vertical);
             f.m_wndErrorPane.raise();
             Settle();
             f.AutoHide().Fold(f.m_wndBSFNPane);
         }},
        {"folded away at three edges",
         [](CMainFrame& f) {
             Tabify(f, {&f.m_wndFindPane}, Qt::LeftDockWidgetArea);
             Tabify(f, {&f.m_wndErrorPane, &f.m_wndLongTasksPane}, Qt::RightDockWidgetArea);
             Tabify(f, {&f.m_wndRawDataPane}, Qt::TopDockWidgetArea);
             f.resizeDocks({&f.m_wndFindPane, &f.m_wndErrorPane}, {211, 317}, Qt::Horizontal);
             f.resizeDocks({&f.m_wndRawDataPane, &f.m_wndBSFNPane}, {132, 203}, Qt::Vertical);
             Settle();
             f.AutoHide().Fold(f.m_wndFindPane);
             f.AutoHide().Fold(f.m_wndRawDataPane);
             f.AutoHide().Fold(f.m_wndErrorPane);
             f.m_wndTimingGapsPane.raise();
         }},
        {"folded away in the smallest window",
         [](CMainFrame& f) {
             f.AutoHide().Fold(f.m_wndBSFNPane);
             Settle();
             f.resize(1, 1);
         }},
        {"the same without tool bars",
         [](CMainFrame& f) {
             f.AutoHide().Fold(f.m_wndBSFNPane);
             for (CToolBar* bar : f.Bars().All()) {
                 bar->hide();
             }
             Settle();
             f.resize(1, 1);
         }},
        {"one floats, one is closed",
         [](CMainFrame& f) {
             f.m_wndFindPane.raise();
             Settle();
             f.m_wndFindPane.setFloating(true);
             QVERIFY(QTest::qWaitForWindowExposed(&f.m_wndFindPane));
             f.m_wndFindPane.setGeometry(160, 140, 380, 220);
             Settle();
             f.m_wndErrorPane.close();
             f.resizeDocks({&f.m_wndBSFNPane}, {181}, Qt::Vertical);
             f.m_wndRawDataPane.raise();
         }},
        {"a tab moved, another window size",
         [](CMainFrame& f) {
             f.resize(900, 640);
             Settle();
             for (QTabBar* bar : f.findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
                 if (bar->isVisible()) {
                     bar->moveTab(8, 0);
                 }
             }
             f.resizeDocks({&f.m_wndBSFNPane}, {281}, Qt::Vertical);
             f.m_wndSQLPane.raise();
         }},
        {"maximized, a group higher than the window is otherwise",
         [](CMainFrame& f) {
             f.resize(500, 400);
             f.showMaximized();
             QTRY_VERIFY(f.width() > 600);
             Settle();
             f.resizeDocks({&f.m_wndBSFNPane}, {431}, Qt::Vertical);
             f.m_wndFindPane.raise();
         }},
    };
    return list;
}

} // namespace

class LayoutTest : public QObject {
    Q_OBJECT

private slots:
    void whatWasArrangedStandsSoAfterTheNextTwoStarts_data() {
        QTest::addColumn<int>("arrangement");
        for (std::size_t n = 0; n < Arrangements().size(); ++n) {
            QTest::newRow(Arrangements()[n].first) << static_cast<int>(n);
        }
    }

    void whatWasArrangedStandsSoAfterTheNextTwoStarts() {
        QFETCH(int, arrangement);
        CFakeInterface user;
        const QTemporaryDir folder;
        QStringList arranged;
        {
            const CRun run(folder);
            Settle();
            Arrangements()[static_cast<std::size_t>(arrangement)].second(run.Frame());
            Settle();
            arranged = Arrangement(run.Frame());
        }
        for (int start = 0; start < 2; ++start) {
            const CRun run(folder);
            Settle();
            Settle();
            QTRY_COMPARE(Arrangement(run.Frame()).join(QLatin1Char('\n')), arranged.join(QLatin1Char('\n')));
        }
    }
};

QTEST_MAIN(LayoutTest)
#include "LayoutTest.moc"
