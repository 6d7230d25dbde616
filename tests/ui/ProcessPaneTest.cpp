#include "ui/UiSupport.h"

#include "platform/Registry.h"
#include "ui/kit/Text.h"
#include "ui/session/SessionDocument.h"

#include <QFile>
#include <QHeaderView>
#include <QProcess>
#include <QToolBar>

#include <list>

using namespace carvelot;
using namespace carvelot::test;

// The pane over simulated JDE programs: real processes, which work on one order after the other.
// Programs of other runs on this machine stay out: ours bear names of our own.
static const std::string kFda = "fda" + std::to_string(QCoreApplication::applicationPid()) + ".exe";
static const std::string kExplorer = "oexplore" + std::to_string(QCoreApplication::applicationPid()) + ".exe";

class ProcessPaneTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_pFolder = std::make_unique<QTemporaryDir>();
        qputenv("CARVELOT_SIMULATOR_DIR", m_pFolder->path().toUtf8());
        UseLibraryFolder(CARVELOT_SIMULATOR "/libraries");
        UseSettingsStore(ToUtf8(m_pFolder->filePath(QStringLiteral("registry.ini"))));
        platform::CRegistryKey apps;
        QVERIFY(apps.Create(platform::ERegRoot::CurrentUser, kAppsKey));
        apps.SetDword(kFda, 1);
        apps.SetDword(kExplorer, 1);
        m_pUser = std::make_unique<CFakeInterface>();
        theApp().m_fnAddDocTemplates = AddDocTemplates;
    }
    void cleanup() {
        if (MainFrame() != nullptr) {
            MainFrame()->close();
        }
        theApp().ExitInstance();
        for (QProcess& process : m_listProcesses) {
            process.closeWriteChannel();
            process.waitForFinished();
        }
        m_listProcesses.clear();
        m_pUser.reset();
    }

    void columnsAndButtonsStandInTheirOrder() {
        StartProgram();
        const QStringList titles = {"Process",           "Image Name", "Tracing", "Debug File",
                                    "File Size (Bytes)", "User",       "Env."};
        const QList<int> widths = {100, 120, 100, 300, 100, 100, 100};
        for (int n = 0; n < 7; ++n) {
            QCOMPARE(Pane().List().Model().headerData(n, Qt::Horizontal, Qt::DisplayRole).toString(),
                     titles[n]);
            QCOMPARE(Pane().List().Model().ColumnWidth(n), widths[n]);
        }
        QCOMPARE(Pane().List().Model().columnCount(), 7);
        QStringList tips;
        for (const QAction* action : Pane().ToolBar().actions()) {
            tips << action->statusTip() + "|" + action->toolTip();
        }
        QCOMPARE(tips,
                 (QStringList{"Analyze selected process|Analyze", "Refresh Process List|Refresh",
                              "Toggle Debug Tracing On or Off|Toggle Tracing", "Clear Debug File|Clear File",
                              "Clears all caches for the process|Clear All Caches"}));
    }

    void theMainWindowsCreationFillsTheList() {
        const int number = StartProcess(kFda, {"--user", "MILA", "--environment", "JDV920"});
        StartProgram();
        QVERIFY(RowOf(number) >= 0);
        QCOMPARE(CellOf(number, COLUMN_IMAGE_NAME), ToQString(kFda));
        QCOMPARE(CellOf(number, COLUMN_TRACING), QStringLiteral("Off"));
        QCOMPARE(CellOf(number, COLUMN_USER), QStringLiteral("MILA"));
        QCOMPARE(CellOf(number, COLUMN_ENVIRONMENT), QStringLiteral("JDV920"));
        QCOMPARE(m_pUser->m_listMessages.count(QStringLiteral("Cannot Load Skelmond.DLL Error: 126")), 0);
    }

    void withoutTheLibraryAProcessIsListedAndNoBoxComesUpAtARefresh() {
        UseLibraryFolder(ToUtf8(m_pFolder->path()));
        const int number = StartProcess(kFda);
        StartProgram();
        QVERIFY(m_pUser->m_listMessages.contains(QStringLiteral("Cannot Load Skelmond.DLL Error: 126")));
        m_pUser->m_listMessages.clear();
        Button(ID_PROCESS_REFRESH);
        QCOMPARE(CellOf(number, COLUMN_DEBUG_FILE), QStringLiteral("Undetermined"));
        QCOMPARE(CellOf(number, COLUMN_FILE_SIZE), QStringLiteral("-1"));
        QVERIFY(m_pUser->m_listMessages.isEmpty());
        QVERIFY(!theApp().CacheLive(static_cast<std::uint32_t>(number), QStringLiteral("1A")));
        QVERIFY(m_pUser->m_listMessages.isEmpty());
    }

    void theTimerFindsProcessesThatComeAndGo() {
        StartProgram();
        theApp().m_bAutoRefresh = true;
        theApp().m_nRefreshRate = 0;
        Pane().RestartTimer();
        QCOMPARE(Pane().TimerPeriod(), 10);
        const int number = StartProcess(kFda);
        QTRY_VERIFY(RowOf(number) >= 0);
        m_listProcesses.back().kill();
        m_listProcesses.back().waitForFinished();
        QTRY_COMPARE(RowOf(number), -1);
    }

    void aRefreshKeepsTheSelectionByProcessAndTheFocusWithItsLastRow() {
        StartProgram();
        Fake({{11, kFda}, {12, kFda}, {13, kFda}});
        Button(ID_PROCESS_REFRESH);
        m_pUser->m_listMessages.clear();
        theApp().m_pfnGetSetProcInfo = nullptr;
        Click(0);
        Click(2, Qt::ControlModifier);
        Fake({{13, kFda}, {14, kFda}, {11, kFda}, {12, kFda}});
        Button(ID_PROCESS_REFRESH);
        QCOMPARE(Pane().List().SelectedRows(), (std::vector<int>{0, 2}));
        QCOMPARE(Pane().List().currentIndex().row(), 2);
        Fake({{14, kFda}, {13, kFda}});
        Button(ID_PROCESS_REFRESH);
        QCOMPARE(Pane().List().SelectedRows(), (std::vector<int>{1}));
        Click(0);
        Button(ID_PROCESS_REFRESH);
        QCOMPARE(Pane().List().SelectedRows(), (std::vector<int>{0}));
    }

    void aClickOnAColumnsTitleDoesNotReorderTheRows() {
        StartProgram();
        theApp().m_pfnGetSetProcInfo = nullptr;
        Fake({{30, kFda}, {10, kFda}, {20, kFda}});
        Button(ID_PROCESS_REFRESH);
        QHeaderView* header = Pane().List().header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(10, header->height() / 2));
        QCOMPARE(Numbers(), (QList<int>{30, 10, 20}));
    }

    void withoutAListOfProcessesTheListIsEmptyAndNotDrawnUntilThereIsOne() {
        StartProgram();
        theApp().m_pfnGetSetProcInfo = nullptr;
        Fake({{30, kFda}});
        Button(ID_PROCESS_REFRESH);
        Pane().m_fnEnumerateProcesses = [](auto&) { return false; };
        Button(ID_PROCESS_REFRESH);
        QCOMPARE(Pane().List().Model().rowCount(), 0);
        QVERIFY(!Pane().List().updatesEnabled());
        Fake({{30, kFda}});
        Button(ID_PROCESS_REFRESH);
        QVERIFY(Pane().List().updatesEnabled());
        QCOMPARE(Numbers(), (QList<int>{30}));
    }

    void toggleSwitchesTheSelectedProcessesAndTheirLogsGrow() {
        const int first = StartProcess(kFda);
        const int second = StartProcess(kExplorer);
        StartProgram();
        Button(ID_PROCESS_TOGGLE); // nothing is selected
        QCOMPARE(CellOf(first, COLUMN_TRACING), QStringLiteral("Off"));
        Click(RowOf(first));
        Button(ID_PROCESS_TOGGLE);
        QCOMPARE(CellOf(first, COLUMN_TRACING), QStringLiteral("On"));
        QCOMPARE(CellOf(second, COLUMN_TRACING), QStringLiteral("Off"));
        QTRY_VERIFY(QFile::exists(CellOf(first, COLUMN_DEBUG_FILE)));
        QVERIFY(!QFile::exists(CellOf(second, COLUMN_DEBUG_FILE)));
    }

    void aFailingProcessShowsItsBoxOnceForEachRefresh() {
        const int number = StartProcess(kFda);
        StartProgram();
        Switch("fail SkelmondGetSetProcInfo 31\n");
        m_pUser->m_listMessages.clear();
        Button(ID_PROCESS_REFRESH);
        QCOMPARE(m_pUser->m_listMessages, QStringList{"Error SkelmondGetSetProcInfo returned: 31"});
        QVERIFY(RowOf(number) >= 0);
        Click(RowOf(number));
        Button(ID_PROCESS_TOGGLE);
        QCOMPARE(m_pUser->m_listMessages.size(), 2);
    }

    void truncEmptiesTheLogAndTheSizeShowsIt() {
        const int number = StartProcess(kFda, {"--pace", "0"});
        StartProgram();
        QFile log(CellOf(number, COLUMN_DEBUG_FILE));
        QVERIFY(log.open(QIODevice::WriteOnly));
        log.write(QByteArray(12345, 'x'));
        log.flush();
        Button(ID_PROCESS_REFRESH);
        QCOMPARE(CellOf(number, COLUMN_FILE_SIZE), QStringLiteral("12,345"));
        Click(RowOf(number));
        Button(ID_PROCESS_TRUNC);
        QCOMPARE(CellOf(number, COLUMN_FILE_SIZE), QStringLiteral("0"));
        QCOMPARE(Pane().List().SelectedRows(), (std::vector<int>{RowOf(number)}));
    }

    void analyzeOpensASessionOfTheProcessAloneForEachSelectedRow() {
        const int first = StartProcess(kFda, {"--tracing", "--pace", "1"});
        const int second = StartProcess(kExplorer, {"--tracing", "--pace", "1"});
        StartProgram();
        QTRY_VERIFY(QFile(CellOf(first, COLUMN_DEBUG_FILE)).size() > 3000);
        QTRY_VERIFY(QFile(CellOf(second, COLUMN_DEBUG_FILE)).size() > 3000);
        const auto recent = theApp().m_recentFiles.m_listPaths;
        Click(RowOf(first));
        Click(RowOf(second), Qt::ControlModifier);
        Button(ID_PROCESS_ANALYZE);
        QCOMPARE(MainFrame()->ClientArea().Children().size(), 2);
        QCOMPARE(theApp().m_recentFiles.m_listPaths, recent);
        // The last of them is in front.
        auto* document = qobject_cast<CSessionDocument*>(MainFrame()->ActiveChild()->GetActiveDocument());
        const int last = RowOf(second) > RowOf(first) ? second : first;
        QVERIFY(document != nullptr);
        CCarvelotDoc& session = document->Session();
        QCOMPARE(session.m_nProcessFilter, static_cast<std::uint32_t>(last));
        QCOMPARE(session.m_strProcessName, last == first ? kFda : kExplorer);
        QCOMPARE(document->GetTitle(), CellOf(last, COLUMN_DEBUG_FILE));
        QVERIFY(session.m_listDetails.Size() > 10);
        QCOMPARE(session.m_listProcesses.size(), 1U);
        // Again: a file may be open any number of times.
        Button(ID_PROCESS_ANALYZE);
        QCOMPARE(MainFrame()->ClientArea().Children().size(), 4);
        // The live caches of the log answer.
        const auto& caches = session.m_listProcesses[0]->m_pCacheAnalysis.m_caches;
        QVERIFY(!caches.empty());
        QVERIFY(theApp().CacheLive(static_cast<std::uint32_t>(last), ToQString(caches.back().m_strHandle)));
        Click(RowOf(last));
        Button(ID_PROCESS_CLEAR_CACHE);
        QVERIFY(!theApp().CacheLive(static_cast<std::uint32_t>(last), ToQString(caches.back().m_strHandle)));
    }

    void anotherProcessesRecordsStayOutOfTheSession() {
        StartProgram();
        const QString logPath = m_pFolder->filePath("two.log");
        QFile log(logPath);
        QVERIFY(log.open(QIODevice::WriteOnly));
        log.write("Feb 02 03:04:05.100000 - 1234/1 WRK:A\tEntering JDB_InitUser\n"
                  "Feb 02 03:04:05.200000 - 99/1 WRK:A\tEntering JDB_InitUser\n");
        log.close();
        theApp().AnalyzeProcess(QStringLiteral("fda.exe"), logPath, 1234);
        theApp().AnalyzeProcess(QStringLiteral("fda.exe"), logPath, 0);
        QList<std::size_t> sizes;
        for (CDocument* document : theApp().FirstDocTemplate()->Documents()) {
            sizes << static_cast<CSessionDocument*>(document)->Session().m_listDetails.Size();
        }
        QCOMPARE(sizes, (QList<std::size_t>{1, 2}));
        // Open does not take the analysed process's window for that of the file.
        theApp().OpenDocumentFile(logPath);
        QCOMPARE(MainFrame()->ClientArea().Children().size(), 3);
    }

    void analyzeOfAnUndeterminedFileLeavesNoSessionBehind() {
        StartProgram();
        theApp().m_pfnGetSetProcInfo = nullptr;
        Fake({{11, kFda}});
        Button(ID_PROCESS_REFRESH);
        m_pUser->m_listMessages.clear();
        Click(0);
        Button(ID_PROCESS_ANALYZE);
        QCOMPARE(m_pUser->m_listMessages, QStringList{"Failed to open file."});
        QVERIFY(theApp().FirstDocTemplate()->Documents().empty());
        QVERIFY(MainFrame()->ClientArea().Children().isEmpty());
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }

    void aLibraryWithoutTheFetchSaysSoAtTheProbe() {
        UseLibraryFolder(CARVELOT_SIMULATOR "/without/SkelmondCacheFetchProcessor");
        StartProgram();
        m_pUser->m_listMessages.clear();
        QVERIFY(!theApp().CacheLive(1, QStringLiteral("1A")));
        QCOMPARE(m_pUser->m_listMessages, QStringList{"Get Proc address failed"});
    }

