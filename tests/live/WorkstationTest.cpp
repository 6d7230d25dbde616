// The processes' list and its commands against a simulated workstation: real processes, found by the system's
// own means, and a real dynamic library that reaches into them.
#include "live/ProcessList.h"

#include "platform/SharedFile.h"
#include "session/CarvelotDoc.h"
#include "session/FollowedLog.h"
#include "simulator/ProcessState.h"
#include "simulator/Rows.h"
#include "support/SameSessions.h"
#include "support/TestLog.h"
#include "support/Workstation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

namespace carvelot {
namespace {

using test::SimulatedProcess;
using test::Workstation;
using testing::ElementsAre;
using testing::IsEmpty;

class CLiveHost : public IProcessHost {
public:
    void ShowMessage(std::string_view message) override { m_listMessages.emplace_back(message); }
    bool EnumerateProcesses(std::vector<platform::ProcessEntry>& processes) override {
        return platform::EnumerateProcesses(processes);
    }
    const std::vector<tagTraceApp>& TraceApps() const override { return m_listApps; }
    FGetSetProcInfo GetSetProcInfo() const override {
        std::uint32_t error = 0;
        return reinterpret_cast<FGetSetProcInfo>(m_library.Symbol("SkelmondGetSetProcInfo", error));
    }
    void AnalyzeProcess(const std::string&, const std::string&, std::int32_t) override {}

    platform::CDynamicLibrary m_library;
    std::vector<tagTraceApp> m_listApps;
    std::vector<std::string> m_listMessages;
};

class WorkstationTest : public testing::Test {
protected:
    WorkstationTest() { Bind(); }

    bool Bind() {
        std::uint32_t error = 0;
        return m_host.m_library.Load(kCompanionLibrary, error);
    }
    SimulatedProcess& Start(const std::string& name, const std::string& options = {}) {
        SimulatedProcess& process = m_workstation.Start(name, options);
        EXPECT_NE(process.Number(), 0U) << "it did not start";
        m_host.m_listApps.push_back({process.ImageName(), true});
        return process;
    }
    int RowOf(const SimulatedProcess& process) const {
        for (std::size_t n = 0; n < m_list.RowCount(); ++n) {
            if (m_list.Text(n, COLUMN_PROCESS) == std::to_string(process.Number())) {
                return static_cast<int>(n);
            }
        }
        return -1;
    }
    std::string Text(const SimulatedProcess& process, int column) const {
        return m_list.Text(static_cast<std::size_t>(RowOf(process)), column);
    }
    // The handle of a process's cache as its log has it.
    static std::string HandleOf(const SimulatedProcess& process, std::size_t cache) {
        simulator::CStateFile file;
        simulator::CProcessState state;
        EXPECT_TRUE(file.Open(process.Number()) && file.Read(state));
        char text[20];
        std::snprintf(text, sizeof text, "%08llX",
                      static_cast<unsigned long long>(state.m_caches[cache].m_nHandle));
        return text;
    }
    FCacheFetch Fetch() const {
        std::uint32_t error = 0;
        return reinterpret_cast<FCacheFetch>(m_host.m_library.Symbol("SkelmondCacheFetchProcessor", error));
    }

