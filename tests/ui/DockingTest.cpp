// What is on the screen and what is not: panes behind tabs, for the keyboard and for screen readers.
#include "ui/SessionSupport.h"

#include "ui/app/FrameToolBars.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/ToolBar.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QTabBar>

#include <cstdlib>

using namespace carvelot;
using namespace carvelot::test;

namespace {

// Everything that a screen reader is told to be on the screen at or below this, as "role: name".
void AddShown(QAccessibleInterface* node, QStringList& shown) {
    if (node == nullptr) {
        return;
    }
    if (!node->state().invisible) {
        shown << QStringLiteral("%1: %2").arg(node->role()).arg(node->text(QAccessible::Name));
    }
    for (int n = 0; n < node->childCount(); ++n) {
        AddShown(node->child(n), shown);
    }
}

QStringList Shown(QObject& object) {
    QStringList shown;
    AddShown(QAccessible::queryAccessibleInterface(&object), shown);
    return shown;
}

// How often this name stands in the accessibility tree below an object.
int Named(QObject& object, const char* name) {
    const QAccessibleInterface* node = QAccessible::queryAccessibleInterface(&object);
    int named = 0;
    for (int n = 0; n < node->childCount(); ++n) {
        named += node->child(n)->text(QAccessible::Name) == QLatin1String(name) ? 1 : 0;
    }
    return named;
}

bool IsOnTheScreen(const QWidget& widget) {
    const QWidget& window = *widget.window();
    return widget.isVisible() &&
           window.rect().intersects(QRect(widget.mapTo(&window, QPoint()), widget.size()));
}

QTabBar* BarOf(const CMainFrame& frame, const CDockablePane& pane, int& tab) {
    for (QTabBar* bar : frame.findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
        for (tab = 0; bar->isVisible() && tab < bar->count(); ++tab) {
            if (bar->tabText(tab) == pane.windowTitle()) {
                return bar;
            }
        }
    }
    return nullptr;
}

QStringList TabsBeside(const CMainFrame& frame, const CDockablePane& pane) {
    int tab = 0;
    const QTabBar* bar = BarOf(frame, pane, tab);
    QStringList tabs;
    for (int n = 0; bar != nullptr && n < bar->count(); ++n) {
        tabs << bar->tabText(n);
    }
    return tabs;
}

// A person's hand: whoever has the mouse gets the events.
void Mouse(QWidget& widget, QEvent::Type type, const QPoint& screen) {
    QWidget* receiver = QWidget::mouseGrabber() != nullptr ? QWidget::mouseGrabber() : &widget;
    const bool move = type == QEvent::MouseMove;
    QMouseEvent event(type, receiver->mapFromGlobal(QPointF(screen)), QPointF(screen),
                      move ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
    QCoreApplication::sendEvent(receiver, &event);
    QCoreApplication::processEvents();
}

void DragTab(const CMainFrame& frame, const CDockablePane& pane, const QList<QPoint>& way) {
    int tab = 0;
    QTabBar* bar = BarOf(frame, pane, tab);
    const QPoint from = bar->mapToGlobal(bar->tabRect(tab).center());
    Mouse(*bar, QEvent::MouseButtonPress, from);
    for (const QPoint& step : way) {
        Mouse(*bar, QEvent::MouseMove, from + step);
    }
    Mouse(*bar, QEvent::MouseButtonRelease, from + way.constLast());
}

// What the Tab key goes through until it is where it began.
QList<QWidget*> TabOrder(Qt::Key key) {
    QList<QWidget*> order;
    while (QWidget* focus = QApplication::focusWidget()) {
        if (order.contains(focus) || order.size() > 200) {
            break;
        }
        order << focus;
        QTest::keyClick(focus, key);
    }
    return order;
}

} // namespace

class DockingTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void tabGoesThroughWhatIsOnTheScreenAndNothingElse() {
        CMainFrame& frame = m_pRun->Frame();
        CSessionRun::ShowPane(frame.m_wndErrorPane);
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            frame.m_wndErrorPane.MainControl()->setFocus();
            const QList<QWidget*> order = TabOrder(key);
            QVERIFY(order.size() > 3);
            for (const QWidget* widget : order) {
                QVERIFY2(IsOnTheScreen(*widget), widget->metaObject()->className());
                for (const CDockablePane* pane : frame.Panes()) {
                    QVERIFY(pane == &frame.m_wndErrorPane || !pane->isAncestorOf(widget));
                }
            }
            QVERIFY(order.contains(frame.m_wndErrorPane.PinButton()));
        }
    }

    void aPaneBehindATabIsNotToldAsShowing() {
        CMainFrame& frame = m_pRun->Frame();
        CChildFrame* session =
            m_pRun->Open("a.log", DebugLog({Line("10:00:00.000000", "SELECT * FROM DTA.F0101"),
                                            Line("10:00:09.000000", "SELECT * FROM DTA.F0101"),
                                            Line("10:00:09.000001", "JDB9900168 - Failed to update")}));
        Select(session, "Thread - 6");
        for (CDockablePane* front : frame.Panes()) {
            CSessionRun::ShowPane(*front);
            CSessionRun::Settle();
            for (CDockablePane* pane : frame.Panes()) {
                if (pane != front) {
                    QCOMPARE(Shown(*pane), QStringList());
                }
            }
            const QStringList frontTexts = Shown(*front);
            QVERIFY(frontTexts.contains(
                QStringLiteral("%1: %2").arg(QAccessible::Window).arg(front->windowTitle())));
            for (const char* button : {"Auto Hide", "Float", "Close"}) {
                QCOMPARE(frontTexts.count(QStringLiteral("%1: %2").arg(QAccessible::PushButton).arg(button)),
                         1);
            }
            QVERIFY(front->MainControl()->isVisible());
        }
    }

    void aSessionBehindAnotherOnesTabIsNotToldAsShowing() {
        CChildFrame* first = m_pRun->Open("a.log", DebugLog({}));
        CChildFrame* second = m_pRun->Open("b.log", DebugLog({}));
        QCOMPARE(Shown(*first), QStringList());
        QVERIFY(Shown(*second).size() > 4);
        m_pRun->Frame().ClientArea().Activate(*first);
        QCOMPARE(Shown(*second), QStringList());
    }

    void aPaneThatComesToTheFrontHasItsPartsInPlace() {
        CMainFrame& frame = m_pRun->Frame();
        CSessionRun::ShowPane(frame.m_wndSQLPane);
        const QRect list = frame.m_wndSQLPane.MainControl()->geometry();
        CSessionRun::ShowPane(frame.m_wndBSFNPane);
        frame.resize(frame.width() - 150, frame.height());
        QCoreApplication::processEvents();
        CSessionRun::ShowPane(frame.m_wndSQLPane);
        QCOMPARE(frame.m_wndSQLPane.MainControl()->width(), list.width() - 150);
        QVERIFY(frame.m_wndSQLPane.rect().contains(frame.m_wndSQLPane.PinButton()->geometry()));
        for (const char* name : {"qt_dockwidget_floatbutton", "qt_dockwidget_closebutton"}) {
            const auto* button = frame.m_wndSQLPane.findChild<QAbstractButton*>(QLatin1String(name));
            QVERIFY(button->isVisible());
            QVERIFY(frame.m_wndSQLPane.rect().contains(button->geometry()));
            QVERIFY(button->x() > frame.m_wndSQLPane.width() - 60);
        }
    }

    void theFocusOfAPaneThatGoesBehindATabGoesToThePaneInItsPlace() {
        CMainFrame& frame = m_pRun->Frame();
        CChildFrame* first = m_pRun->Open("a.log", DebugLog({}));
        m_pRun->Open("b.log", DebugLog({}));
        frame.RunCommand(ID_WINDOW_NEW_VERTICAL_GROUP);
        frame.ClientArea().Activate(*first);
        CSessionRun::ShowPane(frame.m_wndBSFNPane);
        frame.m_wndBSFNPane.MainControl()->setFocus();
        QList<QWidget*> focused;
        connect(qApp, &QApplication::focusChanged, this,
                [&focused](QWidget*, QWidget* now) { focused << now; });
        CSessionRun::ShowPane(frame.m_wndErrorPane);
        disconnect(qApp, nullptr, this, nullptr);
        QCOMPARE(QApplication::focusWidget(), frame.m_wndErrorPane.MainControl());
        // On its way it touched no session: the one in front is so still.
        for (const QWidget* widget : focused) {
            QVERIFY(widget == nullptr || !frame.ClientArea().isAncestorOf(widget));
        }
        QCOMPARE(frame.ClientArea().ActiveChild(), first);
    }

    void aPaneThatFloatsFromBehindATabShowsItsParts() {
        CMainFrame& frame = m_pRun->Frame();
        frame.m_wndFindPane.setFloating(true);
        QCoreApplication::processEvents();
        QVERIFY(frame.m_wndFindPane.MainControl()->isVisible());
        frame.m_wndFindPane.setFloating(false);
        QCoreApplication::processEvents();
        CSessionRun::ShowPane(frame.m_wndBSFNPane);
        QVERIFY(!frame.m_wndFindPane.MainControl()->isVisible());
    }

    void thePinIsAButtonOfItsPaneForAScreenReader() {
        CMainFrame& frame = m_pRun->Frame();
        QAccessibleInterface* pane = QAccessible::queryAccessibleInterface(&frame.m_wndBSFNPane);
        QAccessibleInterface* pin = QAccessible::queryAccessibleInterface(frame.m_wndBSFNPane.PinButton());
        QVERIFY(pin != nullptr);
        QCOMPARE(pin->parent(), pane);
        QVERIFY(pane->indexOfChild(pin) >= 0);
        QCOMPARE(pane->child(pane->indexOfChild(pin)), pin);
        pin->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTRY_VERIFY(frame.AutoHide().IsFolded(frame.m_wndBSFNPane));
    }

    void aToolBarsButtonStandsOnceForAScreenReaderHoweverOftenTheBarChanges() {
        CMainFrame& frame = m_pRun->Frame();
        CToolBar* standard = frame.Bars().All().constFirst();
        for (int n = 0; n < 3; ++n) {
            QCOMPARE(Named(*standard, "Open"), 1);
            QCOMPARE(Named(*standard, "About Carvelot"), 1);
            QCOMPARE(Named(*standard, "Standard toolbar options: Customize..."), 1);
            standard->Reset();
        }
    }

    // The pointer may rest between two panes when a key takes one of them away.
    void theSeparatorBelowThePointerMayGo() {
        CMainFrame& frame = m_pRun->Frame();
        const auto move = [&frame](const QPoint& point) {
            QTest::mouseMove(frame.windowHandle(), point);
            QCoreApplication::processEvents();
        };
        const auto between = [](const QWidget& left, const QWidget& right) {
            return QPoint((left.geometry().right() + right.geometry().left()) / 2,
                          left.geometry().center().y());
        };
        CDockablePane& left = frame.m_wndFindPane;
        CDockablePane& upper = frame.m_wndErrorPane;
        CDockablePane& lower = frame.m_wndSQLPane;
        frame.addDockWidget(Qt::RightDockWidgetArea, &upper);
        frame.splitDockWidget(&upper, &lower, Qt::Vertical);
        frame.splitDockWidget(&upper, &left, Qt::Horizontal);
        CSessionRun::Settle();
        const QPoint separator = between(upper, left);
        QVERIFY(frame.childAt(separator) == nullptr);
        move(separator);
        QCOMPARE(frame.cursor().shape(), Qt::SplitHCursor);
        frame.addDockWidget(Qt::LeftDockWidgetArea, &left);
        CSessionRun::Settle();
        move(frame.rect().center());
        QCOMPARE(frame.cursor().shape(), Qt::ArrowCursor);
    }

    void aLogIsDroppedAnywhereInTheWindow() {
        CMainFrame& frame = m_pRun->Frame();
        QVERIFY(m_pRun->Open("a.log", DebugLog({})) != nullptr);
        for (CDockablePane* pane : frame.Panes()) {
            CSessionRun::ShowPane(*pane);
            QCOMPARE(PartsThatTakeNoCopy(frame), QStringList());
        }
    }

    void aPaneIsTornOffByItsTabAsByItsTitle() {
        CMainFrame& frame = m_pRun->Frame();
        CSessionRun::ShowPane(frame.m_wndBSFNPane);
        const QStringList tabs = TabsBeside(frame, frame.m_wndBSFNPane);
        // The tab of a pane behind another one, up into the middle of the window.
        const int left = frame.m_wndBSFNPane.mapToGlobal(QPoint()).x();
        DragTab(frame, frame.m_wndFindPane, {{4, -6}, {4, -40}, {20, -200}, {30, -330}});
        QVERIFY(QWidget::mouseGrabber() == nullptr);
        QVERIFY(frame.m_wndFindPane.isFloating());
        QVERIFY(frame.m_wndFindPane.MainControl()->isVisible());
        // It has followed the pointer from where it was docked, but for the frame that a window has.
        QVERIFY(std::abs(frame.m_wndFindPane.mapToGlobal(QPoint()).x() - (left + 26)) < 20);
        QStringList others = tabs;
        others.removeOne(frame.m_wndFindPane.windowTitle());
        QCOMPARE(TabsBeside(frame, frame.m_wndBSFNPane), others);
        // And once more: the bar is as it was before.
        DragTab(frame, frame.m_wndBSFNPane, {{4, -6}, {4, -40}, {20, -200}, {30, -330}});
        QVERIFY(frame.m_wndBSFNPane.isFloating());
        QVERIFY(!frame.m_wndErrorPane.isFloating());
    }

    void aTabThatIsTornOffDocksWhereItIsDropped() {
        CMainFrame& frame = m_pRun->Frame();
        int tab = 0;
        const QTabBar* bar = BarOf(frame, frame.m_wndFindPane, tab);
        const QPoint from = bar->mapToGlobal(bar->tabRect(tab).center());
        const QPoint left = frame.mapToGlobal(QPoint(12, frame.height() / 3)) - from;
        DragTab(frame, frame.m_wndFindPane, {{4, -40}, left + QPoint(40, 0), left + QPoint(3, 0), left});
        QTRY_VERIFY(!frame.m_wndFindPane.isFloating());
        QCOMPARE(frame.dockWidgetArea(&frame.m_wndFindPane), Qt::LeftDockWidgetArea);
    }

    void aTabThatStaysInItsBarMovesThere() {
        CMainFrame& frame = m_pRun->Frame();
        QStringList tabs = TabsBeside(frame, frame.m_wndFindPane);
        const qsizetype place = tabs.indexOf(QLatin1String("Find"));
        DragTab(frame, frame.m_wndFindPane, {{-30, 2}, {-80, 4}, {-140, 10}});
        QVERIFY(!frame.m_wndFindPane.isFloating());
        tabs.move(place, place - 1);
        QCOMPARE(TabsBeside(frame, frame.m_wndFindPane), tabs);
    }
};

QTEST_MAIN(DockingTest)
#include "DockingTest.moc"
