// Explore, Timeline: mouse and keyboard on the real window.
#include "ui/Accessible.h"
#include "ui/SessionSupport.h"
#include "ui/explore/TimelineFrame.h"

#include <QLabel>
#include <QLineEdit>
#include <QWheelEvent>

#include <cmath>

using namespace carvelot;
using namespace carvelot::test;

namespace {

std::string At(int second, std::string_view text, std::string_view ids = "5/6") {
    char time[32];
    std::snprintf(time, sizeof time, "10:%02d:%02d.000000", second / 60, second % 60);
    return DebugLine(time, text, ids);
}
std::string CallText(const char* name, int level) {
    return std::string("Calling Business function ") + name + " from (BSFNLevel = " + std::to_string(level) +
           ")";
}
std::string ReturnText(const char* name, int level, int code = 0) {
    return "Return value is " + std::to_string(code) + " for " + name +
           ". (BSFNLevel = " + std::to_string(level) + ")";
}

// A thousand seconds of two threads.
std::vector<std::string> TwoThreads() {
    return {
        At(0, "Entering JDB_OpenTable"),     At(0, CallText("Alpha", 1)),
        At(100, CallText("Bravo", 2)),       At(200, ReturnText("Bravo", 2)),
        At(250, CallText("Charlie", 2)),     At(300, ReturnText("Charlie", 2, 2)),
        At(400, ReturnText("Alpha", 1)),     At(500, CallText("Delta", 1)),
        At(600, CallText("Echo", 1), "5/7"), At(700, ReturnText("Echo", 1), "5/7"),
        At(900, ReturnText("Delta", 1)),     At(1000, "done"),
    };
}

constexpr std::int64_t kSecond = 1'000'000;

} // namespace

class TimelineTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() {
        m_pTimeline = nullptr;
        EndRun();
    }

    void ShowsALaneAStream();
    void TheWheelZoomsAtThePointer();
    void WheelsWithKeysPanAndChangeTheHeightOfRows();
    void ADragPans();
    void AClickSelectsAndADoubleClickLeadsToTheRecord();
    void EnterLeadsToTheRecord();
    void ABandSelectsTheRangeAndEscLetsGo();
    void ARecordSelectedInTheSessionIsMarked();
    void KeysWalkFromFrameToFrame();
    void TabLeavesAtTheEnds();
    void KeysZoomAndGoHome();
    void ADoubleClickOnANameFoldsItsLane();
    void TheMenuHidesIdleLanesAndIsRemembered();
    void SearchFadesAndF3Walks();
    void TheStripIsDragged();
    void TipsTellWhatIsBelowThePointer();
    void AFlagLeadsToTheRecordsOfItsFinding();
    void AClickBesideAllLanesSelectsNothing();
    void PagesAndTheWheelOverTheNamesScroll();
    void TheWheelOverTheStripZoomsIntoWhatItShowsThere();
    void EscLetsGoOfABandThatIsBeingDrawn();
    void AnotherFontMakesOtherRows();
    void ScreenReadersHearLanesAndTheFrame();
    void ScreenReadersFindLanesByPlaceAndHearThatTheyAreFolded();
    void WithoutResultsMouseAndKeysDoNothing();
    void TheTimelineOfAnEmptyLogSaysSo();
    void AnalyzingAgainShowsTheLogAnew();
    void APaintAfterNoChangeKeepsThePicture();
    void WhatShowsWhenItsFileIsKnownIsSaved();