    Workstation m_workstation;
    CLiveHost m_host;
    CProcessList m_list{m_host};
};

TEST_F(WorkstationTest, RunningProcessesAreListedWithWhatTheLibraryTells) {
    const SimulatedProcess& fda = Start("fda", "--user MILA --environment JDV920 --tracing");
    const SimulatedProcess& explorer = Start("oexplore", "--user ANNIKA");
    m_list.RefreshProcessList();
    ASSERT_EQ(m_list.RowCount(), 2U);
    EXPECT_EQ(Text(fda, COLUMN_IMAGE_NAME), fda.ImageName());
    EXPECT_EQ(Text(fda, COLUMN_TRACING), "On");
    EXPECT_EQ(test::ToPath(Text(fda, COLUMN_DEBUG_FILE)), test::ToPath(fda.DebugFile()));
    EXPECT_EQ(Text(fda, COLUMN_FILE_SIZE), "-1") << "no file before the first line";
    EXPECT_EQ(Text(fda, COLUMN_USER), "MILA");
    EXPECT_EQ(Text(fda, COLUMN_ENVIRONMENT), "JDV920");
    EXPECT_EQ(Text(explorer, COLUMN_TRACING), "Off");
    EXPECT_EQ(Text(explorer, COLUMN_USER), "ANNIKA");
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
}

TEST_F(WorkstationTest, AProcessThatEndsBetweenTwoRefreshesIsGoneAndTheOthersStaySelected) {
    SimulatedProcess& first = Start("first");
    SimulatedProcess& second = Start("second");
    SimulatedProcess& third = Start("third");
    m_list.RefreshProcessList();
    ASSERT_EQ(m_list.RowCount(), 3U);
    m_list.Select({0, 1, 2});
    second.Kill();
    m_list.RefreshProcessList();
    EXPECT_EQ(m_list.RowCount(), 2U);
    EXPECT_GE(RowOf(first), 0);
    EXPECT_GE(RowOf(third), 0);
    EXPECT_EQ(RowOf(second), -1);
    EXPECT_THAT(m_list.SelectedRows(), ElementsAre(0, 1));
    EXPECT_FALSE(m_list.m_processes.contains(second.Number()));
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
}

TEST_F(WorkstationTest, ToggleSwitchesTheTracingOfTheProcessItself) {
    SimulatedProcess& fda = Start("fda");
    ASSERT_TRUE(fda.Work(1));
    EXPECT_FALSE(std::filesystem::exists(test::ToPath(fda.DebugFile()))) << "no tracing, no log";
    m_list.RefreshProcessList();
    m_list.Select({RowOf(fda)});
    m_list.OnToggleTracing();
    EXPECT_EQ(Text(fda, COLUMN_TRACING), "On");
    ASSERT_TRUE(fda.Work(1));
    const std::int32_t size = platform::SharedFileSize(fda.DebugFile());
    EXPECT_GT(size, 1000);
    m_list.OnToggleTracing();
    EXPECT_EQ(Text(fda, COLUMN_TRACING), "Off");
    ASSERT_TRUE(fda.Work(1));
    EXPECT_EQ(platform::SharedFileSize(fda.DebugFile()), size);
    m_list.RefreshProcessList();
    EXPECT_EQ(Text(fda, COLUMN_TRACING), "Off");
}

TEST_F(WorkstationTest, TruncEmptiesTheLogThatTheProcessHoldsOpenAndGoesOnWriting) {
    SimulatedProcess& fda = Start("fda", "--tracing");
    ASSERT_TRUE(fda.Work(2));
    m_list.RefreshProcessList();
    EXPECT_GT(Text(fda, COLUMN_FILE_SIZE).size(), 4U);
    m_list.Select({RowOf(fda)});
    m_list.OnTruncDebugFile();
    EXPECT_EQ(Text(fda, COLUMN_FILE_SIZE), "0");
    ASSERT_TRUE(fda.Work(1));
    std::ifstream file(test::ToPath(fda.DebugFile()), std::ios::binary);
    std::string line;
    ASSERT_TRUE(std::getline(file, line));
    EXPECT_NE(line.find("Entering JDB_InitUser"), std::string::npos) << "the log begins anew, without a hole";
}

TEST_F(WorkstationTest, TheLogOfAProcessIsFollowedAsLongAsTheProcessLives) {
    SimulatedProcess& fda = Start("fda", "--tracing");
    ASSERT_TRUE(fda.Work(1));
    const AnalysisSettings settings;
    PendingStatement pending;
    test::RecordingHost host;
    const auto load = [&fda](CCarvelotDoc& session) {
        session.m_strLogPath = fda.DebugFile();
        session.m_nProcessFilter = fda.Number(); // as the processes' pane analyses it
        EXPECT_TRUE(session.LoadLog());
    };
    CCarvelotDoc session(settings, pending, host);
    load(session);
    const std::size_t records = session.m_listDetails.Size();
    EXPECT_GT(records, 20U);
    CFollowedLog log(session);
    EXPECT_EQ(log.Look(), LogChange::None);
    for (const int orders : {1, 3}) {
        ASSERT_TRUE(fda.Work(orders));
        EXPECT_EQ(log.Look(), LogChange::Grew);
        PendingStatement freshPending;
        CCarvelotDoc fresh(settings, freshPending, host);
        load(fresh);
        EXPECT_EQ(test::DifferenceOf(session, fresh), "");
    }
    EXPECT_GT(session.m_listDetails.Size(), 3 * records);
    fda.Kill();
    EXPECT_EQ(log.Look(), LogChange::None) << "the log outlives its writer";
}

TEST_F(WorkstationTest, AFailingEntryPointIsReportedForItsProcessOnly) {
    SimulatedProcess& fda = Start("fda", "--user MILA");
    SimulatedProcess& other = Start("other", "--user ANNIKA");
    m_workstation.Switch("fail SkelmondGetSetProcInfo.1 -77 " + std::to_string(fda.Number()) + "\n");
    m_list.RefreshProcessList();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Error SkelmondGetSetProcInfo returned: -77"));
    EXPECT_EQ(Text(fda, COLUMN_USER), "");
    EXPECT_EQ(Text(other, COLUMN_USER), "ANNIKA");
    m_host.m_listMessages.clear();
    m_workstation.Switch("fail SkelmondGetSetProcInfo.2 5\n");
    m_list.RefreshProcessList();
    EXPECT_EQ(Text(fda, COLUMN_USER), "MILA");
    m_list.Select({RowOf(fda)});
    m_list.OnToggleTracing();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Error SkelmondGetSetProcInfo returned: 5"));
    EXPECT_EQ(Text(fda, COLUMN_TRACING), "Off");
}

TEST_F(WorkstationTest, ClearCacheClearsTheCachesOfTheSelectedProcesses) {
    SimulatedProcess& fda = Start("fda");
    SimulatedProcess& other = Start("other");
    ASSERT_TRUE(fda.Work(1));
    ASSERT_TRUE(other.Work(1));
    const std::string handle = HandleOf(fda, 1);
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), handle), ECacheProbe::Live);
    m_list.RefreshProcessList();
    m_list.Select({RowOf(fda)});
    m_list.OnClearCaches();
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), handle), ECacheProbe::Gone);
    EXPECT_EQ(ProbeCache(m_host.m_library, other.Number(), HandleOf(other, 1)), ECacheProbe::Live);
    ASSERT_TRUE(fda.Work(1));
    EXPECT_NE(HandleOf(fda, 1), handle) << "the process makes its caches anew";
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), HandleOf(fda, 1)), ECacheProbe::Live);
}

