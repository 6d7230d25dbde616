// What the tests of Explore's windows share: a run with a session of which one is opened.
#pragma once

#include "ui/SessionSupport.h"
#include "ui/explore/ExploreFrame.h"

#include <QHeaderView>
#include <QLabel>

namespace carvelot::test {

// A function that runs a statement twelve times and fails; another one after it.
inline std::vector<std::string> ExploredLines() {
    std::vector<std::string> lines = DebugLog({});
    const auto add = [&lines](int second, int micro, const std::string& text) {
        // Behind the first record, which has clock 0.
        const std::string time = "08:00:" + std::to_string(100 + second).substr(1) + '.' +
                                 std::to_string(1'000'001 + micro).substr(1);
        lines.push_back(Line(time.c_str(), text.c_str()));
    };
    add(0, 0, "Calling Business function OuterCall for JSMITH from CALLBSFN.DLL. (BSFNLevel = 1)");
    add(1, 0, "Calling Business function InnerCall for JSMITH from CALLBSFN.DLL. (BSFNLevel = 2)");
    for (int n = 0; n < 12; ++n) {
        add(1, 1000 * n + 100, "SELECT IMITM FROM PRODDTA.F4101 WHERE ( IMITM = " + std::to_string(n) + " )");
        add(1, 1000 * n + 600, "Exiting DBPerformRequest");
    }
    add(3, 0, "Return value is 2 for InnerCall. (BSFNLevel = 2)");
    add(4, 0, "Return value is 0 for OuterCall. (BSFNLevel = 1)");
    add(5, 0, "Calling Business function LastCall for JSMITH from CALLBSFN.DLL. (BSFNLevel = 1)");
    add(7, 0, "Return value is 0 for LastCall. (BSFNLevel = 1)");
    return lines;
}

inline CExploration& ExplorationOf(CChildFrame& session) {
    return *session.SessionDocument().findChild<CExploration*>();
}

// Waits for what runs beside the windows.
inline bool WaitForResults(CExploration& exploration) {
    return QTest::qWaitFor([&exploration] { return exploration.Progress() < 0; }, 60'000) &&
           exploration.GetState() == CExploration::State::Done;
}

// Opens one of a session's Explore windows by its command, and waits for its results.
template <class TFrame> TFrame* OpenExplore(CSessionRun& run, CChildFrame& session, int command) {
    run.Frame().ClientArea().Activate(session);
    run.Frame().RunCommand(command);
    auto* const frame = qobject_cast<TFrame*>(run.Frame().ActiveChild());
    return frame != nullptr && WaitForResults(frame->Exploration()) ? frame : nullptr;
}

// A list or a tree of a window by what a screen reader calls it.
template <class TView> TView& View(QWidget& window, const char* name) {
    for (TView* view : window.findChildren<TView*>()) {
        if (view->accessibleName() == QLatin1String(name)) {
            return *view;
        }
    }
    qFatal("no view of that name");
}
inline CListCtrl& List(QWidget& window, const char* name) { return View<CListCtrl>(window, name); }

// Drags a column's right edge.
inline void WidenColumn(QTreeView& view, int column, int by) {
    QHeaderView& header = *view.header();
    const int edge = header.sectionViewportPosition(column) + header.sectionSize(column) - 1;
    const int middle = header.height() / 2;
    QTest::mousePress(header.viewport(), Qt::LeftButton, {}, {edge, middle});
    QTest::mouseMove(header.viewport(), {edge + by / 2, middle});
    QTest::mouseMove(header.viewport(), {edge + by, middle});
    QTest::mouseRelease(header.viewport(), Qt::LeftButton, {}, {edge + by, middle});
}

// What the keyboard's menu key brings up.
inline void PressMenuKey(CListCtrl& list) {
    AskForMenu(list, list.rect().center(), QContextMenuEvent::Keyboard);
}

// All that the labels of a window say at the moment.
inline QString ShownText(const QWidget& window) {
    QStringList texts;
    for (const QLabel* label : window.findChildren<QLabel*>()) {
        if (label->isVisible()) {
            texts << label->text();
        }
    }
    return texts.join(QLatin1Char('\n'));
}

inline QString Sample(const char* name) {
    return QStringLiteral(CARVELOT_SOURCE_FOLDER "/samples/") + QLatin1String(name);
}

} // namespace carvelot::test
