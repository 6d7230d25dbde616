#include "simulator/Scenario.h"

#include "simulator/Rows.h"

#include <cstdio>
#include <cstring>

namespace simulator {

namespace {

constexpr const char* kCacheNames[] = {"OrderHeader", "OrderLines"};
constexpr std::int32_t kRowsKept = 40;

std::string Format(const char* pszFormat, auto... arguments) {
    char text[1024];
    std::snprintf(text, sizeof text, pszFormat, arguments...);
    return text;
}

std::string Parameter(bool bOut, int nIndex, const char* pszName, const std::string& strValue) {
    return Format("%s[%3d] %-32s [%s] ", bOut ? "OUT->" : " IN->", nIndex, pszName, strValue.c_str());
}

unsigned HandleOf(const CCacheState& cache) { return static_cast<unsigned>(cache.m_nHandle); }

} // namespace

void CScenario::Add(std::string strText, std::function<void()> fnDo) {
    m_listSteps.push_back({ESpeaker::Worker, std::move(strText), std::move(fnDo)});
}

void CScenario::Call(const std::string& strFunction, const std::string& strCaller, int nLevel) {
    Add(Format("Calling Business function %s from %s for %s. Application Name [P4210], Version [ZJDE0001] "
               "(BSFNLevel = %d)",
               strFunction.c_str(), strCaller.c_str(), m_strUser.c_str(), nLevel));
}

void CScenario::Return(const std::string& strFunction, int nCode, int nLevel) {
    Add(Format("Return value is %d for %s. (BSFNLevel = %d)", nCode, strFunction.c_str(), nLevel));
}

// Attaches to the cache, or makes it when it is not there.
void CScenario::UseCache(std::size_t nCache) {
    CCacheState& cache = m_caches[nCache];
    const std::string strInstance = std::to_string(m_nProcess) + kCacheNames[nCache];
    Add("Entering jdeCacheInit - Name:[" + strInstance + "]");
    if (cache.m_nHandle == 0) {
        cache = {};
        cache.m_nHandle = 0x0A400000U + (m_nProcess & 0xFFFU) * 0x400U + ++m_nHandles % 64 * 0x10U;
        cache.m_nGeneration = m_nClearings;
        cache.m_nRowSize =
            static_cast<std::int32_t>(nCache == 0 ? OrderHeaderRow(1).size() : OrderLineRow(1, 1).size());
        std::strncpy(cache.m_name, kCacheNames[nCache], sizeof cache.m_name - 1);
        Add(Format("  Created new cache - hCache:[%08X]", HandleOf(cache)),
            [this, nCache, cache] { m_file.WriteCache(nCache, cache); });
        Add(Format("  hCache:[%08X] Nm:[9%s] Recs:0 Curs:0 Hnds:1 Cchs:2 INIT new", HandleOf(cache),
                   strInstance.c_str()));
    } else {
        Add("    Found existing cache, total references:[2]");
        Add(Format("  hCache:[%08X] Nm:[9%s] Recs:%d Curs:0 Hnds:2 Cchs:2 INIT existing", HandleOf(cache),
                   strInstance.c_str(), cache.m_nRows));
    }
}

void CScenario::AddCacheRow(std::size_t nCache, std::vector<unsigned char> row) {
    CCacheState& cache = m_caches[nCache];
    const std::string strInstance = std::to_string(m_nProcess) + kCacheNames[nCache];
    if (cache.m_nRows >= kRowsKept) {
        cache.m_nRows = 0;
        Add("Entering jdeCacheDeleteAll", [this, nCache, cache] { m_file.WriteCache(nCache, cache); });
        Add(Format("  hCache:[%08X] Nm:[9%s] Recs:0 Curs:0 Hnds:1 Cchs:2 DELALL", HandleOf(cache),
                   strInstance.c_str()));
    }
    const auto nRow = static_cast<std::size_t>(cache.m_nRows++);
    // The row first, then the number that counts it: a reader sees whole rows only.
    Add("Entering jdeCacheAdd", [this, nCache, nRow, cache, row = std::move(row)] {
        m_file.WriteRow(nCache, nRow, row);
        m_file.WriteCache(nCache, cache);
    });
    Add(Format("  hCache:[%08X] Nm:[9%s] Recs:%d Curs:0 Hnds:1 Cchs:2 ADD", HandleOf(cache),
               strInstance.c_str(), cache.m_nRows));
}

void CScenario::FetchCacheRow(std::size_t nCache) {
    const CCacheState& cache = m_caches[nCache];
    const std::string strInstance = std::to_string(m_nProcess) + kCacheNames[nCache];
    const unsigned nCursor = HandleOf(cache) + 0x8U;
    const auto confirm = [&](const char* pszWhat) {
        Add(Format("  hCache:[%08X] Nm:[9%s] Recs:%d Curs:1 Hnds:1 Cchs:2 %s", HandleOf(cache),
                   strInstance.c_str(), cache.m_nRows, pszWhat));
    };
    Add(Format("    Open Cursor Success                     hCursor:[%08X] hCache:[%08X]", nCursor,
               HandleOf(cache)));
    confirm("OPENCUR");
    Add(Format("Entering jdeCacheFetch   hCursor:[%08X] hCache:[%08X]", nCursor, HandleOf(cache)));
    confirm("FETCH");
    Add(Format("Entering jdeCacheCloseCursor   hCursor:[%08X] hCache:[%08X]", nCursor, HandleOf(cache)));
    confirm("CLOSECUR");
}

std::vector<CStep> CScenario::NextRound() {
    m_listSteps.clear();
    const std::int32_t nOrder = ++m_nOrder;
    const std::string strOrder = std::to_string(nOrder);
    m_listSteps.push_back({ESpeaker::Main, "Entering JDB_InitUser with commit mode 0.", {}});
    Call("F4211FSBeginDoc", "Level 1", 1);
    Add(Parameter(false, 1, "mnCMJobNumber", std::to_string(m_nProcess % 100)));
    Add(Parameter(false, 7, "szCMComputerID", "WORKSTATION"));
    UseCache(0);
    AddCacheRow(0, OrderHeaderRow(nOrder));
    Add("Entering JDB_OpenTable(Table = F0101)");
    Add(" SELECT ABAN8, ABALPH, ABAT1 FROM PRODDTA.F0101  WHERE  ( ABAN8 = 4242.000000 ) ");
    Add("Fetched the record");
    Add(Parameter(true, 21, "mnOrderNo", strOrder));
    Return("F4211FSBeginDoc", 0, 1);
    const int nLines = nOrder % 3 + 1;
    for (int nLine = 1; nLine <= nLines; ++nLine) {
        Call("F4211FSEditLine", "Level 1", 1);
        Add(Parameter(false, 1, "mnCMJobNumber", std::to_string(m_nProcess % 100)));
        Add(Parameter(false, 5, "mnLineNumber", std::to_string(nLine)));
        Call("VerifyAndGetItemXref", "F4211FSEditLine", 2);
        Add(" SELECT IMITM, IMLITM, IMDSC1 FROM PRODDTA.F4101  WHERE  ( IMLITM = '1001' ) ");
        Add("Fetched the record");
        Return("VerifyAndGetItemXref", 0, 2);
        Call("CalculatePriceAndCosts", "F4211FSEditLine", 2);
        Add(" SELECT COUNCS FROM PRODDTA.F4105  WHERE  ( COITM = 60003 AND COLEDG = '02' ) ");
        // Now and then a price is missing.
        const bool bFails = nOrder % 7 == 0 && nLine == 1;
        Add(bFails ? "No More Data found" : "Fetched the record");
        Return("CalculatePriceAndCosts", bFails ? 2 : 0, 2);
        UseCache(1);
        AddCacheRow(1, OrderLineRow(nOrder, nLine));
        Return("F4211FSEditLine", bFails ? 2 : 0, 1);
    }
    Call("F4211FSEndDoc", "Level 1", 1);
    FetchCacheRow(1);
    Add("INSERT INTO PRODDTA.F4211 (SDDOCO, SDDCTO, SDLNID) VALUES (" + strOrder +
        ".000000,'SO',1000.000000)");
    Add("UPDATE PRODDTA.F4201 SET SHOTOT=100.000000  WHERE  ( SHDOCO = " + strOrder + ".000000 ) ");
    Return("F4211FSEndDoc", 0, 1);
    m_listSteps.push_back({ESpeaker::Main, "Entering JDB_FreeUser", {}});
    return std::move(m_listSteps);
}

std::vector<CStep> CScenario::Cleared(std::uint32_t nClearings) {
    m_listSteps.clear();
    m_nClearings = nClearings;
    for (std::size_t nCache = 0; nCache < std::size(m_caches); ++nCache) {
        CCacheState& cache = m_caches[nCache];
        if (cache.m_nHandle == 0)
            continue;
        Add("Entering jdeCacheTerminateAll");
        Add(Format("  hCache:[%08X] Nm:[9%u%s] Recs:0 Curs:0 Hnds:0 Cchs:2 TERMALL", HandleOf(cache),
                   m_nProcess, kCacheNames[nCache]));
        cache = {};
        m_file.WriteCache(nCache, cache);
    }
    return std::move(m_listSteps);
}

} // namespace simulator