TEST_F(WorkstationTest, ClearCacheReportsEachFailureAndGoesOn) {
    SimulatedProcess& fda = Start("fda");
    SimulatedProcess& other = Start("other");
    ASSERT_TRUE(fda.Work(1));
    ASSERT_TRUE(other.Work(1));
    m_list.RefreshProcessList();
    m_list.Select({0, 1});
    m_workstation.Switch("fail SkelmondClearCacheProcessor 9 " + std::to_string(fda.Number()) + "\n");
    m_list.OnClearCaches();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Error SkelmondClearCache returned: 9"));
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), HandleOf(fda, 1)), ECacheProbe::Live);
    simulator::CStateFile file;
    simulator::CProcessState state;
    ASSERT_TRUE(file.Open(other.Number()) && file.Read(state));
    EXPECT_EQ(state.m_nClearings, 1U);
}

TEST_F(WorkstationTest, ClearCacheWithoutTheLibraryEndsWithOneBox) {
    Start("fda");
    Start("other");
    m_list.RefreshProcessList();
    m_list.Select({0, 1});
    m_host.m_library.Free();
    m_workstation.UseLibrariesWithout("");
    m_list.OnClearCaches();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Cannot Load Skelmond.DLL"));
}

TEST_F(WorkstationTest, AMissingEntryPointLeavesItsFeatureOut) {
    SimulatedProcess& fda = Start("fda", "--user MILA");
    ASSERT_TRUE(fda.Work(1));
    m_host.m_library.Free();
    m_workstation.UseLibrariesWithout("SkelmondGetSetProcInfo");
    ASSERT_TRUE(Bind());
    m_list.RefreshProcessList();
    EXPECT_EQ(Text(fda, COLUMN_DEBUG_FILE), "Undetermined");
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), HandleOf(fda, 1)), ECacheProbe::Live);

    m_host.m_library.Free();
    m_workstation.UseLibrariesWithout("SkelmondCacheFetchProcessor");
    ASSERT_TRUE(Bind());
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), HandleOf(fda, 1)), ECacheProbe::NoEntryPoint);
    m_list.RefreshProcessList();
    EXPECT_EQ(Text(fda, COLUMN_USER), "MILA");

    m_host.m_library.Free();
    m_workstation.UseLibrariesWithout("SkelmondClearCacheProcessor");
    m_list.Select({RowOf(fda)});
    m_list.OnClearCaches();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Get Proc address failed"));
}

