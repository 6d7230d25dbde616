// A load for which the memory does not suffice, and what opening and closing costs in the long run.
#include "explore/Findings.h"
#include "explore/ProfileExport.h"
#include "faults/Faults.h"
#include "platform/ProfileFile.h"
#include "report/JsonReport.h"
#include "report/ReportRun.h"
#include "support/Sanitizer.h"
#include "support/SettingsStore.h"
#include "support/TestFolder.h"
#include "support/TestLog.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <sqlite3.h>
#include <sstream>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace carvelot::test {

namespace {

constexpr const char* kNoMemory = "There is not enough memory for this log.";

// The kernel clears huge pages as a whole: too dear for sessions of a few lines.
void UseSmallPages() { ::prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0); }

std::vector<std::string> BusyDebugLog() {
    std::vector<std::string> lines = DebugLog({});
    for (int i = 0; i < 30; ++i) {
        const std::string number = std::to_string(i);
        const std::string time = "10:00:" + std::to_string(10 + i) + ".000000";
        const std::string ids = "7/" + std::to_string(i % 5);
        for (const std::string& text :
             {"Calling Business function F" + number + " from X for JDE. (BSFNLevel = 1)",
              "IN->[  1] szName                 [" + number + "]",
              "SELECT * FROM PRODDTA.F" + number + " WHERE (A = 1)", "Exiting DBPerformRequest" + number,
              "Entering jdeCacheInit - Name:[N" + number + "]", "Created new cache - hCache:[" + number + "]",
              "hCache:[" + number + "] Nm:[xN" + number + "] Recs:0",
              "Open Cursor Success hCursor:[c" + number + "] hCache:[" + number + "]",
              "hCache:[" + number + "] Nm:[xN" + number + "]", std::string("JDB9900401 - Failed"),
              "Return value is 2 for F" + number + ". (BSFNLevel = 1)"}) {
            lines.push_back(DebugLine(time, text, ids));
        }
    }
    return lines;
}

std::vector<std::string> BusyJASLog() {
    std::vector<std::string> lines = JASLog({});
    for (int i = 0; i < 30; ++i) {
        const std::string number = std::to_string(i);
        const std::string time = "10:00:" + std::to_string(10 + i) + ",000";
        const std::string user = "USER" + std::to_string(i % 7);
        for (const std::string& text :
             {std::string("SELECT A FROM T WHERE B = ? AND C = ?"), std::string("Param1: 5_Types.DECIMAL,"),
              std::string("Param2: x_Types.VARCHAR,"), "Object Called: F" + number + ".G" + number,
              std::string("ERROR x")}) {
            lines.push_back(JASLine(time, user, text));
        }
        lines.push_back(JASLine(time, user, "\xC3\xA4 \xFF warns", "WARN  "));
    }
    return lines;
}

std::size_t OpenFiles() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        ++count;
    }
    return count;
}

std::size_t ResidentKilobytes() {
    std::ifstream file("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    file >> total >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) / 1024;
}

} // namespace

TEST(MemoryFaults, WhicheverAllocationOfALoadFailsTheSessionIsEmptyAndLoadsAgain) {
    UseSmallPages();
    for (const auto& lines : {BusyDebugLog(), BusyJASLog()}) {
        TestSession session(lines);
        ASSERT_TRUE(session.m_bLoaded);
        const std::vector<std::string> texts = session.Texts();
        Faults faults;
        faults.FailAllocation(0);
        ASSERT_TRUE(session.m_doc.LoadLog());
        const std::uint64_t allocations = faults.Allocations();
        ASSERT_GT(allocations, 100U);
        for (std::uint64_t number = 1; number <= allocations; ++number) {
            session.m_host.m_messages.clear();
            session.m_host.m_messages.reserve(1);
            session.m_pending = {};
            faults.FailAllocation(number);
            const bool loaded = session.m_doc.LoadLog();
            const bool failed = faults.Allocations() >= number;
            faults.FailAllocation(0);
            if (loaded) {
                // What a failed load leaves behind can spare the next one an allocation.
                ASSERT_FALSE(failed) << number;
                continue;
            }
            ASSERT_EQ(session.m_host.m_messages, std::vector<std::string>{kNoMemory}) << number;
            ASSERT_EQ(session.Count(), 0U) << number;
            ASSERT_TRUE(session.m_doc.m_listProcesses.empty() && session.m_doc.m_listUsers.empty() &&
                        session.m_doc.m_listGaps.empty())
                << number;
        }
        session.m_pending = {};
        ASSERT_TRUE(session.m_doc.LoadLog());
        EXPECT_EQ(session.Texts(), texts);
    }
}

