// Fetching the rows of a live cache: from libraries that behave and from such that do not, and from a
// simulated workstation.
#include "cachebrowser/CacheFetch.h"
#include "cachebrowser/CacheDoc.h"
#include "platform/DateText.h"
#include "session/CarvelotDoc.h"
#include "simulator/ProcessState.h"
#include "simulator/Rows.h"
#include "support/TestLog.h"
#include "support/Workstation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>

namespace carvelot {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kOrderLine[] =
    "typedef struct { JCHAR szItem[11]; MATH_NUMERIC mnPrice; JDEDATE jdRequested;\n"
    "int nLine; char cStatus[4]; BOOL bTaxable; ID idLine; short nPriority; } OrderLines;";

// Serves the rows it is given and notes each call.
class CFakeFetch final : public ICacheFetch {
public:
    EBound Bind() override { return m_nBound; }
    std::int32_t Fetch(std::uint32_t process, std::uint64_t handle, std::uint64_t& cursor, void* buffer,
                       std::int32_t rowSize, std::int32_t first) override {
        ++m_nCalls;
        m_nProcess = process;
        m_nHandle = handle;
        m_nRowSize = rowSize;
        m_listFirst.push_back(first);
        if (first != 0) {
            return m_nOpenStatus;
        }
        if (m_fnMove) {
            return m_fnMove(cursor, buffer, rowSize);
        }
        if (m_nNext == m_listRows.size()) {
            cursor = 0;
            return 0;
        }
        const auto& row = m_listRows[m_nNext++];
        std::copy_n(row.data(), std::min(row.size(), static_cast<std::size_t>(rowSize)),
                    static_cast<unsigned char*>(buffer));
        cursor = m_nNext;
        return 0;
    }

    EBound m_nBound = Bound;
    std::int32_t m_nOpenStatus = 0;
    std::vector<std::vector<unsigned char>> m_listRows;
    std::size_t m_nNext = 0;
    std::function<std::int32_t(std::uint64_t& cursor, void* buffer, std::int32_t rowSize)> m_fnMove;
    int m_nCalls = 0;
    std::uint32_t m_nProcess = 0;
    std::uint64_t m_nHandle = 0;
    std::int32_t m_nRowSize = -1;
    std::vector<std::int32_t> m_listFirst;
};

class CFakeHost final : public ICacheHost {
public:
    void ShowMessage(std::string_view text) override { m_listMessages.emplace_back(text); }
    bool StopFetch() override { return ++m_nRows == m_nStopAfter; }
    std::vector<std::string> m_listMessages;
    std::size_t m_nRows = 0;
    std::size_t m_nStopAfter = 0;
};

class CFakeDSView final : public ICacheDSView {
public:
    std::string ProcessText() const override { return m_strProcess; }
    std::string HandleText() const override { return m_strHandle; }
    void Fill(std::vector<std::shared_ptr<CMember>> rows) override { m_rows.m_listRows = std::move(rows); }
    std::string m_strProcess;
    std::string m_strHandle;
    CMemberRows m_rows;
};

class CFakeDataView final : public ICacheDataView {
public:
    void SetColumns(std::vector<CColumnSpec> columns) override { m_listColumns = std::move(columns); }
    void DeleteAllItems() override { ++m_nDeleted; }
    void ShowNewItems() override { ++m_nShown; }
    std::vector<CColumnSpec> m_listColumns;
    int m_nDeleted = 0;
    int m_nShown = 0;
};

class CacheFetchTest : public testing::Test {
protected:
    void Define(std::string text) { m_doc.m_cacheDS.ParseTypedef(text); }
    void Refresh() { m_doc.OnRefreshData(m_fetch, m_host); }
    std::vector<std::string> Row(std::size_t row, FFormatMathNumeric pfnFormat = nullptr) const {
        std::vector<std::string> texts;
        const std::size_t columns = std::max<std::size_t>(m_doc.m_cacheDS.m_members.size(), 1);
        for (std::size_t n = 0; n < columns; ++n) {
            texts.push_back(m_doc.CellText(row, n, pfnFormat));
        }
        return texts;
    }