TEST_F(WorkstationTest, AStaleHandleAndAnEndedProcessAnswerNothing) {
    SimulatedProcess& fda = Start("fda");
    ASSERT_TRUE(fda.Work(1));
    const std::string handle = HandleOf(fda, 1);
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), "DEAD"), ECacheProbe::Gone);
    m_workstation.Switch("stale " + handle + "\n");
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), handle), ECacheProbe::Gone);
    m_workstation.Switch("");
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), handle), ECacheProbe::Live);
    m_workstation.Switch("fail SkelmondCacheFetchProcessor 4\n");
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), handle), ECacheProbe::Gone);
    m_workstation.Switch("");
    fda.Kill();
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), handle), ECacheProbe::Gone);
}

TEST_F(WorkstationTest, AFetchServesEachRowOnceAfterItsOpening) {
    SimulatedProcess& fda = Start("fda");
    ASSERT_TRUE(fda.Work(1)); // order 1001 has three lines
    const std::uint64_t handle = ParseCacheHandle(HandleOf(fda, 1));
    const FCacheFetch pfnFetch = Fetch();
    ASSERT_NE(pfnFetch, nullptr);
    constexpr std::int32_t kRowSize = 96; // the sum of the members of an order line
    unsigned char row[kRowSize] = {};
    std::uint64_t cursor = 55;
    ASSERT_EQ(pfnFetch(fda.Number(), handle, &cursor, row, kRowSize, 1), 0);
    EXPECT_EQ(cursor, 0U) << "opening serves no row";
    std::vector<std::int32_t> lines;
    std::string message;
    std::uint32_t error = 0;
    platform::CDynamicLibrary krnl;
    ASSERT_TRUE(krnl.Load("jdekrnl.dll", error));
    const auto pfnFormat =
        reinterpret_cast<std::int32_t (*)(char16_t*, const void*)>(krnl.Symbol("FormatMathNumeric", error));
    ASSERT_NE(pfnFormat, nullptr);
    for (;;) {
        ASSERT_EQ(pfnFetch(fda.Number(), handle, &cursor, row, kRowSize, 0), 0);
        if (cursor == 0) {
            break;
        }
        std::int32_t line = 0;
        std::memcpy(&line, row + 22 + 50 + 6, sizeof line);
        lines.push_back(line);
        char16_t text[64] = {};
        pfnFormat(text, row + 22);
        message = BufferText(text);
    }
    EXPECT_THAT(lines, ElementsAre(1, 2, 3));
    EXPECT_EQ(message, "408.86"); // of the last line: (1001 * 37 + 3 * 1250 + 99) / 100
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(row) + 82, 3), "520");

    // A cache that goes away in the middle.
    char stale[40];
    std::snprintf(stale, sizeof stale, "stale %08llX 1\n", static_cast<unsigned long long>(handle));
    m_workstation.Switch(stale);
    ASSERT_EQ(pfnFetch(fda.Number(), handle, &cursor, row, kRowSize, 1), 0);
    ASSERT_EQ(pfnFetch(fda.Number(), handle, &cursor, row, kRowSize, 0), 0);
    EXPECT_EQ(cursor, 1U);
    EXPECT_NE(pfnFetch(fda.Number(), handle, &cursor, row, kRowSize, 0), 0);
    EXPECT_EQ(cursor, 0U);
    m_workstation.Switch("");

    // A row buffer that is too small gets what fits.
    unsigned char small[30] = {};
    ASSERT_EQ(pfnFetch(fda.Number(), handle, &cursor, small, 20, 1), 0);
    ASSERT_EQ(pfnFetch(fda.Number(), handle, &cursor, small, 20, 0), 0);
    EXPECT_EQ(small[20], 0);

    // The process dies between two rows.
    ASSERT_EQ(pfnFetch(fda.Number(), handle, &cursor, row, kRowSize, 1), 0);
    fda.Kill();
    EXPECT_NE(pfnFetch(fda.Number(), handle, &cursor, row, kRowSize, 0), 0);
    EXPECT_EQ(cursor, 0U);
}

