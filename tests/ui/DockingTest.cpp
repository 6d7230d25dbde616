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
void AddShown(QAccessibleInterface* pNode, QStringList& listShown) {
    if (pNode == nullptr)
        return;
    if (!pNode->state().invisible)
        listShown << QStringLiteral("%1: %2").arg(pNode->role()).arg(pNode->text(QAccessible::Name));
    for (int n = 0; n < pNode->childCount(); ++n)
        AddShown(pNode->child(n), listShown);
}

QStringList Shown(QObject& object) {
    QStringList listShown;
    AddShown(QAccessible::queryAccessibleInterface(&object), listShown);
    return listShown;
}

// How often this name stands in the accessibility tree below an object.
int Named(QObject& object, const char* pszName) {
    const QAccessibleInterface* pNode = QAccessible::queryAccessibleInterface(&object);
    int nNamed = 0;
    for (int n = 0; n < pNode->childCount(); ++n)
        nNamed += pNode->child(n)->text(QAccessible::Name) == QLatin1String(pszName) ? 1 : 0;
    return nNamed;
}

bool IsOnTheScreen(const QWidget& widget) {
    const QWidget& window = *widget.window();
    return widget.isVisible() &&
           window.rect().intersects(QRect(widget.mapTo(&window, QPoint()), widget.size()));
}

QTabBar* BarOf(const CMainFrame& frame, const CDockablePane& pane, int& nTab) {
    for (QTabBar* pBar : frame.findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
        for (nTab = 0; pBar->isVisible() && nTab < pBar->count(); ++nTab) {
            if (pBar->tabText(nTab) == pane.windowTitle())
                return pBar;
        }
    }
    return nullptr;
}

QStringList TabsBeside(const CMainFrame& frame, const CDockablePane& pane) {
    int nTab = 0;
    const QTabBar* pBar = BarOf(frame, pane, nTab);
    QStringList listTabs;
    for (int n = 0; pBar != nullptr && n < pBar->count(); ++n)
        listTabs << pBar->tabText(n);
    return listTabs;
}

