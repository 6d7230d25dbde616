// The window "SQL Statements": what it shows, where a double click leads, what is copied and exported.
#include "ui/ExploreSupport.h"
#include "ui/explore/StatementsFrame.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSplitter>

using namespace carvelot;
using namespace carvelot::test;

namespace {

// The row that is current in a list, its cells divided by bars.
QString CurrentRow(CListCtrl& list) {
    const int row = list.SelectedRow();
    return row < 0 ? QString() : Rows(list)[row];
}

// The way that a person goes: F6 and Tab lead to the list, here it has the focus.
void Focus(CListCtrl& list) {
    list.setFocus(Qt::TabFocusReason);
    QCoreApplication::processEvents();
}

constexpr const char* kReads = "SELECT IMITM, IMLITM, IMUWUM FROM PRODDTA.F4101 WHERE ( IMITM = ? )";

} // namespace

class StatementsTest : public CSessionTest {
    Q_OBJECT

private:
    CStatementsFrame* OpenStatements(CChildFrame* session) {
        return OpenExplore<CStatementsFrame>(*m_pRun, *session, ID_EXPLORE_STATEMENTS);
    }

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void showsShapesAndTheRunsOfTheSelectedOne() {
        CChildFrame* const session = m_pRun->Open(Sample("order-slow.log"));
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        CListCtrl& shapes = List(*window, "Statements");
        QCOMPARE(shapes.Model().rowCount(), 21);
        QCOMPARE(CurrentRow(shapes),
                 QStringLiteral("5.702505|400|0.018285|0.017056|F  B5542110SumOpenWeight|") +
                     QLatin1String(kReads));
        QCOMPARE(shapes.Model().index(0, ShapeRow::TOTAL).data(kShareRole).toDouble(), 1.0);
        CListCtrl& executions = List(*window, "Executions");
        QCOMPARE(executions.Model().rowCount(), 400);
        QCOMPARE(Title(executions, ExecutionRow::OWNER), QStringLiteral("Proc/Thread"));
        QCOMPARE(Rows(List(*window, "Run by")),
                 QStringList(QStringLiteral("5.702505|400|F  B5542110SumOpenWeight")));
        QCOMPARE(window->findChild<QPlainTextEdit*>()->toPlainText(), QLatin1String(kReads));

        Click(shapes, shapes.Model().index(1, 0));
        QCOMPARE(executions.Model().rowCount(), 1);
        QVERIFY(Rows(executions)[0].contains(QStringLiteral("FROM PRODDTA.F4211")));
    }

