// What one window wants of another: it is connected here and nowhere else.
#include "ui/app/Requests.h"

#include "explore/PieceOrder.h"
#include "session/LogFacts.h"
#include "ui/app/CarvelotApp.h"
#include "ui/app/MainFrame.h"
#include "ui/app/StatusBar.h"
#include "ui/cachebrowser/CacheDlg.h"
#include "ui/cachebrowser/CacheDocument.h"
#include "ui/explore/AboutLogFrame.h"
#include "ui/explore/CallProfileFrame.h"
#include "ui/explore/CompareFrame.h"
#include "ui/explore/DialectChoice.h"
#include "ui/explore/ExploreFiles.h"
#include "ui/explore/ExploreFrame.h"
#include "ui/explore/FindingsFrame.h"
#include "ui/explore/FlameGraphFrame.h"
#include "ui/explore/OverviewFrame.h"
#include "ui/explore/StatementsFrame.h"
#include "ui/explore/TimelineFrame.h"
#include "ui/kit/Icons.h"
#include "ui/kit/PathText.h"
#include "ui/kit/TabbedClientArea.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/kit/WaitCursor.h"
#include "ui/session/ChildFrame.h"
#include "ui/session/Following.h"
#include "ui/session/SessionDocument.h"

#include <QApplication>
#include <QCursor>
#include <QPointer>
#include <QToolButton>

