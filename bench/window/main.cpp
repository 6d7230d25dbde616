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

double LoadInCore(const std::string& strPath) {
    const AnalysisSettings settings;
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
    QString strCell;
    const double fFill = Least(3, [&] {
        return Seconds([&] {
            pane.FillList(pFrame->SessionDocument(), errors.m_listErrors);
            for (int nRow = 0; nRow < list.Model().rowCount({}); ++nRow) {
                for (int nColumn = 0; nColumn < list.Model().columnCount({}); ++nColumn)
                    strCell = list.Model().index(nRow, nColumn).data().toString();
            }
        });
    });
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
    PrintRow("the slowest sort of a list, over filling and formatting it", fSort, fFill, 0.3);

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
