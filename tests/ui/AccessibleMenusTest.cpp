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
    QStringList menus;
    QAccessibleInterface* root = QAccessible::queryAccessibleInterface(qApp);
    for (int n = 0; n < root->childCount(); ++n) {
        QAccessibleInterface* child = root->child(n);
        if (child->role() != QAccessible::PopupMenu) {
            continue;
        }
        if (root->indexOfChild(child) != n) {
            return {QStringLiteral("a menu that is not where it stands")};
        }
        QStringList entries;
        for (int entryNumber = 0; entryNumber < child->childCount(); ++entryNumber) {
            QAccessibleInterface* entry = child->child(entryNumber);
            if (entry == nullptr || !entry->isValid()) {
                return {QStringLiteral("an entry that is not there")};
            }
            if (!Said(entry).isEmpty()) {
                entries << Said(entry) + (entry->state().focused ? QStringLiteral("*") : QString());
            }
        }
        menus << entries.join(QLatin1Char('|'));
    }
    return menus;
}

// Does what opens a menu and tells what is in the tree while it is open.
QStringList MenusDuring(const std::function<void()>& open) {
    QStringList menus;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        QWidget* menu = QApplication::activePopupWidget();
        if (menu == nullptr) {
            return;
        }
        QCoreApplication::processEvents();
        menus = MenusInTree();
        menu->close();
    });
    timer.start(0);
    open();
    (void)QTest::qWaitFor([&] { return !menus.isEmpty(); });
    return menus;
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
        auto* child = qobject_cast<CChildFrame*>(frame.ActiveChild());
        CThreadView& threads = child->ThreadView();
        const QModelIndex thread = FindNode(threads.Model(), QStringLiteral("Thread - 6"));
        QCOMPARE(MenusInTree(), QStringList());
        QCOMPARE(MenusDuring([&] { Click(threads, thread, Qt::RightButton); }),
                 QStringList{"Write Message*"});
        QCOMPARE(MenusInTree(), QStringList());
        QCOMPARE(
            MenusDuring([&] { AskForMenu(*threads.viewport(), QPoint(5, 5), QContextMenuEvent::Keyboard); }),
            QStringList{"Write Message*"});

        CDetailView& calls = child->DetailView();
        calls.SelectIndex(FindNode(calls.Model(), QStringLiteral("PARMS IN")));
        QCOMPARE(
            MenusDuring([&] { AskForMenu(*calls.viewport(), QPoint(5, 5), QContextMenuEvent::Keyboard); }),
            QStringList{"Copy Parms*"});

        CSessionRun::ShowPane(frame.m_wndTimingGapsPane);
        Select(child, "Process - 5");
        CListCtrl& gaps = frame.m_wndTimingGapsPane.List();
        QCOMPARE(gaps.Model().rowCount(), 1);
        Click(gaps, gaps.Model().index(0, 0));
        QCOMPARE(gaps.SelectedRow(), 0);
        QCOMPARE(MenusDuring([&] { AskForMenu(*gaps.viewport(), QPoint(5, 5), QContextMenuEvent::Mouse); }),
                 QStringList{"Export*"});

        auto* tabs = frame.ClientArea().findChild<QTabBar*>();
        QCOMPARE(MenusDuring([&] { AskForMenu(*tabs, tabs->tabRect(0).center(), QContextMenuEvent::Mouse); }),
                 QStringList{"Close*|New Horizontal Tab Group|New Vertical Tab Group"});
    }

    void soDoTheMenusOfEditsOfToolbarsAndOfTheWindowItself() {
        CMainFrame& frame = m_pRun->Frame();
        CSessionRun::ShowPane(frame.m_wndFindPane);
        QLineEdit& search = frame.m_wndFindPane.SearchEdit();
        search.setText(QStringLiteral("abc"));
        search.selectAll();
        search.setFocus();
        const QStringList edit =
            MenusDuring([&] { AskForMenu(search, QPoint(5, 5), QContextMenuEvent::Mouse); });
        QCOMPARE(edit.size(), 1);
        QVERIFY(edit.constFirst().contains(QLatin1Char('*')));
        QVERIFY(edit.constFirst().contains(QStringLiteral("Copy")));

        auto* toolBar = frame.findChild<CToolBar*>();
        QToolButton* options = nullptr;
        for (QToolButton* button : toolBar->findChildren<QToolButton*>()) {
            if (button->menu() != nullptr && button->isVisible()) {
                options = button;
            }
        }
        QVERIFY(options != nullptr);
        // Menus that share commands have all their entries, one after the other.
        for (int time = 0; time < 2; ++time) {
            const QStringList ofOptions = MenusDuring([&] { options->showMenu(); });
            QCOMPARE(ofOptions.size(), 1);
            QVERIFY(ofOptions.constFirst().startsWith(QStringLiteral("Open...*|")));
            QVERIFY(ofOptions.constFirst().endsWith(QStringLiteral("|Reset Toolbar|Customize...")));

            const QStringList ofFrame =
                MenusDuring([&] { AskForMenu(*toolBar, QPoint(2, 2), QContextMenuEvent::Mouse); });
            QCOMPARE(ofFrame.size(), 1);
            QVERIFY(ofFrame.constFirst().startsWith(QStringLiteral("Standard*|Cache Browser|")));
            QVERIFY(ofFrame.constFirst().endsWith(QStringLiteral("|Customize...")));
            CSessionRun::Settle();
        }
    }

    // These are in the tree below their menu bar.
    void aMenuOfTheMenuBarStandsOnlyThere() {
        CMainFrame& frame = m_pRun->Frame();
        QMenu* file = frame.menuBar()->actions().constFirst()->menu();
        file->popup(QPoint(10, 10));
        QCoreApplication::processEvents();
        QCOMPARE(MenusInTree(), QStringList());
        file->close();
    }
};

QTEST_MAIN(AccessibleMenusTest)
#include "AccessibleMenusTest.moc"
