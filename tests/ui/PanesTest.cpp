#include "ui/SessionSupport.h"

#include <QPlainTextEdit>
#include <QTabBar>

using namespace carvelot;
using namespace carvelot::test;

namespace {

// Process 5: calls of a and B, SQL on two tables, a cache, silences, errors. Process 10: an error.
std::vector<std::string> Log() {
    return DebugLog({
        Line("10:00:00.000001", "Calling Business function B from Level 1 (BSFNLevel = 1)"),
        Line("10:00:02.000001", "Return value is 1 for B. (BSFNLevel = 1)"),
        Line("10:00:02.000002", "Calling Business function a from Level 1 (BSFNLevel = 1)"),
        Line("10:00:02.500002", "Return value is 2 for a. (BSFNLevel = 1)"),
        Line("10:00:02.500003", "Calling Business function a from Level 1 (BSFNLevel = 1)"),
        Line("10:00:02.750003", "Return value is 0 for a. (BSFNLevel = 1)"),
        Line("10:00:02.750004", "SELECT X FROM T2"),
        Line("10:00:06.250004", "Exiting DBPerformRequest"),
        Line("10:00:06.250005", "UPDATE T1 SET A = 1", "5/7"),
        Line("10:00:06.250006", "SELECT X FROM T1", "5/7"),
        Line("10:00:06.250007", "Entering jdeCacheInit - Name:[Orders]", "5/7"),
        Line("10:00:06.250008", "Created new cache - hCache:[e5762678]", "5/7"),
        Line("10:00:06.250009", "hCache:[e5762678] Nm:[9Orders] Recs:0 Curs:0 Hnds:1 Cchs:141 INIT new",
             "5/7"),
        Line("10:00:06.250010", "Entering jdeCacheAdd", "5/7"),
        Line("10:00:06.250011", "hCache:[e5762678] Nm:[9Orders] Recs:1 Curs:0 Hnds:1 Cchs:141 ADD", "5/7"),
        Line("10:00:06.250012", "JDB9900168 - Failed to update", "10/2"),
    });
}

std::vector<std::string> JasLog() {
    return JASLog({
        JASLine("09:00:01,000", "ANNIKA", "Object Called: P42101"),
        JASLine("09:00:04,000", "ANNIKA", "first", "WARN  "),
        JASLine("09:00:04,000", "ANNIKA", "second", "SEVERE"),
        JASLine("09:00:04,000", "ANNIKA", "Object Called: P4210"),
        JASLine("09:00:06,500", "ANNIKA", "third", "WARN  "),
    });
}

} // namespace

class PanesTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    // --- filling

    void aProcessFillsAllSixPanesAndTheirCaptions() {
        Select(m_pRun->Open("a.log", Log()), "Process - 5");
        CMainFrame& frame = m_pRun->Frame();
        QCOMPARE(Rows(frame.m_wndBSFNPane.List()), (QStringList{"B|1|2.000000|2.000000|2.000000|2.000000",
                                                                "a|2|0.750000|0.250000|0.500000|0.375000"}));
        QCOMPARE(Rows(frame.m_wndSQLPane.List()), (QStringList{"T2|1|0|0|0", "T1|1|0|1|0"}));
        QCOMPARE(TreeText(frame.m_wndCachePane.Model()),
                 QStringLiteral("Orders Handle:[e5762678] Instance:[9Orders]\n"
                                " 10:00:06.250008    Cache Init (New)\n"
                                " 10:00:06.250010    Cache Add\n"));
        QVERIFY(!frame.m_wndCachePane.Tree().isExpanded(frame.m_wndCachePane.Model().index(0, 0)));
        QCOMPARE(Rows(frame.m_wndLongTasksPane.List()),
                 (QStringList{"5/6|SQL|3.500000|SELECT X FROM T2",
                              "5/6|BSFN|2.000000|Calling Business function B from Level 1 (BSFNLevel = 1)"}));
        QCOMPARE(Rows(frame.m_wndErrorPane.List()),
                 (QStringList{"5/6|BSFN Error|Return value is 2 for a. (BSFNLevel = 1)",
                              "5/6|BSFN Warning|Return value is 1 for B. (BSFNLevel = 1)"}));
        QCOMPARE(Rows(frame.m_wndTimingGapsPane.List()),
                 (QStringList{"5/6|10:00:06.250004    |3.500000|Exiting DBPerformRequest",
                              "5/6|10:00:02.000001    |2.000000|Return value is 1 for B. (BSFNLevel = 1)"}));
        for (CDockablePane* pane : Captioned()) {
            QCOMPARE(pane->GetCaption(), QStringLiteral(" Process: 5"));
        }
        QCOMPARE(frame.m_wndTimingGapsPane.GetCaption(), QString());
    }

    void aThreadLeavesCachesAndGapsOnTheProcessShownBefore() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        CMainFrame& frame = m_pRun->Frame();
        Select(child, "Thread - 7"); // nothing was shown before
        QCOMPARE(frame.m_wndCachePane.Model().rowCount(), 0);
        QVERIFY(Rows(frame.m_wndTimingGapsPane.List()).isEmpty());
        QCOMPARE(frame.m_wndCachePane.GetCaption(), QString());
        Select(child, "Process - 5");
        Select(child, "Thread - 7");
        QCOMPARE(frame.m_wndCachePane.Model().rowCount(), 1);
        QCOMPARE(frame.m_wndCachePane.GetCaption(), QStringLiteral(" Process: 5"));
        QCOMPARE(Rows(frame.m_wndTimingGapsPane.List()).size(), 2);
        QCOMPARE(Rows(frame.m_wndSQLPane.List()), QStringList{"T1|1|0|1|0"});
        QVERIFY(Rows(frame.m_wndBSFNPane.List()).isEmpty());
        QVERIFY(Rows(frame.m_wndLongTasksPane.List()).isEmpty());
        QVERIFY(Rows(frame.m_wndErrorPane.List()).isEmpty());
        for (CDockablePane* pane :
             std::initializer_list<CDockablePane*>{&frame.m_wndBSFNPane, &frame.m_wndSQLPane,
                                                   &frame.m_wndLongTasksPane, &frame.m_wndErrorPane}) {
            QCOMPARE(pane->GetCaption(), QStringLiteral(" Process: 5 Thread: 7"));
        }
    }

    // Rows make their texts from the records. Close All, and the end of the program, close no window by
    // itself.
    void rowsGoWithTheRecordsThatTheyAreMadeOf() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Select(child, "Process - 5");
        Select(m_pRun->Open("jas.log", JasLog()), "ANNIKA");
        CMainFrame& frame = m_pRun->Frame();
        frame.ClientArea().Activate(*child);
        const QList<CListCtrl*> lists = {&frame.m_wndLongTasksPane.List(), &frame.m_wndErrorPane.List(),
                                         &frame.m_wndTimingGapsPane.List()};
        for (CListCtrl* list : lists) {
            QVERIFY(list->Model().rowCount() > 0);
        }
        theApp().CloseAllDocuments();
        CSessionRun::Settle();
        for (CListCtrl* list : lists) {
            QCOMPARE(list->Model().rowCount(), 0);
        }
    }

    void everyProcessShowsTheSameGaps() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Select(child, "Process - 5");
        const QStringList rows = Rows(m_pRun->Frame().m_wndTimingGapsPane.List());
        Select(child, "Process - 10");
        QCOMPARE(Rows(m_pRun->Frame().m_wndTimingGapsPane.List()), rows);
        QCOMPARE(Rows(m_pRun->Frame().m_wndErrorPane.List()),
                 QStringList{"10/2|ERROR|JDB9900168 - Failed to update"});
        QCOMPARE(m_pRun->Frame().m_wndCachePane.Model().rowCount(), 0);
    }

    void aUserFillsThePanesWithoutCaches() {
        Select(m_pRun->Open("a.log", Log()), "Process - 5");
        Select(m_pRun->Open("jas.log", JasLog()), "ANNIKA");
        CMainFrame& frame = m_pRun->Frame();
        QCOMPARE(frame.m_wndCachePane.Model().rowCount(), 0);
        for (CDockablePane* pane : Captioned()) {
            QCOMPARE(pane->GetCaption(), QStringLiteral(" User: ANNIKA"));
        }
        for (CListCtrl* list : {&frame.m_wndLongTasksPane.List(), &frame.m_wndErrorPane.List(),
                                &frame.m_wndTimingGapsPane.List(), &frame.m_wndFindPane.List()}) {
            QCOMPARE(Title(*list, 0), QStringLiteral("User"));
        }
        // The user's list has its newest first: the oldest comes out on top.
        QCOMPARE(Rows(frame.m_wndErrorPane.List()),
                 (QStringList{"ANNIKA|ERROR|first", "ANNIKA|ERROR|second", "ANNIKA|ERROR|third"}));
        QCOMPARE(Rows(frame.m_wndLongTasksPane.List()),
                 (QStringList{"ANNIKA|BSFN|3.000000|Object Called: P42101",
                              "ANNIKA|BSFN|2.500000|Object Called: P4210"}));
        QVERIFY(frame.m_wndFindPane.List().header()->isSectionHidden(1));
    }

    void aDebugLogTitlesItsFirstColumnsProcess() {
        Select(m_pRun->Open("jas.log", JasLog()), "ANNIKA");
        Select(m_pRun->Open("a.log", Log()), "Process - 5");
        CMainFrame& frame = m_pRun->Frame();
        for (CListCtrl* list : {&frame.m_wndLongTasksPane.List(), &frame.m_wndErrorPane.List(),
                                &frame.m_wndTimingGapsPane.List()}) {
            QCOMPARE(Title(*list, 0), QStringLiteral("Process/Thread"));
        }
        QCOMPARE(Title(frame.m_wndFindPane.List(), 0), QStringLiteral("Process"));
        QVERIFY(!frame.m_wndFindPane.List().header()->isSectionHidden(1));
    }

    void aSelectionKeepsNoEarlierSort() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Select(child, "Process - 5");
        CListCtrl& list = m_pRun->Frame().m_wndSQLPane.List();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndSQLPane);
        ClickHeader(list, 0);
        QCOMPARE(Rows(list), (QStringList{"T1|1|0|1|0", "T2|1|0|0|0"}));
        Select(child, "Process - 10");
        Select(child, "Process - 5");
        QCOMPARE(Rows(list), (QStringList{"T2|1|0|0|0", "T1|1|0|1|0"}));
    }

    // --- sorting

    void namesSortWithoutCaseAndNumbersByTheirValue() {
        Select(m_pRun->Open("a.log", Log()), "Process - 5");
        CListCtrl& list = m_pRun->Frame().m_wndBSFNPane.List();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndBSFNPane);
        ClickHeader(list, 0);
        QCOMPARE(Rows(list).constFirst().left(1), QStringLiteral("a"));
        ClickHeader(list, 0);
        QCOMPARE(Rows(list).constFirst().left(1), QStringLiteral("B"));
        for (int column = 2; column < 6; ++column) {
            ClickHeader(list, column);
            QCOMPARE(Rows(list).constFirst().left(1), QStringLiteral("a"));
            ClickHeader(list, column);
            QCOMPARE(Rows(list).constFirst().left(1), QStringLiteral("B"));
        }
        ClickHeader(list, 1);
        QCOMPARE(Rows(list).constFirst().left(1), QStringLiteral("B"));
    }

    void longTasksBeginWithTheLongestAndAClickOnDurationTurnsThemRound() {
        Select(m_pRun->Open("a.log", Log()), "Process - 5");
        CListCtrl& list = m_pRun->Frame().m_wndLongTasksPane.List();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndLongTasksPane);
        QVERIFY(Rows(list).constFirst().startsWith("5/6|SQL|3.5"));
        ClickHeader(list, 2);
        QVERIFY(Rows(list).constFirst().startsWith("5/6|BSFN|2.0"));
        ClickHeader(list, 1);
        QVERIFY(Rows(list).constFirst().startsWith("5/6|BSFN"));
        ClickHeader(list, 3);
        QVERIFY(Rows(list).constFirst().endsWith("(BSFNLevel = 1)"));
    }

    void aSortByUserOrdersNoLongTasks() {
        Select(m_pRun->Open("jas.log", JasLog()), "ANNIKA");
        CListCtrl& list = m_pRun->Frame().m_wndLongTasksPane.List();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndLongTasksPane);
        const QStringList before = Rows(list);
        ClickHeader(list, 0);
        QCOMPARE(Rows(list), before);
        ClickHeader(list, 0);
        QCOMPARE(Rows(list), before);
    }

    // --- double clicks

    void aDoubleClickOnALongTaskOpensItsLineInItsThread() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Select(child, "Thread - 6");
        CSessionRun::ShowPane(m_pRun->Frame().m_wndLongTasksPane);
        DoubleClick(m_pRun->Frame().m_wndLongTasksPane.List(), 0);
        QCOMPARE(SelectedText(child->DetailView()),
                 QStringLiteral("10:00:02.750004    (3.500000) SELECT X FROM T2"));
        QVERIFY(child->DetailView().hasFocus());
        QCOMPARE(m_pRun->Frame().m_wndRawDataPane.Edit().toPlainText(), QStringLiteral("SELECT X FROM T2"));
    }

    void aDoubleClickWhileTheProcessIsShownStaysInTheProcess() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Select(child, "Process - 5");
        CSessionRun::ShowPane(m_pRun->Frame().m_wndErrorPane);
        DoubleClick(m_pRun->Frame().m_wndErrorPane.List(), 1);
        QVERIFY(SelectedText(child->ThreadView()).startsWith("Process - 5"));
        QCOMPARE(SelectedText(child->DetailView()),
                 QStringLiteral("(6)10:00:02.000001    Return value is 1 for B. (BSFNLevel = 1)"));
        // Its call had to be opened.
        QVERIFY(child->DetailView().isExpanded(child->DetailView().SelectedIndex().parent()));
    }

    void aDoubleClickOnAnotherProcessesRecordSelectsItsThreadAndRefillsTheList() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Select(child, "Process - 10");
        CListCtrl& list = m_pRun->Frame().m_wndTimingGapsPane.List();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndTimingGapsPane);
        DoubleClick(list, 1);
        QVERIFY(SelectedText(child->ThreadView()).startsWith("Thread - 6"));
        QCOMPARE(SelectedText(child->DetailView()),
                 QStringLiteral("10:00:02.000001    Return value is 1 for B. (BSFNLevel = 1)"));
        Select(child, "Process - 10");
        CSessionRun::ShowPane(m_pRun->Frame().m_wndErrorPane);
        Select(child, "Thread - 7");
        Select(child, "Process - 10");
        DoubleClick(m_pRun->Frame().m_wndErrorPane.List(), 0);
        QVERIFY(SelectedText(child->ThreadView()).startsWith("Process - 10"));
        QVERIFY(SelectedText(child->DetailView()).startsWith("(2)"));
    }

    void aDoubleClickOnASortedListFollowsTheRowThatIsSeen() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Select(child, "Process - 5");
        CListCtrl& list = m_pRun->Frame().m_wndErrorPane.List();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndErrorPane);
        ClickHeader(list, 2);
        QVERIFY(Rows(list).constFirst().contains("is 1 for B"));
        DoubleClick(list, 0);
        QVERIFY(SelectedText(child->DetailView()).contains("is 1 for B"));
        QVERIFY(Rows(list).constFirst().contains("is 1 for B")); // the session was in front: no refill
        list.setFocus();
        QTest::keyClick(&list, Qt::Key_Down);
        QTest::keyClick(&list, Qt::Key_Return);
        QVERIFY(SelectedText(child->DetailView()).contains("is 2 for a"));
    }

    void aUsersRowSelectsTheUser() {
        CChildFrame* child = m_pRun->Open("jas.log", JasLog());
        Select(child, "INIT");
        CSessionRun::ShowPane(m_pRun->Frame().m_wndTimingGapsPane);
        const QStringList rows = Rows(m_pRun->Frame().m_wndTimingGapsPane.List());
        QVERIFY(rows.constFirst().startsWith("ANNIKA|09:00:06."));
        DoubleClick(m_pRun->Frame().m_wndTimingGapsPane.List(), 0);
        QCOMPARE(SelectedText(child->ThreadView()), QStringLiteral("ANNIKA"));
        QVERIFY(SelectedText(child->DetailView()).endsWith("third"));
    }

    void functionsAndTablesLeadNowhere() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Select(child, "Process - 5");
        CSessionRun::ShowPane(m_pRun->Frame().m_wndBSFNPane);
        DoubleClick(m_pRun->Frame().m_wndBSFNPane.List(), 0);
        CSessionRun::ShowPane(m_pRun->Frame().m_wndSQLPane);
        DoubleClick(m_pRun->Frame().m_wndSQLPane.List(), 0);
        QVERIFY(!child->DetailView().SelectedIndex().isValid());
    }

    // --- caches

    void aDoubleClickOnACacheOperationOpensItsLineAndFoldsNothing() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Select(child, "Process - 5");
        CCacheTree& tree = m_pRun->Frame().m_wndCachePane.Tree();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndCachePane);
        const QModelIndex cache = tree.model()->index(0, 0);
        DoubleClick(tree, cache);
        QVERIFY(!tree.isExpanded(cache));
        QVERIFY(!child->DetailView().SelectedIndex().isValid());
        tree.expand(cache);
        DoubleClick(tree, tree.model()->index(1, 0, cache));
        QCOMPARE(SelectedText(child->DetailView()),
                 QStringLiteral("(7)10:00:06.250010    Entering jdeCacheAdd"));
        tree.setFocus();
        QTest::keyClick(&tree, Qt::Key_Up);
        QTest::keyClick(&tree, Qt::Key_Return);
        QCOMPARE(SelectedText(child->DetailView()),
                 QStringLiteral("(7)10:00:06.250008    Created new cache - hCache:[e5762678]"));
    }

    void aRightClickOnACacheNodeSelectsItAndOffersNothing() {
        Select(m_pRun->Open("a.log", Log()), "Process - 5");
        CCacheTree& tree = m_pRun->Frame().m_wndCachePane.Tree();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndCachePane);
        tree.expandAll();
        Click(tree, tree.model()->index(0, 0, tree.model()->index(0, 0)), Qt::RightButton);
        QCOMPARE(SelectedText(tree), QStringLiteral("10:00:06.250008    Cache Init (New)"));
        QVERIFY(m_pRun->m_user.m_listMenuTexts.isEmpty());
    }

    void cachesAndOperationsShowTheirImages() {
        Select(m_pRun->Open("a.log", Log()), "Process - 5");
        CCachePane& pane = m_pRun->Frame().m_wndCachePane;
        QCOMPARE(pane.Images().size(), 11);
        const QModelIndex cache = pane.Model().index(0, 0);
        QCOMPARE(ImageOf(cache, pane.Images()), 0);
        const CCacheAnalysis::CCache& model = *pane.Model().Cache(cache);
        QCOMPARE(ImageOf(pane.Model().index(0, 0, cache), pane.Images()), model.m_operations[0].Image());
        QCOMPARE(ImageOf(pane.Model().index(1, 0, cache), pane.Images()), model.m_operations[1].Image());
        QVERIFY(model.m_operations[0].Image() != model.m_operations[1].Image());
    }

    void modelsKeepTheToolkitsRules() {
        CMainFrame& frame = m_pRun->Frame();
        std::vector<std::unique_ptr<QAbstractItemModelTester>> testers;
        for (QAbstractItemModel* model : std::initializer_list<QAbstractItemModel*>{
                 &frame.m_wndCachePane.Model(), &frame.m_wndTimingGapsPane.List().Model(),
                 &frame.m_wndLongTasksPane.List().Model(), &frame.m_wndBSFNPane.List().Model(),
                 &frame.m_wndSQLPane.List().Model(), &frame.m_wndErrorPane.List().Model(),
                 &frame.m_wndFindPane.List().Model(), &frame.m_wndProcessPane.List().Model()}) {
            testers.push_back(std::make_unique<QAbstractItemModelTester>(
                model, QAbstractItemModelTester::FailureReportingMode::QtTest));
        }
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Select(child, "Process - 5");
        Select(child, "Process - 10");
        for (CListCtrl* list :
             {&frame.m_wndTimingGapsPane.List(), &frame.m_wndLongTasksPane.List(),
              &frame.m_wndBSFNPane.List(), &frame.m_wndSQLPane.List(), &frame.m_wndErrorPane.List()}) {
            list->SortBy(0, Qt::AscendingOrder);
            list->SortBy(0, Qt::DescendingOrder);
        }
        child->CloseWindow();
        CSessionRun::Settle();
        QCOMPARE(m_pRun->Frame().m_wndCachePane.Model().rowCount(), 0);
    }

    // --- export of gaps

    void exportIsOfferedOnlyWhileARowIsSelected() {
        Select(m_pRun->Open("a.log", Log()), "Process - 5");
        CListCtrl& list = m_pRun->Frame().m_wndTimingGapsPane.List();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndTimingGapsPane);
        AskForMenu(*list.viewport(), QPoint(5, 5), QContextMenuEvent::Mouse);
        QVERIFY(m_pRun->m_user.m_listMenuTexts.isEmpty());
        Click(list, list.Model().index(0, 0));
        AskForMenu(*list.viewport(), QPoint(5, 5), QContextMenuEvent::Mouse);
        QCOMPARE(m_pRun->m_user.m_listMenuTexts, QStringList{"Export"});
        QVERIFY(m_pRun->m_user.m_listQuestions.size() == 1); // the question of Open
    }

    void exportAsksForAFileAndACancelWritesNothing() {
        Export({});
        const CFileQuestion& question = m_pRun->m_user.m_listQuestions.back();
        QCOMPARE(question.m_strInitialName, QStringLiteral("TimingGaps"));
        QCOMPARE(question.m_strDefaultExtension, QStringLiteral("csv"));
        QCOMPARE(question.m_strFilter,
                 QStringLiteral("CSV Format (*.csv)|*.csv|Text Format (*.txt)|*.txt||"));
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());
    }

    void exportRefusesOtherKindsOfFiles() {
        Export("report.log");
        QCOMPARE(m_pRun->m_user.m_listMessages, QStringList{"Invalid file type"});
        QVERIFY(!QFile::exists(m_pRun->Path("report.log")));
    }

    void exportReportsAFileThatCannotBeWrittenAndTrimsNothing() {
        Export("nowhere/gaps.txt");
        QCOMPARE(m_pRun->m_user.m_listMessages.size(), 1);
        QVERIFY(m_pRun->m_user.m_listMessages[0].contains("nowhere/gaps.txt"));
        Export("gaps.csv");
        QVERIFY(m_pRun->Read("gaps.csv").contains("10:00:06.250004    ,"));
    }

    void csvHoldsAllRowsInTheListsOrder() {
        Select(m_pRun->Open("a.log", Log()), "Process - 5");
        CListCtrl& list = m_pRun->Frame().m_wndTimingGapsPane.List();
        CSessionRun::ShowPane(m_pRun->Frame().m_wndTimingGapsPane);
        ClickHeader(list, 2);
        Export("gaps.CSV");
        QCOMPARE(
            m_pRun->Read("gaps.CSV").replace("\r\n", "\n"),
            QByteArray("Proc/Thread,Timestamp,Gap Duration,Message\n"
                       "\"5/6\",10:00:02.000001    ,2.000000,\"Return value is 1 for B. (BSFNLevel = 1)\"\n"
                       "\"5/6\",10:00:06.250004    ,3.500000,\"Exiting DBPerformRequest\"\n"));
    }

    void textTrimsTheStoredTimeStampsAndNotTheShownOnes() {
        Export("gaps.txt");
        QCOMPARE(m_pRun->Read("gaps.txt").replace("\r\n", "\n"),
                 QByteArray("Proc/Thread   Timestamp          Gap Duration     Message\n"
                            "5/6           10:00:06.250004    3.500000         Exiting DBPerformRequest\n"
                            "5/6           10:00:02.000001    2.000000         Return value is 1 for B. "
                            "(BSFNLevel = 1)\n"));
        QVERIFY(
            Rows(m_pRun->Frame().m_wndTimingGapsPane.List()).constFirst().contains("10:00:06.250004    |"));
        Export("gaps.csv");
        QVERIFY(m_pRun->Read("gaps.csv").contains("\"5/6\",10:00:06.250004,3.500000,"));
    }

    // --- raw data

    void rawDataCopiesTheSelectionWhenCIsReleasedWithCtrl() {
        CRawDataPane& pane = m_pRun->Frame().m_wndRawDataPane;
        CSessionRun::ShowPane(pane);
        pane.SetText("first line\nsecond line");
        pane.Edit().setFocus();
        QGuiApplication::clipboard()->setText("before");
        Key(QEvent::KeyRelease, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
        pane.Edit().selectAll();
        Key(QEvent::KeyRelease, Qt::Key_C, Qt::NoModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
        Key(QEvent::KeyRelease, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("first line\nsecond line"));
    }

    void whoClicksOnAPanesTabGoesOnInThatPane() {
        CChildFrame* session = m_pRun->Open("a.log", Log());
        Select(session, "Process - 5");
        CMainFrame& frame = m_pRun->Frame();
        const auto clickTab = [&frame](const CDockablePane& pane) {
            for (QTabBar* bar : frame.findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
                for (int n = 0; n < bar->count(); ++n) {
                    if (bar->tabText(n) == pane.windowTitle()) {
                        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(n).center());
                    }
                }
            }
        };
        clickTab(frame.m_wndLongTasksPane);
        QVERIFY(frame.m_wndLongTasksPane.List().hasFocus());
        clickTab(frame.m_wndFindPane);
        QTest::keyClicks(QApplication::focusWidget(), "update");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(Rows(frame.m_wndFindPane.List()),
                 (QStringList{"5|7|UPDATE T1 SET A = 1", "10|2|JDB9900168 - Failed to update"}));
        // A pane that comes up in another way leaves the focus where it is.
        session->ThreadView().setFocus();
        frame.m_wndErrorPane.raise();
        QCoreApplication::processEvents();
        QVERIFY(session->ThreadView().hasFocus());
    }

    void rawDataCannotBeEditedAndScrolls() {
        CRawDataPane& pane = m_pRun->Frame().m_wndRawDataPane;
        CSessionRun::ShowPane(pane);
        pane.SetText("text");
        pane.Edit().setFocus();
        QTest::keyClicks(&pane.Edit(), "abc");
        QCOMPARE(pane.Edit().toPlainText(), QStringLiteral("text"));
        QCOMPARE(pane.Edit().verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
        QCOMPARE(pane.Edit().font(), CellFont("Courier New", 14));
    }

    void panesFitLargeFonts() {
        const QFont before = QApplication::font();
        QFont large = before;
        large.setPointSizeF(before.pointSizeF() * 1.25);
        m_pRun.reset();
        QApplication::setFont(large);
        m_pRun = std::make_unique<CSessionRun>();
        QCoreApplication::processEvents();
        CMainFrame& frame = m_pRun->Frame();
        for (CListCtrl* list :
             {&frame.m_wndBSFNPane.List(), &frame.m_wndSQLPane.List(), &frame.m_wndLongTasksPane.List(),
              &frame.m_wndErrorPane.List(), &frame.m_wndTimingGapsPane.List()}) {
            for (int n = 0; n < list->Model().columnCount(); ++n) {
                QCOMPARE(list->header()->sectionSize(n), list->Model().ColumnWidth(n));
            }
            QVERIFY(list->header()->height() >= list->header()->fontMetrics().height());
        }
        CSessionRun::ShowPane(frame.m_wndFindPane);
        QVERIFY(frame.m_wndFindPane.SearchEdit().height() >=
                frame.m_wndFindPane.SearchEdit().fontMetrics().height());
        QApplication::setFont(before);
    }

private:
    QList<CDockablePane*> Captioned() const {
        CMainFrame& frame = m_pRun->Frame();
        return {&frame.m_wndBSFNPane, &frame.m_wndSQLPane, &frame.m_wndCachePane, &frame.m_wndLongTasksPane,
                &frame.m_wndErrorPane};
    }
    // Exports the gaps of process 5 to a file of that name, or cancels.
    void Export(const QString& name) {
        CMainFrame& frame = m_pRun->Frame();
        if (frame.ActiveChild() == nullptr) {
            Select(m_pRun->Open("a.log", Log()), "Process - 5");
        }
        CSessionRun::ShowPane(frame.m_wndTimingGapsPane);
        CListCtrl& list = frame.m_wndTimingGapsPane.List();
        Click(list, list.Model().index(0, 0));
        m_pRun->m_user.m_strMenuChoice = "Export";
        m_pRun->m_user.m_strSaveAnswer.reset();
        if (!name.isEmpty()) {
            m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(name);
        }
        AskForMenu(*list.viewport(), QPoint(5, 5), QContextMenuEvent::Mouse);
    }
    // A key as the window system reports it, with its state of the modifiers.
    void Key(QEvent::Type type, Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QTest::sendKeyEvent(type == QEvent::KeyPress ? QTest::Press : QTest::Release,
                            m_pRun->Frame().windowHandle(), key, QString(), modifiers);
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(PanesTest)
#include "PanesTest.moc"
