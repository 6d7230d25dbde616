// The window "Overview", and what all windows of Explore do: they belong to a session, are explored beside it
// and go with it.
#include "ui/ExploreSupport.h"
#include "ui/explore/OverviewFrame.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QToolButton>

using namespace carvelot;
using namespace carvelot::test;

class OverviewTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void tellsWhatTheLogIsAndWhereItsTimeWent() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        QVERIFY(session != nullptr);
        auto* const overview = OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW);
        QVERIFY(overview != nullptr);
        QVERIFY2(ShownText(*overview).contains(QString::fromUtf8(
                     "order.log   debug log · 7.000 s · 2 processes, 2 threads · 31 records")),
                 qPrintable(ShownText(*overview)));
        const QStringList findings = Rows(List(*overview, "Findings"));
        QVERIFY2(findings.size() == 4, qPrintable(findings.join(QLatin1Char(0x0A))));
        QCOMPARE(findings[0], QString::fromUtf8(
                                  "●  InnerCall failed: Return value is 2 for InnerCall. (BSFNLevel = 2)|1 x|"
                                  "2.000000"));
        QCOMPARE(findings[1],
                 QString::fromUtf8("▲  InnerCall > SELECT IMITM FROM PRODDTA.F4101 WHERE ( IMITM = ? )|12 x|"
                                   "0.006000"));
        QCOMPARE(Rows(List(*overview, "Functions by own time")),
                 (QStringList{"F  OuterCall|2.000000|1 x", "F  LastCall|2.000000|1 x",
                              "F  InnerCall|1.994000|1 x", "S  SELECT PRODDTA.F4101|0.006000|12 x"}));
        QCOMPARE(Rows(List(*overview, "Statements by time")),
                 (QStringList{"SELECT IMITM FROM PRODDTA.F4101 WHERE ( IMITM = ? )|0.006000|12 x"}));
        QCOMPARE(m_pRun->Frame().windowTitle(), QStringLiteral("Overview - order.log - Carvelot"));
    }

    void aFindingAndAStatementLeadToTheirWindows() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const overview = OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW);
        const auto open = [overview](const char* name, int row) {
            CListCtrl& list = List(*overview, name);
            list.setFocus();
            list.setCurrentIndex(list.Model().index(row, 0));
            QTest::keyClick(&list, Qt::Key_Return);
        };
        open("Findings", 1);
        CMDIChildWnd* shown = m_pRun->Frame().ActiveChild();
        QVERIFY2(shown->windowTitle().startsWith(QLatin1String("Findings - ")),
                 qPrintable(shown->windowTitle()));
        const CListCtrl& findings = List(*shown, "Findings");
        QCOMPARE(findings.currentIndex().siblingAtColumn(1).data().toString(),
                 QStringLiteral("InnerCall > SELECT IMITM FROM PRODDTA.F4101 WHERE ( IMITM = ? )"));
        m_pRun->Frame().ClientArea().Activate(*overview);
        open("Statements by time", 0);
        shown = m_pRun->Frame().ActiveChild();
        QVERIFY2(shown->windowTitle().startsWith(QLatin1String("SQL Statements - ")),
                 qPrintable(shown->windowTitle()));
        QCOMPARE(List(*shown, "Executions").Model().rowCount(), 12);
    }

    void isOneTabOfItsSessionAndGoesWithIt() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const overview = OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW);
        QCOMPARE(OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW), overview);
        QCOMPARE(m_pRun->Frame().ClientArea().Children().size(), 2);
        // Its session's commands are there with it in front.
        QVERIFY(m_pRun->Frame().CommandAction(ID_SESSION_ANALYZE)->isEnabled());
        QPointer<COverviewFrame> watched = overview;
        session->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(watched == nullptr);
        QVERIFY(m_pRun->Frame().ClientArea().Children().isEmpty());
    }

    void closesAlone() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* overview = OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW);
        overview->CloseWindow();
        CSessionRun::Settle();
        QCOMPARE(m_pRun->Frame().ClientArea().Children(), QList<CMDIChildWnd*>{session});
        overview = OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW);
        QVERIFY(overview != nullptr);
        QVERIFY(!Rows(List(*overview, "Findings")).isEmpty());
    }

    void isExploredAnewWhenTheLogIsAnalyzedAgain() {
        const QString path = m_pRun->Write(QStringLiteral("order.log"), ExploredLines());
        CChildFrame* const session = m_pRun->Open(path);
        auto* const overview = OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW);
        std::vector<std::string> lines = ExploredLines();
        lines.push_back(
            Line("08:00:08.000000",
                 "Calling Business function Added for JSMITH from CALLBSFN.DLL. (BSFNLevel = 1)"));
        lines.push_back(Line("08:00:18.000000", "Return value is 0 for Added. (BSFNLevel = 1)"));
        m_pRun->Write(QStringLiteral("order.log"), lines);
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QVERIFY(WaitForResults(overview->Exploration()));
        QCOMPARE(Rows(List(*overview, "Functions by own time")).constFirst(),
                 QStringLiteral("F  Added|10.000000|1 x"));
    }

    void saysWhyThereIsNothing() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        CExploration& exploration = ExplorationOf(*session);
        m_pRun->Frame().RunCommand(ID_EXPLORE_OVERVIEW);
        auto* const overview = qobject_cast<COverviewFrame*>(m_pRun->Frame().ActiveChild());
        // Esc ends what runs; it stays ended until the user asks for it.
        QCOMPARE(exploration.GetState(), CExploration::State::Running);
        QVERIFY(overview->findChild<QProgressBar*>()->isVisible());
        QTest::keyClick(overview, Qt::Key_Escape);
        QCOMPARE(exploration.GetState(), CExploration::State::Ended);
        QVERIFY(ShownText(*overview).contains(QStringLiteral("Exploring was ended.")));
        m_pRun->Frame().ClientArea().Activate(*session);
        m_pRun->Frame().ClientArea().Activate(*overview);
        QCOMPARE(exploration.GetState(), CExploration::State::Ended);
        auto* const again = overview->findChild<QPushButton*>();
        QVERIFY(again->isVisible());
        again->click();
        QVERIFY(WaitForResults(exploration));
        QVERIFY(!Rows(List(*overview, "Findings")).isEmpty());
        QVERIFY(!again->isVisible());
    }

    void countsInAScopeAndLetsGoOfIt() {
        std::vector<std::string> lines = ExploredLines();
        lines.push_back(Line("08:00:08.000000",
                             "Calling Business function Other for JSMITH from CALLBSFN.DLL. (BSFNLevel = 1)",
                             "5/9"));
        lines.push_back(Line("08:00:09.000000", "Return value is 0 for Other. (BSFNLevel = 1)", "5/9"));
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), lines);
        auto* const overview = OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW);
        CListCtrl& functions = List(*overview, "Functions by own time");
        QCOMPARE(Rows(functions).size(), 5);
        auto* const scope = overview->findChild<QComboBox*>();
        QStringList names;
        for (int at = 0; at < scope->count(); ++at) {
            names << scope->itemText(at);
        }
        QCOMPARE(names, (QStringList{"Whole log", "Process 1", "Thread 1/1", "Process 5", "Thread 5/6",
                                     "Thread 5/9"}));
        scope->setFocus();
        QTest::keyClick(scope, Qt::Key_End);
        QTest::keyClick(scope, Qt::Key_Return);
        QVERIFY(WaitForResults(overview->Exploration()));
        QCOMPARE(Rows(functions), QStringList{"F  Other|1.000000|1 x"});
        // With the box ticked it is what is selected in the session.
        overview->findChild<QCheckBox*>()->click();
        session->ThreadView().SelectIndex(FindNode(session->ThreadView().Model(), QStringLiteral("6")));
        QVERIFY(WaitForResults(overview->Exploration()));
        QCOMPARE(Rows(functions).size(), 4);
        // The cross lets go of both.
        for (QToolButton* cross : overview->findChildren<QToolButton*>()) {
            if (cross->toolTip() == QLatin1String("Back to the whole log")) {
                QVERIFY(cross->isVisible());
                cross->click();
            }
        }
        QVERIFY(WaitForResults(overview->Exploration()));
        QCOMPARE(Rows(functions).size(), 5);
        QVERIFY(!overview->findChild<QCheckBox*>()->isChecked());
    }

    void countsInARangeUntilEsc() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const overview = OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW);
        overview->Exploration().SetRange({0, 1'000'000});
        QVERIFY(WaitForResults(overview->Exploration()));
        CListCtrl& functions = List(*overview, "Functions by own time");
        QCOMPARE(Rows(functions), QStringList{"F  OuterCall|1.000000|1 x"});
        QVERIFY2(
            ShownText(*overview).contains(QStringLiteral("08:00:00.000001 to 08:00:01.000001 (1.000000 s)")),
            qPrintable(ShownText(*overview)));
        const QLabel* inStatusBar = nullptr;
        for (const QLabel* label : m_pRun->Frame().statusBar()->findChildren<QLabel*>()) {
            inStatusBar = label->accessibleName() == QLatin1String("Range") ? label : inStatusBar;
        }
        QVERIFY(inStatusBar->isVisible());
        QVERIFY(inStatusBar->text().endsWith(QLatin1String("(1.000000 s)")));
        // It is told of what shows.
        m_pRun->Frame().ClientArea().Activate(*session);
        QVERIFY(!inStatusBar->isVisible());
        m_pRun->Frame().ClientArea().Activate(*overview);
        QVERIFY(inStatusBar->isVisible());
        QTest::keyClick(&functions, Qt::Key_Escape);
        QVERIFY(WaitForResults(overview->Exploration()));
        QCOMPARE(Rows(functions).size(), 4);
    }

    void endsWhileItRunsWhereItsSessionCloses() {
        for (int n = 0; n < 20; ++n) {
            CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
            m_pRun->Frame().RunCommand(ID_EXPLORE_OVERVIEW);
            QCOMPARE(ExplorationOf(*session).GetState(), CExploration::State::Running);
            if (n % 2 == 0) {
                session->CloseWindow();
            } else {
                m_pRun->Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
            }
            CSessionRun::Settle();
            QVERIFY(m_pRun->Frame().ClientArea().Children().isEmpty());
        }
    }

    void endsWhileItRunsWhereTheLogIsAnalyzedAgain() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        m_pRun->Frame().RunCommand(ID_EXPLORE_OVERVIEW);
        for (int n = 0; n < 20; ++n) {
            m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
            QCOMPARE(ExplorationOf(*session).GetState(), CExploration::State::Running);
        }
        QVERIFY(WaitForResults(ExplorationOf(*session)));
    }

    void ofALogWithNothingInItIsEmpty() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), DebugLog({}));
        auto* const overview = OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW);
        QVERIFY(overview != nullptr);
        QVERIFY(Rows(List(*overview, "Functions by own time")).isEmpty());
    }
};

QTEST_MAIN(OverviewTest)
#include "OverviewTest.moc"
