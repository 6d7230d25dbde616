#include "ui/SessionSupport.h"

#include <QLabel>
#include <QToolButton>

using namespace carvelot;
using namespace carvelot::test;

namespace {

std::vector<std::string> Log() {
    return DebugLog({
        Line("10:00:00.000001", "SELECT A FROM F0101"),
        Line("10:00:00.000002", "Nothing that counts as F0101"),
        Line("10:00:00.000003", "SELECT b FROM f0101", "5/7"),
        Line("10:00:00.000004", "UPDATE F4211 SET A = 1", "9/1"),
    });
}

std::vector<std::string> JasLog() {
    return JASLog({
        JASLine("09:00:01,000", "ANNIKA", "F0101 is invalid", "WARN  "),
        JASLine("09:00:02,000", "", "F0101 has stopped", "SEVERE"),
    });
}

const QStringList kHits{"5|6|SELECT A FROM F0101", "5|7|SELECT b FROM f0101"};

} // namespace

class FindPaneTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() {
        StartRun();
        CSessionRun::ShowPane(Pane());
    }
    void cleanup() { EndRun(); }

    void aSearchFindsWithoutCaseInTheWholeSessionAndSkipsLinesOfNoInterest() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Process - 9");
        CSessionRun::ShowPane(Pane());
        Search("f0101");
        QCOMPARE(Rows(Pane().List()), kHits);
        Search("FROM F0101");
        QCOMPARE(Rows(Pane().List()), kHits);
        Search("F9999");
        QVERIFY(Rows(Pane().List()).isEmpty());
    }

    void anEmptyTextFindsEveryRecordOfAKind() {
        m_pRun->Open("a.log", Log());
        Search("");
        QCOMPARE(Rows(Pane().List()), kHits + QStringList{"9|1|UPDATE F4211 SET A = 1"});
    }

    void theButtonSearches() {
        m_pRun->Open("a.log", Log());
        Pane().SearchEdit().setText("F4211");
        auto* pButton =
            qobject_cast<QToolButton*>(Pane().ToolBar().widgetForAction(Pane().ToolBar().actions().at(0)));
        QCOMPARE(pButton->text(), QStringLiteral("Find"));
        QTest::mouseClick(pButton, Qt::LeftButton);
        QCOMPARE(Rows(Pane().List()), QStringList{"9|1|UPDATE F4211 SET A = 1"});
    }

    void enterSearchesWhenItIsReleasedAnywhereInThePane() {
        m_pRun->Open("a.log", Log());
        Pane().SearchEdit().setText("F4211");
        Pane().SearchEdit().setFocus();
        QTest::keyPress(&Pane().SearchEdit(), Qt::Key_Return);
        QVERIFY(Rows(Pane().List()).isEmpty());
        QTest::keyRelease(&Pane().SearchEdit(), Qt::Key_Return);
        QCOMPARE(Rows(Pane().List()).size(), 1);
        Pane().SearchEdit().setText("F0101");
        QTest::keyClick(&Pane().List(), Qt::Key_Enter);
        QCOMPARE(Rows(Pane().List()), kHits);
        Pane().SearchEdit().setText("F4211");
        QTest::keyClick(Pane().ToolBar().widgetForAction(Pane().ToolBar().actions().at(0)), Qt::Key_Return);
        QCOMPARE(Rows(Pane().List()).size(), 1);
    }

    void enterOnARowSearchesAndTheSpaceBarOpensTheRow() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Search("f0101");
        Click(Pane().List(), Pane().List().Model().index(1, 0));
        QTest::keyClick(&Pane().List(), Qt::Key_Return);
        QVERIFY(!pFrame->DetailView().SelectedIndex().isValid());
        Click(Pane().List(), Pane().List().Model().index(1, 0));
        QTest::keyClick(&Pane().List(), Qt::Key_Space);
        QVERIFY(SelectedText(pFrame->DetailView()).endsWith("SELECT b FROM f0101"));
        QVERIFY(pFrame->DetailView().hasFocus());
    }

    void aDoubleClickOpensTheLine() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Search("f0101");
        DoubleClick(Pane().List(), 1);
        QVERIFY(SelectedText(pFrame->ThreadView()).startsWith("Thread - 7"));
        QVERIFY(SelectedText(pFrame->DetailView()).endsWith("SELECT b FROM f0101"));
        QCOMPARE(Rows(Pane().List()), kHits);
        QCOMPARE(Pane().List().SelectedRow(), 1);
    }

    void ctrlVAppendsTheClipboardAtTheEndWhateverIsSelected() {
        QLineEdit& edit = Pane().SearchEdit();
        QGuiApplication::clipboard()->setText("F01");
        edit.setText("abc");
        edit.setFocus();
        edit.setSelection(0, 2);
        Key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(edit.text(), QStringLiteral("abcF01"));
        edit.setCursorPosition(1);
        Key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(edit.text(), QStringLiteral("abcF01F01"));
        QGuiApplication::clipboard()->setImage(QImage(2, 2, QImage::Format_RGB32));
        Key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(edit.text(), QStringLiteral("abcF01F01"));
        Key(Qt::Key_V, Qt::NoModifier, "v");
        QCOMPARE(edit.text().count(u'v'), 1);
    }

    void aClickOnAHeaderLeavesTheRowsInTheOrderOfTheLog() {
        m_pRun->Open("a.log", Log());
        Search("");
        const QStringList listBefore = Rows(Pane().List());
        for (const int nColumn : {0, 1, 2, 2})
            ClickHeader(Pane().List(), nColumn);
        QCOMPARE(Rows(Pane().List()), listBefore);
    }

    void withoutASessionTheOldRowsStay() {
        m_pRun->Open("a.log", Log());
        Search("f0101");
        m_pRun->Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
        CSessionRun::Settle();
        Search("F4211");
        QCOMPARE(Rows(Pane().List()), kHits);
    }

    void rowsLeftByCloseAllAreNotFollowed() {
        m_pRun->Open("a.log", Log());
        Search("f0101");
        m_pRun->Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
        DoubleClick(Pane().List(), 1); // while the closed session still waits for its end
        CSessionRun::Settle();
        QCOMPARE(Rows(Pane().List()), kHits);
        DoubleClick(Pane().List(), 0);
        CChildFrame* pAgain = m_pRun->Open(m_pRun->Path("a.log"));
        CSessionRun::ShowPane(Pane());
        DoubleClick(Pane().List(), 0);
        QVERIFY(!pAgain->ThreadView().SelectedIndex().isValid());
        QCOMPARE(Rows(Pane().List()), kHits);
    }

    // On the way to no session each one comes to the front.
    void closeAllLeavesTheRowsUnderTheirOwnTitles() {
        for (const bool bUsers : {false, true}) {
            const QString strDebug = m_pRun->Write("a.log", Log());
            const QString strUsers = m_pRun->Write("jas.log", JasLog());
            CChildFrame* pDebug = m_pRun->Open(strDebug);
            CChildFrame* pUsers = m_pRun->Open(strUsers);
            m_pRun->Frame().ClientArea().Activate(bUsers ? *pUsers : *pDebug);
            Search("f0101");
            QCOMPARE(Rows(Pane().List()).size(), 2);
            m_pRun->Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
            CSessionRun::Settle();
            QCOMPARE(Rows(Pane().List()).size(), 2);
            QCOMPARE(Title(Pane().List(), 0), bUsers ? QStringLiteral("User") : QStringLiteral("Process"));
            QCOMPARE(Pane().List().header()->isSectionHidden(1), bUsers);
        }
    }

    // --- keys
    // -----------------------------------------------------------------------------------------------

    void ctrlFGoesToTheSearchTextAndSelectsItWhereverThePaneIs() {
        CMainFrame& frame = m_pRun->Frame();
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Pane().SearchEdit().setText("f0101");
        const auto fnCheck = [&] {
            pFrame->ThreadView().setFocus();
            QTest::keyClick(&pFrame->ThreadView(), Qt::Key_F, Qt::ControlModifier);
            QVERIFY(QTest::qWaitFor([&] { return Pane().SearchEdit().hasFocus(); }));
            QVERIFY(Pane().isVisible());
            QCOMPARE(Pane().SearchEdit().selectedText(), QStringLiteral("f0101"));
        };
        fnCheck();
        CSessionRun::ShowPane(frame.m_wndBSFNPane); // before it
        fnCheck();
        Pane().hide();
        fnCheck();
        Pane().SearchEdit().deselect();
        QTest::keyClick(&Pane().SearchEdit(), Qt::Key_F, Qt::ControlModifier); // from the pane itself
        QCOMPARE(Pane().SearchEdit().selectedText(), QStringLiteral("f0101"));
        Pane().m_fnPin(); // folded away
        fnCheck();
    }

    void f3OpensTheNextHitAndShiftF3TheOneBeforeRoundTheEnds() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        const auto fnNext = [&](Qt::KeyboardModifiers nModifiers = {}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_F3, nModifiers);
            return SelectedText(pFrame->DetailView()).section(QStringLiteral("    "), 1);
        };
        pFrame->ThreadView().setFocus();
        QCOMPARE(fnNext(), QString()); // nothing was searched for
        QVERIFY(Rows(Pane().List()).isEmpty());
        Pane().SearchEdit().setText("f0101");
        QCOMPARE(fnNext(), QStringLiteral("SELECT A FROM F0101")); // searched for first
        QVERIFY(pFrame->DetailView().hasFocus());
        QCOMPARE(fnNext(), QStringLiteral("SELECT b FROM f0101"));
        QCOMPARE(Pane().List().SelectedRow(), 1);
        QCOMPARE(fnNext(), QStringLiteral("SELECT A FROM F0101"));
        QCOMPARE(fnNext(Qt::ShiftModifier), QStringLiteral("SELECT b FROM f0101"));
        QCOMPARE(fnNext(Qt::ShiftModifier), QStringLiteral("SELECT A FROM F0101"));
        Search("f9999");
        Pane().SearchEdit().clear();
        fnNext();
        QVERIFY(Rows(Pane().List()).isEmpty());
    }

    void thePaneSaysHowManyHitsThereAre() {
        const auto fnShown = [this] {
            for (const QLabel* pLabel : Pane().findChildren<QLabel*>()) {
                if (pLabel->isVisible() && pLabel->text() == Pane().HitsText())
                    return pLabel->text();
            }
            return QStringLiteral("nothing");
        };
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        CSessionRun::ShowPane(Pane());
        QCOMPARE(fnShown(), QString());
        Search("f0101");
        QCOMPARE(fnShown(), QStringLiteral("2 hits"));
        Search("F4211");
        QCOMPARE(fnShown(), QStringLiteral("1 hit"));
        Search("F9999");
        QCOMPARE(fnShown(), QStringLiteral("No hits"));
        pFrame->CloseWindow();
        QCOMPARE(fnShown(), QString());
        Search("f0101"); // without a session nothing is searched
        QCOMPARE(fnShown(), QString());
    }

    void rowsOfASessionThatWasReadAgainStayAndAreNotFollowed() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Search("f0101");
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(Rows(Pane().List()), kHits);
        DoubleClick(Pane().List(), 1);
        QVERIFY(!pFrame->ThreadView().SelectedIndex().isValid());
        Search("f0101");
        DoubleClick(Pane().List(), 1);
        QVERIFY(SelectedText(pFrame->ThreadView()).startsWith("Thread - 7"));
    }

    void closingTheSessionSearchedEmptiesTheListAndClosingAnotherDoesNot() {
        CChildFrame* pFirst = m_pRun->Open("a.log", Log());
        Search("f0101");
        CChildFrame* pSecond = m_pRun->Open("jas.log", JasLog());
        pSecond->CloseWindow();
        CSessionRun::Settle();
        QCOMPARE(Rows(Pane().List()), kHits);
        pFirst->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(Rows(Pane().List()).isEmpty());
        QCOMPARE(Pane().SearchEdit().text(), QStringLiteral("f0101"));
    }

    void aSearchInASecondSessionReplacesTheRowsAndTheFirstOnesEndLeavesThemAlone() {
        CChildFrame* pFirst = m_pRun->Open("a.log", Log());
        Search("f0101");
        m_pRun->Open("jas.log", JasLog());
        Search("f0101");
        const QStringList listRows{"ANNIKA|0|F0101 is invalid", "SYSTEM LEVEL|0|F0101 has stopped"};
        QCOMPARE(Rows(Pane().List()), listRows);
        QVERIFY(Pane().List().header()->isSectionHidden(1));
        QCOMPARE(Title(Pane().List(), 0), QStringLiteral("User"));
        pFirst->CloseWindow();
        CSessionRun::Settle();
        QCOMPARE(Rows(Pane().List()), listRows);
    }

    void aRowOfASessionThatIsNotInFrontBringsItUp() {
        CChildFrame* pFirst = m_pRun->Open("a.log", Log());
        Search("f0101");
        CChildFrame* pSecond = m_pRun->Open("jas.log", JasLog());
        Select(pSecond, "ANNIKA");
        CSessionRun::ShowPane(Pane());
        QCOMPARE(Title(Pane().List(), 0), QStringLiteral("User"));
        DoubleClick(Pane().List(), 1);
        QVERIFY(m_pRun->Frame().ActiveChild() == pFirst);
        QVERIFY(pFirst->DetailView().hasFocus());
        QVERIFY(SelectedText(pFirst->DetailView()).endsWith("SELECT b FROM f0101"));
        QCOMPARE(m_pRun->Frame().m_wndSQLPane.GetCaption(), QStringLiteral(" Process: 5 Thread: 7"));
        QCOMPARE(Title(Pane().List(), 0), QStringLiteral("Process"));
        QCOMPARE(SelectedText(pSecond->ThreadView()), QStringLiteral("ANNIKA"));
    }

    void selectionsLeaveTheRowsAlone() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Search("f0101");
        Select(pFrame, "Process - 9");
        QCOMPARE(Rows(Pane().List()), kHits);
    }

    void theModelKeepsTheToolkitsRules() {
        const QAbstractItemModelTester tester(&Pane().List().Model(),
                                              QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_pRun->Open("a.log", Log());
        Search("");
        Search("f0101");
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(Rows(Pane().List()), kHits);
    }

private:
    CFindPane& Pane() const { return m_pRun->Frame().m_wndFindPane; }
    void Search(const QString& strText) {
        CSessionRun::ShowPane(Pane());
        Pane().SearchEdit().setText(strText);
        Pane().SearchEdit().setFocus();
        QTest::keyClick(&Pane().SearchEdit(), Qt::Key_Return);
    }
    // A key as the window system reports it, with its state of the modifiers.
    void Key(Qt::Key nKey, Qt::KeyboardModifiers nModifiers, const QString& strText = {}) {
        for (const QTest::KeyAction nAction : {QTest::Press, QTest::Release})
            QTest::sendKeyEvent(nAction, m_pRun->Frame().windowHandle(), nKey, strText, nModifiers);
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(FindPaneTest)
#include "FindPaneTest.moc"