    CCacheDoc m_doc;
    CFakeFetch m_fetch;
    CFakeHost m_host;
};

TEST_F(CacheFetchTest, TwoCallsAreMadeBeforeTheFirstRow) {
    Define("int a; char b[2];");
    m_fetch.m_listRows = {{1, 0, 0, 0, 'x', 'y'}, {2, 0, 0, 0, 'z', 0}};
    m_doc.m_processId = 4711;
    m_doc.m_strHandle = "0A4A14A8";
    Refresh();
    EXPECT_THAT(m_fetch.m_listFirst, ElementsAre(1, 0, 0, 0));
    EXPECT_EQ(m_fetch.m_nProcess, 4711U);
    EXPECT_EQ(m_fetch.m_nHandle, 0x0A4A14A8U);
    EXPECT_EQ(m_fetch.m_nRowSize, 6);
    ASSERT_EQ(m_doc.Rows().Size(), 2U);
    EXPECT_THAT(Row(0), ElementsAre("1", "xy"));
    EXPECT_THAT(Row(1), ElementsAre("2", "z"));
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
}

TEST_F(CacheFetchTest, ACursorOfZeroAfterTheSecondCallIsNoRowAndNoMessage) {
    Define("int a;");
    Refresh();
    EXPECT_THAT(m_fetch.m_listFirst, ElementsAre(1, 0));
    EXPECT_EQ(m_doc.Rows().Size(), 0U);
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
}

TEST_F(CacheFetchTest, WhatStandsInTheBoxesWins) {
    CFakeDSView view;
    m_doc.m_pDSView = &view;
    m_doc.m_processId = 1;
    m_doc.m_strHandle = "2";
    view.m_strProcess = "  815 and more";
    view.m_strHandle = " 0xfF00zz";
    Refresh();
    EXPECT_EQ(m_fetch.m_nProcess, 815U);
    EXPECT_EQ(m_fetch.m_nHandle, 0xFF00U);
    view.m_strProcess = "-1";
    view.m_strHandle = "123456789ABCDEF012345";
    Refresh();
    EXPECT_EQ(m_fetch.m_nProcess, 0xFFFFFFFFU);
    EXPECT_EQ(m_fetch.m_nHandle, std::numeric_limits<std::uint64_t>::max());
    view.m_strProcess = view.m_strHandle = "none";
    Refresh();
    EXPECT_EQ(m_fetch.m_nProcess, 0U);
    EXPECT_EQ(m_fetch.m_nHandle, 0U);
}

TEST_F(CacheFetchTest, FailuresLeaveTheListEmpty) {
    Define("int a;");
    const auto fill = [&] {
        m_fetch = CFakeFetch();
        m_fetch.m_listRows = {{1}};
        Refresh();
        EXPECT_EQ(m_doc.Rows().Size(), 1U);
        m_doc.m_bCacheValid = true;
        m_fetch = CFakeFetch();
        m_fetch.m_listRows = {{1}};
        m_host.m_listMessages.clear();
    };
    fill();
    m_fetch.m_nBound = ICacheFetch::NoLibrary;
    Refresh();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Cannot Load Skelmond.DLL"));
    EXPECT_EQ(m_doc.Rows().Size(), 0U);
    EXPECT_EQ(m_fetch.m_nCalls, 0);
    EXPECT_TRUE(m_doc.m_bCacheValid);
    fill();
    m_fetch.m_nBound = ICacheFetch::NoEntryPoint;
    Refresh();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Get Proc address failed"));
    EXPECT_EQ(m_doc.Rows().Size(), 0U);
    EXPECT_EQ(m_fetch.m_nCalls, 0);
    fill();
    m_fetch.m_nOpenStatus = 2;
    Refresh();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Invalid Cache"));
    EXPECT_EQ(m_doc.Rows().Size(), 0U);
    EXPECT_THAT(m_fetch.m_listFirst, ElementsAre(1));
    EXPECT_FALSE(m_doc.m_bCacheValid);
}

TEST_F(CacheFetchTest, ARowSizeThatCannotBeIsAnInvalidCache) {
    for (const char* text : {"char a[-1];", "int a[1073741824];", "char a[2147483647]; char b;"}) {
        m_host.m_listMessages.clear();
        m_doc.m_bCacheValid = true;
        Define(text);
        Refresh();
        EXPECT_THAT(m_host.m_listMessages, ElementsAre("Invalid Cache")) << text;
        EXPECT_EQ(m_fetch.m_nCalls, 0) << "the library is not asked";
        EXPECT_FALSE(m_doc.m_bCacheValid);
    }
}

TEST_F(CacheFetchTest, AStructureWithoutMembersShowsTheRunningNumber) {
    m_fetch.m_listRows = {{}, {}, {}};
    Refresh();
    EXPECT_EQ(m_fetch.m_nRowSize, 0);
    ASSERT_EQ(m_doc.Rows().Size(), 3U);
    EXPECT_THAT(Row(0), ElementsAre("0"));
    EXPECT_THAT(Row(2), ElementsAre("2"));
}

TEST_F(CacheFetchTest, TheBufferIsZeroedOnceAndNotBetweenRows) {
    Define("char a[6];");
    m_fetch.m_listRows = {{'l', 'o', 'n', 'g', 'e', 'r'}, {'s', 'h'}, {0}};
    Refresh();
    ASSERT_EQ(m_doc.Rows().Size(), 3U);
    EXPECT_THAT(Row(0), ElementsAre("longer"));
    EXPECT_THAT(Row(1), ElementsAre("shnger"));
    EXPECT_THAT(Row(2), ElementsAre(""));
}

TEST_F(CacheFetchTest, TheStatusOfAMoveDoesNotCount) {
    Define("int a;");
    int call = 0;
    m_fetch.m_fnMove = [&](std::uint64_t& cursor, void* buffer, std::int32_t) {
        static_cast<unsigned char*>(buffer)[0] = static_cast<unsigned char>(++call);
        cursor = call < 4 ? 7 : 0;
        return 99;
    };
    Refresh();
    ASSERT_EQ(m_doc.Rows().Size(), 3U);
    EXPECT_THAT(Row(2), ElementsAre("3"));
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
}

TEST_F(CacheFetchTest, TheCursorWordIsTheLibrarysFromCallToCall) {
    Define("int a;");
    std::vector<std::uint64_t> seen;
    m_fetch.m_fnMove = [&](std::uint64_t& cursor, void*, std::int32_t) {
        seen.push_back(cursor);
        cursor = cursor == 300 ? 0 : cursor + 100;
        return 0;
    };
    Refresh();
    EXPECT_THAT(seen, ElementsAre(0, 100, 200, 300));
}

TEST_F(CacheFetchTest, ACursorThatNeverEndsIsStoppedByTheUserAndItsRowsStay) {
    Define("int a;");
    CFakeDataView view;
    m_doc.m_pDataView = &view;
    m_fetch.m_fnMove = [](std::uint64_t& cursor, void*, std::int32_t) {
        cursor = 1;
        return 0;
    };
    m_host.m_nStopAfter = 1234;
    Refresh();
    EXPECT_EQ(m_doc.Rows().Size(), 1234U);
    EXPECT_EQ(view.m_nDeleted, 1);
    EXPECT_EQ(view.m_nShown, 1);
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
}

TEST_F(CacheFetchTest, AStructureOfAnotherSizeThanTheRowShowsWhatThereIs) {
    Define("int a; JCHAR b[4]; int c; MATH_NUMERIC d; JDEDATE e;");
    m_fetch.m_listRows = {{1, 0, 0, 0, 'x', 0}};
    Refresh();
    EXPECT_THAT(Row(0), ElementsAre("1", "x", "0", "N/A", ""));
}

TEST_F(CacheFetchTest, AMembersSizeThatDecodingSetsRightMovesTheMembersBehindIt) {
    auto shortMember = std::make_shared<CMember>();
    shortMember->m_type = MEMBER_SHORT;
    shortMember->m_size = 7; // out of a file
    auto number = m_doc.m_cacheDS.CreateMember("int", "");
    m_doc.m_cacheDS.m_members = {shortMember, number};
    m_fetch.m_listRows = {{0xEE, 0xEE, 5, 0, 0, 0}};
    Refresh();
    EXPECT_EQ(m_fetch.m_nRowSize, 11) << "the size when the fetch began";
    EXPECT_THAT(Row(0), ElementsAre("Not Handled", "5"));
    m_fetch.m_nNext = 0;
    Refresh();
    EXPECT_EQ(m_fetch.m_nRowSize, 6);
}

TEST_F(CacheFetchTest, RowsStayReadableWhileTheStructureIsReplaced) {
    Define("int a; int b;");
    m_fetch.m_listRows = {{1, 0, 0, 0, 2, 0, 0, 0}};
    Refresh();
    Define("char c;");
    EXPECT_EQ(m_doc.CellText(0, 1, nullptr), "2");
    CFakeDSView dsView;
    CFakeDataView dataView;
    m_doc.m_pDSView = &dsView;
    m_doc.m_pDataView = &dataView;
    m_doc.OnStructureDefined();
    EXPECT_EQ(m_doc.Rows().Size(), 0U);
    EXPECT_EQ(dataView.m_nDeleted, 1);
    ASSERT_EQ(dataView.m_listColumns.size(), 1U);
    EXPECT_EQ(dataView.m_listColumns[0].m_strTitle, "c 1 1");
    EXPECT_EQ(dataView.m_listColumns[0].m_nWidth, 100);
    ASSERT_EQ(dsView.m_rows.RowCount(), 1U);
    EXPECT_EQ(dsView.m_rows.Text(0, 0), "c");
    EXPECT_EQ(dsView.m_rows.Text(0, 1), "char");
    EXPECT_EQ(dsView.m_rows.Text(0, 2), "1");
}

TEST_F(CacheFetchTest, AHugeRowThatIsHardlyFilledTakesHardlyAnyMemory) {
    Define("int a; char b[200000000];");
    int call = 0;
    m_fetch.m_fnMove = [&](std::uint64_t& cursor, void* buffer, std::int32_t rowSize) {
        EXPECT_EQ(rowSize, 200000004);
        static_cast<unsigned char*>(buffer)[4] = 'x';
        cursor = ++call < 4 ? 1 : 0;
        return 0;
    };
    Refresh();
    ASSERT_EQ(m_doc.Rows().Size(), 3U);
    EXPECT_EQ(m_doc.Rows()[0].size(), 5U);
    EXPECT_THAT(Row(2), ElementsAre("0", "x"));
}

TEST_F(CacheFetchTest, AHundredThousandRowsAreKeptAndRead) {
    Define(kOrderLine);
    const auto row = simulator::OrderLineRow(1001, 2);
    int call = 0;
    m_fetch.m_fnMove = [&](std::uint64_t& cursor, void* buffer, std::int32_t) {
        std::memcpy(buffer, row.data(), row.size());
        std::memcpy(static_cast<unsigned char*>(buffer) + 78, &call, 4);
        cursor = ++call <= 100000 ? 1 : 0;
        return 0;
    };
    Refresh();
    ASSERT_EQ(m_doc.Rows().Size(), 100000U);
    EXPECT_EQ(m_doc.CellText(77777, 3, nullptr), "77777");
    EXPECT_EQ(m_doc.CellText(99999, 4, nullptr), "540");
}

// Against real processes and the real binding of a library.
class CacheOnWorkstationTest : public CacheFetchTest {
protected:
    CacheOnWorkstationTest() : m_process(m_workstation.Start("fda", "--tracing")) {
        EXPECT_NE(m_process.Number(), 0U);
        EXPECT_TRUE(m_process.Work(1)); // order 1001 has three lines
        m_doc.m_processId = m_process.Number();
        m_doc.m_strHandle = Handle(1);
        std::uint32_t error = 0;
        EXPECT_TRUE(m_krnl.Load("jdekrnl.dll", error));
        m_pfnFormat = reinterpret_cast<FFormatMathNumeric>(m_krnl.Symbol("FormatMathNumeric", error));
        EXPECT_NE(m_pfnFormat, nullptr);
    }
    std::string Handle(std::size_t cache) const {
        simulator::CStateFile file;
        simulator::CProcessState state;
        EXPECT_TRUE(file.Open(m_process.Number()) && file.Read(state));
        char text[20];
        std::snprintf(text, sizeof text, "%08llX",
                      static_cast<unsigned long long>(state.m_caches[cache].m_nHandle));
        return text;
    }
    void Refresh() {
        CCompanionFetch fetch;
        m_doc.OnRefreshData(fetch, m_host);
    }
    static std::string Date(int year, int month, int day) {
        return *platform::AutomationDateText(year, month, day);
    }