// A person's hand: whoever has the mouse gets the events.
void Mouse(QWidget& widget, QEvent::Type nType, const QPoint& screen) {
    QWidget* pReceiver = QWidget::mouseGrabber() != nullptr ? QWidget::mouseGrabber() : &widget;
    const bool bMove = nType == QEvent::MouseMove;
    QMouseEvent event(nType, pReceiver->mapFromGlobal(QPointF(screen)), QPointF(screen),
                      bMove ? Qt::NoButton : Qt::LeftButton,
                      nType == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
    QCoreApplication::sendEvent(pReceiver, &event);
    QCoreApplication::processEvents();
}

void DragTab(const CMainFrame& frame, const CDockablePane& pane, const QList<QPoint>& listWay) {
    int nTab = 0;
    QTabBar* pBar = BarOf(frame, pane, nTab);
    const QPoint from = pBar->mapToGlobal(pBar->tabRect(nTab).center());
    Mouse(*pBar, QEvent::MouseButtonPress, from);
    for (const QPoint& step : listWay)
        Mouse(*pBar, QEvent::MouseMove, from + step);
    Mouse(*pBar, QEvent::MouseButtonRelease, from + listWay.constLast());
}

// What the Tab key goes through until it is where it began.
QList<QWidget*> TabOrder(Qt::Key nKey) {
    QList<QWidget*> listOrder;
    while (QWidget* pFocus = QApplication::focusWidget()) {
        if (listOrder.contains(pFocus) || listOrder.size() > 200)
            break;
        listOrder << pFocus;
        QTest::keyClick(pFocus, nKey);
    }
    return listOrder;
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
        for (const Qt::Key nKey : {Qt::Key_Tab, Qt::Key_Backtab}) {
            frame.m_wndErrorPane.MainControl()->setFocus();
            const QList<QWidget*> listOrder = TabOrder(nKey);
            QVERIFY(listOrder.size() > 3);
            for (const QWidget* pWidget : listOrder) {
                QVERIFY2(IsOnTheScreen(*pWidget), pWidget->metaObject()->className());
                for (const CDockablePane* pPane : frame.Panes())
                    QVERIFY(pPane == &frame.m_wndErrorPane || !pPane->isAncestorOf(pWidget));
            }
            QVERIFY(listOrder.contains(frame.m_wndErrorPane.PinButton()));
        }
    }

    void aPaneBehindATabIsNotToldAsShowing() {
        CMainFrame& frame = m_pRun->Frame();
        CChildFrame* pSession =
            m_pRun->Open("a.log", DebugLog({Line("10:00:00.000000", "SELECT * FROM DTA.F0101"),
                                            Line("10:00:09.000000", "SELECT * FROM DTA.F0101"),
                                            Line("10:00:09.000001", "JDB9900168 - Failed to update")}));
        Select(pSession, "Thread - 6");
        for (CDockablePane* pFront : frame.Panes()) {
            CSessionRun::ShowPane(*pFront);
            CSessionRun::Settle();
            for (CDockablePane* pPane : frame.Panes()) {
                if (pPane != pFront)
                    QCOMPARE(Shown(*pPane), QStringList());
            }
            const QStringList listFront = Shown(*pFront);
            QVERIFY(listFront.contains(
                QStringLiteral("%1: %2").arg(QAccessible::Window).arg(pFront->windowTitle())));
            for (const char* pszButton : {"Auto Hide", "Float", "Close"})
                QCOMPARE(
                    listFront.count(QStringLiteral("%1: %2").arg(QAccessible::PushButton).arg(pszButton)), 1);
            QVERIFY(pFront->MainControl()->isVisible());
        }
    }

    void aSessionBehindAnotherOnesTabIsNotToldAsShowing() {
        CChildFrame* pFirst = m_pRun->Open("a.log", DebugLog({}));
        CChildFrame* pSecond = m_pRun->Open("b.log", DebugLog({}));
        QCOMPARE(Shown(*pFirst), QStringList());
        QVERIFY(Shown(*pSecond).size() > 4);
        m_pRun->Frame().ClientArea().Activate(*pFirst);
        QCOMPARE(Shown(*pSecond), QStringList());
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
        for (const char* pszName : {"qt_dockwidget_floatbutton", "qt_dockwidget_closebutton"}) {
            const auto* pButton = frame.m_wndSQLPane.findChild<QAbstractButton*>(QLatin1String(pszName));
            QVERIFY(pButton->isVisible());
            QVERIFY(frame.m_wndSQLPane.rect().contains(pButton->geometry()));
            QVERIFY(pButton->x() > frame.m_wndSQLPane.width() - 60);
        }
    }

    void theFocusOfAPaneThatGoesBehindATabGoesToThePaneInItsPlace() {
        CMainFrame& frame = m_pRun->Frame();
        CChildFrame* pFirst = m_pRun->Open("a.log", DebugLog({}));
        m_pRun->Open("b.log", DebugLog({}));
        frame.RunCommand(ID_WINDOW_NEW_VERTICAL_GROUP);
        frame.ClientArea().Activate(*pFirst);
        CSessionRun::ShowPane(frame.m_wndBSFNPane);
        frame.m_wndBSFNPane.MainControl()->setFocus();
        QList<QWidget*> listFocused;
        connect(qApp, &QApplication::focusChanged, this,
                [&listFocused](QWidget*, QWidget* pNow) { listFocused << pNow; });
        CSessionRun::ShowPane(frame.m_wndErrorPane);
        disconnect(qApp, nullptr, this, nullptr);
        QCOMPARE(QApplication::focusWidget(), frame.m_wndErrorPane.MainControl());
        // On its way it touched no session: the one in front is so still.
        for (const QWidget* pWidget : listFocused)
            QVERIFY(pWidget == nullptr || !frame.ClientArea().isAncestorOf(pWidget));
        QCOMPARE(frame.ClientArea().ActiveChild(), pFirst);
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
        QAccessibleInterface* pPane = QAccessible::queryAccessibleInterface(&frame.m_wndBSFNPane);
        QAccessibleInterface* pPin = QAccessible::queryAccessibleInterface(frame.m_wndBSFNPane.PinButton());
        QVERIFY(pPin != nullptr);
        QCOMPARE(pPin->parent(), pPane);
        QVERIFY(pPane->indexOfChild(pPin) >= 0);
        QCOMPARE(pPane->child(pPane->indexOfChild(pPin)), pPin);
        pPin->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTRY_VERIFY(frame.AutoHide().IsFolded(frame.m_wndBSFNPane));
    }

    void aToolBarsButtonStandsOnceForAScreenReaderHoweverOftenTheBarChanges() {
        CMainFrame& frame = m_pRun->Frame();
        CToolBar* pStandard = frame.Bars().All().constFirst();
        for (int n = 0; n < 3; ++n) {
            QCOMPARE(Named(*pStandard, "Open"), 1);
            QCOMPARE(Named(*pStandard, "About Carvelot"), 1);
            QCOMPARE(Named(*pStandard, "Standard toolbar options: Customize..."), 1);
            pStandard->Reset();
        }
    }

    void aLogIsDroppedAnywhereInTheWindow() {
        CMainFrame& frame = m_pRun->Frame();
        QVERIFY(m_pRun->Open("a.log", DebugLog({})) != nullptr);
        for (CDockablePane* pPane : frame.Panes()) {
            CSessionRun::ShowPane(*pPane);
            QCOMPARE(PartsThatTakeNoCopy(frame), QStringList());
        }
    }

    void aPaneIsTornOffByItsTabAsByItsTitle() {
        CMainFrame& frame = m_pRun->Frame();
        CSessionRun::ShowPane(frame.m_wndBSFNPane);
        const QStringList listTabs = TabsBeside(frame, frame.m_wndBSFNPane);
        // The tab of a pane behind another one, up into the middle of the window.
        const int nLeft = frame.m_wndBSFNPane.mapToGlobal(QPoint()).x();
        DragTab(frame, frame.m_wndFindPane, {{4, -6}, {4, -40}, {20, -200}, {30, -330}});
        QVERIFY(QWidget::mouseGrabber() == nullptr);
        QVERIFY(frame.m_wndFindPane.isFloating());
        QVERIFY(frame.m_wndFindPane.MainControl()->isVisible());
        // It has followed the pointer from where it was docked, but for the frame that a window has.
        QVERIFY(std::abs(frame.m_wndFindPane.mapToGlobal(QPoint()).x() - (nLeft + 26)) < 20);
        QStringList listOthers = listTabs;
        listOthers.removeOne(frame.m_wndFindPane.windowTitle());
        QCOMPARE(TabsBeside(frame, frame.m_wndBSFNPane), listOthers);
        // And once more: the bar is as it was before.
        DragTab(frame, frame.m_wndBSFNPane, {{4, -6}, {4, -40}, {20, -200}, {30, -330}});
        QVERIFY(frame.m_wndBSFNPane.isFloating());
        QVERIFY(!frame.m_wndErrorPane.isFloating());
    }

    void aTabThatIsTornOffDocksWhereItIsDropped() {
        CMainFrame& frame = m_pRun->Frame();
        int nTab = 0;
        const QTabBar* pBar = BarOf(frame, frame.m_wndFindPane, nTab);
        const QPoint from = pBar->mapToGlobal(pBar->tabRect(nTab).center());
        const QPoint left = frame.mapToGlobal(QPoint(12, frame.height() / 3)) - from;
        DragTab(frame, frame.m_wndFindPane, {{4, -40}, left + QPoint(40, 0), left + QPoint(3, 0), left});
        QTRY_VERIFY(!frame.m_wndFindPane.isFloating());
        QCOMPARE(frame.dockWidgetArea(&frame.m_wndFindPane), Qt::LeftDockWidgetArea);
    }

    void aTabThatStaysInItsBarMovesThere() {
        CMainFrame& frame = m_pRun->Frame();
        QStringList listTabs = TabsBeside(frame, frame.m_wndFindPane);
        const qsizetype nPlace = listTabs.indexOf(QLatin1String("Find"));
        DragTab(frame, frame.m_wndFindPane, {{-30, 2}, {-80, 4}, {-140, 10}});
        QVERIFY(!frame.m_wndFindPane.isFloating());
        listTabs.move(nPlace, nPlace - 1);
        QCOMPARE(TabsBeside(frame, frame.m_wndFindPane), listTabs);
    }
};

QTEST_MAIN(DockingTest)
#include "DockingTest.moc"