TEST(MemoryFaults, WhicheverAllocationOfAnExportFailsTheEarlierFileStays) {
    UseSmallPages();
    const TestSession session(BusyDebugLog());
    const CClock clock(session.m_doc.m_listDetails);
    const CStreams streams(session.m_doc);
    const CFrames frames(session.m_doc, clock, streams);
    const CCut cut(frames, streams, {}, {});
    for (const char* const name : {"p.folded", "p.speedscope.json", "p.trace.json", "p.callgrind"}) {
        const TestFolder folder;
        const std::string path = folder.Path(name);
        const ProfileFormat format = ProfileFormatOf(path).value();
        int error = 0;
        Faults faults;
        faults.FailAllocation(0);
        ASSERT_TRUE(WriteProfileExport(path, format, {session.m_doc, streams, cut}, error));
        const std::uint64_t allocations = faults.Allocations();
        ASSERT_GT(allocations, 10U);
        const std::string whole = folder.Read(name);
        std::uint64_t thrown = 0;
        for (std::uint64_t number = 1; number <= allocations; ++number) {
            folder.Write(name, "earlier");
            std::string expected = whole; // of what can do without it
            faults.FailAllocation(number);
            try {
                WriteProfileExport(path, format, {session.m_doc, streams, cut}, error);
            } catch (const std::bad_alloc&) {
                expected = "earlier";
                ++thrown;
            }
            faults.FailAllocation(0);
            ASSERT_EQ(folder.Read(name), expected) << name << ' ' << number;
            ASSERT_EQ(folder.Names(), std::vector<std::string>{name}) << number;
        }
        EXPECT_GT(thrown, allocations / 2) << name;
    }
}

TEST(MemoryFaults, WhicheverAllocationOfExploringFailsItEndsWithThatAlone) {
    UseSmallPages();
    for (const auto& lines : {BusyDebugLog(), BusyJASLog()}) {
        const TestSession session(lines);
        Faults faults;
        faults.FailAllocation(0);
        std::size_t frames = 0;
        std::size_t found = 0;
        const auto explore = [&] {
            const ExploredSession explored(session.m_doc, session.m_settings);
            frames = explored.frames.Count();
            found = FindAll(explored).size();
            const ExploredScope scope(explored, {}, {});
        };
        explore();
        const std::size_t allFrames = frames;
        const std::size_t allFound = found;
        ASSERT_GT(allFrames, 0U);
        const std::uint64_t allocations = faults.Allocations();
        std::uint64_t thrown = 0;
        for (std::uint64_t number = 1; number <= allocations; ++number) {
            faults.FailAllocation(number);
            try {
                explore();
                EXPECT_EQ(frames, allFrames) << number;
                EXPECT_EQ(found, allFound) << number;
            } catch (const std::bad_alloc&) {
                ++thrown;
            }
        }
        faults.FailAllocation(0);
        EXPECT_GT(thrown, allocations / 2);
    }
}

