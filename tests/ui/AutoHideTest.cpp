// Panes folded away to the edge of the window.
#include "ui/UiSupport.h"

#include "ui/app/FrameToolBars.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/ToolBar.h"

#include <QAbstractButton>
#include <QFrame>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QStatusBar>
#include <QToolBar>
#include <QWindow>

#include <algorithm>
#include <cstdlib>

using namespace carvelot;
using namespace carvelot::test;

namespace {

QStringList Tabs(const CMainFrame& frame, const char* pszEdge) {
    QStringList listTexts;
    const auto* pStrip = frame.findChild<QToolBar*>(QStringLiteral("AutoHide-") + QLatin1String(pszEdge));
    if (pStrip == nullptr || !pStrip->isVisible())
        return listTexts;
    for (const auto* pTab : pStrip->findChildren<QAbstractButton*>(QStringLiteral("AutoHideTab"))) {
        if (pTab->isVisible())
            listTexts << pTab->text();
    }
    return listTexts;
}

QAbstractButton* Tab(const CMainFrame& frame, const char* pszText) {
    for (auto* pTab : frame.findChildren<QAbstractButton*>(QStringLiteral("AutoHideTab"))) {
        if (pTab->text() == QLatin1String(pszText) && pTab->isVisible())
            return pTab;
    }
    return nullptr;
}

const std::initializer_list<std::pair<const char*, Qt::DockWidgetArea>> kEdges{
    {"left", Qt::LeftDockWidgetArea},
    {"right", Qt::RightDockWidgetArea},
    {"top", Qt::TopDockWidgetArea},
    {"bottom", Qt::BottomDockWidgetArea}};

QToolBar* Strip(const CMainFrame& frame, Qt::DockWidgetArea nEdge) {
    for (const auto& [pszEdge, nThis] : kEdges) {
        if (nThis == nEdge)
            return frame.findChild<QToolBar*>(QStringLiteral("AutoHide-") + QLatin1String(pszEdge));
    }
    return nullptr;
}

void Settle() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

const QStringList kPaneOrder{"JDE Processes", "SQL Table Access", "Timing Gaps",
                             "Find",          "Long Tasks",       "Raw Data",
                             "Cache Details", "Errors/Warnings",  "BSFN Calls"};

} // namespace

class AutoHideTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_pFolder = std::make_unique<QTemporaryDir>();
        m_pRun = std::make_unique<CRun>(*m_pFolder);
        Settle();
    }
    void cleanup() { m_pRun.reset(); }

    void thePinOfAPaneFoldsItsWholeGroupToTheEdgeInTheOrderOfTheTabs() {
        CMainFrame& frame = m_pRun->Frame();
        const int nBefore = m_pRun->Area().height();
        QVERIFY(frame.m_wndBSFNPane.PinButton()->isVisible());
        QCOMPARE(frame.m_wndBSFNPane.PinButton()->accessibleName(), QStringLiteral("Auto Hide"));
        QTest::mouseClick(frame.m_wndBSFNPane.PinButton(), Qt::LeftButton);
        Settle();
        QCOMPARE(Tabs(frame, "bottom"), kPaneOrder);
        QVERIFY(!frame.m_wndBSFNPane.isVisible());
        QVERIFY(m_pRun->Area().height() > nBefore + 100);
    }

    void thePinStandsBesideTheTitlesButtons_data() {
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::newRow("left to right") << Qt::LeftToRight;
        QTest::newRow("right to left") << Qt::RightToLeft;
    }

    void thePinStandsBesideTheTitlesButtons() {
        QFETCH(Qt::LayoutDirection, direction);
        const auto restore = qScopeGuard([] { QApplication::setLayoutDirection(Qt::LeftToRight); });
        QApplication::setLayoutDirection(direction);
        Settle();
        const CDockablePane& pane = m_pRun->Frame().m_wndBSFNPane;
        const QRect pin = pane.PinButton()->geometry();
        const QRect buttonFloat =
            pane.findChild<QAbstractButton*>(QStringLiteral("qt_dockwidget_floatbutton"))->geometry();
        const QRect buttonClose =
            pane.findChild<QAbstractButton*>(QStringLiteral("qt_dockwidget_closebutton"))->geometry();
        QVERIFY(pane.rect().contains(pin));
        // From the edge inwards: close, float, pin.
        const QList<int> listPlaces{buttonClose.x(), buttonFloat.x(), pin.x()};
        QVERIFY(!pin.intersects(buttonFloat) && !pin.intersects(buttonClose));
        QVERIFY(direction == Qt::LeftToRight ? std::ranges::is_sorted(listPlaces, std::ranges::greater())
                                             : std::ranges::is_sorted(listPlaces));
    }

    void aTabSlidesItsPaneOutWithoutMovingTheWindowsAndTheFocusTakesItBack() {
        CMainFrame& frame = m_pRun->Frame();
        CTestFrame* pChild = m_pRun->Open("a");
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        Settle();
        const QRect area = m_pRun->Area().geometry();
        QTest::mouseClick(Tab(frame, "Find"), Qt::LeftButton);
        Settle();
        QVERIFY(frame.m_wndFindPane.isVisible());
        QVERIFY(frame.m_wndFindPane.isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(m_pRun->Area().geometry(), area);
        QCOMPARE(frame.m_wndFindPane.PinButton()->accessibleName(), QStringLiteral("Dock"));
        pChild->m_edits[0]->setFocus();
        QVERIFY(!frame.m_wndFindPane.isVisible());
        QCOMPARE(QApplication::focusWidget(), pChild->m_edits[0]);
    }

    void anotherTabTakesTheFirstPanesPlace() {
        CMainFrame& frame = m_pRun->Frame();
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        Settle();
        QTest::mouseClick(Tab(frame, "Find"), Qt::LeftButton);
        QTest::mouseClick(Tab(frame, "Raw Data"), Qt::LeftButton);
        Settle();
        QVERIFY(!frame.m_wndFindPane.isVisible());
        QVERIFY(frame.m_wndRawDataPane.isVisible());
        QCOMPARE(frame.AutoHide().PaneOut(), &frame.m_wndRawDataPane);
    }

    void escFoldsThePaneAndItsTabHasTheFocus() {
        CMainFrame& frame = m_pRun->Frame();
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        Settle();
        Tab(frame, "BSFN Calls")->setFocus();
        QTest::keyClick(Tab(frame, "BSFN Calls"), Qt::Key_Return);
        QVERIFY(frame.m_wndBSFNPane.isVisible());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QVERIFY(!frame.m_wndBSFNPane.isVisible());
        QCOMPARE(QApplication::focusWidget(), Tab(frame, "BSFN Calls"));
    }

    void thePinOfAFoldedPaneDocksTheGroupAgainWithThatPaneInFront() {
        CMainFrame& frame = m_pRun->Frame();
        const int nBefore = frame.m_wndBSFNPane.height();
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        Settle();
        QTest::mouseClick(Tab(frame, "Long Tasks"), Qt::LeftButton);
        Settle();
        QTest::mouseClick(frame.m_wndLongTasksPane.PinButton(), Qt::LeftButton);
        Settle();
        QCOMPARE(Tabs(frame, "bottom"), QStringList());
        QVERIFY(!frame.m_wndLongTasksPane.visibleRegion().isEmpty());
        QCOMPARE(frame.dockWidgetArea(&frame.m_wndLongTasksPane), Qt::BottomDockWidgetArea);
        QCOMPARE(frame.tabifiedDockWidgets(&frame.m_wndLongTasksPane).size(), 8);
        QCOMPARE(frame.m_wndLongTasksPane.height(), nBefore);
        QVERIFY((frame.m_wndLongTasksPane.features() & QDockWidget::DockWidgetFloatable) != 0);
    }

    void aPaneAtTheSideFoldsToThatSideAlone() {
        CMainFrame& frame = m_pRun->Frame();
        frame.addDockWidget(Qt::LeftDockWidgetArea, &frame.m_wndFindPane);
        Settle();
        frame.AutoHide().Fold(frame.m_wndFindPane);
        Settle();
        QCOMPARE(Tabs(frame, "left"), QStringList{"Find"});
        QCOMPARE(Tabs(frame, "bottom"), QStringList());
        QVERIFY(Tab(frame, "Find")->height() > Tab(frame, "Find")->width());
        QTest::mouseClick(Tab(frame, "Find"), Qt::LeftButton);
        QVERIFY(frame.m_wndFindPane.isVisible());
    }

    void aPaneThatIsOutStandsAtItsEdgeInsideTheWindow_data() {
        QTest::addColumn<Qt::DockWidgetArea>("edge");
        QTest::addColumn<bool>("rightToLeft");
        for (const bool bRightToLeft : {false, true}) {
            for (const auto& [pszEdge, nEdge] : kEdges)
                QTest::addRow("%s, %s", pszEdge, bRightToLeft ? "right to left" : "left to right")
                    << nEdge << bRightToLeft;
        }
    }

    // Two groups of tabs and a single pane on each of the other edges: those behind tabs are parked by the
    // toolkit at negative places.
    void aPaneThatIsOutStandsAtItsEdgeInsideTheWindow() {
        QFETCH(Qt::DockWidgetArea, edge);
        QFETCH(bool, rightToLeft);
        const auto restore = qScopeGuard([] { QApplication::setLayoutDirection(Qt::LeftToRight); });
        QApplication::setLayoutDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
        CMainFrame& frame = m_pRun->Frame();
        frame.resize(1200, 800);
        const QList<CDockablePane*> listPanes = frame.Panes();
        qsizetype nPane = 0;
        for (const auto& [pszEdge, nEdge] : kEdges) {
            for (int n = 0; n < 2; ++n, ++nPane) {
                frame.addDockWidget(nEdge, listPanes[nPane]);
                if (n > 0)
                    frame.tabifyDockWidget(listPanes[nPane - 1], listPanes[nPane]);
            }
        }
        Settle();
        CDockablePane* pOut = nullptr;
        for (CDockablePane* pPane : listPanes) {
            if (pOut == nullptr && frame.dockWidgetArea(pPane) == edge)
                pOut = pPane;
        }
        const bool bUpright = edge == Qt::LeftDockWidgetArea || edge == Qt::RightDockWidgetArea;
        frame.resizeDocks({pOut}, {190}, bUpright ? Qt::Horizontal : Qt::Vertical);
        Settle();
        pOut->raise();
        Settle();
        const int nThickness = bUpright ? pOut->width() : pOut->height();
        QVERIFY(nThickness > 80);
        frame.AutoHide().Fold(*pOut);
        Settle();
        QTest::mouseClick(Tab(frame, pOut->windowTitle().toUtf8()), Qt::LeftButton);
        Settle();
        QVERIFY(pOut->isVisible());

        // What is between the bars: the tool bars above it, the status bar below, the strip at its edge.
        QRect room(0, 0, frame.width(), frame.statusBar()->geometry().top());
        room.setTop(frame.Bars().All().constFirst()->geometry().bottom() + 1);
        const auto* pSlide = frame.findChild<QFrame*>(QStringLiteral("AutoHideSlide"));
        const QRect strip = Strip(frame, edge)->geometry();
        QRect expected;
        switch (edge) {
        case Qt::LeftDockWidgetArea:
            expected = QRect(strip.right() + 1, room.top(), nThickness, room.height());
            break;
        case Qt::RightDockWidgetArea:
            expected = QRect(strip.left() - nThickness, room.top(), nThickness, room.height());
            break;
        case Qt::TopDockWidgetArea:
            expected = QRect(0, strip.bottom() + 1, room.width(), nThickness);
            break;
        default:
            expected = QRect(0, strip.top() - nThickness, room.width(), nThickness);
        }
        QCOMPARE(pSlide->geometry(), expected);
        QVERIFY(QRect(QPoint(), pSlide->size()).contains(pOut->geometry()));
    }

    void thePointerOverATabShowsItsPaneAndTakesNoFocus() {
        CMainFrame& frame = m_pRun->Frame();
        CTestFrame* pChild = m_pRun->Open("a");
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        Settle();
        pChild->m_edits[1]->setFocus();
        Point(*Tab(frame, "Find"));
        QTRY_VERIFY(frame.m_wndFindPane.isVisible());
        QCOMPARE(QApplication::focusWidget(), pChild->m_edits[1]);
        // It stays while the pointer is in it, and goes with the pointer.
        Point(*frame.m_wndFindPane.MainControl());
        QVERIFY(frame.m_wndFindPane.MainControl()->underMouse());
        Point(*pChild->m_edits[0]);
        QTRY_VERIFY(!frame.m_wndFindPane.isVisible());
        QCOMPARE(QApplication::focusWidget(), pChild->m_edits[1]);
    }

    void aTabThatThePointerOnlyPassesShowsNothing() {
        CMainFrame& frame = m_pRun->Frame();
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        Settle();
        class CWatch : public QObject {
        public:
            bool eventFilter(QObject*, QEvent* pEvent) override {
                m_nShown += pEvent->type() == QEvent::Show ? 1 : 0;
                return false;
            }
            int m_nShown = 0;
        } watch;
        frame.m_wndFindPane.installEventFilter(&watch);
        Point(*Tab(frame, "Find"));
        Point(*Tab(frame, "Raw Data"));
        QTRY_VERIFY(frame.m_wndRawDataPane.isVisible());
        QCOMPARE(watch.m_nShown, 0);
    }

    void aPaneThatIsOutIsResizedByItsInnerEdge_data() { Edges(); }

    void aPaneThatIsOutIsResizedByItsInnerEdge() {
        QFETCH(Qt::DockWidgetArea, edge);
        const bool bUpright = edge == Qt::LeftDockWidgetArea || edge == Qt::RightDockWidgetArea;
        CMainFrame* pFrame = &m_pRun->Frame();
        FoldFind(*pFrame, edge);
        QTest::mouseClick(Tab(*pFrame, "Find"), Qt::LeftButton);
        Settle();
        const auto fnThickness = [&] { return bUpright ? Slide(*pFrame).width() : Slide(*pFrame).height(); };
        // By how far the pointer moves into the window.
        const auto fnDrag = [&](int nFurther) {
            QFrame& slide = Slide(*pFrame);
            const QPoint inner = edge == Qt::LeftDockWidgetArea    ? QPoint(slide.width() - 2, 50)
                                 : edge == Qt::RightDockWidgetArea ? QPoint(1, 50)
                                 : edge == Qt::TopDockWidgetArea   ? QPoint(50, slide.height() - 2)
                                                                   : QPoint(50, 1);
            const int nSign = edge == Qt::LeftDockWidgetArea || edge == Qt::TopDockWidgetArea ? 1 : -1;
            const QPoint step(bUpright ? nSign * nFurther : 0, bUpright ? 0 : nSign * nFurther);
            const QPoint screen = slide.mapToGlobal(inner) + step;
            QTest::mousePress(&slide, Qt::LeftButton, {}, inner);
            QMouseEvent move(QEvent::MouseMove, QPointF(slide.mapFromGlobal(screen)), QPointF(screen),
                             Qt::NoButton, Qt::LeftButton, {});
            QCoreApplication::sendEvent(&slide, &move);
            QTest::mouseRelease(&slide, Qt::LeftButton, {}, slide.mapFromGlobal(screen));
        };
        const QRect before = Slide(*pFrame).geometry();
        fnDrag(60);
        const int nWide = bUpright ? before.width() + 60 : before.height() + 60;
        QVERIFY(std::abs(fnThickness() - nWide) <= 2);
        // The outer edge stays where it is.
        const QRect after = Slide(*pFrame).geometry();
        QVERIFY(edge == Qt::LeftDockWidgetArea    ? after.left() == before.left()
                : edge == Qt::RightDockWidgetArea ? after.right() == before.right()
                : edge == Qt::TopDockWidgetArea   ? after.top() == before.top()
                                                  : after.bottom() == before.bottom());
        QVERIFY(Slide(*pFrame).rect().contains(pFrame->m_wndFindPane.geometry()));

        // There is a least size, and always something left of the window.
        fnDrag(-2000);
        QCOMPARE(fnThickness(), 80);
        fnDrag(5000);
        const int nMost = fnThickness();
        QVERIFY(nMost < (bUpright ? pFrame->width() : pFrame->height()));
        fnDrag(200 - nMost);
        const int nLast = fnThickness();
        QVERIFY(std::abs(nLast - 200) <= 2);

        // It holds for the next time, for the next start, and for the pane when it is docked again.
        pFrame->AutoHide().SlideIn();
        QTest::mouseClick(Tab(*pFrame, "Find"), Qt::LeftButton);
        QCOMPARE(fnThickness(), nLast);
        m_pRun.reset();
        m_pRun = std::make_unique<CRun>(*m_pFolder);
        pFrame = &m_pRun->Frame();
        Settle();
        QTest::mouseClick(Tab(*pFrame, "Find"), Qt::LeftButton);
        QCOMPARE(fnThickness(), nLast);
        pFrame->AutoHide().Pin(pFrame->m_wndFindPane);
        Settle();
        QCOMPARE(bUpright ? pFrame->m_wndFindPane.width() : pFrame->m_wndFindPane.height(), nLast);
    }

    void theTabsOfEachEdgeStandThere_data() { Edges(); }

    void theTabsOfEachEdgeStandThere() {
        QFETCH(Qt::DockWidgetArea, edge);
        CMainFrame& frame = m_pRun->Frame();
        FoldFind(frame, edge);
        const QToolBar& strip = *Strip(frame, edge);
        const QAbstractButton& tab = *Tab(frame, "Find");
        QVERIFY(strip.isAncestorOf(&tab));
        if (edge == Qt::TopDockWidgetArea) {
            // Toolbars stand above the strip, also one that the user makes now.
            QVERIFY(frame.Bars().New(QStringLiteral("Mine")) != nullptr);
            Settle();
        }
        const QPoint middle = strip.geometry().center();
        switch (edge) {
        case Qt::LeftDockWidgetArea:
            QCOMPARE(strip.x(), 0);
            break;
        case Qt::RightDockWidgetArea:
            QCOMPARE(strip.geometry().right(), frame.width() - 1);
            break;
        case Qt::TopDockWidgetArea:
            QVERIFY(middle.y() < m_pRun->Area().y());
            for (const CToolBar* pToolBar : frame.Bars().All())
                QVERIFY(middle.y() > pToolBar->geometry().bottom());
            break;
        default:
            QVERIFY(middle.y() > m_pRun->Area().geometry().bottom());
            QVERIFY(middle.y() < frame.statusBar()->y());
        }
        const bool bUpright = edge == Qt::LeftDockWidgetArea || edge == Qt::RightDockWidgetArea;
        QCOMPARE(tab.height() > tab.width(), bUpright);
        for (const auto& [pszEdge, nEdge] : kEdges)
            QCOMPARE(Tabs(frame, pszEdge), nEdge == edge ? QStringList{"Find"} : QStringList());
    }

    void whatIsFoldedIsFoldedAtTheNextStartToo() {
        CMainFrame* pFrame = &m_pRun->Frame();
        pFrame->addDockWidget(Qt::RightDockWidgetArea, &pFrame->m_wndFindPane);
        Settle();
        pFrame->AutoHide().Fold(pFrame->m_wndFindPane);
        pFrame->AutoHide().Fold(pFrame->m_wndBSFNPane);
        const std::string strStored = WriteFolds(pFrame->AutoHide().Folds());
        m_pRun.reset();
        m_pRun = std::make_unique<CRun>(*m_pFolder);
        Settle();
        pFrame = &m_pRun->Frame();
        QStringList listOthers = kPaneOrder;
        listOthers.removeOne(QStringLiteral("Find"));
        QCOMPARE(Tabs(*pFrame, "right"), QStringList{"Find"});
        QCOMPARE(Tabs(*pFrame, "bottom"), listOthers);
        QCOMPARE(WriteFolds(pFrame->AutoHide().Folds()), strStored);
    }

    void aStoredTextThatMakesNoSenseFoldsNothing() {
        CMainFrame& frame = m_pRun->Frame();
        for (const char* pszStored : {"", ";;", "bottom", "middle:100:FindPane",
                                      "bottom:100:", "bottom:100:Nobody", "::", "bottom:x"})
            frame.AutoHide().Restore(ReadFolds(pszStored));
        QCOMPARE(WriteFolds(frame.AutoHide().Folds()), std::string());
        frame.AutoHide().Restore(ReadFolds("bottom:-7:FindPane,FindPane;top:300:FindPane"));
        Settle();
        QCOMPARE(Tabs(frame, "bottom"), QStringList{"Find"});
        QCOMPARE(Tabs(frame, "top"), QStringList());
    }

    void aFoldedPaneThatIsClosedLeavesTheStripAndComesBackDocked() {
        CMainFrame& frame = m_pRun->Frame();
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        frame.AutoHide().SlideOut(frame.m_wndFindPane, true);
        frame.m_wndFindPane.close();
        Settle();
        Settle();
        QVERIFY(!Tabs(frame, "bottom").contains(QLatin1String("Find")));
        QCOMPARE(Tabs(frame, "bottom").size(), 8);
        QVERIFY(frame.m_wndFindPane.isHidden());
        frame.m_wndFindPane.show();
        Settle();
        QVERIFY(frame.m_wndFindPane.isVisible());
        QVERIFY(!frame.AutoHide().IsFolded(frame.m_wndFindPane));
    }

    void theViewMenuSlidesAFoldedPaneOut() {
        CMainFrame& frame = m_pRun->Frame();
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        CPersonalMenu* pView = m_pRun->OpenMenu("View");
        QMenu* pBars = Entry(*pView, "&Toolbars and Docking Windows")->menu();
        emit pBars->aboutToShow();
        QVERIFY(Entry(*pBars, "Find")->isChecked());
        Entry(*pBars, "Find")->trigger();
        pView->close();
        QVERIFY(frame.m_wndFindPane.isVisible());
    }

    void f6ReachesTheStripAndThePaneThatIsOut() {
        CMainFrame& frame = m_pRun->Frame();
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        Settle();
        frame.activateWindow();
        frame.RunCommand(ID_WINDOW_NEXT_PANE);
        QCOMPARE(QApplication::focusWidget(), Tab(frame, "JDE Processes"));
    }

    void restoringTheDefaultLayoutDocksAllPanes() {
        CMainFrame& frame = m_pRun->Frame();
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        frame.RunCommand(ID_VIEW_RESTORE_LAYOUT);
        Settle();
        QCOMPARE(Tabs(frame, "bottom"), QStringList());
        for (const CDockablePane* pPane : frame.Panes())
            QVERIFY(!pPane->isHidden());
        QVERIFY(!frame.m_wndBSFNPane.visibleRegion().isEmpty());
    }

    void aFloatingPaneHasNoPin() {
        CMainFrame& frame = m_pRun->Frame();
        frame.m_wndFindPane.setFloating(true);
        Settle();
        QVERIFY(!frame.m_wndFindPane.PinButton()->isVisible());
        frame.AutoHide().Fold(frame.m_wndFindPane);
        QVERIFY(!frame.AutoHide().IsFolded(frame.m_wndFindPane));
    }

private:
    static void Edges() {
        QTest::addColumn<Qt::DockWidgetArea>("edge");
        for (const auto& [pszEdge, nEdge] : kEdges)
            QTest::newRow(pszEdge) << nEdge;
    }
    static QFrame& Slide(const CMainFrame& frame) {
        return *frame.findChild<QFrame*>(QStringLiteral("AutoHideSlide"));
    }
    static void FoldFind(CMainFrame& frame, Qt::DockWidgetArea nEdge) {
        frame.addDockWidget(nEdge, &frame.m_wndFindPane);
        Settle();
        frame.AutoHide().Fold(frame.m_wndFindPane);
        Settle();
    }
    // Moves the pointer there as the system does, who tells the widgets that it leaves and enters.
    static void Point(QWidget& widget) {
        QWidget& window = *widget.window();
        QTest::mouseMove(window.windowHandle(), widget.mapTo(&window, widget.rect().center()));
        QCoreApplication::processEvents();
    }

    CFakeInterface m_user;
    std::unique_ptr<QTemporaryDir> m_pFolder;
    std::unique_ptr<CRun> m_pRun;
};

QTEST_MAIN(AutoHideTest)
#include "AutoHideTest.moc"
