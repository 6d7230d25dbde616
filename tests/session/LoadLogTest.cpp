#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

namespace carvelot::test {

namespace {

using Strings = std::vector<std::string>;

class ThreadTree : public IThreadTreeView {
public:
    explicit ThreadTree(Strings& events) : m_events(events) {}
    void ClearTree() override { m_events.emplace_back("clear threads"); }
    void FillProcessTree() override { m_events.emplace_back("fill processes"); }
    void FillUserTree() override { m_events.emplace_back("fill users"); }
    bool IsProcessSelected(std::uint32_t processID) const override { return processID == m_nSelected; }
    void SelectThread(const CThread& thread) override {
        m_events.push_back("thread " + std::to_string(thread.m_nThreadID));
    }
    void SelectUser(const CJASUser& user) override { m_events.push_back("user " + user.m_strUser); }

    Strings& m_events;
    std::uint32_t m_nSelected = 0xFFFFFFFF;
};

class DetailTree : public IDetailTreeView {
public:
    explicit DetailTree(Strings& events) : m_events(events) {}
    void ResetTree() override { m_events.emplace_back("reset details"); }
    void SelectRecord(RecordIndex record) override {
        m_events.push_back("record " + std::to_string(Number(record)));
    }
    void SetFocusToTree() override { m_events.emplace_back("focus details"); }

    Strings& m_events;
};

} // namespace

TEST(OnOpenDocument, TellsTheHostInOrder) {
    TestSession session(DebugLog({}));
    ThreadTree threads(session.m_host.m_events);
    DetailTree details(session.m_host.m_events);
    session.m_doc.m_pThreadView = &threads;
    session.m_doc.m_pDetailView = &details;
    const std::string path = session.m_file.Path();
    EXPECT_TRUE(session.m_doc.OnOpenDocument(path));
    EXPECT_EQ(session.m_host.m_events, (Strings{"clear threads", "reset details", "title " + path,
                                                "fill processes", "recent " + path}));
    EXPECT_EQ(session.m_host.m_nWaits, 0);
}

TEST(OnOpenDocument, FillsTheUsersOfAJASLog) {
    TestSession session(JASLog({}));
    ThreadTree threads(session.m_host.m_events);
    session.m_doc.m_pThreadView = &threads;
    EXPECT_TRUE(session.m_doc.OnOpenDocument(session.m_file.Path()));
    EXPECT_EQ(session.m_host.m_events[2], "fill users");
}

TEST(OnOpenDocument, LeavesTheEarlierSessionWhereNeitherTheFileNorACopyOpens) {
    TestSession session(DebugLog({DebugLine("10:00:00.000000", "On x")}));
    for (const std::string& path : {session.m_file.Path() + ".missing", std::string("Undetermined"),
                                    std::string(), session.m_file.Path() + "/below-a-file"}) {
        session.m_host.m_messages.clear();
        session.m_doc.m_strLogPath = path;
        EXPECT_FALSE(session.m_doc.LoadLog()) << path;
        EXPECT_EQ(session.m_host.m_messages, Strings{"Failed to open file."}) << path;
        EXPECT_EQ(session.Count(), 2U) << path;
        EXPECT_EQ(session.m_host.m_output, "") << path;
    }
}

#ifndef _WIN32
namespace {

// Points the temporary folder elsewhere for as long as it lives.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::string& path) {
        const char* const old = std::getenv("TMPDIR");
        m_old = old == nullptr ? "" : old;
        setenv("TMPDIR", path.c_str(), 1);
    }
    ~TemporaryFolder() {
        if (m_old.empty()) {
            unsetenv("TMPDIR");
        } else {
            setenv("TMPDIR", m_old.c_str(), 1);
        }
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

private:
    std::string m_old;
};

} // namespace

