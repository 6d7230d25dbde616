#include "ui/ExploreSupport.h"

#include "support/SameSessions.h"
#include "ui/app/StatusBar.h"
#include "ui/explore/AboutLogFrame.h"
#include "ui/explore/Exploration.h"
#include "ui/explore/TimelineFrame.h"
#include "ui/kit/WaitBox.h"
#include "ui/session/Following.h"

#include <QCheckBox>
#include <QDir>
#include <QProgressDialog>
#include <QScopeGuard>
#include <QScrollBar>
#include <QTimer>

#include <new>
#include <utility>

using namespace carvelot;
using namespace carvelot::test;

namespace {

// A call in a call and a statement, in two threads of a process.
std::vector<std::string> Log() {
    return DebugLog({
        Line("10:00:00.000001", "Calling Business function A from Level 1 (BSFNLevel = 1)"),
        Line("10:00:00.000002", "Calling Business function B from A (BSFNLevel = 2)"),
        Line("10:00:00.000003", "SELECT X FROM T1"),
        Line("10:00:00.000004", "JDB9900168 - first", "5/7"),
        Line("10:00:00.000005", "JDB9900169 - second", "5/7"),
    });
}

// More calls of the thread 5/6, a level each.
std::string Calls(int count, const char* name = "C") {
    std::vector<std::string> lines;
    for (int n = 0; n < count; ++n) {
        lines.push_back(
            Line("10:00:01.000001",
                 ("Calling Business function " + std::string(name) + std::to_string(n) + " from B").c_str()));
        lines.push_back(Line("10:00:01.000002",
                             ("Return value is 0 for " + std::string(name) + std::to_string(n)).c_str()));
    }
    return TestSession::Joined(lines);
}

} // namespace

class FollowTest : public CSessionTest {
    Q_OBJECT