private:
    CTimelineFrame& Open(const std::vector<std::string>& lines = TwoThreads()) {
        m_pChild = m_pRun->Open(QStringLiteral("a.log"), lines);
        m_pRun->Frame().RunCommand(ID_EXPLORE_TIMELINE);
        for (CMDIChildWnd* window : m_pChild->SessionDocument().FurtherWindows()) {
            if (auto* const timeline = qobject_cast<CTimelineFrame*>(window)) {
                m_pTimeline = timeline;
            }
        }
        (void)QTest::qWaitFor([this] { return m_pTimeline->IsShown(); }, 60'000);
        QCoreApplication::processEvents();
        Widget().setFocus();
        return *m_pTimeline;
    }
    CTimelineWidget& Widget() { return m_pTimeline->Widget(); }
    const CTimelineView& View() { return *Widget().View(); }
    CExploration& Exploration() { return m_pTimeline->Exploration(); }
    // The middle of a row at a second of the log.
    QPoint PointAt(double second, std::size_t lane, int row) {
        const CTimelineView& view = View();
        const double x = view.XOf(static_cast<std::int64_t>(second * 1e6));
        const double y = view.TopOf(view.Lanes().Shown()[lane]) + (row + 0.5) * view.Lanes().RowHeight();
        return {static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
    }
    QString NameOf(std::uint32_t frame) {
        const CFrames& frames = View().Timeline().Frames();
        return frame == kNoFrame ? QStringLiteral("none") : ToQString(frames.Keys().Name(frames[frame].key));
    }
    QString Selected() { return NameOf(View().Selected()); }
    QString Below(const QPoint& point) {
        const auto hit = View().At({static_cast<double>(point.x()), static_cast<double>(point.y())});
        return hit.bar ? NameOf(hit.bar->frame) : QStringLiteral("none");
    }
    QStringList Lanes() {
        QStringList names;
        for (const CTimelineLanes::Lane& lane : View().Lanes().Shown()) {
            names << ToQString(View().Timeline().NameOf(lane.stream));
        }
        return names;
    }
    void Wheel(const QPoint& point, int notches, Qt::KeyboardModifiers keys = {}) {
        QWheelEvent event(point, Widget().mapToGlobal(point), QPoint(), QPoint(0, 120 * notches),
                          Qt::NoButton, keys, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&Widget(), &event);
    }
    void Drag(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(&Widget(), Qt::LeftButton, keys, from);
        for (const QPoint& point : {(from + to) / 2, to}) {
            QMouseEvent move(QEvent::MouseMove, point, Widget().mapToGlobal(point), Qt::NoButton,
                             Qt::LeftButton, keys);
            QApplication::sendEvent(&Widget(), &move);
        }
        QTest::mouseRelease(&Widget(), Qt::LeftButton, keys, to);
    }
    void Key(int key, Qt::KeyboardModifiers keys = {}) {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), keys);
    }
    void SelectByClick(double second, std::size_t lane, int row) {
        QTest::mouseClick(&Widget(), Qt::LeftButton, {}, PointAt(second, lane, row));
    }

    CChildFrame* m_pChild = nullptr;
    CTimelineFrame* m_pTimeline = nullptr;
};

void TimelineTest::ShowsALaneAStream() {
    Open();
    QCOMPARE(Lanes(), (QStringList{QStringLiteral("5/6"), QStringLiteral("5/7")}));
    QCOMPARE(Below(PointAt(50, 0, 0)), QStringLiteral("Alpha"));
    QCOMPARE(Below(PointAt(150, 0, 1)), QStringLiteral("Bravo"));
    QCOMPARE(Below(PointAt(650, 1, 0)), QStringLiteral("Echo"));
    QCOMPARE(Below(PointAt(450, 0, 0)), QStringLiteral("none"));
}

void TimelineTest::TheWheelZoomsAtThePointer() {
    Open();
    const QPoint point = PointAt(275, 0, 1);
    const double before = View().PerPixel();
    const std::int64_t time = View().TimeAt(point.x());
    Wheel(point, 4);
    QVERIFY(std::abs(View().PerPixel() * std::pow(1.25, 4) / before - 1) < 1e-9);
    QVERIFY(std::abs(View().TimeAt(point.x()) - time) <= 2);
    QCOMPARE(Below(point), QStringLiteral("Charlie"));
    Wheel(point, -40);
    QVERIFY(View().ShowsAll());
}

