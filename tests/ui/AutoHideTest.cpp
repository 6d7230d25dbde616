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

QStringList Tabs(const CMainFrame& frame, const char* edgeName) {
    QStringList texts;
    const auto* strip = frame.findChild<QToolBar*>(QStringLiteral("AutoHide-") + QLatin1String(edgeName));
    if (strip == nullptr || !strip->isVisible()) {
        return texts;
    }
    for (const auto* tab : strip->findChildren<QAbstractButton*>(QStringLiteral("AutoHideTab"))) {
        if (tab->isVisible()) {
            texts << tab->text();
        }
    }
    return texts;
}

QAbstractButton* Tab(const CMainFrame& frame, const char* text) {
    for (auto* tab : frame.findChildren<QAbstractButton*>(QStringLiteral("AutoHideTab"))) {
        if (tab->text() == QLatin1String(text) && tab->isVisible()) {
            return tab;
        }
    }
    return nullptr;
}

const std::initializer_list<std::pair<const char*, Qt::DockWidgetArea>> kEdges{
    {"left", Qt::LeftDockWidgetArea},
    {"right", Qt::RightDockWidgetArea},
    {"top", Qt::TopDockWidgetArea},
    {"bottom", Qt::BottomDockWidgetArea}};

QToolBar* Strip(const CMainFrame& frame, Qt::DockWidgetArea area) {
    for (const auto& [edgeName, tried] : kEdges) {
        if (tried == area) {
            return frame.findChild<QToolBar*>(QStringLiteral("AutoHide-") + QLatin1String(edgeName));
        }
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
        const int before = m_pRun->Area().height();
        QVERIFY(frame.m_wndBSFNPane.PinButton()->isVisible());
        QCOMPARE(frame.m_wndBSFNPane.PinButton()->accessibleName(), QStringLiteral("Auto Hide"));
        QTest::mouseClick(frame.m_wndBSFNPane.PinButton(), Qt::LeftButton);
        Settle();
        QCOMPARE(Tabs(frame, "bottom"), kPaneOrder);
        QVERIFY(!frame.m_wndBSFNPane.isVisible());
        QVERIFY(m_pRun->Area().height() > before + 100);
    }

    void aThinPaneFoldedAwayIsAsThickAfterARestart() {
        m_pRun->Frame().resizeDocks({&m_pRun->Frame().m_wndBSFNPane}, {30}, Qt::Vertical);
        Settle();
        QVERIFY(m_pRun->Frame().m_wndBSFNPane.height() < StoredFold::kLeast);
        m_pRun->Frame().AutoHide().Fold(m_pRun->Frame().m_wndBSFNPane);
        const std::string folds = WriteFolds(m_pRun->Frame().AutoHide().Folds());
        m_pRun.reset();
        m_pRun = std::make_unique<CRun>(*m_pFolder);
        Settle();
        QCOMPARE(WriteFolds(m_pRun->Frame().AutoHide().Folds()), folds);
    }

    void foldingLeavesNothingBehind() {
        CMainFrame& frame = m_pRun->Frame();
        const auto objects = [&frame] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            Settle();
            return frame.findChildren<QObject*>().size();
        };
        const auto foldAndPin = [&frame] {
            frame.AutoHide().Fold(frame.m_wndBSFNPane);
            Settle();
            frame.AutoHide().Pin(frame.m_wndBSFNPane);
            Settle();
        };
        foldAndPin();
        const qsizetype before = objects();
        for (int n = 0; n < 10; ++n) {
            foldAndPin();
        }
        QCOMPARE(objects(), before);
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
        const QList<int> places{buttonClose.x(), buttonFloat.x(), pin.x()};
        QVERIFY(!pin.intersects(buttonFloat) && !pin.intersects(buttonClose));
        QVERIFY(direction == Qt::LeftToRight ? std::ranges::is_sorted(places, std::ranges::greater())
                                             : std::ranges::is_sorted(places));
    }

    void aTabSlidesItsPaneOutWithoutMovingTheWindowsAndTheFocusTakesItBack() {
        CMainFrame& frame = m_pRun->Frame();
        CTestFrame* child = m_pRun->Open("a");
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        Settle();
        const QRect area = m_pRun->Area().geometry();
        QTest::mouseClick(Tab(frame, "Find"), Qt::LeftButton);
        Settle();
        QVERIFY(frame.m_wndFindPane.isVisible());
        QVERIFY(frame.m_wndFindPane.isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(m_pRun->Area().geometry(), area);
        QCOMPARE(frame.m_wndFindPane.PinButton()->accessibleName(), QStringLiteral("Dock"));
        child->m_edits[0]->setFocus();
        QVERIFY(!frame.m_wndFindPane.isVisible());
        QCOMPARE(QApplication::focusWidget(), child->m_edits[0]);
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
        const int before = frame.m_wndBSFNPane.height();
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
        QCOMPARE(frame.m_wndLongTasksPane.height(), before);
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
        for (const bool rightToLeft : {false, true}) {
            for (const auto& [edgeName, area] : kEdges) {
                QTest::addRow("%s, %s", edgeName, rightToLeft ? "right to left" : "left to right")
                    << area << rightToLeft;
            }
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
        const QList<CDockablePane*> panes = frame.Panes();
        qsizetype paneNumber = 0;
        for (const auto& [edgeName, area] : kEdges) {
            for (int n = 0; n < 2; ++n, ++paneNumber) {
                frame.addDockWidget(area, panes[paneNumber]);
                if (n > 0) {
                    frame.tabifyDockWidget(panes[paneNumber - 1], panes[paneNumber]);
                }
            }
        }
        Settle();
        CDockablePane* out = nullptr;
        for (CDockablePane* pane : panes) {
            if (out == nullptr && frame.dockWidgetArea(pane) == edge) {
                out = pane;
            }
        }
        const bool upright = edge == Qt::LeftDockWidgetArea || edge == Qt::RightDockWidgetArea;
        frame.resizeDocks({out}, {190}, upright ? Qt::Horizontal : Qt::Vertical);
        Settle();
        out->raise();
        Settle();
        const int thickness = upright ? out->width() : out->height();
        QVERIFY(thickness > 80);
        frame.AutoHide().Fold(*out);
        Settle();
        QTest::mouseClick(Tab(frame, out->windowTitle().toUtf8()), Qt::LeftButton);
        Settle();
        QVERIFY(out->isVisible());

        // What is between the bars: the tool bars above it, the status bar below, the strip at its edge.
        QRect room(0, 0, frame.width(), frame.statusBar()->geometry().top());
        room.setTop(frame.Bars().All().constFirst()->geometry().bottom() + 1);
        const auto* slide = frame.findChild<QFrame*>(QStringLiteral("AutoHideSlide"));
        const QRect strip = Strip(frame, edge)->geometry();
        QRect expected;
        switch (edge) {
        case Qt::LeftDockWidgetArea:
            expected = QRect(strip.right() + 1, room.top(), thickness, room.height());
            break;
        case Qt::RightDockWidgetArea:
            expected = QRect(strip.left() - thickness, room.top(), thickness, room.height());
            break;
        case Qt::TopDockWidgetArea:
            expected = QRect(0, strip.bottom() + 1, room.width(), thickness);
            break;
        default:
            expected = QRect(0, strip.top() - thickness, room.width(), thickness);
        }
        QCOMPARE(slide->geometry(), expected);
        QVERIFY(QRect(QPoint(), slide->size()).contains(out->geometry()));
    }

    void thePointerOverATabShowsItsPaneAndTakesNoFocus() {
        CMainFrame& frame = m_pRun->Frame();
        CTestFrame* child = m_pRun->Open("a");
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        Settle();
        child->m_edits[1]->setFocus();
        Point(*Tab(frame, "Find"));
        QTRY_VERIFY(frame.m_wndFindPane.isVisible());
        QCOMPARE(QApplication::focusWidget(), child->m_edits[1]);
        // It stays while the pointer is in it, and goes with the pointer.
        Point(*frame.m_wndFindPane.MainControl());
        QVERIFY(frame.m_wndFindPane.MainControl()->underMouse());
        Point(*child->m_edits[0]);
        QTRY_VERIFY(!frame.m_wndFindPane.isVisible());
        QCOMPARE(QApplication::focusWidget(), child->m_edits[1]);
    }

    void aTabThatThePointerOnlyPassesShowsNothing() {
        CMainFrame& frame = m_pRun->Frame();
        frame.AutoHide().Fold(frame.m_wndBSFNPane);
        Settle();
        class CWatch : public QObject {
        public:
            bool eventFilter(QObject*, QEvent* event) override {
                m_nShown += event->type() == QEvent::Show ? 1 : 0;
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
        const bool upright = edge == Qt::LeftDockWidgetArea || edge == Qt::RightDockWidgetArea;
        CMainFrame* frame = &m_pRun->Frame();
        FoldFind(*frame, edge);
        QTest::mouseClick(Tab(*frame, "Find"), Qt::LeftButton);
        Settle();
        const auto thickness = [&] { return upright ? Slide(*frame).width() : Slide(*frame).height(); };
        // By how far the pointer moves into the window.
        const auto drag = [&](int further) {
            QFrame& slide = Slide(*frame);
            const QPoint inner = edge == Qt::LeftDockWidgetArea    ? QPoint(slide.width() - 2, 50)
                                 : edge == Qt::RightDockWidgetArea ? QPoint(1, 50)
                                 : edge == Qt::TopDockWidgetArea   ? QPoint(50, slide.height() - 2)
                                                                   : QPoint(50, 1);
            const int sign = edge == Qt::LeftDockWidgetArea || edge == Qt::TopDockWidgetArea ? 1 : -1;
            const QPoint step(upright ? sign * further : 0, upright ? 0 : sign * further);
            const QPoint screen = slide.mapToGlobal(inner) + step;
            QTest::mousePress(&slide, Qt::LeftButton, {}, inner);
            QMouseEvent move(QEvent::MouseMove, QPointF(slide.mapFromGlobal(screen)), QPointF(screen),
                             Qt::NoButton, Qt::LeftButton, {});
            QCoreApplication::sendEvent(&slide, &move);
            QTest::mouseRelease(&slide, Qt::LeftButton, {}, slide.mapFromGlobal(screen));
        };
        const QRect before = Slide(*frame).geometry();
        drag(60);
        const int wide = upright ? before.width() + 60 : before.height() + 60;
        QVERIFY(std::abs(thickness() - wide) <= 2);
        // The outer edge stays where it is.
        const QRect after = Slide(*frame).geometry();
        QVERIFY(edge == Qt::LeftDockWidgetArea    ? after.left() == before.left()
                : edge == Qt::RightDockWidgetArea ? after.right() == before.right()
                : edge == Qt::TopDockWidgetArea   ? after.top() == before.top()
                                                  : after.bottom() == before.bottom());
        QVERIFY(Slide(*frame).rect().contains(frame->m_wndFindPane.geometry()));

        // There is a least size, and always something left of the window.
        drag(-2000);
        QCOMPARE(thickness(), 80);
        drag(5000);
        const int most = thickness();
        QVERIFY(most < (upright ? frame->width() : frame->height()));
        drag(200 - most);
        const int last = thickness();
        QVERIFY(std::abs(last - 200) <= 2);

        // It holds for the next time, for the next start, and for the pane when it is docked again.
        frame->AutoHide().SlideIn();
        QTest::mouseClick(Tab(*frame, "Find"), Qt::LeftButton);
        QCOMPARE(thickness(), last);
        m_pRun.reset();
        m_pRun = std::make_unique<CRun>(*m_pFolder);
        frame = &m_pRun->Frame();
        Settle();
        QTest::mouseClick(Tab(*frame, "Find"), Qt::LeftButton);
        QCOMPARE(thickness(), last);
        frame->AutoHide().Pin(frame->m_wndFindPane);
        Settle();
        QCOMPARE(upright ? frame->m_wndFindPane.width() : frame->m_wndFindPane.height(), last);
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
            for (const CToolBar* toolBar : frame.Bars().All()) {
                QVERIFY(middle.y() > toolBar->geometry().bottom());
            }
            break;
        default:
            QVERIFY(middle.y() > m_pRun->Area().geometry().bottom());
            QVERIFY(middle.y() < frame.statusBar()->y());
        }
        const bool upright = edge == Qt::LeftDockWidgetArea || edge == Qt::RightDockWidgetArea;
        QCOMPARE(tab.height() > tab.width(), upright);
        for (const auto& [edgeName, area] : kEdges) {
            QCOMPARE(Tabs(frame, edgeName), area == edge ? QStringList{"Find"} : QStringList());
        }
    }

    void whatIsFoldedIsFoldedAtTheNextStartToo() {
        CMainFrame* frame = &m_pRun->Frame();
        frame->addDockWidget(Qt::RightDockWidgetArea, &frame->m_wndFindPane);
        Settle();
        frame->AutoHide().Fold(frame->m_wndFindPane);
        frame->AutoHide().Fold(frame->m_wndBSFNPane);
        const std::string stored = WriteFolds(frame->AutoHide().Folds());
        m_pRun.reset();
        m_pRun = std::make_unique<CRun>(*m_pFolder);
        Settle();
        frame = &m_pRun->Frame();
        QStringList others = kPaneOrder;
        others.removeOne(QStringLiteral("Find"));
        QCOMPARE(Tabs(*frame, "right"), QStringList{"Find"});
        QCOMPARE(Tabs(*frame, "bottom"), others);
        QCOMPARE(WriteFolds(frame->AutoHide().Folds()), stored);
    }

    void aStoredTextThatMakesNoSenseFoldsNothing() {
        CMainFrame& frame = m_pRun->Frame();
        for (const char* stored : {"", ";;", "bottom", "middle:100:FindPane",
                                   "bottom:100:", "bottom:100:Nobody", "::", "bottom:x"}) {
            frame.AutoHide().Restore(ReadFolds(stored));
        }
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
        CPersonalMenu* view = m_pRun->OpenMenu("View");
        QMenu* bars = Entry(*view, "&Toolbars and Docking Windows")->menu();
        emit bars->aboutToShow();
        QVERIFY(Entry(*bars, "Find")->isChecked());
        Entry(*bars, "Find")->trigger();
        view->close();
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
        for (const CDockablePane* pane : frame.Panes()) {
            QVERIFY(!pane->isHidden());
        }
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
        for (const auto& [edgeName, area] : kEdges) {
            QTest::newRow(edgeName) << area;
        }
    }
    static QFrame& Slide(const CMainFrame& frame) {
        return *frame.findChild<QFrame*>(QStringLiteral("AutoHideSlide"));
    }
    static void FoldFind(CMainFrame& frame, Qt::DockWidgetArea area) {
        frame.addDockWidget(area, &frame.m_wndFindPane);
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
