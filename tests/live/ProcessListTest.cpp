#include "live/ProcessList.h"

#include "support/FileHelper.h"
#include "support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <map>
#include <stdexcept>

namespace carvelot {
namespace {

using test::TestFolder;
using testing::ElementsAre;
using testing::IsEmpty;

// What the companion library knows of a process, and how it answers.
struct CFakeProcess {
    std::u16string m_strDebugFile;
    std::u16string m_strUser;
    std::u16string m_strEnvironment;
    bool m_bTracing = false;
    std::map<std::int32_t, std::int32_t> m_mapStatus; // by mode, 0 when absent
    std::optional<std::int32_t> m_nIdentityTracing;   // what mode 3 leaves in the flag
};

struct CCall {
    std::uint32_t m_nProcess;
    std::int32_t m_nMode;
    std::int32_t m_nTracing;
    bool operator==(const CCall&) const = default;
};

std::map<std::uint32_t, CFakeProcess> s_mapProcesses;
std::vector<CCall> s_listCalls;
bool s_bCleared = true; // the promised part of every buffer was zero at every call

template <typename TUnit> bool IsZero(const TUnit* buffer, std::size_t size) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(buffer);
    return std::all_of(bytes, bytes + size, [](unsigned char ch) { return ch == 0; });
}

std::int32_t ListGetSetProcInfo(std::uint32_t id, char16_t* debugFile, char16_t* user, char16_t* environment,
                                char16_t* scratch, std::int32_t mode, std::int32_t* tracing) {
    s_listCalls.push_back({id, mode, *tracing});
    s_bCleared &=
        IsZero(debugFile, 260) && IsZero(user, 22) && IsZero(environment, 22) && IsZero(scratch, 512);
    CFakeProcess& process = s_mapProcesses[id];
    std::fill_n(scratch, 512, u'x');
    if (process.m_mapStatus[mode] != 0) {
        return process.m_mapStatus[mode];
    }
    const auto copy = [](const std::u16string& from, char16_t* to) {
        std::copy_n(from.c_str(), from.size() + 1, to);
    };
    if (mode == TRACE_READ) {
        copy(process.m_strDebugFile, debugFile);
    }
    if (mode == TRACE_IDENTITY) {
        copy(process.m_strUser, user);
        copy(process.m_strEnvironment, environment);
        if (process.m_nIdentityTracing) {
            *tracing = *process.m_nIdentityTracing;
        }
        return 0;
    }
    if (mode == TRACE_TOGGLE) {
        process.m_bTracing = !process.m_bTracing;
    }
    *tracing = process.m_bTracing ? 7 : 0; // any number but 0 is on
    return 0;
}

class CListHost : public IProcessHost {
public:
    void ShowMessage(std::string_view text) override {
        m_listMessages.emplace_back(text);
        if (m_fnInBox) {
            m_fnInBox();
        }
    }
    bool EnumerateProcesses(std::vector<platform::ProcessEntry>& processes) override {
        if (m_fnEnumerate) {
            return m_fnEnumerate(processes);
        }
        processes = m_listProcesses;
        return m_bEnumerates;
    }
    const std::vector<tagTraceApp>& TraceApps() const override { return m_listApps; }
    FGetSetProcInfo GetSetProcInfo() const override { return m_pfnGetSetProcInfo; }
    void AnalyzeProcess(const std::string& imageName, const std::string& debugFile,
                        std::int32_t id) override {
        m_listAnalyzed.push_back(imageName + "|" + debugFile + "|" + std::to_string(id));
    }
    void BeginRebuild() override { m_bDrawing = false; }
    void EndRebuild() override {
        m_bDrawing = true;
        ++m_nRebuilds;
    }
    void RowChanged(std::size_t row) override { m_listChanged.push_back(row); }

    std::vector<platform::ProcessEntry> m_listProcesses;
    std::vector<tagTraceApp> m_listApps = {{"fda.exe", true}};
    FGetSetProcInfo m_pfnGetSetProcInfo = ListGetSetProcInfo;
    bool m_bEnumerates = true;
    std::vector<std::string> m_listMessages;
    std::vector<std::string> m_listAnalyzed;
    std::vector<std::size_t> m_listChanged;
    std::function<void()> m_fnInBox;
    std::function<bool(std::vector<platform::ProcessEntry>&)> m_fnEnumerate;
    bool m_bDrawing = true;
    int m_nRebuilds = 0;
};

class ProcessListTest : public testing::Test {
protected:
    ProcessListTest() {
        s_mapProcesses.clear();
        s_listCalls.clear();
        s_bCleared = true;
    }
    ~ProcessListTest() override { EXPECT_TRUE(s_bCleared); }

