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
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Select(child, "Process - 9");
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
        auto* button =
            qobject_cast<QToolButton*>(Pane().ToolBar().widgetForAction(Pane().ToolBar().actions().at(0)));
        QCOMPARE(button->text(), QStringLiteral("Find"));
        QTest::mouseClick(button, Qt::LeftButton);
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
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Search("f0101");
        Click(Pane().List(), Pane().List().Model().index(1, 0));
        QTest::keyClick(&Pane().List(), Qt::Key_Return);
        QVERIFY(!child->DetailView().SelectedIndex().isValid());
        Click(Pane().List(), Pane().List().Model().index(1, 0));
        QTest::keyClick(&Pane().List(), Qt::Key_Space);
        QVERIFY(SelectedText(child->DetailView()).endsWith("SELECT b FROM f0101"));
        QVERIFY(child->DetailView().hasFocus());
    }

    void aDoubleClickOpensTheLine() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Search("f0101");
        DoubleClick(Pane().List(), 1);
        QVERIFY(SelectedText(child->ThreadView()).startsWith("Thread - 7"));
        QVERIFY(SelectedText(child->DetailView()).endsWith("SELECT b FROM f0101"));
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
        const QStringList before = Rows(Pane().List());
        for (const int column : {0, 1, 2, 2}) {
            ClickHeader(Pane().List(), column);
        }
        QCOMPARE(Rows(Pane().List()), before);
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
        CChildFrame* again = m_pRun->Open(m_pRun->Path("a.log"));
        CSessionRun::ShowPane(Pane());
        DoubleClick(Pane().List(), 0);
        QVERIFY(!again->ThreadView().SelectedIndex().isValid());
        QCOMPARE(Rows(Pane().List()), kHits);
    }

    // On the way to no session each one comes to the front.
    void closeAllLeavesTheRowsUnderTheirOwnTitles() {
        for (const bool usersFirst : {false, true}) {
            const QString debug = m_pRun->Write("a.log", Log());
            const QString users = m_pRun->Write("jas.log", JasLog());
            CChildFrame* debugChild = m_pRun->Open(debug);
            CChildFrame* usersChild = m_pRun->Open(users);
            m_pRun->Frame().ClientArea().Activate(usersFirst ? *usersChild : *debugChild);
            Search("f0101");
            QCOMPARE(Rows(Pane().List()).size(), 2);
            m_pRun->Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
            CSessionRun::Settle();
            QCOMPARE(Rows(Pane().List()).size(), 2);
            QCOMPARE(Title(Pane().List(), 0),
                     usersFirst ? QStringLiteral("User") : QStringLiteral("Process"));
            QCOMPARE(Pane().List().header()->isSectionHidden(1), usersFirst);
        }
    }

    // --- keys

    void ctrlFGoesToTheSearchTextAndSelectsItWhereverThePaneIs() {
        CMainFrame& frame = m_pRun->Frame();
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Pane().SearchEdit().setText("f0101");
        const auto check = [&] {
            child->ThreadView().setFocus();
            QTest::keyClick(&child->ThreadView(), Qt::Key_F, Qt::ControlModifier);
            QVERIFY(QTest::qWaitFor([&] { return Pane().SearchEdit().hasFocus(); }));
            QVERIFY(Pane().isVisible());
            QCOMPARE(Pane().SearchEdit().selectedText(), QStringLiteral("f0101"));
        };
        check();
        CSessionRun::ShowPane(frame.m_wndBSFNPane); // before it
        check();
        Pane().hide();
        check();
        Pane().SearchEdit().deselect();
        QTest::keyClick(&Pane().SearchEdit(), Qt::Key_F, Qt::ControlModifier); // from the pane itself
        QCOMPARE(Pane().SearchEdit().selectedText(), QStringLiteral("f0101"));
        Pane().m_fnPin(); // folded away
        check();
    }

    void f3OpensTheNextHitAndShiftF3TheOneBeforeRoundTheEnds() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        const auto next = [&](Qt::KeyboardModifiers modifiers = {}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_F3, modifiers);
            return SelectedText(child->DetailView()).section(QStringLiteral("    "), 1);
        };
        child->ThreadView().setFocus();
        QCOMPARE(next(), QString()); // nothing was searched for
        QVERIFY(Rows(Pane().List()).isEmpty());
        Pane().SearchEdit().setText("f0101");
        QCOMPARE(next(), QStringLiteral("SELECT A FROM F0101")); // searched for first
        QVERIFY(child->DetailView().hasFocus());
        QCOMPARE(next(), QStringLiteral("SELECT b FROM f0101"));
        QCOMPARE(Pane().List().SelectedRow(), 1);
        QCOMPARE(next(), QStringLiteral("SELECT A FROM F0101"));
        QCOMPARE(next(Qt::ShiftModifier), QStringLiteral("SELECT b FROM f0101"));
        QCOMPARE(next(Qt::ShiftModifier), QStringLiteral("SELECT A FROM F0101"));
        Search("f9999");
        Pane().SearchEdit().clear();
        next();
        QVERIFY(Rows(Pane().List()).isEmpty());
    }

    void thePaneSaysHowManyHitsThereAre() {
        const auto shown = [this] {
            for (const QLabel* label : Pane().findChildren<QLabel*>()) {
                if (label->isVisible() && label->text() == Pane().HitsText()) {
                    return label->text();
                }
            }
            return QStringLiteral("nothing");
        };
        CChildFrame* child = m_pRun->Open("a.log", Log());
        CSessionRun::ShowPane(Pane());
        QCOMPARE(shown(), QString());
        Search("f0101");
        QCOMPARE(shown(), QStringLiteral("2 hits"));
        Search("F4211");
        QCOMPARE(shown(), QStringLiteral("1 hit"));
        Search("F9999");
        QCOMPARE(shown(), QStringLiteral("No hits"));
        child->CloseWindow();
        QCOMPARE(shown(), QString());
        Search("f0101"); // without a session nothing is searched
        QCOMPARE(shown(), QString());
    }

    void rowsOfASessionThatWasReadAgainStayAndAreNotFollowed() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Search("f0101");
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(Rows(Pane().List()), kHits);
        DoubleClick(Pane().List(), 1);
        QVERIFY(!child->ThreadView().SelectedIndex().isValid());
        Search("f0101");
        DoubleClick(Pane().List(), 1);
        QVERIFY(SelectedText(child->ThreadView()).startsWith("Thread - 7"));
    }

    void closingTheSessionSearchedEmptiesTheListAndClosingAnotherDoesNot() {
        CChildFrame* first = m_pRun->Open("a.log", Log());
        Search("f0101");
        CChildFrame* second = m_pRun->Open("jas.log", JasLog());
        second->CloseWindow();
        CSessionRun::Settle();
        QCOMPARE(Rows(Pane().List()), kHits);
        first->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(Rows(Pane().List()).isEmpty());
        QCOMPARE(Pane().SearchEdit().text(), QStringLiteral("f0101"));
    }

    void aSearchInASecondSessionReplacesTheRowsAndTheFirstOnesEndLeavesThemAlone() {
        CChildFrame* first = m_pRun->Open("a.log", Log());
        Search("f0101");
        m_pRun->Open("jas.log", JasLog());
        Search("f0101");
        const QStringList rows{"ANNIKA|0|F0101 is invalid", "SYSTEM LEVEL|0|F0101 has stopped"};
        QCOMPARE(Rows(Pane().List()), rows);
        QVERIFY(Pane().List().header()->isSectionHidden(1));
        QCOMPARE(Title(Pane().List(), 0), QStringLiteral("User"));
        first->CloseWindow();
        CSessionRun::Settle();
        QCOMPARE(Rows(Pane().List()), rows);
    }

    void aRowOfASessionThatIsNotInFrontBringsItUp() {
        CChildFrame* first = m_pRun->Open("a.log", Log());
        Search("f0101");
        CChildFrame* second = m_pRun->Open("jas.log", JasLog());
        Select(second, "ANNIKA");
        CSessionRun::ShowPane(Pane());
        QCOMPARE(Title(Pane().List(), 0), QStringLiteral("User"));
        DoubleClick(Pane().List(), 1);
        QVERIFY(m_pRun->Frame().ActiveChild() == first);
        QVERIFY(first->DetailView().hasFocus());
        QVERIFY(SelectedText(first->DetailView()).endsWith("SELECT b FROM f0101"));
        QCOMPARE(m_pRun->Frame().m_wndSQLPane.GetCaption(), QStringLiteral(" Process: 5 Thread: 7"));
        QCOMPARE(Title(Pane().List(), 0), QStringLiteral("Process"));
        QCOMPARE(SelectedText(second->ThreadView()), QStringLiteral("ANNIKA"));
    }

    void selectionsLeaveTheRowsAlone() {
        CChildFrame* child = m_pRun->Open("a.log", Log());
        Search("f0101");
        Select(child, "Process - 9");
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
    void Search(const QString& text) {
        CSessionRun::ShowPane(Pane());
        Pane().SearchEdit().setText(text);
        Pane().SearchEdit().setFocus();
        QTest::keyClick(&Pane().SearchEdit(), Qt::Key_Return);
    }
    // A key as the window system reports it, with its state of the modifiers.
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text = {}) {
        for (const QTest::KeyAction action : {QTest::Press, QTest::Release}) {
            QTest::sendKeyEvent(action, m_pRun->Frame().windowHandle(), key, text, modifiers);
        }
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(FindPaneTest)
#include "FindPaneTest.moc"