void TimelineTest::WheelsWithKeysPanAndChangeTheHeightOfRows() {
    Open();
    Wheel(PointAt(500, 0, 0), 8);
    const double perPixel = View().PerPixel();
    const std::int64_t from = View().From();
    Wheel(PointAt(500, 0, 0), -1, Qt::ShiftModifier);
    QVERIFY(View().From() > from);
    QCOMPARE(View().PerPixel(), perPixel);
    const double height = View().Lanes().RowHeight();
    Wheel(PointAt(500, 0, 0), 1, Qt::ControlModifier);
    QCOMPARE(View().Lanes().RowHeight(), std::round(height * 1.25));
    QCOMPARE(View().PerPixel(), perPixel);
}

void TimelineTest::ADragPans() {
    Open();
    Wheel(PointAt(500, 0, 0), 8);
    const QPoint point = PointAt(500, 0, 0);
    const std::int64_t time = View().TimeAt(point.x());
    Drag(point, point + QPoint(60, 0));
    QVERIFY(std::abs(View().TimeAt(point.x() + 60) - time) <= 2);
    QCOMPARE(Selected(), QStringLiteral("none")); // a drag is no click
}

void TimelineTest::AClickSelectsAndADoubleClickLeadsToTheRecord() {
    Open();
    SelectByClick(150, 0, 1);
    QCOMPARE(Selected(), QStringLiteral("Bravo"));
    QCOMPARE(Number(*Exploration().Selected()), 2U);
    std::vector<std::uint32_t> wanted;
    connect(&Exploration(), &CExploration::RecordWanted, this,
            [&](RecordIndex record) { wanted.push_back(Number(record)); });
    const QPoint point = PointAt(275, 0, 1);
    QTest::mouseClick(&Widget(), Qt::LeftButton, {}, point);
    QTest::mouseDClick(&Widget(), Qt::LeftButton, {}, point);
    QCOMPARE(wanted, std::vector<std::uint32_t>{4});
    QVERIFY(SelectedText(m_pChild->DetailView()).contains(QLatin1String("Charlie")));
}

void TimelineTest::EnterLeadsToTheRecord() {
    Open();
    std::vector<std::uint32_t> wanted;
    connect(&Exploration(), &CExploration::RecordWanted, this,
            [&](RecordIndex record) { wanted.push_back(Number(record)); });
    SelectByClick(650, 1, 0);
    Key(Qt::Key_Return);
    QCOMPARE(wanted, std::vector<std::uint32_t>{8});
}

void TimelineTest::ABandSelectsTheRangeAndEscLetsGo() {
    Open();
    const QPoint from = PointAt(100, 0, 0);
    const QPoint to = PointAt(300, 0, 0);
    const std::int64_t first = View().TimeAt(from.x());
    const std::int64_t last = View().TimeAt(to.x());
    Drag(to, from, Qt::ShiftModifier); // from either end
    QCOMPARE(Exploration().Range().from, first);
    QCOMPARE(Exploration().Range().to, last);
    QVERIFY(View().ShowsAll());
    (void)QTest::qWaitFor([this] { return Exploration().Progress() < 0; }, 60'000);
    Key(Qt::Key_Escape);
    QVERIFY(Exploration().Range().IsWhole());
    QVERIFY(View().Range().IsWhole());
    // A click with Shift is no band.
    QTest::mouseClick(&Widget(), Qt::LeftButton, Qt::ShiftModifier, from);
    QVERIFY(Exploration().Range().IsWhole());
}

void TimelineTest::ARecordSelectedInTheSessionIsMarked() {
    Open();
    Exploration().Select(RecordIndex{9}); // the return of Echo
    QCOMPARE(Selected(), QStringLiteral("Echo"));
    QCOMPARE(Number(*View().Marked()), 9U);
    Wheel(PointAt(650, 1, 0), 30);
    Exploration().Select(RecordIndex{4});
    QCOMPARE(Selected(), QStringLiteral("Charlie"));
    const auto rect = View().RectOf(View().Selected());
    QVERIFY(rect && rect->x < View().Plot().Right() && rect->Right() > View().Plot().x);
    Exploration().Select({});
    QCOMPARE(Selected(), QStringLiteral("none"));
}

void TimelineTest::KeysWalkFromFrameToFrame() {
    Open();
    QStringList names;
    for (const int key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Left, Qt::Key_Up, Qt::Key_Right,
                          Qt::Key_Right, Qt::Key_Left}) {
        Key(key);
        names << Selected();
    }
    QCOMPARE(names.join(QLatin1Char(' ')),
             QStringLiteral("Alpha Bravo Charlie Bravo Alpha Delta Delta Alpha"));
    QCOMPARE(Number(*Exploration().Selected()), 1U);
}