    std::vector<std::string> Column(int column) const {
        std::vector<std::string> texts;
        for (std::size_t n = 0; n < m_list.RowCount(); ++n) {
            texts.push_back(m_list.Text(n, column));
        }
        return texts;
    }
    static std::u16string Wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

    CListHost m_host;
    CProcessList m_list{m_host};
};

TEST_F(ProcessListTest, AnEmptyApplicationsListGivesAnEmptyPaneAndAnEmptyMap) {
    m_host.m_listProcesses = {{10, "fda.exe"}, {11, "oexplore.exe"}};
    m_host.m_listApps.clear();
    m_list.RefreshProcessList();
    EXPECT_EQ(m_list.RowCount(), 0U);
    EXPECT_TRUE(m_list.m_processes.empty());
    m_host.m_listApps = {{"fda.exe", false}, {"oexplore.exe", false}};
    m_list.RefreshProcessList();
    EXPECT_EQ(m_list.RowCount(), 0U);
    EXPECT_TRUE(m_list.m_processes.empty());
    EXPECT_THAT(s_listCalls, IsEmpty());
}

TEST_F(ProcessListTest, AnImageNameMatchesWithoutRegardToCase) {
    m_host.m_listProcesses = {{10, "FDA.EXE"}, {11, "fda.exe.bak"}, {12, "fd"}};
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_IMAGE_NAME), ElementsAre("FDA.EXE"));
}

TEST_F(ProcessListTest, ADisabledEntryDoesNotStopALaterEnabledOneOfTheSameName) {
    m_host.m_listProcesses = {{10, "fda.exe"}};
    m_host.m_listApps = {{"fda.exe", false}, {"FDA.exe", true}};
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_PROCESS), ElementsAre("10"));
}

TEST_F(ProcessListTest, WithoutTheLibraryAProcessShowsUndeterminedAndNoBoxComesUp) {
    m_host.m_listProcesses = {{10, "fda.exe"}};
    m_host.m_pfnGetSetProcInfo = nullptr;
    m_list.RefreshProcessList();
    ASSERT_EQ(m_list.RowCount(), 1U);
    const std::vector<std::string> expected = {"10", "fda.exe", "Off", "Undetermined", "-1", "", ""};
    for (int column = 0; column < PROCESS_COLUMNS; ++column) {
        EXPECT_EQ(m_list.Text(0, column), expected[static_cast<std::size_t>(column)]) << column;
    }
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
}

TEST_F(ProcessListTest, RowsStandInTheSystemsOrderAndProcessZeroIsNeverAmongThem) {
    m_host.m_listProcesses = {{30, "fda.exe"}, {0, "fda.exe"}, {10, "fda.exe"}, {4294967290U, "fda.exe"}};
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_PROCESS), ElementsAre("30", "10", "-6"));
    EXPECT_TRUE(m_list.m_processes.contains(4294967290U));
}

TEST_F(ProcessListTest, ARowShowsWhatTheLibraryTellsOfTheProcess) {
    const TestFolder folder;
    const std::string log = folder.Write("jdedebug.log", std::string(1'234'567, 'x'));
    m_host.m_listProcesses = {{10, "fda.exe"}};
    s_mapProcesses[10] = {Wide(log), u"MÜLLER", u"DV920", true, {}, {}};
    m_list.RefreshProcessList();
    const std::vector<std::string> expected = {"10", "fda.exe", "On", log, "1,234,567", "MÜLLER", "DV920"};
    for (int column = 0; column < PROCESS_COLUMNS; ++column) {
        EXPECT_EQ(m_list.Text(0, column), expected[static_cast<std::size_t>(column)]) << column;
    }
    EXPECT_THAT(s_listCalls, ElementsAre(CCall{10, TRACE_READ, 0}, CCall{10, TRACE_IDENTITY, 7}));
}