    CFollowing& Following() const { return m_pRun->Frame().Following(); }
    void Append(const QString& name, const std::string& bytes) const {
        QFile file(m_pRun->Path(name));
        QVERIFY(file.open(QIODevice::Append));
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
    void Look() const {
        Following().Look();
        QCoreApplication::processEvents();
    }
    CChildFrame* OpenFollowed(const std::vector<std::string>& lines = Log(),
                              const char* name = "a.log") const {
        CChildFrame* const session = m_pRun->Open(QLatin1String(name), lines);
        m_pRun->Frame().RunCommand(ID_EXPLORE_FOLLOW);
        // All that a log gains is shown at once.
        Following().m_fnNow = [] { return std::int64_t{0}; };
        return session;
    }
    // Null while it is hidden.
    const QLabel* StateLabel() const {
        for (const QLabel* label : m_pRun->Frame().StatusBar().findChildren<QLabel*>()) {
            if (label->accessibleName() == QStringLiteral("Follow") && !label->isHidden()) {
                return label;
            }
        }
        return nullptr;
    }
    QString StateShown() const { return StateLabel() == nullptr ? QString() : StateLabel()->text(); }
    QString StateTip() const { return StateLabel() == nullptr ? QString() : StateLabel()->toolTip(); }
    // What is there less than in a session that was opened now.
    std::string Difference(const CChildFrame& session) const {
        AnalysisSettings settings;
        PendingStatement pending;
        RecordingHost host;
        CCarvelotDoc fresh(settings, pending, host);
        fresh.m_strLogPath = session.SessionDocument().Session().m_strLogPath;
        fresh.LoadLog();
        return DifferenceOf(session.SessionDocument().Session(), fresh);
    }

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    // --- the command

    void followIsACheckMarkOfTheSessionInFront() {
        QAction* const action = m_pRun->Frame().CommandAction(ID_EXPLORE_FOLLOW);
        QVERIFY(!action->isEnabled());
        CChildFrame* const first = m_pRun->Open(QStringLiteral("a.log"), Log());
        QVERIFY(action->isEnabled());
        QVERIFY(!action->isChecked());
        QCOMPARE(StateShown(), QString());
        action->trigger();
        QVERIFY(action->isChecked());
        QCOMPARE(Following().Followed(), &first->SessionDocument());
        QCOMPARE(StateShown(), QStringLiteral("Following"));
        QCOMPARE(StateTip(), m_pRun->Path(QStringLiteral("a.log")));
        // One session at a time.
        CChildFrame* const second = m_pRun->Open(QStringLiteral("b.log"), Log());
        QVERIFY(!action->isChecked());
        action->trigger();
        QCOMPARE(Following().Followed(), &second->SessionDocument());
        QCOMPARE(StateTip(), m_pRun->Path(QStringLiteral("b.log")));
        m_pRun->Frame().ClientArea().Activate(*first);
        m_pRun->Frame().UpdateCommands();
        QVERIFY(!action->isChecked());
        m_pRun->Frame().ClientArea().Activate(*second);
        m_pRun->Frame().UpdateCommands();
        QVERIFY(action->isChecked());
        action->trigger();
        QVERIFY(!action->isChecked());
        QVERIFY(Following().Followed() == nullptr);
        QCOMPARE(StateShown(), QString());
    }

    void followEndsWithItsSession() {
        CChildFrame* const session = OpenFollowed();
        session->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(Following().Followed() == nullptr);
        QCOMPARE(StateShown(), QString());
        Look();
        QVERIFY(!m_pRun->Frame().CommandAction(ID_EXPLORE_FOLLOW)->isChecked());
        OpenFollowed();
        m_pRun->Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
        CSessionRun::Settle();
        QVERIFY(Following().Followed() == nullptr);
    }

    void noPackedLogAndNoneInPiecesIsFollowed() {
        CDocument* const pieces = theApp().OpenPieces(
            {m_pRun->Write(QStringLiteral("a.log"), Log()), m_pRun->Write(QStringLiteral("b.log"), Log())});
        QVERIFY(pieces != nullptr);
        m_pRun->Frame().UpdateCommands();
        QVERIFY(!m_pRun->Frame().CommandAction(ID_EXPLORE_FOLLOW)->isEnabled());
    }

    // --- growth

    void whatALogGainsIsShownAndTheRestStays() {
        CChildFrame* const session = OpenFollowed();
        Select(session, "Thread - 6");
        CDetailView& tree = session->DetailView();
        const auto node = [&tree](const char* text) { return FindNode(tree.Model(), QLatin1String(text)); };
        tree.expand(node("function A"));
        tree.expand(node("function B"));
        tree.SelectIndex(node("SELECT X"));
        Append(QStringLiteral("a.log"),
               Line("10:00:00.500000", "SELECT Y FROM T2") + "\n" +
                   Line("10:00:00.500001", "Return value is 2 for B (BSFNLevel = 2)") + "\n");
        const QAbstractItemModelTester tester(&tree.Model());
        const QAbstractItemModelTester threads(&session->ThreadView().Model());
        Look();
        QCOMPARE(TreeText(tree.Model()),
                 QStringLiteral(
                     "10:00:00.000001    Calling Business function A from Level 1 (BSFNLevel = 1)\n"
                     " 10:00:00.000002    (0.499999) Calling Business function B from A (BSFNLevel = 2)\n"
                     "  10:00:00.000003    SELECT X FROM T1\n"
                     "  10:00:00.500000    SELECT Y FROM T2\n"
                     "  10:00:00.500001    Return value is 2 for B (BSFNLevel = 2)\n"));
        QVERIFY(tree.isExpanded(node("function A")));
        QVERIFY(tree.isExpanded(node("function B")));
        QVERIFY(SelectedText(tree).contains(QStringLiteral("SELECT X")));
        QVERIFY(SelectedText(session->ThreadView()).startsWith(QStringLiteral("Thread - 6 (0.500000)")));
        QCOMPARE(Difference(*session), "");
        QCOMPARE(StateShown(), QStringLiteral("Following"));
    }

    void newProcessesAndThreadsComeBehindTheOthers() {
        CChildFrame* const session = OpenFollowed();
        Select(session, "Thread - 7");
        session->ThreadView().collapse(session->ThreadView().Model().index(0, 0));
        const QAbstractItemModelTester tester(&session->ThreadView().Model());
        Append(QStringLiteral("a.log"), Line("10:00:01.000000", "SELECT 1 FROM T", "5/8") + "\n" +
                                            Line("10:00:01.000000", "SELECT 1 FROM T", "9/1") + "\n" +
                                            Line("10:00:03.000000", "SELECT 1 FROM T", "9/2") + "\n");
        Look();
        QCOMPARE(TreeText(session->ThreadView().Model()), QStringLiteral("Process - 1 (0.000000)\n"
                                                                         " Thread - 1 (0.000000)\n"
                                                                         "Process - 5 (0.999999)\n"
                                                                         " Thread - 6 (0.000002)\n"
                                                                         " Thread - 7 (0.000001)\n"
                                                                         " Thread - 8 (0.000000)\n"
                                                                         "Process - 9 (2.000000)\n"
                                                                         " Thread - 1 (0.000000)\n"
                                                                         " Thread - 2 (0.000000)\n"));
        QVERIFY(SelectedText(session->ThreadView()).startsWith(QStringLiteral("Thread - 7")));
        QVERIFY(!session->ThreadView().isExpanded(session->ThreadView().Model().index(0, 0)));
        QVERIFY(session->ThreadView().isExpanded(session->ThreadView().Model().index(2, 0)));
    }

    void newUsersOfAWebLogComeBehindTheOthers() {
        CChildFrame* const session =
            OpenFollowed(JASLog({JASLine("09:00:01,000", "ANNIKA", "SELECT 1 FROM T")}));
        Select(session, "ANNIKA");
        Append(QStringLiteral("a.log"), JASLine("09:00:02,000", "TOMAS", "SELECT 2 FROM T") + "\n" +
                                            JASLine("09:00:02,000", "ANNIKA", "SELECT 3 FROM T") + "\n");
        const QAbstractItemModelTester tester(&session->ThreadView().Model());
        Look();
        QCOMPARE(TreeText(session->ThreadView().Model()), QStringLiteral("INIT\nANNIKA\nTOMAS\n"));
        QCOMPARE(session->DetailView().Model().rowCount(), 2);
        QCOMPARE(Difference(*session), "");
    }

    void aProcessKeepsItsOpenNodesBehindAThreadThatGrows() {
        CChildFrame* const session = OpenFollowed();
        Select(session, "Process - 5");
        CDetailView& tree = session->DetailView();
        tree.expand(FindNode(tree.Model(), QStringLiteral("function A")));
        tree.SelectIndex(FindNode(tree.Model(), QStringLiteral("second")));
        Append(QStringLiteral("a.log"), Calls(3));
        Look();
        QVERIFY(SelectedText(tree).contains(QStringLiteral("second")));
        QVERIFY(tree.isExpanded(FindNode(tree.Model(), QStringLiteral("function A"))));
        QVERIFY(!tree.isExpanded(FindNode(tree.Model(), QStringLiteral("function B"))));
    }

    void aTreeThatStandsAtItsEndStaysThereAndAnotherWhereItIs() {
        CChildFrame* const session = OpenFollowed();
        Append(QStringLiteral("a.log"), Calls(200));
        Look();
        Select(session, "Thread - 6");
        CDetailView& tree = session->DetailView();
        tree.expandAll();
        QScrollBar* const bar = tree.verticalScrollBar();
        QVERIFY(bar->maximum() > 100);
        bar->setValue(57);
        const QString top = tree.indexAt({0, 0}).data().toString();
        Append(QStringLiteral("a.log"), Calls(20, "D"));
        Look();
        QCOMPARE(bar->value(), 57);
        QCOMPARE(tree.indexAt({0, 0}).data().toString(), top);
        bar->setValue(bar->maximum());
        const int end = bar->maximum();
        Append(QStringLiteral("a.log"), Calls(20, "E"));
        Look();
        QVERIFY(bar->maximum() > end);
        QCOMPARE(bar->value(), bar->maximum());
        // A whole process: another thread's nodes move down, and what is on the screen stays.
        Select(session, "Process - 5");
        tree.expandAll();
        Append(QStringLiteral("a.log"), TestSession::Joined(std::vector<std::string>(
                                            100, Line("10:00:02.000000", "JDB9900168 - third", "5/7"))));
        Look();
        tree.QTreeView::scrollTo(FindNode(tree.Model(), QStringLiteral("JDB9900168")),
                                 QAbstractItemView::PositionAtTop);
        QVERIFY(bar->value() < bar->maximum());
        const QString stands = tree.indexAt({0, 0}).data().toString();
        QVERIFY(stands.contains(QStringLiteral("first")));
        Append(QStringLiteral("a.log"), Calls(20, "F"));
        Look();
        QCOMPARE(tree.indexAt({0, 0}).data().toString(), stands);
    }

    void theListsOfThePanesKeepTheirOrderAndTheirSelection() {
        CChildFrame* const session = OpenFollowed();
        Select(session, "Process - 5");
        CMainFrame& frame = m_pRun->Frame();
        CListCtrl& errors = frame.m_wndErrorPane.List();
        CListCtrl& tables = frame.m_wndSQLPane.List();
        CSessionRun::ShowPane(frame.m_wndErrorPane);
        CSessionRun::ShowPane(frame.m_wndSQLPane);
        QCOMPARE(errors.Model().rowCount(), 2);
        errors.SortBy(3, Qt::AscendingOrder);
        errors.ShowAt(1, 0);
        const QString selected = errors.Model().index(1, 3).data().toString();
        tables.ShowAt(0, 0);
        Append(QStringLiteral("a.log"), Line("10:00:02.000000", "JDB9900168 - a third", "5/7") + "\n" +
                                            Line("10:00:02.000000", "DELETE FROM T0", "5/7") + "\n");
        Look();
        QCOMPARE(errors.Model().rowCount(), 3);
        QCOMPARE(errors.SortColumn(), 3);
        QCOMPARE(errors.Model().index(errors.SelectedRow(), 3).data().toString(), selected);
        QCOMPARE(tables.Model().rowCount(), 2);
        QCOMPARE(tables.SortColumn(), -1);
        QCOMPARE(tables.Model().index(tables.SelectedRow(), 0).data().toString(), QStringLiteral("T1"));
    }

    void aLogThatGrowsBehindAnotherLeavesThatOnesPanes() {
        CChildFrame* const followed = OpenFollowed();
        Select(followed, "Thread - 7");
        CListCtrl& errors = m_pRun->Frame().m_wndErrorPane.List();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndErrorPane);
        QCOMPARE(errors.Model().rowCount(), 2);
        CChildFrame* const front = m_pRun->Open(
            QStringLiteral("b.log"), DebugLog({Line("10:00:00.000004", "JDB9900170 - its own", "5/7")}));
        Select(front, "Thread - 7");
        QCOMPARE(errors.Model().rowCount(), 1);
        Append(QStringLiteral("a.log"), Line("10:00:02.000000", "JDB9900168 - a third", "5/7") + "\n");
        Look();
        QCOMPARE(errors.Model().rowCount(), 1);
        QVERIFY(Rows(errors)[0].contains(QStringLiteral("its own")));
        m_pRun->Frame().ClientArea().Activate(*followed);
        CSessionRun::Settle();
        QCOMPARE(errors.Model().rowCount(), 3);
    }