void TimelineTest::TabLeavesAtTheEnds() {
    Open();
    QStringList names;
    for (int n = 0; n < 5; ++n) {
        Key(Qt::Key_Tab);
        names << Selected();
        QVERIFY(Widget().hasFocus());
    }
    QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("Alpha Bravo Charlie Delta Echo"));
    Key(Qt::Key_Tab);
    QVERIFY(!Widget().hasFocus());
    Widget().setFocus();
    Key(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(Selected(), QStringLiteral("Delta"));
}

void TimelineTest::KeysZoomAndGoHome() {
    Open();
    const double before = View().PerPixel();
    Key(Qt::Key_Plus);
    QVERIFY(std::abs(View().PerPixel() * 1.25 / before - 1) < 1e-9);
    Key(Qt::Key_Minus);
    QVERIFY(View().ShowsAll());
    for (int n = 0; n < 10; ++n) {
        Key(Qt::Key_Plus);
    }
    Key(Qt::Key_End);
    QCOMPARE(View().To(), 1000 * kSecond);
    QVERIFY(!View().ShowsAll());
    Key(Qt::Key_Home);
    QVERIFY(View().ShowsAll());
}

void TimelineTest::ADoubleClickOnANameFoldsItsLane() {
    Open();
    const QPoint name(40, PointAt(0, 0, 0).y());
    QTest::mouseDClick(&Widget(), Qt::LeftButton, {}, name);
    QVERIFY(View().Lanes().IsFolded(View().Lanes().Shown()[0].stream));
    QCOMPARE(View().Lanes().Shown()[0].rows, 1U);
    QTest::mouseDClick(&Widget(), Qt::LeftButton, {}, name);
    QVERIFY(!View().Lanes().IsFolded(View().Lanes().Shown()[0].stream));
}

void TimelineTest::TheMenuHidesIdleLanesAndIsRemembered() {
    Open();
    m_pRun->m_user.m_strMenuChoice = QStringLiteral("&Hide Idle Lanes");
    AskForMenu(Widget(), QPoint(300, 100), QContextMenuEvent::Mouse);
    QCOMPARE(m_pRun->m_user.m_listMenuTexts.size(), 3);
    QVERIFY(View().Lanes().HidesIdle());
    Wheel(PointAt(150, 0, 1), 12);
    QCOMPARE(Lanes(), QStringList{QStringLiteral("5/6")});
    Wheel(PointAt(150, 0, 1), 2, Qt::ControlModifier);
    const double height = View().Lanes().RowHeight();
    m_pRun->Restart();
    Open();
    QVERIFY(View().Lanes().HidesIdle());
    QVERIFY(std::abs(View().Lanes().RowHeight() - height) < 0.5);
}