TEST(GroupedNumber, SeparatesGroupsOfThreeCharactersAndCountsTheSignAsOne) {
    EXPECT_EQ(GroupedNumber(0), "0");
    EXPECT_EQ(GroupedNumber(999), "999");
    EXPECT_EQ(GroupedNumber(1000), "1,000");
    EXPECT_EQ(GroupedNumber(1234567), "1,234,567");
    EXPECT_EQ(GroupedNumber(-1), "-1");
    EXPECT_EQ(GroupedNumber(-123), "-,123");
    EXPECT_EQ(GroupedNumber(-1234), "-1,234");
    EXPECT_EQ(GroupedNumber(2147483647), "2,147,483,647");
}

TEST_F(ProcessListTest, UserAndEnvironmentAreAskedForOnlyUntilTheUserIsKnown) {
    m_host.m_listProcesses = {{10, "fda.exe"}};
    s_mapProcesses[10] = {u"a", u"", u"JDV920", false, {}, {}};
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_ENVIRONMENT), ElementsAre("JDV920"));
    s_mapProcesses[10].m_strUser = u"MILA";
    m_list.RefreshProcessList();
    EXPECT_EQ(s_listCalls.size(), 4U);
    s_mapProcesses[10].m_strUser = u"OTHER";
    s_mapProcesses[10].m_strEnvironment = u"PD920";
    m_list.RefreshProcessList();
    EXPECT_EQ(s_listCalls.size(), 5U);
    EXPECT_THAT(Column(COLUMN_USER), ElementsAre("MILA"));
    EXPECT_THAT(Column(COLUMN_ENVIRONMENT), ElementsAre("JDV920"));
}

TEST_F(ProcessListTest, TracingIsTheFlagAfterTheLastOfTheCallsWhoseResultIsNotExamined) {
    m_host.m_listProcesses = {{10, "fda.exe"}};
    s_mapProcesses[10] = {u"a", u"MILA", u"", true, {}, 0};
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_TRACING), ElementsAre("Off"));
    m_list.RefreshProcessList(); // the user is known: the first call alone decides
    EXPECT_THAT(Column(COLUMN_TRACING), ElementsAre("On"));

    m_host.m_listProcesses = {{20, "fda.exe"}};
    s_mapProcesses[20] = {u"b", u"MILA", u"", true, {{TRACE_IDENTITY, 5}}, {}};
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_TRACING), ElementsAre("On"));
    EXPECT_THAT(Column(COLUMN_USER), ElementsAre(""));
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
}

TEST_F(ProcessListTest, AFailureOfOneProcessShowsABoxAndLeavesItsRowAsItWas) {
    m_host.m_listProcesses = {{10, "fda.exe"}, {20, "fda.exe"}, {30, "fda.exe"}};
    for (const std::uint32_t id : {10U, 20U, 30U}) {
        s_mapProcesses[id] = {u"log", u"MILA", u"DV", true, {}, {}};
    }
    m_list.RefreshProcessList();
    s_mapProcesses[20].m_mapStatus[TRACE_READ] = -5;
    s_mapProcesses[20].m_bTracing = s_mapProcesses[30].m_bTracing = false;
    m_list.RefreshProcessList();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Error SkelmondGetSetProcInfo returned: -5"));
    EXPECT_THAT(Column(COLUMN_TRACING), ElementsAre("On", "On", "Off"));
    EXPECT_THAT(Column(COLUMN_DEBUG_FILE), ElementsAre("log", "log", "log"));
    m_list.RefreshProcessList();
    EXPECT_EQ(m_host.m_listMessages.size(), 2U) << "one box for each refresh";
}

TEST_F(ProcessListTest, AProcessThatFailsFromTheStartIsShownWithWhatIsKnown) {
    m_host.m_listProcesses = {{10, "fda.exe"}};
    s_mapProcesses[10].m_mapStatus[TRACE_READ] = 3;
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_TRACING), ElementsAre("Off"));
    EXPECT_THAT(Column(COLUMN_DEBUG_FILE), ElementsAre(""));
    EXPECT_THAT(Column(COLUMN_FILE_SIZE), ElementsAre("-1"));
}

TEST_F(ProcessListTest, ALibraryThatEndsNothingIsReadToTheBuffersEnd) {
    const std::u16string full(22, u'Z');
    EXPECT_EQ(BufferText(full.data(), 22), std::string(22, 'Z'));
    EXPECT_EQ(BufferText(u"C:\\\xD83D\xDE00.log", 9), "C:\\\xF0\x9F\x98\x80.log");
}

