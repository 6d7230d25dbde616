#include "ui/Accessible.h"
#include "ui/SessionSupport.h"

#include "ui/kit/ToolBar.h"

#include <QTabBar>
#include <QTimer>
#include <QToolButton>

using namespace carvelot;
using namespace carvelot::test;

namespace {

std::vector<std::string> Log() {
    return DebugLog({Line("10:00:00.000001", "Calling Business function A from Level 1 (BSFNLevel = 1)"),
                     Line("10:00:00.000002", "IN->[  1] first"), Line("10:00:02.000001", "On x")});
}

// What the tree says of the pop-up menus: "Entry*|Other", the star for the focus.
QStringList MenusInTree() {
    QStringList listMenus;
    QAccessibleInterface* pRoot = QAccessible::queryAccessibleInterface(qApp);
    for (int n = 0; n < pRoot->childCount(); ++n) {
        QAccessibleInterface* pChild = pRoot->child(n);
        if (pChild->role() != QAccessible::PopupMenu)
            continue;
        if (pRoot->indexOfChild(pChild) != n)
            return {QStringLiteral("a menu that is not where it stands")};
        QStringList listEntries;
        for (int nEntry = 0; nEntry < pChild->childCount(); ++nEntry) {
            QAccessibleInterface* pEntry = pChild->child(nEntry);
            if (pEntry == nullptr || !pEntry->isValid())
                return {QStringLiteral("an entry that is not there")};
            if (!Said(pEntry).isEmpty())
                listEntries << Said(pEntry) + (pEntry->state().focused ? QStringLiteral("*") : QString());
        }
        listMenus << listEntries.join(QLatin1Char('|'));
    }
    return listMenus;
}

// Does what opens a menu and tells what is in the tree while it is open.
QStringList MenusDuring(const std::function<void()>& fnOpen) {
    QStringList listMenus;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        QWidget* pMenu = QApplication::activePopupWidget();
        if (pMenu == nullptr)
            return;
        QCoreApplication::processEvents();
        listMenus = MenusInTree();
        pMenu->close();
    });
    timer.start(0);
    fnOpen();
    (void)QTest::qWaitFor([&] { return !listMenus.isEmpty(); });
    return listMenus;
}

} // namespace

class AccessibleMenusTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() {
        StartRun();
        SetUserInterface(nullptr); // the real one
    }
    void cleanup() {
        SetUserInterface(&m_pRun->m_user);
        EndRun();
    }

    void aContextMenuStandsInTheTreeWithTheFocusInIt() {
        m_pRun->m_user.m_strOpenAnswer = m_pRun->Write(QStringLiteral("a.log"), Log());
        theApp().OpenDocumentFile(*m_pRun->m_user.m_strOpenAnswer);
        CMainFrame& frame = m_pRun->Frame();
        auto* pFrame = qobject_cast<CChildFrame*>(frame.ActiveChild());
        CThreadView& threads = pFrame->ThreadView();
        const QModelIndex thread = FindNode(threads.Model(), QStringLiteral("Thread - 6"));
        QCOMPARE(MenusInTree(), QStringList());
        QCOMPARE(MenusDuring([&] { Click(threads, thread, Qt::RightButton); }),
                 QStringList{"Write Message*"});
        QCOMPARE(MenusInTree(), QStringList());
        QCOMPARE(
            MenusDuring([&] { AskForMenu(*threads.viewport(), QPoint(5, 5), QContextMenuEvent::Keyboard); }),
            QStringList{"Write Message*"});

        CDetailView& calls = pFrame->DetailView();
        calls.SelectIndex(FindNode(calls.Model(), QStringLiteral("PARMS IN")));
        QCOMPARE(
            MenusDuring([&] { AskForMenu(*calls.viewport(), QPoint(5, 5), QContextMenuEvent::Keyboard); }),
            QStringList{"Copy Parms*"});

        CSessionRun::ShowPane(frame.m_wndTimingGapsPane);
        Select(pFrame, "Process - 5");
        CListCtrl& gaps = frame.m_wndTimingGapsPane.List();
        QCOMPARE(gaps.Model().rowCount(), 1);
        Click(gaps, gaps.Model().index(0, 0));
        QCOMPARE(gaps.SelectedRow(), 0);
        QCOMPARE(MenusDuring([&] { AskForMenu(*gaps.viewport(), QPoint(5, 5), QContextMenuEvent::Mouse); }),
                 QStringList{"Export*"});

        auto* pTabs = frame.ClientArea().findChild<QTabBar*>();
        QCOMPARE(
            MenusDuring([&] { AskForMenu(*pTabs, pTabs->tabRect(0).center(), QContextMenuEvent::Mouse); }),
            QStringList{"Close*|New Horizontal Tab Group|New Vertical Tab Group"});
    }

    void soDoTheMenusOfEditsOfToolbarsAndOfTheWindowItself() {
        CMainFrame& frame = m_pRun->Frame();
        CSessionRun::ShowPane(frame.m_wndFindPane);
        QLineEdit& search = frame.m_wndFindPane.SearchEdit();
        search.setText(QStringLiteral("abc"));
        search.selectAll();
        search.setFocus();
        const QStringList listEdit =
            MenusDuring([&] { AskForMenu(search, QPoint(5, 5), QContextMenuEvent::Mouse); });
        QCOMPARE(listEdit.size(), 1);
        QVERIFY(listEdit.constFirst().contains(QLatin1Char('*')));
        QVERIFY(listEdit.constFirst().contains(QStringLiteral("Copy")));

        auto* pToolBar = frame.findChild<CToolBar*>();
        QToolButton* pOptions = nullptr;
        for (QToolButton* pButton : pToolBar->findChildren<QToolButton*>()) {
            if (pButton->menu() != nullptr && pButton->isVisible())
                pOptions = pButton;
        }
        QVERIFY(pOptions != nullptr);
        // Menus that share commands have all their entries, one after the other.
        for (int nTime = 0; nTime < 2; ++nTime) {
            const QStringList listOptions = MenusDuring([&] { pOptions->showMenu(); });
            QCOMPARE(listOptions.size(), 1);
            QVERIFY(listOptions.constFirst().startsWith(QStringLiteral("Open...*|")));
            QVERIFY(listOptions.constFirst().endsWith(QStringLiteral("|Reset Toolbar|Customize...")));

            const QStringList listFrame =
                MenusDuring([&] { AskForMenu(*pToolBar, QPoint(2, 2), QContextMenuEvent::Mouse); });
            QCOMPARE(listFrame.size(), 1);
            QVERIFY(listFrame.constFirst().startsWith(QStringLiteral("Standard*|Cache Browser|")));
            QVERIFY(listFrame.constFirst().endsWith(QStringLiteral("|Customize...")));
            CSessionRun::Settle();
        }
    }

    // These are in the tree below their menu bar.
    void aMenuOfTheMenuBarStandsOnlyThere() {
        CMainFrame& frame = m_pRun->Frame();
        QMenu* pFile = frame.menuBar()->actions().constFirst()->menu();
        pFile->popup(QPoint(10, 10));
        QCoreApplication::processEvents();
        QCOMPARE(MenusInTree(), QStringList());
        pFile->close();
    }
};

QTEST_MAIN(AccessibleMenusTest)
#include "AccessibleMenusTest.moc"