void TimelineTest::SearchFadesAndF3Walks() {
    Open();
    Key(Qt::Key_Slash);
    QVERIFY(m_pTimeline->SearchLine().hasFocus());
    QTest::keyClicks(&m_pTimeline->SearchLine(), QStringLiteral("LTA"));
    QCOMPARE(View().MatchCount(), std::size_t{1});
    Key(Qt::Key_Return);
    QCOMPARE(Selected(), QStringLiteral("Delta"));
    m_pTimeline->SearchLine().setText(QStringLiteral("r"));
    Widget().setFocus();
    QStringList names;
    for (int n = 0; n < 3; ++n) {
        Key(Qt::Key_F3);
        names << Selected();
    }
    Key(Qt::Key_F3, Qt::ShiftModifier);
    names << Selected();
    QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("Bravo Charlie Bravo Charlie"));
    Key(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(m_pTimeline->SearchLine().hasFocus());
    Key(Qt::Key_Escape);
    QVERIFY(Widget().hasFocus());
    QVERIFY(View().Matches() == nullptr);
}

void TimelineTest::TheStripIsDragged() {
    Open();
    const auto strip = [this](std::int64_t second) {
        return QPoint(static_cast<int>(std::lround(View().StripX(second * kSecond))), 15);
    };
    const auto near = [](std::int64_t time, std::int64_t second) {
        return std::abs(time - second * kSecond) < 3 * kSecond;
    };
    Drag(strip(1000) - QPoint(1, 0), strip(400));
    QVERIFY2(near(View().To(), 400), qPrintable(QString::number(View().To())));
    QCOMPARE(View().From(), 0);
    Drag(strip(200), strip(500)); // by the middle
    QVERIFY2(near(View().From(), 300), qPrintable(QString::number(View().From())));
    QVERIFY2(near(View().To(), 700), qPrintable(QString::number(View().To())));
    Drag(strip(300), strip(600));
    QVERIFY2(near(View().From(), 600), qPrintable(QString::number(View().From())));
    QVERIFY(near(View().To(), 700));
    QTest::mouseClick(&Widget(), Qt::LeftButton, {}, strip(200)); // beside it
    QVERIFY2(near((View().From() + View().To()) / 2, 200), qPrintable(QString::number(View().From())));
}

void TimelineTest::TipsTellWhatIsBelowThePointer() {
    Open();
    QCOMPARE(SaidByTip(Widget(), PointAt(275, 0, 1)),
             QStringLiteral("F Charlie\nTotal 50.000000 s, self 50.000000 s\nFrom Jan 15 10:04:10.000000\n"
                            "Result 2: failed"));
    QCOMPARE(SaidByTip(Widget(), PointAt(450, 0, 0)), QString());
}

void TimelineTest::AFlagLeadsToTheRecordsOfItsFinding() {
    Open();
    const std::span<const TimelineFlag> flags = View().Timeline().Flags(Severity::Error);
    QVERIFY(!flags.empty()); // Charlie failed
    const RecordIndex record = flags.front().record;
    const PictureRect row = View().Flags();
    const QPoint point(static_cast<int>(std::lround(View().XOf(flags.front().clock))) + 1,
                       static_cast<int>(row.y + row.height / 2));
    std::vector<std::uint32_t> wanted;
    connect(&Exploration(), &CExploration::RecordWanted, this,
            [&](RecordIndex there) { wanted.push_back(Number(there)); });
    QTest::mouseClick(&Widget(), Qt::LeftButton, {}, point);
    QVERIFY(Exploration().Selected() == record);
    QVERIFY(wanted.empty());
    QTest::mouseDClick(&Widget(), Qt::LeftButton, {}, point);
    QCOMPARE(wanted, std::vector<std::uint32_t>{Number(record)});
    QCOMPARE(
        SaidByTip(Widget(), point),
        QStringLiteral("Charlie\nThe function failed; the first record names what went wrong first in it."));
}