TEST_F(ProcessListTest, TheSelectionFollowsTheProcessesAndTheLastOfThemHasTheFocus) {
    m_host.m_listProcesses = {{10, "fda.exe"}, {20, "fda.exe"}, {30, "fda.exe"}};
    m_list.RefreshProcessList();
    m_list.Select({0, 2});
    m_host.m_listProcesses = {{30, "fda.exe"}, {5, "fda.exe"}, {10, "fda.exe"}};
    m_list.RefreshProcessList();
    EXPECT_THAT(m_list.SelectedRows(), ElementsAre(0, 2));
    EXPECT_EQ(m_list.FocusedRow(), 2);
    m_host.m_listProcesses = {{5, "fda.exe"}, {30, "fda.exe"}};
    m_list.RefreshProcessList();
    EXPECT_THAT(m_list.SelectedRows(), ElementsAre(1))
        << "the ended process is gone, the other stays selected";
    m_host.m_listProcesses = {{5, "fda.exe"}};
    m_list.RefreshProcessList();
    EXPECT_EQ(m_list.FocusedRow(), -1);
    // One that comes back is another row: it was not selected before.
    m_host.m_listProcesses = {{5, "fda.exe"}, {30, "fda.exe"}};
    m_list.RefreshProcessList();
    EXPECT_THAT(m_list.SelectedRows(), IsEmpty());
}

TEST_F(ProcessListTest, AProcessNumberThatIsReusedKeepsItsUserAndShowsTheNewName) {
    m_host.m_listApps.push_back({"oexplore.exe", true});
    m_host.m_listProcesses = {{10, "fda.exe"}};
    s_mapProcesses[10] = {u"a", u"MILA", u"DV", false, {}, {}};
    m_list.RefreshProcessList();
    m_host.m_listProcesses = {{10, "oexplore.exe"}};
    s_mapProcesses[10].m_strUser = u"OTHER";
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_IMAGE_NAME), ElementsAre("oexplore.exe"));
    EXPECT_THAT(Column(COLUMN_USER), ElementsAre("MILA"));
    EXPECT_EQ(m_list.m_processes.at(10)->imageName, "fda.exe");
    // After a refresh without it the number starts anew.
    m_host.m_listProcesses.clear();
    m_list.RefreshProcessList();
    EXPECT_TRUE(m_list.m_processes.empty());
    m_host.m_listProcesses = {{10, "oexplore.exe"}};
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_USER), ElementsAre("OTHER"));
}

TEST_F(ProcessListTest, WithoutAListOfProcessesDrawingStaysOffUntilARefreshSucceeds) {
    m_host.m_listProcesses = {{10, "fda.exe"}};
    s_mapProcesses[10] = {u"a", u"MILA", u"DV", false, {}, {}};
    m_list.RefreshProcessList();
    m_host.m_bEnumerates = false;
    m_list.RefreshProcessList();
    EXPECT_EQ(m_list.RowCount(), 0U);
    EXPECT_FALSE(m_host.m_bDrawing);
    ASSERT_TRUE(m_list.m_processes.contains(10));
    EXPECT_EQ(m_list.m_processes.at(10)->alive, 0);
    m_host.m_bEnumerates = true;
    m_list.RefreshProcessList();
    EXPECT_TRUE(m_host.m_bDrawing);
    EXPECT_THAT(Column(COLUMN_USER), ElementsAre("MILA"));
    EXPECT_EQ(m_list.m_processes.at(10)->alive, 1);
}

TEST_F(ProcessListTest, ASelectedRowThatNothingIsRememberedOfIsAFault) {
    m_host.m_listProcesses = {{10, "fda.exe"}};
    m_list.RefreshProcessList();
    m_list.Select({0});
    m_list.m_processes.clear();
    try {
        m_list.RefreshProcessList();
        FAIL() << "no exception";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid map<K, T> key");
    }
}

TEST_F(ProcessListTest, ARefreshDuringTheBoxOfARefreshIsIgnored) {
    m_host.m_listProcesses = {{10, "fda.exe"}, {20, "fda.exe"}};
    s_mapProcesses[10].m_mapStatus[TRACE_READ] = 3;
    m_host.m_fnInBox = [&] { m_list.RefreshProcessList(); };
    m_list.RefreshProcessList();
    EXPECT_EQ(m_host.m_listMessages.size(), 1U);
    EXPECT_THAT(Column(COLUMN_PROCESS), ElementsAre("10", "20"));
    EXPECT_EQ(m_host.m_nRebuilds, 1);
}

