// The window "Compare": a base that is read beside the windows, both sides of each row, and where it leads.
#include "explore/Comparison.h"
#include "ui/ExploreSupport.h"
#include "ui/explore/CompareFrame.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>

using namespace carvelot;
using namespace carvelot::test;

namespace {

int RowWith(CListCtrl& list, const QString& text) {
    const QStringList rows = Rows(list);
    for (qsizetype row = 0; row < rows.size(); ++row) {
        if (rows[row].contains(text)) {
            return static_cast<int>(row);
        }
    }
    return -1;
}

void DoubleClickCell(CListCtrl& list, int row, int column) {
    const QRect cell = list.visualRect(list.Model().index(row, column));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, cell.center());
}

// A log with a call of a second, and one of that name of half a second.
std::vector<std::string> Calls(const char* name, const char* end) {
    return DebugLog(
        {Line("09:00:00.000000", "Calling Business function Both from X. (BSFNLevel = 1)"),
         Line(end, "Return value is 0 for Both. (BSFNLevel = 1)"),
         Line("09:00:10.000000",
              (std::string("Calling Business function ") + name + " from X. (BSFNLevel = 1)").c_str()),
         Line("09:00:10.250000",
              (std::string("Return value is 0 for ") + name + ". (BSFNLevel = 1)").c_str())});
}

} // namespace