void TimelineTest::AClickBesideAllLanesSelectsNothing() {
    Open();
    Wheel(PointAt(500, 0, 0), 8);
    const std::int64_t from = View().From();
    const QPoint name(40, PointAt(0, 0, 0).y());
    const QPoint corner(40, static_cast<int>(View().Plot().y) - 2);
    const QPoint below(PointAt(500, 0, 0).x(), Widget().height() - 2);
    for (const QPoint& point : {name, corner, below}) {
        QTest::mouseClick(&Widget(), Qt::LeftButton, {}, point);
        QCOMPARE(Selected(), QStringLiteral("none"));
    }
    // Names are no place to drag by; what is empty between the lanes and the edge is one.
    Drag(name, name + QPoint(60, 0));
    Drag(corner, corner + QPoint(60, 0));
    QTest::mouseClick(&Widget(), Qt::RightButton, {}, PointAt(500, 0, 0));
    QCOMPARE(View().From(), from);
    QCOMPARE(Selected(), QStringLiteral("none"));
    Drag(below, below + QPoint(60, 0));
    QVERIFY(View().From() < from);
}

void TimelineTest::PagesAndTheWheelOverTheNamesScroll() {
    std::vector<std::string> lines = TwoThreads();
    for (int thread = 0; thread < 300; ++thread) {
        const std::string ids = "5/" + std::to_string(100 + thread);
        lines.push_back(At(1000, CallText("Foxtrot", 1), ids));
        lines.push_back(At(1001, ReturnText("Foxtrot", 1), ids));
    }
    Open(lines);
    QCOMPARE(View().ScrollTop(), 0.0);
    Key(Qt::Key_PageDown);
    QCOMPARE(View().ScrollTop(), View().Plot().height);
    Key(Qt::Key_PageDown);
    QCOMPARE(View().ScrollTop(), 2 * View().Plot().height);
    Key(Qt::Key_PageUp);
    QCOMPARE(View().ScrollTop(), View().Plot().height);
    const double perPixel = View().PerPixel();
    const QPoint name(40, static_cast<int>(View().Plot().y) + 40);
    Wheel(name, -2);
    QCOMPARE(View().ScrollTop(), View().Plot().height + 6 * View().Lanes().RowHeight());
    QCOMPARE(View().PerPixel(), perPixel);
    Wheel(name, 1000);
    QCOMPARE(View().ScrollTop(), 0.0);
}

void TimelineTest::TheWheelOverTheStripZoomsIntoWhatItShowsThere() {
    Open();
    Wheel(PointAt(200, 0, 0), 8);
    const double perPixel = View().PerPixel();
    Wheel(QPoint(static_cast<int>(std::lround(View().StripX(700 * kSecond))), 15), 2);
    QVERIFY(std::abs(View().PerPixel() * 1.25 * 1.25 / perPixel - 1) < 1e-9);
    const std::int64_t middle = (View().From() + View().To()) / 2;
    QVERIFY2(std::abs(middle - 700 * kSecond) < 3 * kSecond, qPrintable(QString::number(middle)));
}

void TimelineTest::EscLetsGoOfABandThatIsBeingDrawn() {
    Open();
    const QPoint from = PointAt(100, 0, 0);
    const QPoint to = PointAt(300, 0, 0);
    QTest::mousePress(&Widget(), Qt::LeftButton, Qt::ShiftModifier, from);
    QMouseEvent move(QEvent::MouseMove, to, Widget().mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::ShiftModifier);
    QApplication::sendEvent(&Widget(), &move);
    QCOMPARE(View().Range().from, View().TimeAt(from.x()));
    QCOMPARE(View().Range().to, View().TimeAt(to.x()));
    Key(Qt::Key_Escape);
    QVERIFY(View().Range().IsWhole());
    QTest::mouseRelease(&Widget(), Qt::LeftButton, Qt::ShiftModifier, to);
    QVERIFY(View().Range().IsWhole());
    QVERIFY(Exploration().Range().IsWhole());
}