    void aDoubleClickLeadsToTheLine() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        DoubleClick(List(*window, "Executions"), 3);
        QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
        QVERIFY2(SelectedText(session->DetailView()).contains(QStringLiteral("( IMITM = 3 )")),
                 qPrintable(SelectedText(session->DetailView())));
        QCOMPARE(window->Exploration().Selected(), std::optional(RecordIndex{9}));
    }

    void aDoubleClickOnAShapeLeadsToItsLongestRun() {
        CChildFrame* const session = m_pRun->Open(Sample("order-slow.log"));
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        DoubleClick(List(*window, "Statements"), 0);
        QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
        // As the report's JSON names it.
        QCOMPARE(window->Exploration().Selected(), std::optional(RecordIndex{2234}));
        // The run is the selected one when the user comes back.
        CListCtrl& executions = List(*window, "Executions");
        QVERIFY(CurrentRow(executions).contains(QStringLiteral("|0.018285|")));
    }

    void theKeyboardAloneLeadsThere() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        CListCtrl& executions = List(*window, "Executions");
        QVERIFY(window->WindowPanes().contains(&executions));
        Focus(executions);
        QTest::keyClick(&executions, Qt::Key_Home);
        QTest::keyClick(&executions, Qt::Key_Down);
        QCOMPARE(window->Exploration().Selected(), std::optional(RecordIndex{5}));
        QVERIFY(window->findChild<QPlainTextEdit*>()->toPlainText().endsWith(QStringLiteral("= 1 )")));
        QTest::keyClick(&executions, Qt::Key_Return);
        QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
        QVERIFY(SelectedText(session->DetailView()).contains(QStringLiteral("( IMITM = 1 )")));
    }

    void copyStatementCopiesItAsItRan() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        CListCtrl& executions = List(*window, "Executions");
        Click(executions, executions.Model().index(2, 0));
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Copy Statement");
        PressMenuKey(executions);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 QStringLiteral("SELECT IMITM FROM PRODDTA.F4101 WHERE ( IMITM = 2 )"));
        // The longest run of a shape, by the mouse.
        CListCtrl& shapes = List(*window, "Statements");
        const QPoint point = PointOf(shapes, shapes.Model().index(0, 0));
        AskForMenu(*shapes.viewport(), point, QContextMenuEvent::Mouse);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 QStringLiteral("SELECT IMITM FROM PRODDTA.F4101 WHERE ( IMITM = 0 )"));
    }

    void menusLeadToTheSessionAsADoubleClickDoes() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        CListCtrl& executions = List(*window, "Executions");
        Click(executions, executions.Model().index(2, 0));
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Show in Session");
        PressMenuKey(executions);
        QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
        QVERIFY(SelectedText(session->DetailView()).contains(QStringLiteral("( IMITM = 2 )")));
        m_pRun->Frame().ClientArea().Activate(*window);
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Show the Longest");
        CListCtrl& shapes = List(*window, "Statements");
        Click(shapes, shapes.Model().index(0, 0));
        PressMenuKey(shapes);
        QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
        QVERIFY(SelectedText(session->DetailView()).contains(QStringLiteral("( IMITM = 0 )")));
    }

    void copyStatementFillsInAJASStatementsParameters() {
        CChildFrame* const session = m_pRun->Open(Sample("jas-slow.log"));
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        CListCtrl& shapes = List(*window, "Statements");
        CListCtrl& executions = List(*window, "Executions");
        QCOMPARE(Title(executions, ExecutionRow::OWNER), QStringLiteral("User"));
        Click(shapes, shapes.Model().index(1, 0));
        Click(executions, executions.Model().index(0, 0));
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Copy Statement");
        PressMenuKey(executions);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 QStringLiteral("SELECT  COUNT(*) FROM PRODDTA.F4211 WHERE SDNXTR = '540' AND "
                                "SDMCU = '          30'"));
    }

    void copyTakesTheRowAsItIsShown() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        CListCtrl& callers = List(*window, "Run by");
        Click(callers, callers.Model().index(0, 0));
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Copy");
        PressMenuKey(callers);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("0.006000\t12\tF  InnerCall"));
        Focus(callers);
        QGuiApplication::clipboard()->clear();
        QTest::keyClick(&callers, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("0.006000\t12\tF  InnerCall"));
    }

    void exportWritesWhatIsShownInItsOrder() {
        CChildFrame* const session = m_pRun->Open(Sample("order-slow.log"));
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        CListCtrl& shapes = List(*window, "Statements");
        ClickHeader(shapes, ShapeRow::COUNT);
        ClickHeader(shapes, ShapeRow::COUNT); // the largest first
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Export...");
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("shapes.csv"));
        PressMenuKey(shapes);
        QCOMPARE(m_pRun->m_user.m_listQuestions.back().m_nFiles, EFiles::Exports);
        QCOMPARE(m_pRun->m_user.m_listQuestions.back().m_strInitialName, QStringLiteral("Statements"));
        const QList<QByteArray> lines = m_pRun->Read(QStringLiteral("shapes.csv")).split('\n');
        QCOMPARE(lines.size(), 23); // titles, 21 rows, and nothing behind the last end
        QCOMPARE(lines[0], QByteArray("Total (s),Count,Longest (s),p95 (s),Most Run By,Statement\r"));
        QCOMPARE(lines[1],
                 QByteArray("5.702505,400,0.018285,0.017056,F  B5542110SumOpenWeight,\"") + kReads + "\"\r");
        QCOMPARE(lines[22], QByteArray());
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("shapes.txt"));
        PressMenuKey(shapes);
        QCOMPARE(m_pRun->Read(QStringLiteral("shapes.txt")).split('\n')[1],
                 QByteArray("5.702505\t400\t0.018285\t0.017056\tF  B5542110SumOpenWeight\t") + kReads);
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());
    }

    void exportRefusesWhatItCannotWrite() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Export...");
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("shapes.xlsx"));
        PressMenuKey(List(*window, "Statements"));
        QCOMPARE(m_pRun->m_user.m_listMessages, QStringList(QStringLiteral("Invalid file type")));
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("no/such/folder/a.csv"));
        PressMenuKey(List(*window, "Statements"));
        QVERIFY(m_pRun->m_user.m_listMessages.back().startsWith(QStringLiteral("Failed to write ")));
    }

    void theSelectedShapeOutlivesAnotherRange() {
        CChildFrame* const session = m_pRun->Open(Sample("order-slow.log"));
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        CListCtrl& shapes = List(*window, "Statements");
        Click(shapes, shapes.Model().index(5, 0));
        const QString shape = shapes.Model().index(5, ShapeRow::SHAPE).data().toString();
        CExploration& exploration = window->Exploration();
        // Also where a run of another one is marked.
        exploration.Select(RecordIndex{669});
        Click(shapes, shapes.Model().index(5, 0));
        exploration.SetRange({0, exploration.Explored().clock.Length() - 1});
        QVERIFY(WaitForResults(exploration));
        QVERIFY2(CurrentRow(shapes).endsWith(shape), qPrintable(CurrentRow(shapes)));
        exploration.SetRange({-10, -5}); // before all of it
        QVERIFY(WaitForResults(exploration));
        QCOMPARE(shapes.Model().rowCount(), 0);
        QCOMPARE(List(*window, "Executions").Model().rowCount(), 0);
        QVERIFY(!shapes.isVisible());
        exploration.SetRange({});
        QVERIFY(WaitForResults(exploration));
        QVERIFY(shapes.isVisible());
        QVERIFY2(CurrentRow(shapes).endsWith(shape), qPrintable(CurrentRow(shapes)));
    }

    void aRecordSelectedInTheTreesIsMarked() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        window->Exploration().Select(RecordIndex{7});
        QVERIFY2(CurrentRow(List(*window, "Executions")).contains(QStringLiteral("( IMITM = 2 )")),
                 qPrintable(CurrentRow(List(*window, "Executions"))));
    }

    void aStatementOfAnotherShapeBringsItsShapeUp() {
        CChildFrame* const session = m_pRun->Open(Sample("order-slow.log"));
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        window->Exploration().Select(RecordIndex{669});
        QCOMPARE(List(*window, "Statements").SelectedRow(), 1);
        QCOMPARE(List(*window, "Executions").SelectedRow(), 0);
        // What is no statement changes nothing.
        window->Exploration().Select(RecordIndex{0});
        QCOMPARE(List(*window, "Statements").SelectedRow(), 1);
    }

    void aLogWithoutStatementsSaysSo() {
        CChildFrame* const session = m_pRun->Open(
            QStringLiteral("calm.log"),
            DebugLog({Line("09:00:00.000000", "Calling Business function A from X. (BSFNLevel = 1)")}));
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        QStringList texts;
        for (const QLabel* label : window->findChildren<QLabel*>()) {
            if (label->isVisible()) {
                texts << label->text();
            }
        }
        QVERIFY2(texts.contains(QStringLiteral("This log holds no statements.")),
                 qPrintable(texts.join(QLatin1Char('\n'))));
    }

    void widthsAndHeightsAreFoundAgain() {
        const auto open = [this] {
            CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
            return OpenStatements(session);
        };
        auto* window = open();
        QVERIFY(window != nullptr);
        CListCtrl* shapes = &List(*window, "Statements");
        const int before = shapes->columnWidth(0);
        WidenColumn(*shapes, 0, 40);
        const int after = shapes->columnWidth(0);
        QVERIFY(after > before);

        auto* splitter = window->findChild<QSplitter*>(); // the outer one
        QCOMPARE(splitter->orientation(), Qt::Vertical);
        QSplitterHandle* const handle = splitter->handle(1);
        const QPoint middle = handle->rect().center();
        QTest::mousePress(handle, Qt::LeftButton, {}, middle);
        QTest::mouseMove(handle, middle - QPoint(0, 40));
        QTest::mouseRelease(handle, Qt::LeftButton, {}, middle - QPoint(0, 40));
        const QList<int> sizes = splitter->sizes();

        m_pRun->Restart();
        window = open();
        QVERIFY(window != nullptr);
        shapes = &List(*window, "Statements");
        QCOMPARE(shapes->columnWidth(0), after);
        splitter = window->findChild<QSplitter*>();
        for (int part = 0; part < sizes.size(); ++part) {
            QVERIFY2(std::abs(splitter->sizes()[part] - sizes[part]) <= 2, qPrintable(QString::number(part)));
        }
    }

    void analysingAnewFillsTheWindowAgain() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const window = OpenStatements(session);
        QVERIFY(window != nullptr);
        std::vector<std::string> lines = ExploredLines();
        lines.push_back(Line("09:00:08.000000", "UPDATE PRODDTA.F0002 SET NNN001 = 1"));
        m_pRun->Write(QStringLiteral("order.log"), lines);
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        m_pRun->Frame().ClientArea().Activate(*window);
        QVERIFY(WaitForResults(window->Exploration()));
        QCOMPARE(List(*window, "Statements").Model().rowCount(), 2);
    }

    void closingTheSessionTakesTheWindowAlong() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        QVERIFY(OpenStatements(session) != nullptr);
        session->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(m_pRun->Frame().ClientArea().Children().isEmpty());
    }
};

QTEST_MAIN(StatementsTest)
#include "StatementsTest.moc"