TEST(MemoryFaults, WhicheverAllocationOfJsonFailsItEndsWithThatAlone) {
    std::vector<std::string> lines = BusyDebugLog();
    lines.push_back(DebugLine("10:01:00.000000", "no \xFF\xFE text that is valid, and long", "7/1"));
    const TestSession session(lines);
    std::uint64_t thrown = 0;
    for (std::uint64_t number = 1; number == thrown + 1; ++number) {
        std::ostream out(nullptr);
        Faults faults;
        faults.FailAllocation(number);
        try {
            WriteSessionJson(session.m_doc, "log", out);
        } catch (const std::bad_alloc&) {
            ++thrown;
        }
        faults.FailAllocation(0);
    }
    EXPECT_GT(thrown, 2U);
}

TEST(MemoryFaults, ASessionIsClearedWithoutMemory) {
    // It is cleared where there is none left, and in a destructor.
    TestSession session(BusyDebugLog());
    ASSERT_TRUE(session.m_bLoaded);
    Faults faults;
    session.m_doc.ClearSession();
    EXPECT_EQ(faults.Allocations(), 0U);
    EXPECT_EQ(session.Count(), 0U);
}

TEST(MemoryFaults, WhicheverAllocationOfASettingFailsNothingIsLeftBesideIt) {
    const SettingsStore store;
    SettingsStore::Key("K").SetDword("a", 1);
    const std::string before = store.Folder().Read("registry.ini");
    platform::CRegistryKey key = SettingsStore::Key("K");
    const std::size_t files = OpenFiles();
    std::uint64_t thrown = 0;
    for (std::uint64_t number = 1; number == thrown + 1; ++number) {
        Faults faults;
        faults.FailAllocation(number);
        try {
            key.SetString("b", std::string(100, 'x'));
        } catch (const std::bad_alloc&) {
            ++thrown;
        }
        faults.FailAllocation(0);
        ASSERT_EQ(store.Folder().Names(), std::vector<std::string>{"registry.ini"}) << number;
        ASSERT_EQ(OpenFiles(), files) << number;
        ASSERT_EQ(store.Folder().Read("registry.ini") == before, thrown == number) << number;
    }
    EXPECT_GT(thrown, 5U);
}

TEST(MemoryFaults, ADatabaseThatThereIsNoMemoryToReadIsNotTakenForAnothers) {
    const TestFolder folder;
    const std::string log = folder.Write("log", TestSession::Joined(BusyDebugLog()));
    const std::string path = folder.Path("logs.db");
    const auto write = [&] {
        std::ostringstream out;
        std::ostringstream err;
        RunReport({"--sqlite", path, "--append", log}, out, err);
        return err.str();
    };
    ASSERT_EQ(write(), "");
    std::set<std::string> said;
    for (int kibibytes = 1; kibibytes < 300; kibibytes += 7) {
        const std::int64_t before = sqlite3_hard_heap_limit64(kibibytes * 1024);
        said.insert(write());
        sqlite3_hard_heap_limit64(before);
    }
    EXPECT_EQ(said, std::set<std::string>{"There is not enough memory for this report.\n"});
    EXPECT_EQ(write(), "");
}

TEST(MemoryFaults, AReportThatOutgrowsItsMemoryEndsWithAMessageAndNoOutput) {
    if (kSanitized) {
        GTEST_SKIP() << "a sanitizer's own memory is beyond any limit";
    }
    const TestFolder folder;
    std::string content = TestSession::Joined(DebugLog({}));
    for (int i = 0; i < 400'000; ++i) {
        content +=
            DebugLine("10:00:00.000001", "On " + std::to_string(i) + std::string(200, 'x'), "5/6") + "\n";
    }
    folder.Write("big.log", content);
    const std::string command = "ulimit -v 60000; '" CARVELOT_REPORT "' --json '" + folder.Path("big.log") +
                                "' >'" + folder.Path("out") + "' 2>'" + folder.Path("err") + "'";
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_EQ(folder.Read("err"), std::string(kNoMemory) + "\n");
    EXPECT_EQ(folder.Read("out"), "");
}