void TimelineTest::AnotherFontMakesOtherRows() {
    Open();
    const double before = View().LineHeight();
    QFont font = Widget().font();
    font.setPixelSize(3 * QFontInfo(font).pixelSize());
    Widget().setFont(font);
    QVERIFY2(View().LineHeight() > 2 * before, qPrintable(QString::number(View().LineHeight())));
    QCOMPARE(Below(PointAt(150, 0, 1)), QStringLiteral("Bravo"));
}

void TimelineTest::ScreenReadersFindLanesByPlaceAndHearThatTheyAreFolded() {
    Open();
    QAccessibleInterface* const whole = QAccessible::queryAccessibleInterface(&Widget());
    QAccessibleInterface* const first = whole->child(0);
    QAccessibleInterface* const second = whole->child(1);
    const auto at = [&](const QPoint& point) {
        const QPoint place = Widget().mapToGlobal(point);
        return whole->childAt(place.x(), place.y());
    };
    QCOMPARE(at(PointAt(650, 0, 0)), first);
    QCOMPARE(at(PointAt(50, 1, 0)), second);
    QCOMPARE(at(QPoint(-50, -50)), nullptr);
    QCOMPARE(whole->child(2), nullptr);
    QCOMPARE(whole->child(-1), nullptr);
    QCOMPARE(whole->indexOfChild(second), 1);
    QCOMPARE(whole->indexOfChild(whole), -1);
    // A lane is an item of the list and has no parts.
    QCOMPARE(first->role(), QAccessible::ListItem);
    QCOMPARE(first->parent(), whole);
    QCOMPARE(first->window(), Widget().window()->windowHandle());
    QCOMPARE(first->childCount(), 0);
    QCOMPARE(first->child(0), nullptr);
    QCOMPARE(first->childAt(0, 0), nullptr);
    QCOMPARE(first->indexOfChild(second), -1);
    QCOMPARE(Said(first, QAccessible::Description), QString());
    first->setText(QAccessible::Name, QStringLiteral("another"));
    QCOMPARE(Said(first), QStringLiteral("Lane 5/6, 800.000000 s in calls"));
    QVERIFY(first->state().expanded && !first->state().collapsed);
    QTest::mouseDClick(&Widget(), Qt::LeftButton, {}, QPoint(40, PointAt(0, 0, 0).y()));
    QVERIFY(first->state().collapsed && !first->state().expanded);
    QCOMPARE(Said(first), QStringLiteral("Lane 5/6, 800.000000 s in calls, folded"));
}

void TimelineTest::WithoutResultsMouseAndKeysDoNothing() {
    Open();
    const QPoint point = PointAt(150, 0, 1);
    QVERIFY(!SaidByTip(Widget(), point).isEmpty());
    QAccessibleInterface* const lane = QAccessible::queryAccessibleInterface(&Widget())->child(0);
    Exploration().EndWithRecords();
    QCOMPARE(Widget().View(), nullptr);
    std::vector<std::uint32_t> wanted;
    connect(&Exploration(), &CExploration::RecordWanted, this,
            [&](RecordIndex record) { wanted.push_back(Number(record)); });
    QWheelEvent wheel(point, Widget().mapToGlobal(point), QPoint(), QPoint(0, 120), Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&Widget(), &wheel);
    Drag(point, point + QPoint(60, 0));
    QTest::mouseDClick(&Widget(), Qt::LeftButton, {}, point);
    QTest::keyClick(&Widget(), Qt::Key_Return);
    QTest::keyClick(&Widget(), Qt::Key_Right);
    QCOMPARE(Widget().View(), nullptr);
    QVERIFY(wanted.empty());
    QCOMPARE(SaidByTip(Widget(), point), QString());
    QCOMPARE(SaidOfParts(&Widget()), QStringList());
    QVERIFY(lane->state().invalid);
    QCOMPARE(Said(lane), QString());
    QVERIFY(lane->rect().isNull());
    QCOMPARE(Widget().SelectedText(), QString());
    QCOMPARE(Widget().LaneText(0), QString());
    QVERIFY(Widget().LaneRect(0).isNull());
}

