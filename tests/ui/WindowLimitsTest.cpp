// What the window shows at its limits, and what stays of sessions that were opened and closed in it.
#include "ui/SessionSupport.h"

#include "ui/app/CarvelotApp.h"
#include "ui/app/FrameToolBars.h"
#include "ui/kit/StoredLayout.h"
#include "ui/kit/ToolBar.h"

#include <QAbstractItemModelTester>
#include <QFile>

using namespace carvelot;
using namespace carvelot::test;

namespace {

std::vector<std::string> Log() {
    return DebugLog({
        DebugLine("10:00:00.000001", "Calling Business function A from Level 1 (BSFNLevel = 1)", "5/6"),
        DebugLine("10:00:00.000002", "IN->[  1] first", "5/6"),
        DebugLine("10:00:00.000004", "SELECT X FROM T1", "5/6"),
        DebugLine("10:00:02.500004", "Exiting DBPerformRequest", "5/6"),
        DebugLine("10:00:02.500006", "Return value is 2 for A. (BSFNLevel = 1)", "5/6"),
        DebugLine("10:00:02.500007", "Entering jdeCacheInit - Name:[Orders]", "5/6"),
        DebugLine("10:00:02.500008", "Created new cache - hCache:[1]", "5/6"),
        DebugLine("10:00:02.500009", "hCache:[1] Nm:[xOrders]", "5/6"),
    });
}

std::string Steps(int count) {
    std::string bytes = TestSession::Joined(DebugLog({}));
    for (int n = 0; n < count; ++n) {
        bytes += DebugLine("10:00:07.000000", "On step " + std::to_string(n), "12/3") + "\n";
    }
    return bytes;
}

// How many levels the tree has, and how many rows its last level.
std::pair<int, int> DepthAndRows(const QAbstractItemModel& model) {
    QModelIndex index;
    int depth = 0;
    int rows = 0;
    while (model.rowCount(index) > 0) {
        rows = model.rowCount(index);
        index = model.index(0, 0, index);
        ++depth;
    }
    return {depth, rows};
}

qint64 OpenFiles() {
#ifdef Q_OS_WIN
    return 0; // there is no list of them, and that of Wine's host holds Wine's own
#else
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size();
#endif
}

} // namespace

class WindowLimitsTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_pRun = std::make_unique<CSessionRun>(); }
    void cleanup() { m_pRun.reset(); }

    void aNodeShowsTheFirst260CharactersOfItsText() {
        const std::string stamp = "10:00:00.000000    ";
        for (const std::size_t length : {259U, 260U, 261U, 8000U}) {
            const std::string text = "On " + std::string(length - stamp.size() - 3, 'x');
            CChildFrame* child = m_pRun->Open(QStringLiteral("long%1.log").arg(length),
                                              DebugLog({DebugLine("10:00:00.000000", text, "5/6")}));
            QVERIFY(child != nullptr);
            Select(child, "Thread - 6");
            const CDetailTreeModel& model = child->DetailView().Model();
            const std::string whole = stamp + text;
            QCOMPARE(model.index(0, 0, {}).data().toString(), QString::fromStdString(whole.substr(0, 260)));
            Click(child->DetailView(), model.index(0, 0, {}));
            QCOMPARE(m_pRun->Frame().m_wndRawDataPane.Edit().toPlainText(), QString::fromStdString(text));
        }
    }

    void aTreeHas500LevelsAndTheNextOnesNodesStandBesideTheLast() {
        for (const auto& [steps, depth, last] :
             std::initializer_list<std::tuple<int, int, int>>{{499, 499, 1}, {500, 500, 1}, {501, 500, 2}}) {
            CChildFrame* child =
                m_pRun->Open(m_pRun->WriteBytes(QStringLiteral("deep%1.log").arg(steps), Steps(steps)));
            QVERIFY(child != nullptr);
            Select(child, "Thread - 3");
            CDetailTreeModel& model = child->DetailView().Model();
            const QAbstractItemModelTester tester(&model,
                                                  QAbstractItemModelTester::FailureReportingMode::QtTest);
            QCOMPARE(DepthAndRows(model), std::pair(depth, last));
            child->CloseWindow();
            CSessionRun::Settle();
        }
    }

    void aToolBarTakesTheFirst200OfItsStoredButtons() {
        CToolBar* toolBar = m_pRun->Frame().Bars().New(QStringLiteral("Many"));
        for (const int count : {199, 200, 201, 5000}) {
            const QString stored = QStringList(count, QStringLiteral("0")).join(QLatin1Char(','));
            toolBar->SetCommands(ReadCommands(ToUtf8(stored), kMostToolBarCommands));
            QCOMPARE(std::ssize(toolBar->Commands()), std::min(count, 200));
        }
    }

    void aPictureOfMoreThan819200BytesGivesNoButtonImages() {
        QImage strip(48, 16, QImage::Format_RGB32);
        strip.fill(Qt::red);
        const QString path = m_pRun->Path(QStringLiteral("images.bmp"));
        QVERIFY(strip.save(path, "BMP"));
        CToolBarImages images;
        QVERIFY(QFile::resize(path, 819200));
        QVERIFY(images.Load(path));
        QCOMPARE(images.Count(), 3);
        QVERIFY(QFile::resize(path, 819201));
        QVERIFY(!CToolBarImages().Load(path));
    }

    void theRefreshPeriodWrapsAt32BitsAndStaysWithinATimersReach() {
        CProcessPane& pane = m_pRun->Frame().m_wndProcessPane;
        theApp().m_bAutoRefresh = true;
        for (const auto& [rate, period] : std::initializer_list<std::pair<std::int32_t, int>>{
                 {0, 10},
                 {1, 1000},
                 {2147483, 2147483000},
                 {2147484, 2147483647},
                 {4294967, 2147483647},
                 {4294968, 704}, // 4294968000 less 2^32
                 {-1, 2147483647},
             }) {
            theApp().m_nRefreshRate = rate;
            pane.RestartTimer();
            QCOMPARE(pane.TimerPeriod(), period);
        }
        theApp().m_bAutoRefresh = false;
        pane.RestartTimer();
    }

    void aLogThatDoesNotLoadLeavesNoWindowBehind() {
        const auto widgets = QApplication::allWidgets().size();
        const auto files = OpenFiles();
        for (int n = 0; n < 20; ++n) {
            QVERIFY(m_pRun->Open(m_pRun->WriteBytes(QStringLiteral("none.log"), "no log\n")) == nullptr);
            QVERIFY(m_pRun->Open(m_pRun->Path(QStringLiteral("missing.log"))) == nullptr);
            CSessionRun::Settle();
        }
        QCOMPARE(m_pRun->m_user.m_listMessages.size(), 40);
        QCOMPARE(QApplication::allWidgets().size(), widgets);
        QCOMPARE(OpenFiles(), files);
    }

    void twoHundredSessionsOpenedAndClosedLeaveNothingBehind() {
        const QString log = m_pRun->Write(QStringLiteral("a.log"), Log());
        const QString jas =
            m_pRun->Write(QStringLiteral("jas.log"),
                          JASLog({
                              JASLine("09:00:01,000", "ANNIKA", "Branch record invalid", "WARN  "),
                              JASLine("09:00:02,000", "TOMAS", "SELECT X FROM T1"),
                          }));
        CMainFrame& frame = m_pRun->Frame();
        QList<QPointer<QObject>> parts;
        const auto openAndClose = [&](int session) {
            CChildFrame* child = m_pRun->Open(session % 2 == 0 ? log : jas);
            QVERIFY(child != nullptr);
            Select(child, session % 2 == 0 ? "Thread - 6" : "TOMAS");
            QVERIFY(child->DetailView().Model().rowCount({}) > 0);
            QCOMPARE(frame.m_wndSQLPane.List().Model().rowCount({}), 1);
            for (QObject* part : std::initializer_list<QObject*>{
                     child, &child->SessionDocument(), &child->ThreadView(), &child->ThreadView().Model(),
                     &child->DetailView(), &child->DetailView().Model()}) {
                parts << part;
            }
            child->CloseWindow();
            CSessionRun::Settle();
            QCOMPARE(frame.m_wndSQLPane.List().Model().rowCount({}), 0);
        };
        const auto count = [&] {
            return std::tuple(frame.findChildren<QObject*>().size(), QApplication::allWidgets().size(),
                              qApp->findChildren<QObject*>().size(), frame.ClientArea().Children().size(),
                              OpenFiles());
        };
        for (int n = 0; n < 4; ++n) {
            openAndClose(n);
        }
        const auto before = count();
        for (int n = 4; n < 200; ++n) {
            openAndClose(n);
            if (QTest::currentTestFailed()) {
                return;
            }
        }
        QVERIFY(count() == before);
        QCOMPARE(parts.size(), 200 * 6);
        for (const QPointer<QObject>& part : parts) {
            QVERIFY(part.isNull());
        }
        QCOMPARE(frame.m_wndBSFNPane.List().Model().rowCount({}), 0);
        QCOMPARE(frame.m_wndTimingGapsPane.List().Model().rowCount({}), 0);
    }

private:
    std::unique_ptr<CSessionRun> m_pRun;
};

QTEST_MAIN(WindowLimitsTest)
#include "WindowLimitsTest.moc"