private:
    int StartProcess(const std::string& name, const QStringList& options = {}) {
        QProcess& process = m_listProcesses.emplace_back();
        const QString folder = m_pFolder->filePath(QString::number(m_listProcesses.size()));
        QDir().mkpath(folder);
        const QString program = folder + '/' + ToQString(name);
#ifdef Q_OS_WIN
        QFile::copy(QStringLiteral(CARVELOT_SIMULATOR "/jde-simulator.exe"), program);
#else
        QFile::copy(QStringLiteral(CARVELOT_SIMULATOR "/jde-simulator"), program);
#endif
        process.start(program, QStringList{"--log", folder + "/jdedebug.log", "--pace", "5"} + options);
        process.waitForStarted();
        const int number = static_cast<int>(process.processId());
        (void)QTest::qWaitFor(
            [&] { return QFile::exists(m_pFolder->filePath(QString::number(number) + ".jde")); });
        return number;
    }
    void StartProgram() {
        QVERIFY(theApp().InitInstance({}));
        MainFrame()->m_wndProcessPane.raise();
        // Refreshes come when the test wants them.
        theApp().m_bAutoRefresh = false;
        Pane().RestartTimer();
        QCoreApplication::processEvents();
    }
    void Switch(const char* lines) {
        QFile file(m_pFolder->filePath("switches"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(lines);
    }
    static CProcessPane& Pane() { return MainFrame()->m_wndProcessPane; }
    static void Fake(std::vector<platform::ProcessEntry> processes) {
        Pane().m_fnEnumerateProcesses = [processes = std::move(processes)](auto& result) {
            result = processes;
            return true;
        };
    }
    static void Button(int id) {
        for (QAction* action : Pane().ToolBar().actions()) {
            if (action->data().toInt() == id) {
                QTest::mouseClick(Pane().ToolBar().widgetForAction(action), Qt::LeftButton);
            }
        }
    }
    static void Click(int row, Qt::KeyboardModifiers modifiers = {}) {
        const QModelIndex index = Pane().List().Model().index(row, 0);
        QTest::mouseClick(Pane().List().viewport(), Qt::LeftButton, modifiers,
                          Pane().List().visualRect(index).center());
    }
    static QList<int> Numbers() {
        QList<int> numbers;
        const CListModel& model = Pane().List().Model();
        for (int n = 0; n < model.rowCount(); ++n) {
            numbers << model.index(n, 0).data().toInt();
        }
        return numbers;
    }
    static int RowOf(int number) { return static_cast<int>(Numbers().indexOf(number)); }
    static QString CellOf(int number, int column) {
        return Pane().List().Model().index(RowOf(number), column).data().toString();
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
    std::unique_ptr<CFakeInterface> m_pUser;
    std::list<QProcess> m_listProcesses;
};

QTEST_MAIN(ProcessPaneTest)
#include "ProcessPaneTest.moc"