void TimelineTest::ScreenReadersHearLanesAndTheFrame() {
    Open();
    QStringList said = SaidOfParts(&Widget());
    QCOMPARE(said, (QStringList{QStringLiteral("Lane 5/6, 800.000000 s in calls"),
                                QStringLiteral("Lane 5/7, 100.000000 s in calls")}));
    Key(Qt::Key_Right);
    Key(Qt::Key_Down);
    said = SaidOfParts(&Widget());
    QCOMPARE(said.size(), 3);
    QCOMPARE(said[2],
             QStringLiteral("F Bravo, Total 100.000000 s, self 100.000000 s, From Jan 15 10:01:40.000000, "
                            "Result 0, lane 5/6, depth 2"));
    QAccessibleInterface* const whole = QAccessible::queryAccessibleInterface(&Widget());
    QVERIFY(whole->focusChild() != nullptr);
    QVERIFY(whole->focusChild()->state().focused);
    QCOMPARE(whole->indexOfChild(whole->focusChild()), 2);
    const QRect rect = whole->focusChild()->rect();
    QVERIFY(rect.contains(Widget().mapToGlobal(PointAt(150, 0, 1))));
    Key(Qt::Key_Right);
    QVERIFY(Said(whole->focusChild()).startsWith(QLatin1String("F Charlie")));
}

void TimelineTest::TheTimelineOfAnEmptyLogSaysSo() {
    Open({At(0, "Entering JDB_OpenTable"), At(1, "nothing")});
    bool says = false;
    for (const QLabel* label : m_pTimeline->findChildren<QLabel*>()) {
        says = says || (label->isVisible() && label->text() == QLatin1String("This log holds no calls."));
    }
    QVERIFY(says);
}

void TimelineTest::AnalyzingAgainShowsTheLogAnew() {
    Open();
    SelectByClick(150, 0, 1);
    m_pRun->Frame().ClientArea().Activate(*m_pChild);
    m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
    (void)QTest::qWaitFor([this] { return m_pTimeline->IsShown(); }, 60'000);
    QCOMPARE(Lanes(), (QStringList{QStringLiteral("5/6"), QStringLiteral("5/7")}));
    m_pChild->close();
    CSessionRun::Settle();
}

void TimelineTest::APaintAfterNoChangeKeepsThePicture() {
    Open();
    const QImage before = Widget().grab().toImage();
    SelectByClick(650, 1, 0);
    QVERIFY(Widget().grab().toImage() != before);
    Exploration().Select({});
    QCOMPARE(Widget().grab().toImage(), before);
}

// While it is asked where to, commands are looked at, the window gets another size, results go.
void TimelineTest::WhatShowsWhenItsFileIsKnownIsSaved() {
    Open();
    CFakeInterface& user = m_pRun->m_user;
    user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("a.svg"));
    user.m_fnInQuestion = [this] {
        m_pRun->Frame().resize(900, 700);
        QCoreApplication::processEvents();
        m_pRun->Frame().UpdateCommands();
    };
    m_pRun->Frame().RunCommand(ID_EXPLORE_SAVE_PICTURE);
    const PictureSize size = m_pTimeline->Picture()->Size();
    const QByteArray svg = m_pRun->Read(QStringLiteral("a.svg"));
    QVERIFY(svg.contains("Alpha"));
    QVERIFY2(svg.contains(QByteArray("width=\"") + QByteArray::number(size.width) + '"'), svg.left(300));
    user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("b.svg"));
    user.m_fnInQuestion = [this] { Exploration().EndWithRecords(); };
    m_pRun->Frame().RunCommand(ID_EXPLORE_SAVE_PICTURE);
    QVERIFY(!QFile::exists(m_pRun->Path(QStringLiteral("b.svg"))));
    QCOMPARE(user.m_listMessages, QStringList("The picture is not there any more."));
}

QTEST_MAIN(TimelineTest)
#include "TimelineTest.moc"