TEST(OnOpenDocument, LeavesNoTemporaryCopyBehind) {
    TestSession session(DebugLog({}));
    const TestFile name;
    const std::filesystem::path folder = name.Path() + ".d";
    std::filesystem::create_directory(folder);
    {
        const TemporaryFolder elsewhere(folder.string());
        session.m_doc.m_strLogPath = session.m_file.Path() + ".missing";
        EXPECT_FALSE(session.m_doc.LoadLog());
        EXPECT_EQ(session.m_host.m_messages, Strings{"Failed to open file."});
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    std::filesystem::remove(folder);
}

TEST(OnOpenDocument, PrintsThatNoTemporaryNameCouldBeMade) {
    TestSession session(DebugLog({}));
    const TemporaryFolder nowhere("/no/such/folder");
    session.m_doc.m_strLogPath = session.m_file.Path() + ".missing";
    EXPECT_FALSE(session.m_doc.LoadLog());
    EXPECT_EQ(session.m_host.m_output, "GetTempFileName failed (2)\n");
    EXPECT_TRUE(session.m_host.m_messages.empty());
    EXPECT_EQ(session.Count(), 1U);
}

TEST(LoadLog, ReadsOnWhileTheFileGrowsAndStopsWhereItWasEmptied) {
    // The log changes under the reader, at its first sign of progress.
    class ChangingHost : public RecordingHost {
    public:
        void LoadProgress(std::uint64_t done, std::uint64_t total) override {
            m_nTotal = total;
            if (!m_bChanged) {
                m_bChanged = true;
                m_nDone = done;
                m_fnChange();
            }
        }
        std::function<void()> m_fnChange;
        std::uint64_t m_nDone = 0;
        std::uint64_t m_nTotal = 0;
        bool m_bChanged = false;
    };
    const std::string line = DebugLine("10:00:00.000001", "On " + std::string(1000, 'x'), "5/6") + "\n";
    std::string content = TestSession::Joined(DebugLog({}));
    constexpr std::size_t count = 10'000;
    for (std::size_t i = 0; i < count; ++i) {
        content += line;
    }
    const AnalysisSettings settings;
    PendingStatement pending;
    const TestFile file(content);
    ChangingHost host;
    CCarvelotDoc doc(settings, pending, host);
    doc.m_strLogPath = file.Path();

    host.m_fnChange = [&] { std::ofstream(file.Path(), std::ios::binary | std::ios::app) << line << line; };
    ASSERT_TRUE(doc.LoadLog());
    EXPECT_EQ(doc.m_listDetails.Size(), count + 3);
    EXPECT_EQ(host.m_nTotal, content.size());

    host.m_bChanged = false;
    host.m_fnChange = [&] { platform::TruncateShared(file.Path()); };
    ASSERT_TRUE(doc.LoadLog());
    EXPECT_GE(doc.m_listDetails.Size(), 4000U); // what had been read by then
    EXPECT_LT(doc.m_listDetails.Size(), 6000U); // and what had been read ahead
}
#endif

TEST(OnOpenDocument, FailsOnADirectory) {
    TestSession session(DebugLog({}));
    session.m_doc.m_strLogPath = std::string(CARVELOT_SOURCE_FOLDER) + "/samples";
    EXPECT_FALSE(session.m_doc.LoadLog());
    EXPECT_EQ(session.m_host.m_messages, Strings{"Failed to open file."});
}

TEST(OnNewDocument, OpensTheFileThatItAskedFor) {
    TestSession session(DebugLog({}));
    EXPECT_FALSE(session.m_doc.OnNewDocument()); // cancelled
    EXPECT_TRUE(session.m_host.m_events.empty());
    session.m_host.m_answer = session.m_file.Path();
    EXPECT_TRUE(session.m_doc.OnNewDocument());
    EXPECT_EQ(session.m_doc.m_strLogPath, session.m_file.Path());
}

TEST(OnAnalyze, EmptiesTheSessionOfAFileThatWasEmptied) {
    TestSession session(DebugLog({DebugLine("10:00:00.000000", "On x")}));
    ThreadTree threads(session.m_host.m_events);
    DetailTree details(session.m_host.m_events);
    session.m_doc.m_pThreadView = &threads;
    session.m_doc.m_pDetailView = &details;
    EXPECT_TRUE(session.m_doc.OnClearDebugFile());
    EXPECT_EQ(session.Count(), 2U); // the content stays until the next Analyze
    session.m_doc.OnAnalyze();
    EXPECT_EQ(session.m_host.m_messages, Strings{"Error: Cannot determine tracing log format"});
    EXPECT_EQ(session.Count(), 0U);
    EXPECT_TRUE(session.m_doc.m_listProcesses.empty());
    EXPECT_TRUE(session.m_doc.m_listGaps.empty());
    EXPECT_EQ(session.m_host.m_events, (Strings{"clear panes", "reset details", "clear threads",
                                                "reset details", "fill processes", "activate"}));
}

TEST(OnAnalyze, ReadsWhatWasAppended) {
    TestSession session(DebugLog({}));
    session.m_file.Write(TestSession::Joined(
        DebugLog({"Feb 02 08:00:00.500000 - 1/1 [CARVELOT MESSAGE] - \t[CARVELOT MESSAGE]hello"})));
    session.m_doc.OnAnalyze();
    EXPECT_EQ(session.Last().m_nKind, LOG_MESSAGE);
    EXPECT_EQ(session.Last().m_strText, "[CARVELOT MESSAGE]hello");
    EXPECT_EQ(session.Last().m_nProcessID, 1U);
}

TEST(OnClearDebugFile, IsSilentAboutAFileThatDoesNotOpen) {
    TestSession session(DebugLog({}));
    session.m_doc.m_strLogPath += ".missing";
    EXPECT_FALSE(session.m_doc.OnClearDebugFile());
    EXPECT_TRUE(session.m_host.m_messages.empty());
}

TEST(ClearSession, KeepsWhatWasLearntAboutTheFormat) {
    TestSession session(std::vector<std::string>{"0123456789 Entering JDB_X", "--UBE--[1] Started"});
    session.m_doc.ClearSession();
    EXPECT_EQ(session.m_doc.m_nTextColumn, 11);
    EXPECT_TRUE(session.m_doc.m_bUBELog);
    EXPECT_EQ(session.Count(), 0U);
}

TEST(LoadIdentity, IsNewWithEveryLoad) {
    TestSession a(DebugLog({}));
    const TestSession b(DebugLog({}));
    const std::uint64_t first = a.m_doc.LoadIdentity();
    EXPECT_NE(first, b.m_doc.LoadIdentity());
    ASSERT_TRUE(a.m_doc.LoadLog());
    EXPECT_NE(a.m_doc.LoadIdentity(), first);
}

TEST(ShowDetail, SelectsTheRecordsThreadUnlessItsProcessIsShown) {
    TestSession session(DebugLog({DebugLine("10:00:00.000000", "On x", "5/6")}));
    Strings events;
    ThreadTree threads(events);
    DetailTree details(events);
    session.m_doc.m_pThreadView = &threads;
    session.m_doc.m_pDetailView = &details;
    session.m_doc.ShowDetail(RecordIndex{1});
    EXPECT_EQ(events, (Strings{"thread 6", "record 1", "focus details"}));
    events.clear();
    threads.m_nSelected = 5;
    session.m_doc.ShowDetail(RecordIndex{1});
    EXPECT_EQ(events, (Strings{"record 1", "focus details"}));
    events.clear();
    // Another process is shown.
    session.m_doc.ShowDetail(RecordIndex{0});
    EXPECT_EQ(events, (Strings{"thread 1", "record 0", "focus details"}));
    events.clear();
    session.m_doc.ShowDetail(RecordIndex{99});
    EXPECT_TRUE(events.empty());
}

TEST(ShowDetail, AlwaysSelectsTheUserOfAJASRecord) {
    TestSession session(JASLog({JASLine("08:00:00,000", "ANNE", "x")}));
    Strings events;
    ThreadTree threads(events);
    DetailTree details(events);
    session.m_doc.m_pThreadView = &threads;
    session.m_doc.m_pDetailView = &details;
    threads.m_nSelected = 0;
    session.m_doc.ShowDetail(RecordIndex{kJASLead});
    EXPECT_EQ(events, (Strings{"user ANNE", "record 6", "focus details"}));
}

TEST(FindDetails, IgnoresCaseAndPassesOverLinesWithoutInterest) {
    const TestSession session(
        DebugLog({DebugLine("10:00:00.000000", "On Startup"), DebugLine("10:00:00.000001", "a STARTUP b"),
                  DebugLine("10:00:00.000002", "ERROR at startup")}));
    using Indices = std::vector<std::uint32_t>;
    EXPECT_EQ(Numbers(session.m_doc.FindDetails("startup")), (Indices{1, 3}));
    EXPECT_EQ(Numbers(session.m_doc.FindDetails("STARTUP")), (Indices{1, 3}));
    EXPECT_EQ(Numbers(session.m_doc.FindDetails("start.p")), Indices{});
    EXPECT_EQ(Numbers(session.m_doc.FindDetails("")), (Indices{1, 3}));
}

TEST(FindDetails, FindsATextAtEveryPlaceOfALine) {
    for (std::size_t before = 0; before < 70; ++before) {
        for (const std::size_t behind : {0U, 1U, 17U}) {
            const std::string text = "On " + std::string(before, 'x') + "qZ9" + std::string(behind, 'y');
            const TestSession session(DebugLog({DebugLine("10:00:00.000000", text)}));
            EXPECT_EQ(session.m_doc.FindDetails("Qz9").size(), 1U) << text;
            EXPECT_EQ(session.m_doc.FindDetails("Qz8").size(), 0U) << text;
        }
    }
}

TEST(FindDetails, FoldsCaseBeyondAscii) {
#ifndef _WIN32
    const TestSession session(DebugLog({DebugLine("10:00:00.000000", "On Stra\xC3\x9F"
                                                                     "e M\xC3\xBC"
                                                                     "nchen")}));
    EXPECT_EQ(session.m_doc.FindDetails("m\xC3\x9CNCHEN").size(), 1U);
    EXPECT_EQ(session.m_doc.FindDetails("STRASSE").size(), 0U); // one character to one character
#endif
}

} // namespace carvelot::test