class CompareTest : public CSessionTest {
    Q_OBJECT

private:
    // The window with the comparison of the session in front with a base.
    CCompareFrame* Compare(CChildFrame* session, const QString& base) {
        m_pRun->m_user.m_strOpenAnswer = base;
        auto* const window = OpenExplore<CCompareFrame>(*m_pRun, *session, ID_EXPLORE_COMPARE);
        return window != nullptr && WaitForComparison(*window) ? window : nullptr;
    }
    static bool WaitForComparison(CCompareFrame& window) {
        return QTest::qWaitFor([&window] { return !window.IsWorking(); }, 60'000) &&
               WaitForResults(window.Exploration());
    }
    CChildFrame* OpenCalls() {
        return m_pRun->Open(QStringLiteral("log.log"), Calls("New", "09:00:00.500000"));
    }
    QString WriteBase() { return m_pRun->Write(QStringLiteral("base.log"), Calls("Old", "09:00:01.000000")); }

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void showsBothSidesWithSignedDifferences() {
        auto* const window = Compare(OpenCalls(), WriteBase());
        QVERIFY(window != nullptr);
        QCOMPARE(Rows(List(*window, "Functions")),
                 QStringList(
                     {QStringLiteral("-0.500000|1.000000|0.500000|both|function|Both|0|1|1|-0.500000|"
                                     "1.000000|0.500000"),
                      QStringLiteral("+0.250000|0.000000|0.250000|log alone|function|New|+1|0|1|+0.250000|"
                                     "0.000000|0.250000"),
                      QStringLiteral("-0.250000|0.250000|0.000000|base alone|function|Old|-1|1|0|-0.250000|"
                                     "0.250000|0.000000")}));
        const QAbstractItemModel& model = List(*window, "Functions").Model();
        QCOMPARE(model.index(0, 0).data(kShareRole).toDouble(), -1.0);
        QCOMPARE(model.index(1, 0).data(kShareRole).toDouble(), 0.5);
        QVERIFY2(ShownText(*window).contains(QStringLiteral("Base: base.log     Log: log.log")),
                 qPrintable(ShownText(*window)));
    }

    void barsOfDifferencesRunFromTheMiddleToEitherSide() {
        auto* const window = Compare(OpenCalls(), WriteBase());
        QVERIFY(window != nullptr);
        CListCtrl& functions = List(*window, "Functions");
        // The selected row has its bar, too.
        QCOMPARE(functions.SelectedRow(), 0);
        const QImage image = functions.viewport()->grab().toImage();
        // Above the text: what is no bar has the colour of a column without bars.
        const auto isBar = [&](int row, double place) {
            const QRect cell = functions.visualRect(functions.Model().index(row, 0));
            const QRect plain = functions.visualRect(functions.Model().index(row, 1));
            const int x = cell.left() + static_cast<int>(place * cell.width());
            return image.pixel(x, cell.top() + 2) != image.pixel(plain.center().x(), cell.top() + 2);
        };
        QVERIFY(isBar(0, 0.1) && isBar(0, 0.45) && !isBar(0, 0.55));  // the largest, falling
        QVERIFY(!isBar(1, 0.45) && isBar(1, 0.55) && !isBar(1, 0.8)); // half of it, rising
    }

    void itsNumbersAreThoseOfTheComparison() {
        auto* const window = Compare(m_pRun->Open(Sample("order-slow.log")), Sample("order-well.log"));
        QVERIFY(window != nullptr);
        QTabWidget& tabs = *window->findChild<QTabWidget*>();
        // As carvelot-report --compare tells them.
        QCOMPARE(tabs.tabText(0), QStringLiteral("Functions (41)"));
        QVERIFY2(Rows(List(*window, "Statements"))[0].startsWith(
                     QStringLiteral("+5.702505|0.000000|5.702505|log alone")),
                 qPrintable(Rows(List(*window, "Statements"))[0]));
    }

    void aLogAgainstItselfGivesOnlyZeros() {
        auto* const window = Compare(m_pRun->Open(Sample("order-slow.log")), Sample("order-slow.log"));
        QVERIFY(window != nullptr);
        for (const char* name : {"Functions", "Statements", "Findings"}) {
            CListCtrl& list = List(*window, name);
            QVERIFY(list.Model().rowCount() > 0);
            for (int row = 0; row < list.Model().rowCount(); ++row) {
                QCOMPARE(list.Model().index(row, 0).data().toString(), QStringLiteral("0.000000"));
                QCOMPARE(list.Model().index(row, 3).data().toString(), QStringLiteral("both"));
                QCOMPARE(list.Model().index(row, 0).data(kShareRole).toDouble(), 0.0);
            }
        }
    }

    void aDoubleClickOpensEitherSide() {
        CChildFrame* const session = OpenCalls();
        auto* const window = Compare(session, WriteBase());
        QVERIFY(window != nullptr);
        const QSignalSpy wanted(window, &CCompareFrame::BaseWanted);
        CListCtrl& functions = List(*window, "Functions");
        DoubleClickCell(functions, 0, ComparedFunctionRow::LOG);
        QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
        QCOMPARE(window->Exploration().Selected(), std::optional(RecordIndex{1}));
        QCOMPARE(wanted.count(), 0);
        // The base comes up in a session of its own.
        m_pRun->Frame().ClientArea().Activate(*window);
        DoubleClickCell(functions, RowWith(functions, QStringLiteral("Old")), ComparedFunctionRow::BASE);
        QCOMPARE(wanted.count(), 1);
        QCOMPARE(wanted[0][0].toString(), m_pRun->Path(QStringLiteral("base.log")));
        QCOMPARE(wanted[0][1].value<RecordIndex>(), RecordIndex{3});
        auto* const base = qobject_cast<CChildFrame*>(m_pRun->Frame().ActiveChild());
        QVERIFY(base != nullptr && base != session);
        QVERIFY2(SelectedText(base->DetailView()).contains(QStringLiteral("Old")),
                 qPrintable(SelectedText(base->DetailView())));
        // A row of the base alone leads there from any column.
        m_pRun->Frame().ClientArea().Activate(*window);
        DoubleClickCell(functions, RowWith(functions, QStringLiteral("Old")), ComparedFunctionRow::LOG);
        QCOMPARE(wanted.count(), 2);
    }

    void theKeyboardOpensEitherSide() {
        CChildFrame* const session = OpenCalls();
        auto* const window = Compare(session, WriteBase());
        QVERIFY(window != nullptr);
        const QSignalSpy wanted(window, &CCompareFrame::BaseWanted);
        CListCtrl& functions = List(*window, "Functions");
        QVERIFY(window->WindowPanes().contains(&functions));
        functions.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&functions, Qt::Key_Home);
        QTest::keyClick(&functions, Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(wanted.count(), 1);
        QCOMPARE(wanted[0][1].value<RecordIndex>(), RecordIndex{1});
        m_pRun->Frame().ClientArea().Activate(*window);
        functions.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&functions, Qt::Key_Return);
        QCOMPARE(wanted.count(), 1);
        QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
    }

