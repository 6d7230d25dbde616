// What an older version left behind is read: each thing stands as it was arranged, and what is new stands
// where it does at first.
#include "ui/UiSupport.h"

#include "platform/Registry.h"
#include "ui/app/FrameToolBars.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/StoredLayout.h"
#include "ui/kit/ToolBar.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QStatusBar>
#include <QToolBar>

using namespace carvelot;
using namespace carvelot::test;

namespace {

struct OlderPane {
    const char* m_pszName;
    Qt::DockWidgetArea m_nArea;
    bool m_bClosed = false;
};

// The state that a window with these panes leaves. Panes of one side are tabs of one group, the last in
// front.
std::string OlderState(const std::vector<OlderPane>& panes, const std::vector<const char*>& toolBars,
                       int version = kLayoutVersion) {
    QMainWindow window;
    window.setCentralWidget(new QWidget);
    window.setDockOptions(QMainWindow::AllowNestedDocks | QMainWindow::AllowTabbedDocks);
    for (const char* name : toolBars) {
        window.addToolBar(QLatin1String(name))->setObjectName(QLatin1String(name));
    }
    QMap<Qt::DockWidgetArea, QDockWidget*> first;
    for (const OlderPane& pane : panes) {
        auto* dock = new QDockWidget(&window);
        dock->setObjectName(QLatin1String(pane.m_pszName));
        dock->setWidget(new QWidget);
        window.addDockWidget(pane.m_nArea, dock);
        if (first.contains(pane.m_nArea)) {
            window.tabifyDockWidget(first[pane.m_nArea], dock);
        } else {
            first[pane.m_nArea] = dock;
        }
    }
    window.resize(1240, 800);
    window.show();
    (void)QTest::qWaitForWindowExposed(&window);
    for (const OlderPane& pane : panes) {
        auto* dock = window.findChild<QDockWidget*>(QLatin1String(pane.m_pszName));
        dock->setVisible(!pane.m_bClosed);
        dock->raise();
    }
    QCoreApplication::processEvents();
    return Seal(window.saveState(version));
}

const std::vector<OlderPane> kAllPanes = {
    {"ProcessPane", Qt::BottomDockWidgetArea},   {"SQLPane", Qt::BottomDockWidgetArea},
    {"TimingGapsPane", Qt::RightDockWidgetArea}, {"FindPane", Qt::LeftDockWidgetArea},
    {"LongTasksPane", Qt::BottomDockWidgetArea}, {"RawDataPane", Qt::BottomDockWidgetArea, true},
    {"CachePane", Qt::BottomDockWidgetArea},     {"ErrorPane", Qt::BottomDockWidgetArea},
    {"BSFNPane", Qt::BottomDockWidgetArea}};

} // namespace

class OlderLayoutTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_pFolder = std::make_unique<QTemporaryDir>();
        UseSettingsStore(ToUtf8(m_pFolder->filePath(QStringLiteral("registry.ini"))));
    }

    void theNamesOfPanesAndToolBarsAreThoseOfTheFirstVersion() {
        const CFakeInterface user;
        const CRun run(*m_pFolder);
        QStringList names;
        for (const CDockablePane* pane : run.Frame().Panes()) {
            names << pane->objectName();
        }
        QStringList first;
        for (const OlderPane& pane : kAllPanes) {
            first << QLatin1String(pane.m_pszName);
        }
        QCOMPARE(names, first);
        QCOMPARE(run.Frame().Bars().All().at(0)->objectName(), QStringLiteral("StandardToolBar"));
        QCOMPARE(run.Frame().Bars().All().at(1)->objectName(), QStringLiteral("CacheToolBar"));
    }

    // The first version knew no folded panes, no kept widths and no folders of dialogs: their values are
    // absent.
    void theFirstVersionsWorkspaceIsTaken() {
        const CFakeInterface user;
        WriteWorkspaceString("Layout", OlderState(kAllPanes, {"StandardToolBar", "CacheToolBar"}));
        WriteWorkspaceInt("StatusBar", 0);
        WriteWorkspaceInt("ToolTips", 0);
        WriteWorkspaceString("ToolBarStandard", "57601,0,57600");
        WriteWorkspaceString("ToolBarCache", "");
        WriteWorkspaceString("UserToolBar" + std::to_string(ID_TOOLBAR_USER_FIRST), "Mine|57601,0,57607");
        WriteWorkspaceString("UserImages", "57601=0");
        WriteWorkspaceInt("RecentlyUsedMenus", 0);
        WriteWorkspaceInt("FullMenusAfterDelay", 0);
        WriteWorkspaceString("UsedCommands", "57600,57601");
        WriteWorkspaceInt("ApplicationLook", 208);
        {
            const CRun run(*m_pFolder);
            CheckPlaces(run.Frame());
            QVERIFY(run.Frame().statusBar()->isHidden());
            QCOMPARE(run.Frame().statusBar()->currentMessage(), QString());
            QCOMPARE(run.Frame().Bars().All().size(), 3);
            QCOMPARE(run.Frame().Bars().All().at(0)->Commands(), (std::vector<int>{57601, 0, 57600}));
            QCOMPARE(run.Frame().Bars().All().at(2)->windowTitle(), QStringLiteral("Mine"));
            QCOMPARE(theApp().m_nAppLook, 208);
            QVERIFY(run.Frame().AutoHide().Folds().empty());
        }
        // Nothing was lost on the way.
        QCOMPARE(GetWorkspaceInt("StatusBar", 1), 0);
        QCOMPARE(GetWorkspaceInt("ToolTips", 1), 0);
        QCOMPARE(GetWorkspaceString("ToolBarStandard", ""), std::string("57601,0,57600"));
        QCOMPARE(GetWorkspaceString("UserToolBar" + std::to_string(ID_TOOLBAR_USER_FIRST), ""),
                 std::string("Mine|57601,0,57607"));
        QCOMPARE(GetWorkspaceString("UserImages", ""), std::string("57601=0"));
        QCOMPARE(GetWorkspaceInt("RecentlyUsedMenus", 1), 0);
        QCOMPARE(GetWorkspaceInt("FullMenusAfterDelay", 1), 0);
        QCOMPARE(GetWorkspaceString("UsedCommands", ""), std::string("57600,57601"));
        QVERIFY(platform::TakeSetAside().empty());
    }

    void panesThatAnOlderVersionHadNotStandWhereTheyDoAtFirst_data() {
        QTest::addColumn<QStringList>("missing");
        QTest::newRow("one of a group") << QStringList{"ErrorPane"};
        QTest::newRow("the first and the last") << QStringList{"ProcessPane", "BSFNPane"};
        QTest::newRow("the whole group") << QStringList{
            "ProcessPane", "SQLPane", "LongTasksPane", "RawDataPane", "CachePane", "ErrorPane", "BSFNPane"};
    }

    void panesThatAnOlderVersionHadNotStandWhereTheyDoAtFirst() {
        QFETCH(QStringList, missing);
        const CFakeInterface user;
        std::vector<OlderPane> panes = kAllPanes;
        std::erase_if(panes,
                      [&](const OlderPane& pane) { return missing.contains(QLatin1String(pane.m_pszName)); });
        WriteWorkspaceString("Layout", OlderState(panes, {"StandardToolBar"}));
        for (int start = 0; start < 2; ++start) {
            const CRun run(*m_pFolder);
            CMainFrame& frame = run.Frame();
            QCOMPARE(frame.dockWidgetArea(&frame.m_wndFindPane), Qt::LeftDockWidgetArea);
            QCOMPARE(frame.dockWidgetArea(&frame.m_wndTimingGapsPane), Qt::RightDockWidgetArea);
            QList<QDockWidget*> tabs = frame.tabifiedDockWidgets(frame.Panes().constFirst());
            tabs << frame.Panes().constFirst();
            for (CDockablePane* pane : frame.Panes()) {
                if (pane == &frame.m_wndFindPane || pane == &frame.m_wndTimingGapsPane) {
                    continue;
                }
                const bool closed = pane == &frame.m_wndRawDataPane && !missing.contains(pane->objectName());
                QVERIFY2(pane->isHidden() == closed, qPrintable(pane->objectName()));
                QVERIFY2(!pane->isFloating(), qPrintable(pane->objectName()));
                QCOMPARE(frame.dockWidgetArea(pane), Qt::BottomDockWidgetArea);
                QVERIFY2(closed || tabs.contains(pane),
                         qPrintable(pane->objectName() + " is no tab of the group"));
            }
            QVERIFY(frame.Bars().All().at(1)->isVisible());
            QCOMPARE(frame.statusBar()->currentMessage(), QString());
        }
    }

    void panesAndToolBarsThatThereAreNoMoreDisturbNoOther() {
        const CFakeInterface user;
        std::vector<OlderPane> panes = kAllPanes;
        panes.insert(panes.begin() + 2, {"GonePane", Qt::BottomDockWidgetArea});
        panes.push_back({"OtherGonePane", Qt::TopDockWidgetArea});
        WriteWorkspaceString("Layout", OlderState(panes, {"GoneToolBar", "StandardToolBar", "CacheToolBar"}));
        WriteWorkspaceString("AutoHide", "top:120:OtherGonePane;left:240:GonePane,FindPane");
        const CRun run(*m_pFolder);
        QVERIFY(run.Frame().AutoHide().IsFolded(run.Frame().m_wndFindPane));
        run.Frame().AutoHide().PinAll();
        CheckPlaces(run.Frame());
        QCOMPARE(run.Frame().statusBar()->currentMessage(), QString());
    }

    void aLayoutOfAVersionThatIsNotKnownIsKeptAndNotTaken() {
        const CFakeInterface user;
        std::string layout = OlderState(kAllPanes, {"StandardToolBar"}, 2);
        WriteWorkspaceString("Layout", layout);
        { const CRun run(*m_pFolder); }
        QCOMPARE(GetWorkspaceString("Layout.damaged", ""), layout);
        (void)platform::TakeSetAside();
    }

private:
    static void CheckPlaces(CMainFrame& frame) {
        for (const OlderPane& older : kAllPanes) {
            const auto* pane = frame.findChild<CDockablePane*>(QLatin1String(older.m_pszName));
            QVERIFY2(pane != nullptr, older.m_pszName);
            QVERIFY2(frame.dockWidgetArea(const_cast<CDockablePane*>(pane)) == older.m_nArea,
                     older.m_pszName);
            QVERIFY2(pane->isHidden() == older.m_bClosed, older.m_pszName);
        }
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
};

QTEST_MAIN(OlderLayoutTest)
#include "OlderLayoutTest.moc"
