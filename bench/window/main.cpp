// How long a user waits at the window, each figure as a ratio to what the core needs for the same work, or to
// painting nothing. The window is the real one, on Qt's offscreen platform.
//
//   carvelot_window_bench [MEGABYTES]
#include "bench/LogGenerator.h"
#include "bench/window/TimelineBench.h"
#include "ui/ExploreSupport.h"

#include <QApplication>
#include <QEventLoop>
#include <QScrollBar>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <utility>

#include <malloc.h>

using namespace carvelot;
using namespace carvelot::test;

namespace {

constexpr int kThreadRecords = 1'000'000;
constexpr int kErrors = 100'000;
constexpr double kFrame = 0.016; // seconds between two pictures of a screen

double Seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Noise only ever adds.
double Least(int times, const std::function<double()>& measure) {
    double least = measure();
    for (int n = 1; n < times; ++n) {
        least = std::min(least, measure());
    }
    return least;
}

void PrintRow(const char* what, double time, double base, double target) {
    std::printf("| %-58s | %9.1f ms | %8.3f | %6.2f |\n", what, time * 1000, time / base, target);
}

double LoadInCore(const std::string& path, float threshold = 1) {
    AnalysisSettings settings;
    settings.m_fThreshold = threshold;
    PendingStatement pending;
    RecordingHost host;
    auto session = std::make_unique<CCarvelotDoc>(settings, pending, host);
    session->m_strLogPath = path;
    return Seconds([&] { session->LoadLog(); });
}

// One thread of a million records that all stay in its list: calls, their parameters, SQL, and an error in
// every tenth record or nearly none.
void WriteThread(const std::string& path, bool errors) {
    std::ofstream out(path, std::ios::binary);
    out << TestSession::Joined(DebugLog({}));
    std::uint32_t time = 0;
    const auto line = [&](const std::string& text) {
        char buffer[32];
        const std::uint32_t seconds = time / 1000;
        std::snprintf(buffer, sizeof buffer, "%02u:%02u:%02u.%06u", 8 + seconds / 3600, seconds / 60 % 60,
                      seconds % 60, time % 1000 * 1000);
        out << DebugLine(buffer, text, "5712/3868") << '\n';
        ++time;
    };
    for (int n = 0; n < kThreadRecords / 10; ++n) {
        const std::string name = "F" + std::to_string(n % 300);
        line("Calling Business function " + name + " for JSMITH from CALLBSFN.DLL. (BSFNLevel = 1)");
        line("IN->[  1]: mnOrderNumber(DOCO) " + std::to_string(n));
        line("IN->[  2]: szOrderType(DCTO) SO");
        line("SELECT SDDOCO, SDLNID FROM PRODDTA.F4211 WHERE ( SDDOCO = " + std::to_string(n) + " )");
        line("Exiting DBPerformRequest");
        line("On Order Line " + std::to_string(n));
        line((errors || n % 1000 == 0 ? "ERROR: record " : "On record ") +
             std::to_string((n * 7919) % kErrors) + " is locked");
        line("OUT->[  1]: mnOrderNumber(DOCO) " + std::to_string(n));
        line("OUT->[  2]: szOrderType(DCTO) SO");
        line("Return value is " + std::to_string(errors || n % 1000 == 0 ? n % 3 : 0) + " for " + name +
             ". (BSFNLevel = 1)");
    }
}

void Show(QWidget& widget) {
    QCoreApplication::processEvents();
    widget.repaint();
}

// Each list for each process of the log, and Find's with every line: what a user brings on who looks at all
// of it. At a threshold of 0 nearly every record stands behind a silence.
void MeasureFilling(CSessionRun& run, const std::string& log) {
    const float threshold = std::exchange(theApp().m_fThreshold, 0.0F);
    const double load = Least(5, [&] { return LoadInCore(log, 0); });
    CChildFrame* const child = run.Open(ToQString(log));
    CSessionDocument& document = child->SessionDocument();
    const CCarvelotDoc& session = document.Session();
    CMainFrame& frame = run.Frame();
    frame.m_wndFindPane.SearchEdit().clear();
    const auto fill = [&] {
        std::size_t rows = 0;
        for (const auto& process : session.m_listProcesses) {
            frame.m_wndLongTasksPane.FillList(document, process->m_pBSFNAnalysis, process->m_pSQLAnalysis);
            frame.m_wndErrorPane.FillList(document, process->m_listErrors);
            rows += static_cast<std::size_t>(frame.m_wndLongTasksPane.List().Model().rowCount({}) +
                                             frame.m_wndErrorPane.List().Model().rowCount({}));
        }
        frame.m_wndTimingGapsPane.FillList(document);
        rows += static_cast<std::size_t>(frame.m_wndTimingGapsPane.List().Model().rowCount({}));
        return rows;
    };
    const auto held = [] {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    std::size_t rows = 0;
    double fillTime = 1e9;
    std::size_t heldBytes = 0;
    for (int n = 0; n < 5; ++n) {
        frame.ClearPanes();
        const std::size_t before = held();
        fillTime = std::min(fillTime, Seconds([&] { rows = fill(); }));
        heldBytes = held() - before;
    }
    PrintRow("all lists filled but Find's, over the load", fillTime, load, 0.1);
    std::printf("(%zu rows, which hold %.1f MB at the end)\n", rows, static_cast<double>(heldBytes) / 1e6);
    child->close();
    CSessionRun::Settle();
    theApp().m_fThreshold = threshold;
}

void Measure(CSessionRun& run, const std::string& log, const std::string& threadLog,
             const std::string& errorLog) {
    std::printf("| %-58s | %12s | %8s | %6s |\n|%s|%s:|%s:|%s:|\n", "what a user waits for", "time",
                "measured", "target", std::string(60, '-').c_str(), std::string(13, '-').c_str(),
                std::string(9, '-').c_str(), std::string(7, '-').c_str());
    CChildFrame* child = nullptr;
    const auto open = [&](const std::string& path) {
        const double time = Seconds([&] {
            child = run.Open(ToQString(path));
            Show(*child->ThreadView().viewport());
        });
        return time;
    };
    const auto close = [&] {
        child->close();
        CSessionRun::Settle();
    };
    const double load = Least(5, [&] { return LoadInCore(log); });
    const double openTime = Least(5, [&] {
        const double time = open(log);
        close();
        return time;
    });
    PrintRow("Open to the first usable tree, over the core's load", openTime, load, 1.3);

    // Its rows keep their texts when the records go.
    open(log);
    CFindPane& find = run.Frame().m_wndFindPane;
    CSessionRun::ShowPane(find);
    const double again = Least(3, [&] {
        find.SearchEdit().clear();
        find.OnFind();
        return Seconds([&] {
            run.Frame().RunCommand(ID_SESSION_ANALYZE);
            Show(*child->ThreadView().viewport());
        });
    });
    std::printf("(the Find list has %d rows)\n", find.List().Model().rowCount({}));
    PrintRow("Analyze beside a Find list of all lines, over the load", again, load, 2);
    close();

    MeasureFilling(run, log);

    const double threadLoad = Least(5, [&] { return LoadInCore(threadLog); });
    open(threadLog);
    CThreadView& threads = child->ThreadView();
    const QModelIndex other = FindNode(*threads.model(), QStringLiteral("1"));
    const QModelIndex thread = FindNode(*threads.model(), QStringLiteral("3868"));
    const double select = Least(5, [&] {
        threads.SelectIndex(other);
        Show(*child->DetailView().viewport());
        return Seconds([&] {
            threads.SelectIndex(thread);
            Show(*child->DetailView().viewport());
        });
    });
    PrintRow("a thread of a million records selected, over its load", select, threadLoad, 1.0 / 3);

    close();
    open(errorLog);
    CErrorPane& pane = run.Frame().m_wndErrorPane;
    CSessionRun::ShowPane(pane);
    const CThread& errors = *child->SessionDocument().Session().FindProcess(5712)->m_listThreads.front();
    CListCtrl& list = pane.List();
    const double errorsLoad = Least(5, [&] { return LoadInCore(errorLog); });
    pane.FillList(child->SessionDocument(), errors.m_listErrors);
    std::printf("(the list has %d rows)\n", list.Model().rowCount({}));
    double sort = 0;
    for (int column = 0; column < list.Model().columnCount({}); ++column) {
        for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            sort = std::max(sort, Least(3, [&] {
                                pane.FillList(child->SessionDocument(), errors.m_listErrors);
                                return Seconds([&] { list.SortBy(column, order); });
                            }));
        }
    }
    PrintRow("the slowest sort of a list, over the load of its log", sort, errorsLoad, 0.3);

    close();

    // The empty tree is the same widget before a thread is selected.
    open(threadLog);
    CDetailView& tree = child->DetailView();
    tree.ResetTree();
    Show(*tree.viewport());
    double empty = 0;
    constexpr int pages = 1000;
    for (int n = 0; n < pages; ++n) {
        empty += Seconds([&] { tree.viewport()->repaint(); }) / pages;
    }
    CThreadView& selector = child->ThreadView();
    selector.SelectIndex(FindNode(*selector.model(), QStringLiteral("3868")));
    tree.expandAll();
    Show(*tree.viewport());
    QScrollBar& bar = *tree.verticalScrollBar();
    double sum = 0;
    double longest = 0;
    int missed = 0;
    for (int n = 0; n < pages; ++n) {
        const double time = Seconds([&] {
            // From end to end of the tree, page by page here and there.
            bar.setValue(n % 10 == 0 ? bar.maximum() / pages * n : bar.value() + bar.pageStep());
            tree.viewport()->repaint();
        });
        sum += time / pages;
        longest = std::max(longest, time);
        missed += time > kFrame ? 1 : 0;
    }
    PrintRow("the longest page of scrolling, over a frame of 16 ms", longest, kFrame, 1);
    std::printf("(the tree has %d nodes; of %d pages %d took longer than a frame; a page takes %.1f ms, %.0f "
                "times an "
                "empty tree)\n",
                static_cast<int>(tree.Tree().NodeCount()), pages, missed, sum * 1000, sum / empty);
    close();
}

// Asleep but for events, as the program is: a loop that asks again and again would take a core from the
// exploring.
void WaitForExploring(const CExploration& exploration) {
    QEventLoop loop;
    const auto connection =
        QObject::connect(&exploration, &CExploration::ProgressChanged, &loop, [&loop](int percent) {
            if (percent < 0) {
                loop.quit();
            }
        });
    if (exploration.Progress() >= 0) {
        loop.exec();
    }
    QObject::disconnect(connection);
}

// From a loaded log to its Overview, painted.
void MeasureOverview(CSessionRun& run, const char* what, const std::string& log) {
    const double load = Least(5, [&] { return LoadInCore(log); });
    const double overview = Least(5, [&] {
        CChildFrame* const session = run.Open(ToQString(log));
        const double time = Seconds([&] {
            run.Frame().RunCommand(ID_EXPLORE_OVERVIEW);
            WaitForExploring(ExplorationOf(*session));
            run.Frame().ActiveChild()->grab();
        });
        session->CloseWindow();
        CSessionRun::Settle();
        return time;
    });
    PrintRow(what, overview, load, 0.6);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const std::uint64_t megabytes = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 200;
    const QTemporaryDir folder;
    const std::string log = ToUtf8(folder.filePath(QStringLiteral("generated.log")));
    const std::string threadLog = ToUtf8(folder.filePath(QStringLiteral("thread.log")));
    {
        std::ofstream out(log, std::ios::binary);
        bench::WriteDebugLog(out, megabytes << 20U, 1);
    }
    const std::string errorLog = ToUtf8(folder.filePath(QStringLiteral("errors.log")));
    WriteThread(threadLog, false);
    WriteThread(errorLog, true);
    CSessionRun run;
    Measure(run, log, threadLog, errorLog);
    MeasureOverview(run, "Overview of the debug log, over its load", log);
    const std::string jasLog = ToUtf8(folder.filePath(QStringLiteral("jas.log")));
    {
        std::ofstream out(jasLog, std::ios::binary);
        bench::WriteJASLog(out, megabytes << 20U, 1);
    }
    MeasureOverview(run, "Overview of a JAS log, over its load", jasLog);
    bench::MeasureTimeline(ToUtf8(folder.path()));
    return 0;
}
