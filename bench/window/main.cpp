// How long a user waits at the window, each figure as a ratio to what the core needs for the same work, or to
// painting nothing. The window is the real one, on Qt's offscreen platform.
//
//   carvelot_window_bench [MEGABYTES]
#include "bench/LogGenerator.h"
#include "ui/SessionSupport.h"

#include <QApplication>
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
double Least(int nTimes, const std::function<double()>& measure) {
    double fLeast = measure();
    for (int n = 1; n < nTimes; ++n)
        fLeast = std::min(fLeast, measure());
    return fLeast;
}

void PrintRow(const char* pszWhat, double fTime, double fBase, double fTarget) {
    std::printf("| %-58s | %9.1f ms | %8.3f | %6.2f |\n", pszWhat, fTime * 1000, fTime / fBase, fTarget);
}

double LoadInCore(const std::string& strPath, float fThreshold = 1) {
    AnalysisSettings settings;
    settings.m_fThreshold = fThreshold;
    PendingStatement pending;
    RecordingHost host;
    auto pSession = std::make_unique<CCarvelotDoc>(settings, pending, host);
    pSession->m_strLogPath = strPath;
    return Seconds([&] { pSession->LoadLog(); });
}

// One thread of a million records that all stay in its list: calls, their parameters, SQL, and an error in
// every tenth record or nearly none.
void WriteThread(const std::string& strPath, bool bErrors) {
    std::ofstream out(strPath, std::ios::binary);
    out << TestSession::Joined(DebugLog({}));
    std::uint32_t nTime = 0;
    const auto line = [&](const std::string& strText) {
        char szTime[32];
        const std::uint32_t nSeconds = nTime / 1000;
        std::snprintf(szTime, sizeof szTime, "%02u:%02u:%02u.%06u", 8 + nSeconds / 3600, nSeconds / 60 % 60,
                      nSeconds % 60, nTime % 1000 * 1000);
        out << DebugLine(szTime, strText, "5712/3868") << '\n';
        ++nTime;
    };
    for (int n = 0; n < kThreadRecords / 10; ++n) {
        const std::string strName = "F" + std::to_string(n % 300);
        line("Calling Business function " + strName + " for JSMITH from CALLBSFN.DLL. (BSFNLevel = 1)");
        line("IN->[  1]: mnOrderNumber(DOCO) " + std::to_string(n));
        line("IN->[  2]: szOrderType(DCTO) SO");
        line("SELECT SDDOCO, SDLNID FROM PRODDTA.F4211 WHERE ( SDDOCO = " + std::to_string(n) + " )");
        line("Exiting DBPerformRequest");
        line("On Order Line " + std::to_string(n));
        line((bErrors || n % 1000 == 0 ? "ERROR: record " : "On record ") +
             std::to_string((n * 7919) % kErrors) + " is locked");
        line("OUT->[  1]: mnOrderNumber(DOCO) " + std::to_string(n));
        line("OUT->[  2]: szOrderType(DCTO) SO");
        line("Return value is " + std::to_string(bErrors || n % 1000 == 0 ? n % 3 : 0) + " for " + strName +
             ". (BSFNLevel = 1)");
    }
}

void Show(QWidget& widget) {
    QCoreApplication::processEvents();
    widget.repaint();
}

