#include "simulator/Scenario.h"

#include "simulator/Rows.h"

#include <cstdio>
#include <cstring>

namespace simulator {

namespace {

constexpr const char* kCacheNames[] = {"OrderHeader", "OrderLines"};
constexpr std::int32_t kRowsKept = 40;

std::string Format(const char* format, auto... arguments) {
    char text[1024];
    std::snprintf(text, sizeof text, format, arguments...);
    return text;
}

std::string Parameter(bool out, int index, const char* name, const std::string& value) {
    return Format("%s[%3d] %-32s [%s] ", out ? "OUT->" : " IN->", index, name, value.c_str());
}

unsigned HandleOf(const CCacheState& cache) { return static_cast<unsigned>(cache.m_nHandle); }

} // namespace

void CScenario::Add(std::string text, std::function<void()> action) {
    m_listSteps.push_back({ESpeaker::Worker, std::move(text), std::move(action)});
}

void CScenario::Call(const std::string& function, const std::string& caller, int level) {
    Add(Format("Calling Business function %s from %s for %s. Application Name [P4210], Version [ZJDE0001] "
               "(BSFNLevel = %d)",
               function.c_str(), caller.c_str(), m_strUser.c_str(), level));
}

void CScenario::Return(const std::string& function, int code, int level) {
    Add(Format("Return value is %d for %s. (BSFNLevel = %d)", code, function.c_str(), level));
}

// Attaches to the cache, or makes it when it is not there.
void CScenario::UseCache(std::size_t cacheNumber) {
    CCacheState& cache = m_caches[cacheNumber];
    const std::string instance = std::to_string(m_nProcess) + kCacheNames[cacheNumber];
    Add("Entering jdeCacheInit - Name:[" + instance + "]");
    if (cache.m_nHandle == 0) {
        cache = {};
        cache.m_nHandle = 0x0A400000U + (m_nProcess & 0xFFFU) * 0x400U + ++m_nHandles % 64 * 0x10U;
        cache.m_nGeneration = m_nClearings;
        cache.m_nRowSize = static_cast<std::int32_t>(cacheNumber == 0 ? OrderHeaderRow(1).size()
                                                                      : OrderLineRow(1, 1).size());
        std::strncpy(cache.m_name, kCacheNames[cacheNumber], sizeof cache.m_name - 1);
        Add(Format("  Created new cache - hCache:[%08X]", HandleOf(cache)),
            [this, cacheNumber, cache] { m_file.WriteCache(cacheNumber, cache); });
        Add(Format("  hCache:[%08X] Nm:[9%s] Recs:0 Curs:0 Hnds:1 Cchs:2 INIT new", HandleOf(cache),
                   instance.c_str()));
    } else {
        Add("    Found existing cache, total references:[2]");
        Add(Format("  hCache:[%08X] Nm:[9%s] Recs:%d Curs:0 Hnds:2 Cchs:2 INIT existing", HandleOf(cache),
                   instance.c_str(), cache.m_nRows));
    }
}

void CScenario::AddCacheRow(std::size_t cacheNumber, std::vector<unsigned char> row) {
    CCacheState& cache = m_caches[cacheNumber];
    const std::string instance = std::to_string(m_nProcess) + kCacheNames[cacheNumber];
    if (cache.m_nRows >= kRowsKept) {
        cache.m_nRows = 0;
        Add("Entering jdeCacheDeleteAll",
            [this, cacheNumber, cache] { m_file.WriteCache(cacheNumber, cache); });
        Add(Format("  hCache:[%08X] Nm:[9%s] Recs:0 Curs:0 Hnds:1 Cchs:2 DELALL", HandleOf(cache),
                   instance.c_str()));
    }
    const auto rowNumber = static_cast<std::size_t>(cache.m_nRows++);
    // The row first, then the number that counts it: a reader sees whole rows only.
    Add("Entering jdeCacheAdd", [this, cacheNumber, rowNumber, cache, row = std::move(row)] {
        m_file.WriteRow(cacheNumber, rowNumber, row);
        m_file.WriteCache(cacheNumber, cache);
    });
    Add(Format("  hCache:[%08X] Nm:[9%s] Recs:%d Curs:0 Hnds:1 Cchs:2 ADD", HandleOf(cache), instance.c_str(),
               cache.m_nRows));
}

void CScenario::FetchCacheRow(std::size_t cacheNumber) {
    const CCacheState& cache = m_caches[cacheNumber];
    const std::string instance = std::to_string(m_nProcess) + kCacheNames[cacheNumber];
    const unsigned cursor = HandleOf(cache) + 0x8U;
    const auto confirm = [&](const char* what) {
        Add(Format("  hCache:[%08X] Nm:[9%s] Recs:%d Curs:1 Hnds:1 Cchs:2 %s", HandleOf(cache),
                   instance.c_str(), cache.m_nRows, what));
    };
    Add(Format("    Open Cursor Success                     hCursor:[%08X] hCache:[%08X]", cursor,
               HandleOf(cache)));
    confirm("OPENCUR");
    Add(Format("Entering jdeCacheFetch   hCursor:[%08X] hCache:[%08X]", cursor, HandleOf(cache)));
    confirm("FETCH");
    Add(Format("Entering jdeCacheCloseCursor   hCursor:[%08X] hCache:[%08X]", cursor, HandleOf(cache)));
    confirm("CLOSECUR");
}

std::vector<CStep> CScenario::NextRound() {
    m_listSteps.clear();
    const std::int32_t orderNumber = ++m_nOrder;
    const std::string order = std::to_string(orderNumber);
    m_listSteps.push_back({ESpeaker::Main, "Entering JDB_InitUser with commit mode 0.", {}});
    Call("F4211FSBeginDoc", "Level 1", 1);
    Add(Parameter(false, 1, "mnCMJobNumber", std::to_string(m_nProcess % 100)));
    Add(Parameter(false, 7, "szCMComputerID", "WORKSTATION"));
    UseCache(0);
    AddCacheRow(0, OrderHeaderRow(orderNumber));
    Add("Entering JDB_OpenTable(Table = F0101)");
    Add(" SELECT ABAN8, ABALPH, ABAT1 FROM PRODDTA.F0101  WHERE  ( ABAN8 = 4242.000000 ) ");
    Add("Fetched the record");
    Add(Parameter(true, 21, "mnOrderNo", order));
    Return("F4211FSBeginDoc", 0, 1);
    const int lines = orderNumber % 3 + 1;
    for (int line = 1; line <= lines; ++line) {
        Call("F4211FSEditLine", "Level 1", 1);
        Add(Parameter(false, 1, "mnCMJobNumber", std::to_string(m_nProcess % 100)));
        Add(Parameter(false, 5, "mnLineNumber", std::to_string(line)));
        Call("VerifyAndGetItemXref", "F4211FSEditLine", 2);
        Add(" SELECT IMITM, IMLITM, IMDSC1 FROM PRODDTA.F4101  WHERE  ( IMLITM = '1001' ) ");
        Add("Fetched the record");
        Return("VerifyAndGetItemXref", 0, 2);
        Call("CalculatePriceAndCosts", "F4211FSEditLine", 2);
        Add(" SELECT COUNCS FROM PRODDTA.F4105  WHERE  ( COITM = 60003 AND COLEDG = '02' ) ");
        // Now and then a price is missing.
        const bool fails = orderNumber % 7 == 0 && line == 1;
        Add(fails ? "No More Data found" : "Fetched the record");
        Return("CalculatePriceAndCosts", fails ? 2 : 0, 2);
        UseCache(1);
        AddCacheRow(1, OrderLineRow(orderNumber, line));
        Return("F4211FSEditLine", fails ? 2 : 0, 1);
    }
    Call("F4211FSEndDoc", "Level 1", 1);
    FetchCacheRow(1);
    Add("INSERT INTO PRODDTA.F4211 (SDDOCO, SDDCTO, SDLNID) VALUES (" + order + ".000000,'SO',1000.000000)");
    Add("UPDATE PRODDTA.F4201 SET SHOTOT=100.000000  WHERE  ( SHDOCO = " + order + ".000000 ) ");
    Return("F4211FSEndDoc", 0, 1);
    m_listSteps.push_back({ESpeaker::Main, "Entering JDB_FreeUser", {}});
    return std::move(m_listSteps);
}

std::vector<CStep> CScenario::Cleared(std::uint32_t clearings) {
    m_listSteps.clear();
    m_nClearings = clearings;
    for (std::size_t cacheNumber = 0; cacheNumber < std::size(m_caches); ++cacheNumber) {
        CCacheState& cache = m_caches[cacheNumber];
        if (cache.m_nHandle == 0) {
            continue;
        }
        Add("Entering jdeCacheTerminateAll");
        Add(Format("  hCache:[%08X] Nm:[9%u%s] Recs:0 Curs:0 Hnds:0 Cchs:2 TERMALL", HandleOf(cache),
                   m_nProcess, kCacheNames[cacheNumber]));
        cache = {};
        m_file.WriteCache(cacheNumber, cache);
    }
    return std::move(m_listSteps);
}

} // namespace simulator