    void aListThatStandsAtItsEndStaysThereAndAnotherAtItsRow() {
        CChildFrame* const session = OpenFollowed();
        const auto error = [](int n) {
            return Line("10:00:02.000000", ("JDB9900168 - number " + std::to_string(n)).c_str(), "5/7") +
                   "\n";
        };
        std::string more;
        for (int n = 0; n < 200; ++n) {
            more += error(n);
        }
        Append(QStringLiteral("a.log"), more);
        Look();
        Select(session, "Thread - 7");
        CListCtrl& errors = m_pRun->Frame().m_wndErrorPane.List();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndErrorPane);
        QScrollBar* const bar = errors.verticalScrollBar();
        QVERIFY(bar->maximum() > 50);
        bar->setValue(20);
        const auto top = [&errors] { return errors.Model().index(errors.indexAt({0, 0}).row(), 3).data(); };
        const QVariant stood = top();
        Append(QStringLiteral("a.log"), error(200));
        Look();
        QCOMPARE(top(), stood); // the newest error stands above the others
        QCOMPARE(bar->value(), 21);
        bar->setValue(bar->maximum());
        Append(QStringLiteral("a.log"), error(201) + error(202));
        Look();
        QCOMPARE(bar->value(), bar->maximum());
        QCOMPARE(errors.Model().rowCount(), 205);
    }

    void theCachesOfAProcessGrowBelowTheirOpenNodes() {
        std::vector<std::string> lines = Log();
        lines.push_back(Line("10:00:06.250007", "Entering jdeCacheInit - Name:[Orders]"));
        lines.push_back(Line("10:00:06.250008", "Created new cache - hCache:[e5762678]"));
        lines.push_back(
            Line("10:00:06.250009", "hCache:[e5762678] Nm:[9Orders] Recs:0 Curs:0 Hnds:1 Cchs:141 INIT new"));
        CChildFrame* const session = OpenFollowed(lines);
        Select(session, "Process - 5");
        CCacheTree& tree = m_pRun->Frame().m_wndCachePane.Tree();
        CCacheTreeModel& model = m_pRun->Frame().m_wndCachePane.Model();
        QCOMPARE(model.rowCount(), 1);
        tree.expand(model.index(0, 0));
        const int operations = model.rowCount(model.index(0, 0));
        Append(
            QStringLiteral("a.log"),
            Line("10:00:06.250010", "Entering jdeCacheAdd") + "\n" +
                Line("10:00:06.250011", "hCache:[e5762678] Nm:[9Orders] Recs:1 Curs:0 Hnds:1 Cchs:141 ADD") +
                "\n");
        const QAbstractItemModelTester tester(&model);
        Look();
        QCOMPARE(model.rowCount(model.index(0, 0)), operations + 1);
        QVERIFY(tree.isExpanded(model.index(0, 0)));
    }

    void theWindowsTakeAThirtiethOfTheTime() {
        CChildFrame* const session = OpenFollowed();
        Select(session, "Thread - 6");
        CDetailView& tree = session->DetailView();
        std::int64_t now = 0;
        // Whatever looks at the clock makes a second go by: to show takes one.
        Following().m_fnNow = [&now] { return now += 1'000'000; };
        const auto nodes = [&tree] { return tree.Tree().NodeCount(); };
        const std::size_t before = nodes();
        Append(QStringLiteral("a.log"), Calls(1));
        Look();
        QCOMPARE(nodes(), before + 2);
        Append(QStringLiteral("a.log"), Calls(1, "D"));
        for (int look = 0; look < 29; ++look) {
            Look();
            QCOMPARE(nodes(), before + 2);
            QCOMPARE(Difference(*session), ""); // the session does not wait
        }
        Look();
        QCOMPARE(nodes(), before + 4);
        // A selection shows all.
        Append(QStringLiteral("a.log"), Calls(1, "E"));
        Look();
        QCOMPARE(nodes(), before + 4);
        Select(session, "Thread - 7");
        Select(session, "Thread - 6");
        QCOMPARE(nodes(), before + 6);
        // And so does the end of following.
        Append(QStringLiteral("a.log"), Calls(1, "F"));
        Look();
        m_pRun->Frame().RunCommand(ID_EXPLORE_FOLLOW);
        QCOMPARE(nodes(), before + 8);
    }

    void aLookThatRunsOutOfMemoryIsFollowedByOthers() {
        CChildFrame* const session = OpenFollowed();
        Select(session, "Thread - 6");
        const auto nodes = [session] { return session->DetailView().Tree().NodeCount(); };
        const std::size_t before = nodes();
        Append(QStringLiteral("a.log"), Calls(1));
        const auto clock =
            std::exchange(Following().m_fnNow, []() -> std::int64_t { throw std::bad_alloc(); });
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, Look());
        QCOMPARE(nodes(), before);
        Following().m_fnNow = clock;
        Look();
        QCOMPARE(nodes(), before + 2);
        Append(QStringLiteral("a.log"), Calls(1, "D"));
        Look();
        QCOMPARE(nodes(), before + 4);
    }

    void aLookThatReadsForLongShowsHowFarItHasComeAndCanBeEnded() {
        CChildFrame* const session = OpenFollowed();
        Select(session, "Thread - 6");
        const auto patience = std::exchange(CWaitBox::s_nPatience, 0);
        const auto restore = qScopeGuard([patience] { CWaitBox::s_nPatience = patience; });
        const std::string megabytes = Calls(100'000);
        QVERIFY(megabytes.size() > 10'000'000);
        QPointer<QProgressDialog> box;
        const auto meet = [&box](bool end) {
            QTimer::singleShot(0, qApp, [&box, end] {
                box = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget());
                QVERIFY(box != nullptr);
                if (end) {
                    QTest::keyClick(box, Qt::Key_Escape);
                }
            });
        };
        Append(QStringLiteral("a.log"), megabytes);
        meet(false);
        Following().Look();
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        QVERIFY(QApplication::overrideCursor() == nullptr);
        QCOMPARE(session->SessionDocument().Session().m_listDetails.Size(), 200'006U);
        QVERIFY(Following().Followed() != nullptr);
        // What is little is read without a word.
        Append(QStringLiteral("a.log"), Calls(1));
        Look();
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        Append(QStringLiteral("a.log"), megabytes);
        meet(true);
        Following().Look();
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        QVERIFY(QApplication::overrideCursor() == nullptr);
        QCOMPARE(session->SessionDocument().Session().m_listDetails.Size(), 0U);
        QCOMPARE(session->ThreadView().Model().rowCount(), 0);
        QVERIFY(Following().Followed() == nullptr);
        QCOMPARE(m_pRun->m_user.m_listMessages, QStringList());
    }

    // --- what becomes of the file

    void aLogThatShrankOrWasReplacedIsReadAnewAndTheStatusBarSaysSo() {
        CChildFrame* const session = OpenFollowed();
        Select(session, "Thread - 6");
        m_pRun->Write(QStringLiteral("a.log"), DebugLog({Line("11:00:00.000000", "SELECT 1 FROM T", "8/1")}));
        Look();
        QCOMPARE(StateShown(), QStringLiteral("Following: The log shrank and was read anew"));
        QCOMPARE(TreeText(session->ThreadView().Model()),
                 QStringLiteral("Process - 1 (0.000000)\n Thread - 1 (0.000000)\n"
                                "Process - 8 (0.000000)\n Thread - 1 (0.000000)\n"));
        QCOMPARE(Difference(*session), "");
        // For a while.
        for (int look = 0; look < 30; ++look) {
            Look();
        }
        QCOMPARE(StateShown(), QStringLiteral("Following"));
        // A rotation, in two steps that a look comes between.
        QVERIFY(QDir().rename(m_pRun->Path(QStringLiteral("a.log")), m_pRun->Path(QStringLiteral("a.1"))));
        Look();
        QCOMPARE(StateShown(), QStringLiteral("Following: The log is not to be had at present"));
        m_pRun->Write(QStringLiteral("a.log"), {});
        Look();
        QCOMPARE(StateShown(), QStringLiteral("Following: The log was replaced and was read anew"));
        QCOMPARE(TreeText(session->ThreadView().Model()), QString());
        Append(QStringLiteral("a.log"), TestSession::Joined(Log()));
        Look();
        QCOMPARE(session->ThreadView().Model().rowCount(), 2);
        QCOMPARE(Difference(*session), "");
        QCOMPARE(m_pRun->m_user.m_listMessages, QStringList());
    }

    void theStatusBarSaysWhyElseALogIsReadAnew() {
        CChildFrame* const session = OpenFollowed();
        theApp().m_fThreshold = 2.5F;
        Look();
        QCOMPARE(StateShown(), QStringLiteral("Following: The options changed and the log was read anew"));
        QCOMPARE(session->SessionDocument().Session().m_listDetails.Size(), 6U);
        // A web log's lines, then one that only a debug log has.
        CChildFrame* const web =
            OpenFollowed(JASLog({JASLine("09:00:01,000", "ANNIKA", "SELECT 1 FROM T")}), "b.log");
        Append(QStringLiteral("b.log"), "Jan 15 08:00:00 ** 12/34  Entering JDB_OpenTable\n");
        Look();
        QCOMPARE(StateShown(), QStringLiteral("Following: The log tells another format and was read anew"));
        QCOMPARE(web->SessionDocument().Session().m_nLogFormat, LOG_FORMAT_DEBUG);
    }

    void anArchiveInTheLogsPlaceEndsTheFollowingWithAMessage() {
        CChildFrame* const session = OpenFollowed();
        QFile file(m_pRun->Path(QStringLiteral("a.log")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("\x1F\x8B\x08\x00", 4) + QByteArray(2000, 'x'));
        file.close();
        Look();
        QVERIFY(Following().Followed() == nullptr);
        QCOMPARE(m_pRun->m_user.m_listMessages,
                 QStringList{m_pRun->Path(QStringLiteral("a.log")) +
                             QStringLiteral(" is an archive now. It is followed no longer.")});
        QCOMPARE(session->SessionDocument().Session().m_listDetails.Size(), 6U);
    }

    void aLogThatVanishesEndsTheFollowingWithAMessage() {
        CChildFrame* const session = OpenFollowed();
        QVERIFY(QFile::remove(m_pRun->Path(QStringLiteral("a.log"))));
        Look();
        QVERIFY(Following().Followed() != nullptr);
        Look();
        QVERIFY(Following().Followed() == nullptr);
        QCOMPARE(m_pRun->m_user.m_listMessages,
                 QStringList{m_pRun->Path(QStringLiteral("a.log")) +
                             QStringLiteral(" has vanished. It is followed no longer.")});
        QCOMPARE(StateShown(), QString());
        QCOMPARE(session->SessionDocument().Session().m_listDetails.Size(), 6U);
        QVERIFY(!m_pRun->Frame().CommandAction(ID_EXPLORE_FOLLOW)->isChecked());
    }

    void clearDebugFileAndAnalyzeGoOnBeingFollowed() {
        CChildFrame* const session = OpenFollowed();
        m_pRun->Frame().RunCommand(ID_SESSION_CLEAR_DEBUG_FILE);
        Look();
        QCOMPARE(session->SessionDocument().Session().m_listDetails.Size(), 0U);
        m_pRun->Write(QStringLiteral("a.log"), Log());
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        Append(QStringLiteral("a.log"), Calls(2));
        Look();
        QCOMPARE(session->SessionDocument().Session().m_listDetails.Size(), 10U);
        QCOMPARE(Difference(*session), "");
    }

    // --- beside Explore

    void exploresWindowsKeepWhatTheyExploredAndMarkNoNewRecord() {
        CChildFrame* const session = OpenFollowed(ExploredLines());
        auto* const timeline = OpenExplore<CTimelineFrame>(*m_pRun, *session, ID_EXPLORE_TIMELINE);
        QVERIFY(timeline != nullptr);
        QTRY_VERIFY(!CBackgroundWork::AnyRuns());
        CExploration& exploration = timeline->Exploration();
        const std::uint32_t frames = exploration.Explored().frames.Count();
        std::string more;
        for (int thread = 0; thread < 300; ++thread) {
            more += Line("08:00:20.000000", "Calling Business function New from B (BSFNLevel = 1)",
                         ("77/" + std::to_string(thread)).c_str()) +
                    "\n";
        }
        Append(QStringLiteral("a.log"), more);
        Look();
        CCarvelotDoc& log = session->SessionDocument().Session();
        QCOMPARE(exploration.Explored().frames.Count(), frames);
        const RecordIndex last{static_cast<std::uint32_t>(log.m_listDetails.Size() - 1)};
        exploration.Select(RecordIndex{1});
        log.ShowDetail(last);
        QVERIFY(!exploration.Selected().has_value());
        log.ShowDetail(RecordIndex{2});
        QCOMPARE(exploration.Selected(), std::optional(RecordIndex{2}));
        // A part of the log that was not there.
        exploration.SetScope(Selection(*log.FindProcess(77)));
        QVERIFY(WaitForResults(exploration));
        exploration.SetScope(Selection());
        QVERIFY(WaitForResults(exploration));
        // Read anew it is explored anew.
        m_pRun->Write(QStringLiteral("a.log"), Log());
        QTRY_VERIFY(!CBackgroundWork::AnyRuns());
        Look();
        QVERIFY(WaitForResults(exploration));
        QVERIFY(exploration.Explored().frames.Count() < frames);
    }

    void aLookWaitsForWorkOnTheRecords() {
        CChildFrame* const session = OpenFollowed(ExploredLines());
        Append(QStringLiteral("a.log"), Calls(2));
        CCarvelotDoc& log = session->SessionDocument().Session();
        const std::size_t records = log.m_listDetails.Size();
        m_pRun->Frame().RunCommand(ID_EXPLORE_OVERVIEW); // which begins to explore
        QVERIFY(ExplorationOf(*session).Progress() >= 0);
        Following().Look();
        QCOMPARE(log.m_listDetails.Size(), records);
        QVERIFY(WaitForResults(ExplorationOf(*session)));
        Look();
        QCOMPARE(log.m_listDetails.Size(), records + 4);
    }

    void aboutThisLogTellsOfWhatCame() {
        CChildFrame* const session = OpenFollowed();
        m_pRun->Frame().RunCommand(ID_EXPLORE_ABOUT_LOG);
        auto* const about = qobject_cast<CAboutLogFrame*>(m_pRun->Frame().ActiveChild());
        QVERIFY(about != nullptr);
        auto* const months = about->findChild<QCheckBox*>(QStringLiteral("months"));
        months->setChecked(true); // and this stays so
        QVERIFY(ShownText(*about).contains(QStringLiteral("Records:\n6")));
        Append(QStringLiteral("a.log"), Calls(2) + "no time here\n");
        Look();
        QVERIFY(ShownText(*about).contains(QStringLiteral("Records:\n10")));
        QCOMPARE(Rows(List(*about, "First lines that are no records")).size(), 1);
        QVERIFY(months->isChecked());
        QCOMPARE(session->SessionDocument().Session().m_listDetails.Size(), 10U);
    }
};

QTEST_MAIN(FollowTest)
#include "FollowTest.moc"