// Each list for each process of the log, and Find's with every line: what a user brings on who looks at all
// of it. At a threshold of 0 nearly every record stands behind a silence.
void MeasureFilling(CSessionRun& run, const std::string& strLog) {
    const float fThreshold = std::exchange(theApp().m_fThreshold, 0.0F);
    const double fLoad = Least(5, [&] { return LoadInCore(strLog, 0); });
    CChildFrame* const pFrame = run.Open(ToQString(strLog));
    CSessionDocument& document = pFrame->SessionDocument();
    const CCarvelotDoc& session = document.Session();
    CMainFrame& frame = run.Frame();
    frame.m_wndFindPane.SearchEdit().clear();
    const auto fill = [&] {
        std::size_t nRows = 0;
        for (const auto& pProcess : session.m_listProcesses) {
            frame.m_wndLongTasksPane.FillList(document, pProcess->m_pBSFNAnalysis, pProcess->m_pSQLAnalysis);
            frame.m_wndErrorPane.FillList(document, pProcess->m_listErrors);
            nRows += static_cast<std::size_t>(frame.m_wndLongTasksPane.List().Model().rowCount({}) +
                                              frame.m_wndErrorPane.List().Model().rowCount({}));
        }
        frame.m_wndTimingGapsPane.FillList(document);
        nRows += static_cast<std::size_t>(frame.m_wndTimingGapsPane.List().Model().rowCount({}));
        return nRows;
    };
    const auto held = [] {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    std::size_t nRows = 0;
    double fFill = 1e9;
    std::size_t nHeld = 0;
    for (int n = 0; n < 5; ++n) {
        frame.ClearPanes();
        const std::size_t nBefore = held();
        fFill = std::min(fFill, Seconds([&] { nRows = fill(); }));
        nHeld = held() - nBefore;
    }
    PrintRow("all lists filled but Find's, over the load", fFill, fLoad, 0.1);
    std::printf("(%zu rows, which hold %.1f MB at the end)\n", nRows, static_cast<double>(nHeld) / 1e6);
    pFrame->close();
    CSessionRun::Settle();
    theApp().m_fThreshold = fThreshold;
}

void Measure(CSessionRun& run, const std::string& strLog, const std::string& strThread,
             const std::string& strErrors) {
    std::printf("| %-58s | %12s | %8s | %6s |\n|%s|%s:|%s:|%s:|\n", "what a user waits for", "time",
                "measured", "target", std::string(60, '-').c_str(), std::string(13, '-').c_str(),
                std::string(9, '-').c_str(), std::string(7, '-').c_str());
    CChildFrame* pFrame = nullptr;
    const auto open = [&](const std::string& strPath) {
        const double fTime = Seconds([&] {
            pFrame = run.Open(ToQString(strPath));
            Show(*pFrame->ThreadView().viewport());
        });
        return fTime;
    };
    const auto close = [&] {
        pFrame->close();
        CSessionRun::Settle();
    };
    const double fLoad = Least(5, [&] { return LoadInCore(strLog); });
    const double fOpen = Least(5, [&] {
        const double fTime = open(strLog);
        close();
        return fTime;
    });
    PrintRow("Open to the first usable tree, over the core's load", fOpen, fLoad, 1.3);

    // Its rows keep their texts when the records go.
    open(strLog);
    CFindPane& find = run.Frame().m_wndFindPane;
    CSessionRun::ShowPane(find);
    const double fAgain = Least(3, [&] {
        find.SearchEdit().clear();
        find.OnFind();
        return Seconds([&] {
            run.Frame().RunCommand(ID_SESSION_ANALYZE);
            Show(*pFrame->ThreadView().viewport());
        });
    });
    std::printf("(the Find list has %d rows)\n", find.List().Model().rowCount({}));
    PrintRow("Analyze beside a Find list of all lines, over the load", fAgain, fLoad, 2);
    close();

    MeasureFilling(run, strLog);

    const double fThreadLoad = Least(5, [&] { return LoadInCore(strThread); });
    open(strThread);
    CThreadView& threads = pFrame->ThreadView();
    const QModelIndex other = FindNode(*threads.model(), QStringLiteral("1"));
    const QModelIndex thread = FindNode(*threads.model(), QStringLiteral("3868"));
    const double fSelect = Least(5, [&] {
        threads.SelectIndex(other);
        Show(*pFrame->DetailView().viewport());
        return Seconds([&] {
            threads.SelectIndex(thread);
            Show(*pFrame->DetailView().viewport());
        });
    });
    PrintRow("a thread of a million records selected, over its load", fSelect, fThreadLoad, 1.0 / 3);

    close();
    open(strErrors);
    CErrorPane& pane = run.Frame().m_wndErrorPane;
    CSessionRun::ShowPane(pane);
    const CThread& errors = *pFrame->SessionDocument().Session().FindProcess(5712)->m_listThreads.front();
    CListCtrl& list = pane.List();
    const double fErrorsLoad = Least(5, [&] { return LoadInCore(strErrors); });
    pane.FillList(pFrame->SessionDocument(), errors.m_listErrors);
    std::printf("(the list has %d rows)\n", list.Model().rowCount({}));
    double fSort = 0;
    for (int nColumn = 0; nColumn < list.Model().columnCount({}); ++nColumn) {
        for (const Qt::SortOrder nOrder : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            fSort = std::max(fSort, Least(3, [&] {
                                 pane.FillList(pFrame->SessionDocument(), errors.m_listErrors);
                                 return Seconds([&] { list.SortBy(nColumn, nOrder); });
                             }));
        }
    }
    PrintRow("the slowest sort of a list, over the load of its log", fSort, fErrorsLoad, 0.3);

    close();

    // The empty tree is the same widget before a thread is selected.
    open(strThread);
    CDetailView& tree = pFrame->DetailView();
    tree.ResetTree();
    Show(*tree.viewport());
    double fEmpty = 0;
    constexpr int nPages = 1000;
    for (int n = 0; n < nPages; ++n)
        fEmpty += Seconds([&] { tree.viewport()->repaint(); }) / nPages;
    CThreadView& selector = pFrame->ThreadView();
    selector.SelectIndex(FindNode(*selector.model(), QStringLiteral("3868")));
    tree.expandAll();
    Show(*tree.viewport());
    QScrollBar& bar = *tree.verticalScrollBar();
    double fSum = 0;
    double fLongest = 0;
    int nMissed = 0;
    for (int n = 0; n < nPages; ++n) {
        const double fTime = Seconds([&] {
            // From end to end of the tree, page by page here and there.
            bar.setValue(n % 10 == 0 ? bar.maximum() / nPages * n : bar.value() + bar.pageStep());
            tree.viewport()->repaint();
        });
        fSum += fTime / nPages;
        fLongest = std::max(fLongest, fTime);
        nMissed += fTime > kFrame ? 1 : 0;
    }
    PrintRow("the longest page of scrolling, over a frame of 16 ms", fLongest, kFrame, 1);
    std::printf("(the tree has %d nodes; of %d pages %d took longer than a frame; a page takes %.1f ms, %.0f "
                "times an "
                "empty tree)\n",
                static_cast<int>(tree.Tree().NodeCount()), nPages, nMissed, fSum * 1000, fSum / fEmpty);
    close();
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const std::uint64_t nMegabytes = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 200;
    const QTemporaryDir folder;
    const std::string strLog = ToUtf8(folder.filePath(QStringLiteral("generated.log")));
    const std::string strThread = ToUtf8(folder.filePath(QStringLiteral("thread.log")));
    {
        std::ofstream out(strLog, std::ios::binary);
        bench::WriteDebugLog(out, nMegabytes << 20U, 1);
    }
    const std::string strErrors = ToUtf8(folder.filePath(QStringLiteral("errors.log")));
    WriteThread(strThread, false);
    WriteThread(strErrors, true);
    CSessionRun run;
    Measure(run, strLog, strThread, strErrors);
    return 0;
}