namespace carvelot {

namespace {

template <class TFrame>
TFrame* ShowExploreWindow(CSessionDocument& document, CExploration& exploration, int id);

// What a window of Explore wants of others.
void ConnectWindow(CExploreFrame&, CSessionDocument&, CExploration&) {}

void ConnectWindow(COverviewFrame& overview, CSessionDocument& document, CExploration& exploration) {
    QObject::connect(
        &overview, &COverviewFrame::FindingWanted, &document, [&document, &exploration](std::size_t finding) {
            if (auto* const window =
                    ShowExploreWindow<CFindingsFrame>(document, exploration, ID_EXPLORE_FINDINGS)) {
                window->SelectFinding(finding);
            }
        });
    QObject::connect(
        &overview, &COverviewFrame::FunctionWanted, &document, [&document, &exploration](std::uint32_t key) {
            if (auto* const window =
                    ShowExploreWindow<CCallProfileFrame>(document, exploration, ID_EXPLORE_CALL_PROFILE)) {
                window->ShowFunction(key);
            }
        });
    QObject::connect(
        &overview, &COverviewFrame::ShapeWanted, &document, [&document, &exploration](std::uint32_t shape) {
            if (auto* const window =
                    ShowExploreWindow<CStatementsFrame>(document, exploration, ID_EXPLORE_STATEMENTS)) {
                window->SelectShape(shape);
            }
        });
    QObject::connect(&overview, &COverviewFrame::AboutWanted, &document, [&document, &exploration] {
        ShowExploreWindow<CAboutLogFrame>(document, exploration, ID_EXPLORE_ABOUT_LOG);
    });
}

void ConnectWindow(CAboutLogFrame& about, CSessionDocument& document, CExploration&) {
    QObject::connect(&document, &CSessionDocument::RecordsCame, &about, &CAboutLogFrame::ShowFacts);
    QObject::connect(&document, &CSessionDocument::RecordsGrew, &about, &CAboutLogFrame::ShowGrowth);
    QObject::connect(&about, &CAboutLogFrame::DialectsWanted, &document, &CSessionDocument::ReadWith);
}

// A record of the base stands in a session of its own.
void ConnectWindow(CCompareFrame& compare, CSessionDocument& document, CExploration&) {
    QObject::connect(
        &compare, &CCompareFrame::BaseWanted, &document, [](const QString& path, RecordIndex record) {
            if (auto* const base = qobject_cast<CSessionDocument*>(theApp().OpenDocumentFile(path))) {
                base->Session().ShowDetail(record);
            }
        });
}

// The window of one kind, made where it is not there, in front; null without a main window.
template <class TFrame>
TFrame* ShowExploreWindow(CSessionDocument& document, CExploration& exploration, int id) {
    CMainFrame* const main = MainFrame();
    if (main == nullptr) {
        return nullptr;
    }
    for (CMDIChildWnd* const window : document.FurtherWindows()) {
        if (auto* const there = dynamic_cast<TFrame*>(window)) {
            main->ClientArea().Activate(*there);
            return there;
        }
    }
    auto* const made = new TFrame(exploration);
    QObject::connect(made, &TFrame::CameToFront, &document, [&document] {
        // The shared panes show the session of the window in front.
        if (CMDIChildWnd* const own = document.GetFrame()) {
            own->OnSetFocus();
        }
    });
    ConnectWindow(*made, document, exploration);
    main->ClientArea().AddChild(*made, CommandIcon(id));
    return made;
}

template <class TFrame> void AddExploreWindow(CSessionDocument& document, CExploration& exploration, int id) {
    document.AddCommand(
        id, [&document, &exploration, id] { ShowExploreWindow<TFrame>(document, exploration, id); });
}

void AddFindingSteps(CSessionDocument& document, CExploration& exploration) {
    const auto add = [&](int id, bool forward) {
        document.AddCommand(id, [&exploration, forward] { exploration.StepFinding(forward); });
    };
    add(ID_EXPLORE_NEXT_FINDING, true);
    add(ID_EXPLORE_PREVIOUS_FINDING, false);
}

CExploreFrame* ExploreWindowInFront() {
    const CMainFrame* const main = MainFrame();
    return main != nullptr ? dynamic_cast<CExploreFrame*>(main->ActiveChild()) : nullptr;
}

bool PictureIsInFront() {
    CExploreFrame* const frame = ExploreWindowInFront();
    return frame != nullptr && frame->Picture() != nullptr;
}

void SavePictureInFront() {
    if (!PictureIsInFront()) {
        return;
    }
    const QPointer<CExploreFrame> window = ExploreWindowInFront();
    SavePicture([window]() -> const IPicture* { return window != nullptr ? window->Picture() : nullptr; },
                window->windowTitle(), window->font());
}

// Of the log in front.
void ShowWhetherManyLinesAreUnread() {
    CMainFrame* const main = MainFrame();
    if (main == nullptr) {
        return;
    }
    const CMDIChildWnd* const child = main->ActiveChild();
    const auto* const document =
        child != nullptr ? qobject_cast<CSessionDocument*>(child->GetActiveDocument()) : nullptr;
    main->StatusBar().ShowUnread(document != nullptr && ManyLinesAreUnread(document->Session()));
}

// A load that left no record asks, where a dialect would read more.
void AskForDialects(CSessionDocument& document, const CExploration& exploration) {
    const CCarvelotDoc& session = document.Session();
    const CDialects offered = session.Notes().m_helpful;
    if (session.m_listDetails.Size() > 0 || offered.Empty()) {
        return;
    }
    CDialectsDlg dialog(exploration.LogName(), session.m_dialects, offered);
    if (UserInterface().RunDialog(dialog) == QDialog::Accepted && dialog.Chosen() != session.m_dialects) {
        document.ReadWith(dialog.Chosen());
    }
}

void ConnectDialects(CSessionDocument& document, const CExploration& exploration) {
    document.m_fnKeptDialects = [](const QString& path) { return theApp().KeptDialects(path); };
    document.m_fnOrderPieces = PiecesByTime;
    QObject::connect(&document, &CSessionDocument::DialectsChosen, &document,
                     [](const QString& path, CDialects dialects) { theApp().KeepDialects(path, dialects); });
    QObject::connect(&document, &CSessionDocument::RecordsGrew, &document, &ShowWhetherManyLinesAreUnread);
    QObject::connect(&document, &CSessionDocument::RecordsCame, &document, [&document, &exploration] {
        ShowWhetherManyLinesAreUnread();
        // The load has to end first.
        QMetaObject::invokeMethod(
            &document, [&document, &exploration] { AskForDialects(document, exploration); },
            Qt::QueuedConnection);
    });
}

void ConnectFollowing(CSessionDocument& document) {
    const auto isFollowed = [&document] {
        return MainFrame() != nullptr && MainFrame()->Following().Followed() == &document;
    };
    document.AddCommand(
        ID_EXPLORE_FOLLOW,
        [&document, isFollowed] {
            if (isFollowed()) {
                MainFrame()->Following().End();
            } else if (CMainFrame* const main = MainFrame()) {
                main->Following().Follow(document);
            }
        },
        [&document] { return CFollowedLog::CanFollow(document.Session()); }, isFollowed);
}

void ConnectExplore(CSessionDocument& document) {
    auto& exploration = *new CExploration(document, document.Session(), Settings());
    auto& profileExport = *new CProfileExport(exploration);
    AddExploreWindow<COverviewFrame>(document, exploration, ID_EXPLORE_OVERVIEW);
    AddExploreWindow<CCallProfileFrame>(document, exploration, ID_EXPLORE_CALL_PROFILE);
    AddExploreWindow<CFlameGraphFrame>(document, exploration, ID_EXPLORE_FLAME_GRAPH);
    AddExploreWindow<CTimelineFrame>(document, exploration, ID_EXPLORE_TIMELINE);
    AddExploreWindow<CStatementsFrame>(document, exploration, ID_EXPLORE_STATEMENTS);
    AddExploreWindow<CFindingsFrame>(document, exploration, ID_EXPLORE_FINDINGS);
    document.AddCommand(ID_EXPLORE_COMPARE, [&document, &exploration] {
        if (auto* const window =
                ShowExploreWindow<CCompareFrame>(document, exploration, ID_EXPLORE_COMPARE)) {
            window->AskForBase();
        }
    });
    AddExploreWindow<CAboutLogFrame>(document, exploration, ID_EXPLORE_ABOUT_LOG);
    ConnectDialects(document, exploration);
    AddFindingSteps(document, exploration);
    document.AddCommand(
        ID_EXPLORE_EXPORT_PROFILE, [&profileExport] { profileExport.Ask(); },
        [&profileExport] { return !profileExport.IsRunning(); });
    document.AddCommand(ID_EXPLORE_SAVE_PICTURE, &SavePictureInFront, &PictureIsInFront);
    QObject::connect(&document, &CSessionDocument::RecordsGo, &exploration, &CExploration::EndWithRecords);
    QObject::connect(&document, &CSessionDocument::RecordsCame, &exploration, &CExploration::TakeNewRecords);
    QObject::connect(&document, &CSessionDocument::SelectionChanged, &exploration,
                     &CExploration::TakeSessionSelection);
    QObject::connect(&document, &CSessionDocument::RecordSelected, &exploration,
                     [&exploration](RecordIndex record) { exploration.Select(record); });
    QObject::connect(&exploration, &CExploration::RecordWanted, &document,
                     [&document](RecordIndex record) { document.Session().ShowDetail(record); });
}

} // namespace

void CCarvelotApp::AnalyzeProcess(const QString& imageName, const QString& debugFile, std::int32_t process) {
    CDocTemplate* documentTemplate = FirstDocTemplate();
    if (documentTemplate == nullptr) {
        return;
    }
    CDocument* added = documentTemplate->CreateNewDocument();
    if (added == nullptr) {
        return;
    }
    auto* document = qobject_cast<CSessionDocument*>(added);
    if (document == nullptr) {
        documentTemplate->CloseDocument(*added);
        return;
    }
    CCarvelotDoc& session = document->Session();
    session.m_strProcessName = ToUtf8(imageName);
    session.m_nProcessFilter = static_cast<std::uint32_t>(process);
    session.m_strLogPath = PathOf(debugFile);
    const CWaitCursor wait;
    CMDIChildWnd* frame = documentTemplate->CreateNewFrame(*document);
    if (frame == nullptr || !session.LoadLog()) {
        documentTemplate->CloseDocument(*document);
        return;
    }
    session.FillThreadTree();
    document->SetTitle(debugFile);
    documentTemplate->InitialUpdateFrame(*frame);
}

void BrowseCache(std::uint32_t process, std::string_view handle, std::string_view name,
                 std::string_view instance) {
    CDocTemplate* const documentTemplate = theApp().m_pCacheTemplate;
    if (documentTemplate == nullptr) {
        return;
    }
    CDocument* const added = documentTemplate->CreateNewDocument();
    auto* const document = qobject_cast<CCacheDocument*>(added);
    if (document == nullptr) {
        if (added != nullptr) {
            documentTemplate->CloseDocument(*added);
        }
        return;
    }
    CCacheDoc& cache = document->Cache();
    // The texts may be a session's, which need not outlive the first message.
    cache.m_processId = process;
    cache.m_strHandle = handle;
    cache.m_strName = name;
    cache.m_strInstance = instance;
    cache.m_bCacheValid = theApp().CacheLive(process, ToQString(cache.m_strHandle));
    CCacheDlg dialog(cache);
    const bool ok = UserInterface().RunDialog(dialog) == QDialog::Accepted;
    CMDIChildWnd* const frame = ok ? documentTemplate->CreateNewFrame(*document) : nullptr;
    if (frame == nullptr) {
        documentTemplate->CloseDocument(*document);
        return;
    }
    document->SetTitle(QStringLiteral("Cache Browser: ") + ToQString(cache.m_strName));
    documentTemplate->InitialUpdateFrame(*frame);
}

void ConnectRequests(CMainFrame& frame) {
    // The status bar tells of the log in front.
    QObject::connect(&frame.ClientArea(), &CTabbedClientArea::ActiveChildChanged, &frame,
                     &ShowWhetherManyLinesAreUnread);
    QObject::connect(&frame.StatusBar().UnreadButton(), &QToolButton::clicked, &frame,
                     [&frame] { frame.RunCommand(ID_EXPLORE_ABOUT_LOG); });
    // And of the one that is followed.
    QObject::connect(&frame.Following(), &CFollowing::StateChanged, &frame, [&frame] {
        const CSessionDocument* const followed = frame.Following().Followed();
        frame.StatusBar().ShowFollowing(frame.Following().State(),
                                        followed == nullptr ? QString() : followed->PathInTitle());
        frame.UpdateCommands();
    });
    // A process is analysed.
    frame.m_wndProcessPane.m_fnAnalyze = [](const std::string& imageName, const std::string& debugFile,
                                            std::int32_t process) {
        theApp().AnalyzeProcess(ToQString(imageName), PathToQString(debugFile), process);
    };
    frame.m_wndProcessPane.m_fnGetSetProcInfo = [] { return theApp().m_pfnGetSetProcInfo; };
    // A cache that lives is browsed.
    CCacheTree& caches = frame.m_wndCachePane.Tree();
    caches.m_fnIsLive = [](const CCacheAnalysis::CCache& cache) {
        return theApp().CacheLive(cache.m_processId, ToQString(cache.m_strHandle));
    };
    caches.m_fnBrowse = [](const CCacheAnalysis::CCache& cache) {
        BrowseCache(cache.m_processId, cache.m_strHandle, cache.m_strName, cache.m_strInstance);
    };
}

void ConnectRequests(CSessionDocument& document) {
    ConnectExplore(document);
    ConnectFollowing(document);
    // A log that was opened by hand is a recent file.
    QObject::connect(&document, &CSessionDocument::Opened, &document,
                     [](const QString& path) { theApp().AddToRecentFileList(path); });
}

} // namespace carvelot