TEST_F(ProcessListTest, WithNothingSelectedNoCommandDoesAnything) {
    const TestFolder folder;
    const std::string log = folder.Write("log", "content");
    m_host.m_listProcesses = {{10, "fda.exe"}};
    s_mapProcesses[10] = {Wide(log), u"MILA", u"DV", false, {}, {}};
    m_list.RefreshProcessList();
    const std::size_t calls = s_listCalls.size();
    m_list.OnToggleTracing();
    m_list.OnTruncDebugFile();
    m_list.OnClearCaches();
    m_list.OnAnalyzeProcess();
    EXPECT_EQ(s_listCalls.size(), calls);
    EXPECT_EQ(m_host.m_nRebuilds, 1);
    EXPECT_EQ(folder.Read("log"), "content");
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
    EXPECT_THAT(m_host.m_listAnalyzed, IsEmpty());
}

TEST_F(ProcessListTest, ToggleOnThreeRowsOfWhichTheSecondFailsShowsOneBoxAndUpdatesTheOthers) {
    m_host.m_listProcesses = {{10, "fda.exe"}, {20, "fda.exe"}, {30, "fda.exe"}, {40, "fda.exe"}};
    for (const std::uint32_t id : {10U, 20U, 30U, 40U}) {
        s_mapProcesses[id] = {u"log", u"MILA", u"DV", false, {}, {}};
    }
    m_list.RefreshProcessList();
    s_mapProcesses[20].m_mapStatus[TRACE_TOGGLE] = 12;
    s_mapProcesses[30].m_bTracing = true;
    s_listCalls.clear();
    m_list.Select({0, 1, 2});
    m_list.OnToggleTracing();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Error SkelmondGetSetProcInfo returned: 12"));
    EXPECT_THAT(Column(COLUMN_TRACING), ElementsAre("On", "Off", "Off", "Off"));
    EXPECT_THAT(m_host.m_listChanged, ElementsAre(0U, 2U));
    // The flag goes from one call to the next as the last one left it.
    EXPECT_THAT(s_listCalls, ElementsAre(CCall{10, TRACE_TOGGLE, 0}, CCall{20, TRACE_TOGGLE, 7},
                                         CCall{30, TRACE_TOGGLE, 7}));
    EXPECT_FALSE(m_list.m_processes.at(10)->tracing) << "what is remembered waits for the next refresh";
    EXPECT_EQ(m_host.m_nRebuilds, 1);
}

TEST_F(ProcessListTest, ToggleWithoutTheLibrarySaysSoOnce) {
    m_host.m_listProcesses = {{10, "fda.exe"}, {20, "fda.exe"}};
    m_host.m_pfnGetSetProcInfo = nullptr;
    m_list.RefreshProcessList();
    m_list.Select({0, 1});
    m_list.OnToggleTracing();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Cannot Load Skelmond.DLL"));
}

TEST_F(ProcessListTest, ToggleGoesOnSafelyWhenARefreshDuringItsBoxHasTakenTheRows) {
    m_host.m_listProcesses = {{10, "fda.exe"}, {20, "fda.exe"}};
    m_list.RefreshProcessList();
    s_mapProcesses[10].m_mapStatus[TRACE_TOGGLE] = 12;
    m_list.Select({0, 1});
    m_host.m_fnInBox = [&] {
        m_host.m_listProcesses = {{20, "fda.exe"}};
        m_list.RefreshProcessList();
    };
    m_list.OnToggleTracing();
    EXPECT_THAT(Column(COLUMN_TRACING), ElementsAre("Off")) << "the second row is no more";
    EXPECT_EQ(m_host.m_listMessages.size(), 1U);
}

TEST_F(ProcessListTest, TruncEmptiesAFileThatAnotherProcessHoldsOpenAndGoesOnWriting) {
    const TestFolder folder;
    const std::string log = folder.Write("jdedebug.log", "");
    test::FileHelper helper(log);
    ASSERT_TRUE(helper.Do("open"));
    ASSERT_TRUE(helper.Do("append " + std::string(2000, 'x')));
    m_host.m_listProcesses = {{10, "fda.exe"}};
    s_mapProcesses[10] = {Wide(log), u"MILA", u"DV", true, {}, {}};
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_FILE_SIZE), ElementsAre("2,001"));
    m_list.Select({0});
    m_list.OnTruncDebugFile();
    EXPECT_THAT(Column(COLUMN_FILE_SIZE), ElementsAre("0"));
    ASSERT_TRUE(helper.Do("append after"));
    EXPECT_EQ(folder.Read("jdedebug.log"), "after\n") << "nothing but what came after";
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_FILE_SIZE), ElementsAre("6"));
}