TEST_F(WorkstationTest, AProcessKilledInTheMiddleOfItsWorkHarmsNobody) {
    for (int attempt = 0; attempt < 5; ++attempt) {
        SimulatedProcess& fda = Start("fda" + std::to_string(attempt) + "-", "--tracing");
        ASSERT_TRUE(fda.Work(1));
        m_list.RefreshProcessList();
        m_list.Select({RowOf(fda)});
        const std::uint64_t handle = ParseCacheHandle(HandleOf(fda, 1));
        fda.Order(200);
        std::this_thread::sleep_for(std::chrono::milliseconds(attempt * 2));
        fda.Kill();
        // The row of before is still selected: every command meets a process that is no more.
        m_host.m_listMessages.clear();
        m_list.OnToggleTracing();
        m_list.OnClearCaches();
        EXPECT_THAT(m_host.m_listMessages, ElementsAre("Error SkelmondGetSetProcInfo returned: 1",
                                                       "Error SkelmondClearCache returned: 1"));
        std::uint64_t cursor = 0;
        unsigned char row[96];
        EXPECT_NE(Fetch()(fda.Number(), handle, &cursor, row, 96, 1), 0);
        EXPECT_GT(platform::SharedFileSize(fda.DebugFile()), 0);
        m_list.OnTruncDebugFile();
        EXPECT_EQ(platform::SharedFileSize(fda.DebugFile()), 0);
        EXPECT_EQ(RowOf(fda), -1);
        EXPECT_EQ(m_list.RowCount(), 0U);
    }
}

TEST_F(WorkstationTest, TheLogOfAProcessIsAnalysedToItsCallsTablesAndLiveCaches) {
    SimulatedProcess& fda = Start("fda", "--tracing --user MILA");
    ASSERT_TRUE(fda.Work(7));
    AnalysisSettings settings;
    settings.m_bCacheAnalysis = true;
    PendingStatement pending;
    test::RecordingHost host;
    CCarvelotDoc session(settings, pending, host);
    session.m_strLogPath = fda.DebugFile();
    session.m_nProcessFilter = fda.Number();
    ASSERT_TRUE(session.LoadLog());
    ASSERT_EQ(session.m_listProcesses.size(), 1U);
    const CProcess& process = *session.m_listProcesses[0];
    EXPECT_EQ(process.m_nProcessID, fda.Number());
    EXPECT_EQ(process.m_listThreads.size(), 2U);
    ASSERT_EQ(process.m_pCacheAnalysis.m_caches.size(), 2U);
    const CCacheAnalysis::CCache& lines = process.m_pCacheAnalysis.m_caches[1];
    EXPECT_EQ(lines.m_strName, std::to_string(fda.Number()) + "OrderLines");
    EXPECT_EQ(lines.m_strHandle, HandleOf(fda, 1));
    EXPECT_EQ(ProbeCache(m_host.m_library, fda.Number(), lines.m_strHandle), ECacheProbe::Live);
}

TEST_F(WorkstationTest, FormatMathNumericReadsWhatTheCachesHold) {
    const auto text = [](std::int64_t number, int decimals) {
        simulator::CRow row;
        simulator::AddMathNumeric(row, number, decimals);
        EXPECT_EQ(row.size(), 50U);
        return simulator::MathNumericText(row.data());
    };
    EXPECT_EQ(text(1234, 2), "12.34");
    EXPECT_EQ(text(-5, 2), "-0.05");
    EXPECT_EQ(text(0, 0), "0");
    const unsigned char empty[50] = {};
    EXPECT_EQ(simulator::MathNumericText(empty), "");
    EXPECT_EQ(simulator::OrderLineRow(1001, 1).size(), 96U);
    EXPECT_EQ(simulator::OrderHeaderRow(1001).size(), 98U);
}

} // namespace
} // namespace carvelot