    void theMenuOpensEitherSideThatIsThere() {
        auto* const window = Compare(OpenCalls(), WriteBase());
        QVERIFY(window != nullptr);
        const QSignalSpy wanted(window, &CCompareFrame::BaseWanted);
        CListCtrl& functions = List(*window, "Functions");
        Click(functions, functions.Model().index(RowWith(functions, QStringLiteral("New")), 0));
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Show in Base"); // which lacks it
        AskForMenu(functions, functions.rect().center(), QContextMenuEvent::Keyboard);
        QCOMPARE(wanted.count(), 0);
        QVERIFY(m_pRun->m_user.m_listMenuTexts.contains(QStringLiteral("Show in Log")));
        Click(functions, functions.Model().index(RowWith(functions, QStringLiteral("Both")), 0));
        AskForMenu(functions, functions.rect().center(), QContextMenuEvent::Keyboard);
        QCOMPARE(wanted.count(), 1);
    }

    void scopeAndRangeHoldForBoth() {
        CChildFrame* const session = OpenCalls();
        auto* const window = Compare(session, WriteBase());
        QVERIFY(window != nullptr);
        CExploration& exploration = window->Exploration();
        const std::int64_t start = exploration.Explored().clock[RecordIndex{1}];
        exploration.SetRange({start, start + 250'000});
        QVERIFY(WaitForResults(exploration) && WaitForComparison(*window));
        QCOMPARE(Rows(List(*window, "Functions")),
                 QStringList(QStringLiteral("0.000000|0.250000|0.250000|both|function|Both|0|1|1|0.000000|"
                                            "0.250000|0.250000")));
        exploration.SetRange({});
        exploration.SetScope(Selection(*exploration.Session().FindProcess(5)));
        QVERIFY(WaitForResults(exploration) && WaitForComparison(*window));
        QCOMPARE(List(*window, "Functions").Model().rowCount(), 3);
    }

    void aScopeThatTheBaseLacksLeavesItEmpty() {
        std::vector<std::string> lines = Calls("New", "09:00:00.500000");
        lines.push_back(
            Line("09:00:11.000000", "Calling Business function Else from X. (BSFNLevel = 1)", "7/8"));
        lines.push_back(Line("09:00:12.000000", "Return value is 0 for Else. (BSFNLevel = 1)", "7/8"));
        auto* const window = Compare(m_pRun->Open(QStringLiteral("log.log"), lines), WriteBase());
        QVERIFY(window != nullptr);
        CExploration& exploration = window->Exploration();
        exploration.SetScope(Selection(*exploration.Session().FindProcess(7)));
        QVERIFY(WaitForResults(exploration) && WaitForComparison(*window));
        const QStringList rows = Rows(List(*window, "Functions"));
        QCOMPARE(rows.size(), 1);
        QVERIFY2(rows[0].startsWith(QStringLiteral("+1.000000|0.000000|1.000000|log alone|")),
                 qPrintable(rows[0]));
        QVERIFY2(ShownText(*window).contains(QStringLiteral("The base has no Process 7.")),
                 qPrintable(ShownText(*window)));
    }

    void aBaseThatCannotBeReadIsSaidInTheWindow() {
        CChildFrame* const session = OpenCalls();
        auto* window = Compare(session, m_pRun->Path(QStringLiteral("lacking.log")));
        QVERIFY(window != nullptr);
        QVERIFY2(ShownText(*window).contains(QStringLiteral("Failed to open file.")),
                 qPrintable(ShownText(*window)));
        window = Compare(session, m_pRun->Write(QStringLiteral("odd.log"), {"no log"}));
        QVERIFY(window != nullptr);
        QVERIFY2(ShownText(*window).contains(QStringLiteral("Error: Cannot determine tracing log format")),
                 qPrintable(ShownText(*window)));
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());
        // The next one may do.
        window = Compare(session, WriteBase());
        QVERIFY(window != nullptr);
        QCOMPARE(List(*window, "Functions").Model().rowCount(), 3);
    }

    void withoutABaseTheWindowSaysWhatToDo() {
        CChildFrame* const session = OpenCalls();
        m_pRun->m_user.m_strOpenAnswer = std::nullopt;
        auto* const window = OpenExplore<CCompareFrame>(*m_pRun, *session, ID_EXPLORE_COMPARE);
        QVERIFY(window != nullptr);
        QVERIFY2(ShownText(*window).contains(QStringLiteral("Choose the log to compare with.")),
                 qPrintable(ShownText(*window)));
        m_pRun->m_user.m_strOpenAnswer = WriteBase();
        for (QPushButton* button : window->findChildren<QPushButton*>()) {
            if (button->text() == QStringLiteral("Compare With...")) {
                QTest::mouseClick(button, Qt::LeftButton);
            }
        }
        QVERIFY(WaitForComparison(*window));
        QCOMPARE(List(*window, "Functions").Model().rowCount(), 3);
    }

    void escEndsTheReadingOfTheBase() {
        CChildFrame* const session = OpenCalls();
        m_pRun->m_user.m_strOpenAnswer = std::nullopt;
        auto* const window = OpenExplore<CCompareFrame>(*m_pRun, *session, ID_EXPLORE_COMPARE);
        QVERIFY(window != nullptr);
        window->CompareWith(WriteBase());
        QVERIFY(window->IsWorking()); // its end comes with the event loop
        QVERIFY2(ShownText(*window).contains(QStringLiteral("Reading base.log. Esc ends it.")),
                 qPrintable(ShownText(*window)));
        QTest::keyClick(window, Qt::Key_Escape);
        QVERIFY(!window->IsWorking());
        QVERIFY(ShownText(*window).contains(QStringLiteral("Comparing was ended.")));
        QCoreApplication::processEvents();
        QVERIFY(ShownText(*window).contains(QStringLiteral("Comparing was ended.")));
    }

    void analysingAnewComparesAnew() {
        CChildFrame* const session = OpenCalls();
        auto* const window = Compare(session, WriteBase());
        QVERIFY(window != nullptr);
        m_pRun->Write(QStringLiteral("log.log"), Calls("Old", "09:00:01.000000"));
        m_pRun->Frame().ClientArea().Activate(*session);
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        m_pRun->Frame().ClientArea().Activate(*window);
        QVERIFY(WaitForResults(window->Exploration()) && WaitForComparison(*window));
        QCOMPARE(List(*window, "Functions").Model().rowCount(), 2);
        QCOMPARE(List(*window, "Functions").Model().index(0, 0).data().toString(),
                 QStringLiteral("0.000000"));
    }

    void closingTheSessionEndsTheReadingOfTheBase() {
        CChildFrame* const session = OpenCalls();
        auto* const window = Compare(session, WriteBase());
        QVERIFY(window != nullptr);
        window->CompareWith(Sample("order-slow.log"));
        session->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(m_pRun->Frame().ClientArea().Children().isEmpty());
    }

    void exportWritesWhatIsShown() {
        auto* const window = Compare(OpenCalls(), WriteBase());
        QVERIFY(window != nullptr);
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Export...");
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("functions.csv"));
        CListCtrl& functions = List(*window, "Functions");
        AskForMenu(functions, functions.rect().center(), QContextMenuEvent::Keyboard);
        const QByteArray bytes = m_pRun->Read(QStringLiteral("functions.csv"));
        QVERIFY2(bytes.startsWith("Difference (s),Base Total (s),Log Total (s),In,Kind,Name,"),
                 bytes.constData());
        QVERIFY2(bytes.contains("\r\n+0.250000,0.000000,0.250000,log alone,function,New,+1,0,1,+0.250000,"
                                "0.000000,0.250000\r\n"),
                 bytes.constData());
    }
};

QTEST_MAIN(CompareTest)
#include "CompareTest.moc"