TEST_F(ProcessListTest, TruncRefreshesOnceForEachSelectedRowAndSaysNothingOfAFileItCannotOpen) {
    const TestFolder folder;
    const std::string log = folder.Write("log", "content");
    m_host.m_listProcesses = {{10, "fda.exe"}, {20, "fda.exe"}, {30, "fda.exe"}};
    s_mapProcesses[10] = {Wide(folder.Path("missing")), u"A", u"", false, {}, {}};
    s_mapProcesses[20] = {Wide(log), u"B", u"", false, {}, {}};
    s_mapProcesses[30] = {Wide(folder.Path()), u"C", u"", false, {}, {}};
    m_list.RefreshProcessList();
    EXPECT_THAT(Column(COLUMN_FILE_SIZE), ElementsAre("-1", "7", "-1"));
    m_list.Select({0, 1, 2});
    m_list.OnTruncDebugFile();
    EXPECT_EQ(m_host.m_nRebuilds, 4);
    EXPECT_THAT(Column(COLUMN_FILE_SIZE), ElementsAre("-1", "0", "-1"));
    EXPECT_THAT(m_list.SelectedRows(), ElementsAre(0, 1, 2));
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
    EXPECT_FALSE(folder.Exists("missing"));
}

TEST_F(ProcessListTest, TruncGoesOnWhenAProcessEndsDuringItsWalk) {
    const TestFolder folder;
    const std::string log = folder.Write("log", "content");
    m_host.m_listProcesses = {{10, "fda.exe"}, {20, "fda.exe"}};
    s_mapProcesses[10] = {Wide(log), u"A", u"", false, {}, {}};
    s_mapProcesses[20] = {Wide(log), u"B", u"", false, {}, {}};
    m_list.RefreshProcessList();
    m_list.Select({0, 1});
    m_host.m_listProcesses.clear();
    m_list.OnTruncDebugFile();
    EXPECT_EQ(m_host.m_nRebuilds, 3);
    EXPECT_EQ(m_list.RowCount(), 0U);
    EXPECT_EQ(folder.Read("log"), "");
}

TEST_F(ProcessListTest, AnalyzeOpensASessionForEachSelectedRowAlsoOfTheSameFile) {
    m_host.m_listApps.push_back({"oexplore.exe", true});
    m_host.m_listProcesses = {{10, "fda.exe"}, {20, "fda.exe"}, {30, "oexplore.exe"}};
    for (const std::uint32_t id : {10U, 20U, 30U}) {
        s_mapProcesses[id] = {u"same.log", u"MILA", u"DV", false, {}, {}};
    }
    m_list.RefreshProcessList();
    m_list.Select({0, 2});
    m_list.OnAnalyzeProcess();
    EXPECT_THAT(m_host.m_listAnalyzed, ElementsAre("fda.exe|same.log|10", "oexplore.exe|same.log|30"));
}

TEST(CacheHandle, IsReadAsTheCLibraryReadsHexadecimalNumbers) {
    EXPECT_EQ(ParseCacheHandle("0A4A14A8"), 0x0A4A14A8U);
    EXPECT_EQ(ParseCacheHandle("  0xe5762678]"), 0xe5762678U);
    EXPECT_EQ(ParseCacheHandle("e57G2"), 0xe57U);
    EXPECT_EQ(ParseCacheHandle(""), 0U);
    EXPECT_EQ(ParseCacheHandle("zz"), 0U);
    EXPECT_EQ(ParseCacheHandle("0x"), 0U);
    EXPECT_EQ(ParseCacheHandle("+1f"), 0x1FU);
    EXPECT_EQ(ParseCacheHandle("-1"), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(ParseCacheHandle("FFFFFFFFFFFFFFFF"), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(ParseCacheHandle("10000000000000000"), 0xFFFFFFFFFFFFFFFFU);
}

TEST(CacheProbe, WithoutTheLibraryTheCacheIsGone) { EXPECT_EQ(ProbeCache({}, 10, "1A"), ECacheProbe::Gone); }

} // namespace
} // namespace carvelot