    test::Workstation m_workstation;
    test::SimulatedProcess& m_process;
    platform::CDynamicLibrary m_krnl;
    FFormatMathNumeric m_pfnFormat = nullptr;
};

TEST_F(CacheOnWorkstationTest, RowsOfEveryTypeAreDecoded) {
    Define(kOrderLine);
    EXPECT_EQ(m_doc.m_cacheDS.GetRowSize(), 96);
    Refresh();
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
    ASSERT_EQ(m_doc.Rows().Size(), 3U);
    // (1001 * 37 + line * 1250 + 99) / 100; the date's day is 1001 % 28 + 1.
    EXPECT_THAT(Row(0, m_pfnFormat), ElementsAre("220-W", "383.86", Date(2025, 2, 22), "1", "540", "True",
                                                 "100101", "Not Handled"));
    EXPECT_THAT(Row(1, m_pfnFormat), ElementsAre("2001", "396.36", Date(2025, 3, 22), "2", "540", "False",
                                                 "100102", "Not Handled"));
    EXPECT_THAT(Row(2, m_pfnFormat), ElementsAre("3400-B", "408.86", Date(2025, 4, 22), "3", "520", "True",
                                                 "100103", "Not Handled"));
    EXPECT_EQ(Row(0)[1], "N/A") << "without the JDE library";

    Define("JCHAR szCustomer[21]; MATH_NUMERIC mnOrder; JDEDATE jdEntered;");
    EXPECT_EQ(m_doc.m_cacheDS.GetRowSize(), 98);
    m_doc.m_strHandle = Handle(0);
    Refresh();
    ASSERT_EQ(m_doc.Rows().Size(), 1U);
    EXPECT_THAT(Row(0, m_pfnFormat), ElementsAre("Capital Supply", "1001", Date(2025, 6, 22)));
}

TEST_F(CacheOnWorkstationTest, TheLogsCacheLeadsToItsRows) {
    AnalysisSettings settings;
    settings.m_bCacheAnalysis = true;
    PendingStatement pending;
    test::RecordingHost host;
    CCarvelotDoc session(settings, pending, host);
    session.m_strLogPath = m_process.DebugFile();
    ASSERT_TRUE(session.LoadLog());
    const auto& caches = session.m_listProcesses[0]->m_pCacheAnalysis.m_caches;
    ASSERT_EQ(caches.size(), 2U);
    m_doc.m_processId = caches[1].m_processId;
    m_doc.m_strHandle = caches[1].m_strHandle;
    Define(kOrderLine);
    Refresh();
    EXPECT_EQ(m_doc.Rows().Size(), 3U);
}

TEST_F(CacheOnWorkstationTest, ACacheThatGoesInTheMiddleKeepsTheRowsThatCame) {
    Define(kOrderLine);
    m_workstation.Switch("stale " + m_doc.m_strHandle + " 2\n");
    Refresh();
    EXPECT_EQ(m_doc.Rows().Size(), 2U);
    EXPECT_THAT(m_host.m_listMessages, IsEmpty());
    m_workstation.Switch("stale " + m_doc.m_strHandle + "\n");
    Refresh();
    EXPECT_EQ(m_doc.Rows().Size(), 0U);
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Invalid Cache"));
}

TEST_F(CacheOnWorkstationTest, AnEndedProcessIsAnInvalidCache) {
    Define(kOrderLine);
    m_process.Kill();
    Refresh();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Invalid Cache"));
}

TEST_F(CacheOnWorkstationTest, StructuresOfAnotherSizeAreServedWhatFits) {
    Define("JCHAR szItem[11];");
    Refresh();
    ASSERT_EQ(m_doc.Rows().Size(), 3U);
    EXPECT_THAT(Row(0), ElementsAre("220-W"));
    Define(std::string(kOrderLine) + "JCHAR szMore[50]; int nMore;");
    Refresh();
    ASSERT_EQ(m_doc.Rows().Size(), 3U);
    EXPECT_EQ(Row(2)[8], "");
    EXPECT_EQ(Row(2)[9], "0");
    Define("");
    Refresh();
    ASSERT_EQ(m_doc.Rows().Size(), 3U);
    EXPECT_THAT(Row(2), ElementsAre("2"));
}

TEST_F(CacheOnWorkstationTest, WithoutTheLibraryOrItsEntryPointThereIsAMessage) {
    Define(kOrderLine);
    m_workstation.UseLibrariesWithout("SkelmondCacheFetchProcessor");
    Refresh();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Get Proc address failed"));
    m_workstation.UseLibrariesWithout("");
    Refresh();
    EXPECT_THAT(m_host.m_listMessages, ElementsAre("Get Proc address failed", "Cannot Load Skelmond.DLL"));
    EXPECT_EQ(m_doc.Rows().Size(), 0U);
}

} // namespace
} // namespace carvelot