TEST(MemoryFaults, SettingsFilesOfAnAbsurdSizeCountAsUnreadable) {
    // A hole of a terabyte takes no disk, but would take the memory.
    const TestFolder folder;
    folder.Write("huge.ini", "[A]\nk=v\n");
    std::filesystem::resize_file(folder.Path("huge.ini"), std::uintmax_t{1} << 40U);
    EXPECT_EQ(platform::ReadProfileText("A", "k", "none", 100, folder.Path("huge.ini")), "none");
    EXPECT_FALSE(platform::WriteProfileText("A", "k", "new", folder.Path("huge.ini")));
    EXPECT_EQ(std::filesystem::file_size(folder.Path("huge.ini")), std::uintmax_t{1} << 40U);

    const SettingsStore store;
    store.Folder().Write("registry.ini", "[HKEY_CURRENT_USER\\K]\n\"a\"=dword:00000001\n");
    std::filesystem::resize_file(store.Path(), std::uintmax_t{1} << 40U);
    platform::CRegistryKey key = SettingsStore::Key("K");
    EXPECT_TRUE(key.SetDword("a", 2)); // for the run
    std::uint32_t number = 0;
    EXPECT_EQ(key.QueryRaw32("a", number), platform::ERegStatus::Ok);
    EXPECT_EQ(number, 2U);
    EXPECT_EQ(std::filesystem::file_size(store.Path()), std::uintmax_t{1} << 40U);
}

TEST(MemoryFaults, SettingsFilesAreReadUpTo16Mebibytes) {
    constexpr std::size_t most = std::size_t{16} << 20U;
    const TestFolder folder;
    const std::string values = "[A]\nk=v\n;";
    const std::string store = "[HKEY_CURRENT_USER\\K]\n\"a\"=dword:00000001\n;";
    for (const std::size_t size : {most, most + 1}) {
        folder.Write("JDE.INI", values + std::string(size - values.size(), 'x'));
        EXPECT_EQ(platform::ReadProfileText("A", "k", "none", 100, folder.Path("JDE.INI")),
                  size == most ? "v" : "none");
        folder.Write(std::to_string(size), store + std::string(size - store.size(), 'x'));
        const EnvironmentGuard guard("CARVELOT_REGISTRY", folder.Path(std::to_string(size)).c_str());
        platform::CRegistryKey key;
        EXPECT_EQ(key.Open(platform::ERegRoot::CurrentUser, "K", platform::ERegAccess::Read), size == most);
    }
}

TEST(MemoryFaults, TenThousandOpensAndClosesLeaveNothingBehind) {
    UseSmallPages();
    const TestFile debug(TestSession::Joined(BusyDebugLog()));
    const TestFile jas(TestSession::Joined(BusyJASLog()));
    const AnalysisSettings settings;
    PendingStatement pending;
    const auto openAndClose = [&](int times) {
        for (int i = 0; i < times; ++i) {
            RecordingHost host;
            CCarvelotDoc doc(settings, pending, host);
            ASSERT_TRUE(doc.OnOpenDocument(i % 2 == 0 ? debug.Path() : jas.Path()));
            // Analyze, and a file that does not open, are part of a session's life.
            if (i % 10 == 0) {
                doc.OnAnalyze();
                ASSERT_FALSE(doc.OnOpenDocument(debug.Path() + ".missing"));
            }
        }
    };
    // A sanitizer holds freed memory back, and takes its time.
    const int total = kSanitized ? 1000 : 10'000;
    openAndClose(total / 10);
    const std::size_t files = OpenFiles();
    const std::size_t resident = ResidentKilobytes();
    openAndClose(total - total / 10);
    EXPECT_EQ(OpenFiles(), files);
    if (!kSanitized) {
        EXPECT_LE(ResidentKilobytes(), resident + 2048);
    }
}

} // namespace carvelot::test
