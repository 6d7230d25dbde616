#include "LogGenerator.h"

#include <array>
#include <cstdio>
#include <ostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot::bench {

namespace {

constexpr std::array<std::string_view, 24> kTables = {
    "F0005",  "F0006", "F0010", "F0101", "F0111",  "F0115", "F0116", "F0902",
    "F0911",  "F4006", "F4072", "F4101", "F4102",  "F4104", "F4105", "F4106",
    "F41021", "F4201", "F4209", "F4211", "F42119", "F4301", "F4311", "F49211"};

constexpr std::array<std::string_view, 24> kFunctions = {
    "F4211FSBeginDoc",      "F4211FSEditLine",
    "F4211EditLine",        "F4211FSEndDoc",
    "F4211ClearWorkFile",   "F4211GetLineDefaults",
    "F4201EditHeader",      "ValidateTransactionDate",
    "GetAuditInfo",         "GetItemMasterDescUOM",
    "VerifyAndGetItemXref", "CalculateSalesPriceAndCost",
    "ConvertUnitOfMeasure", "GetBranchPlantConstants",
    "CheckCreditHold",      "RetrieveCurrencyExchangeRate",
    "X0010GetNextNumber",   "GetUDC",
    "FormatAddress",        "CommitInventory",
    "ReleaseOrderLine",     "WorkWithPriceHistory",
    "TaxCalculation",       "F0911FSBeginDoc"};

constexpr std::array<std::string_view, 20> kParameters = {
    "szBranchPlant",     "mnAddressNumber",   "mnShortItemNumber", "szIdentifier2ndItem",
    "mnQuantityOrdered", "szUnitOfMeasure",   "mnUnitPrice",       "jdTransactionDate",
    "szOrderType",       "mnOrderNumber",     "szCompanyKey",      "mnLineNumber",
    "cErrorCode",        "cSuppressErrorMsg", "szCurrencyCode",    "szCostCenter",
    "mnJobNumber",       "szProgramId",       "szUserId",          "cActionCode"};

constexpr std::array<std::string_view, 8> kUsers = {"JSMITH", "MKOHL",   "APATEL",  "LROSSI",
                                                    "70041",  "SVC-EDI", "TNGUYEN", "BOKAFOR"};

constexpr std::array<std::string_view, 6> kApplications = {"P4210", "P42101", "P4310",
                                                           "P4112", "P0411",  "P03B2002"};

constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// Text that goes out in blocks, and chance.
class CWriter {
public:
    CWriter(std::ostream& out, std::uint64_t size, std::uint64_t seed)
        : m_out(out), m_nSize(size), m_random(seed) {}
    ~CWriter() { m_out.write(m_block.data(), static_cast<std::streamsize>(m_block.size())); }
    CWriter(const CWriter&) = delete;
    CWriter& operator=(const CWriter&) = delete;

    bool IsDone() const { return m_nWritten >= m_nSize; }

    // Not a distribution of the standard library: those differ from one to the next.
    std::uint32_t Below(std::uint32_t limit) {
        return static_cast<std::uint32_t>((m_random() >> 11U) % limit);
    }
    bool Chance(std::uint32_t percent) { return Below(100) < percent; }
    template <class List> std::string_view Pick(const List& list) {
        return list[Below(static_cast<std::uint32_t>(list.size()))];
    }

    void Line(std::string_view line) {
        m_block.append(line).push_back('\n');
        m_nWritten += line.size() + 1;
        if (m_block.size() > kBlock) {
            m_out.write(m_block.data(), static_cast<std::streamsize>(m_block.size()));
            m_block.clear();
        }
    }

private:
    static constexpr std::size_t kBlock = 1U << 20U;

    std::ostream& m_out;
    std::uint64_t m_nSize;
    std::uint64_t m_nWritten = 0;
    std::mt19937_64 m_random;
    std::string m_block;
};

template <class... Args> std::string Format(const char* format, Args... args) {
    char buffer[1024];
    const int length = std::snprintf(buffer, sizeof buffer, format, args...);
    return {buffer, static_cast<std::size_t>(length)};
}

std::string Hex(CWriter& writer) { return Format("%08x", writer.Below(0xFFFFFFFF)); }

// A clock that starts in the morning and mostly takes small steps.
class CClock {
public:
    void Advance(CWriter& writer) {
        m_nMicroseconds += 20 + writer.Below(900);
        if (writer.Below(4000) == 0) {
            m_nMicroseconds += 1'200'000 + writer.Below(6'000'000);
        }
        // Ten hours of log, then another day's: the date plays no part in a log's times.
        if (m_nMicroseconds > kLast) {
            m_nMicroseconds = kFirst;
            m_nDay = m_nDay % 28 + 1;
        }
    }
    std::string Microseconds() const {
        return Format("%02u:%02u:%02u.%06u", Hours(), Minutes(), Seconds(), Fraction());
    }
    std::string Milliseconds() const {
        return Format("%02u:%02u:%02u,%03u", Hours(), Minutes(), Seconds(), Fraction() / 1000);
    }
    unsigned Day() const { return m_nDay; }
    std::string_view Month() const { return kMonths[8]; }

private:
    static constexpr std::uint64_t kFirst = 8ULL * 3600 * 1'000'000;
    static constexpr std::uint64_t kLast = 18ULL * 3600 * 1'000'000;

    unsigned Hours() const { return static_cast<unsigned>(m_nMicroseconds / 3'600'000'000ULL); }
    unsigned Minutes() const { return static_cast<unsigned>(m_nMicroseconds / 60'000'000 % 60); }
    unsigned Seconds() const { return static_cast<unsigned>(m_nMicroseconds / 1'000'000 % 60); }
    unsigned Fraction() const { return static_cast<unsigned>(m_nMicroseconds % 1'000'000); }

    std::uint64_t m_nMicroseconds = kFirst;
    unsigned m_nDay = 3;
};

struct DebugThread {
    unsigned process;
    unsigned thread;
    std::string label;
    std::string_view user;
    std::string_view application;
    std::vector<std::string_view> calls; // those open now
};

class CDebugLog {
public:
    explicit CDebugLog(CWriter& writer) : m_writer(writer) {
        for (unsigned process = 0; process < 4; ++process) {
            for (unsigned thread = 0; thread < 3 + process; ++thread) {
                const std::string_view user = writer.Pick(kUsers);
                const std::string_view application = writer.Pick(kApplications);
                std::string label = thread == 0   ? std::string("MAIN_THREAD")
                                    : thread == 1 ? std::string("WRK:Starting jdeCallObject")
                                                  : std::string("WRK:")
                                                        .append(user)
                                                        .append("_")
                                                        .append(Hex(writer))
                                                        .append("_")
                                                        .append(application);
                label.resize(std::max<std::size_t>(38, label.size() + 1), ' ');
                m_threads.push_back({2100 + process * 1204,
                                     1300 + thread * 836 + process * 20,
                                     std::move(label),
                                     user,
                                     application,
                                     {}});
            }
        }
    }

    void Write() {
        while (!m_writer.IsDone()) {
            m_pThread = &m_threads[m_writer.Below(static_cast<std::uint32_t>(m_threads.size()))];
            for (std::uint32_t steps = 1 + m_writer.Below(12); steps > 0 && !m_writer.IsDone(); --steps) {
                Step();
            }
        }
    }

private:
    void Put(std::string_view text) {
        m_clock.Advance(m_writer);
        m_writer.Line(Format("%s %2u %s - %u/%u ", m_clock.Month().data(), m_clock.Day(),
                             m_clock.Microseconds().c_str(), m_pThread->process, m_pThread->thread)
                          .append(m_pThread->label)
                          .append(text));
    }

    void Step() {
        const std::uint32_t dice = m_writer.Below(100);
        // Real calls nest a dozen levels deep and no more.
        if (dice < 14 && m_pThread->calls.size() < 12) {
            Call();
        } else if (dice < 28) {
            Return();
        } else if (dice < 50) {
            Query();
        } else if (dice < 62) {
            Cache();
        } else if (dice < 66) {
            EventRules();
        } else if (dice < 67) {
            Error();
        } else if (dice < 69) {
            m_writer.Line("   the value that was passed is out of range for this environment and was set to "
                          "its default");
        } else {
            Jdb();
        }
    }

    void Call() {
        const std::string_view function = m_writer.Pick(kFunctions);
        const std::string_view caller =
            m_pThread->calls.empty() ? std::string_view("Level 1") : m_pThread->calls.back();
        Put(std::string("Calling Business function ")
                .append(function)
                .append(" from ")
                .append(caller)
                .append(" for ")
                .append(m_pThread->user)
                .append(". Application Name [")
                .append(m_pThread->application)
                .append("], Version [ZJDE0001] (BSFNLevel = ")
                .append(std::to_string(m_pThread->calls.size() + 1))
                .append(")"));
        m_pThread->calls.push_back(function);
        Parameters(" IN->[", 3 + m_writer.Below(8));
    }

    void Parameters(const char* mark, std::uint32_t count) {
        for (std::uint32_t i = 1; i <= count; ++i) {
            const std::string_view name = m_writer.Pick(kParameters);
            Put(Format("%s%3u] %-32s [%12u] ", mark, i, name.data(), m_writer.Below(9'999'999)));
        }
    }

    void Return() {
        if (m_pThread->calls.empty()) {
            Jdb();
            return;
        }
        Parameters(" OUT->[", m_writer.Below(4));
        const std::uint32_t code = m_writer.Chance(95) ? 0 : 1 + m_writer.Below(2);
        Put(Format("Return value is %u for %s. (BSFNLevel = %zu)", code, m_pThread->calls.back().data(),
                   m_pThread->calls.size()));
        m_pThread->calls.pop_back();
    }

    void Query() {
        const std::string_view table = m_writer.Pick(kTables);
        const std::string request = Hex(m_writer);
        Put(std::string("Entering JDB_SelectKeyed(Table = ").append(table).append(")"));
        const std::uint32_t kind = m_writer.Below(10);
        std::string statement;
        if (kind < 7) {
            statement = Format(
                " SELECT  DISTINCT SDKCOO, SDDOCO, SDDCTO, SDLNID, SDMCU, SDAN8, SDITM, SDUORG, SDUPRC "
                "FROM PRODDTA.%s  WHERE  ( SDKCOO = '%05u' AND SDDOCO = %u.000000 AND SDDCTO = 'SO' ) ",
                table.data(), m_writer.Below(99), m_writer.Below(999'999));
        } else if (kind < 8) {
            statement =
                Format("INSERT INTO PRODDTA.%s (SLKCOO, SLDOCO, SLDCTO, SLLNID, SLUORG) VALUES ('%05u', "
                       "%u.000000, 'SO', %u.000000, %u.000000)",
                       table.data(), m_writer.Below(99), m_writer.Below(999'999), m_writer.Below(99'000),
                       m_writer.Below(5'000));
        } else if (kind < 9) {
            statement =
                Format("UPDATE PRODDTA.%s SET SDUORG = %u.000000, SDUPMJ = 124%03u  WHERE  ( SDDOCO = "
                       "%u.000000 ) ",
                       table.data(), m_writer.Below(5'000), 1 + m_writer.Below(365), m_writer.Below(999'999));
        } else {
            statement = Format(
                "SELECT  T0.ABAN8, T0.ABALPH, T1.ALADD1 FROM PRODDTA.F0101 T0, PRODDTA.%s T1  WHERE  ( "
                "T0.ABAN8 = T1.ALAN8 AND T0.ABAN8 = %u.000000 ) ",
                table.data(), m_writer.Below(99'999));
        }
        Put(Format("ORACLE DBInitReq conn=03F46130 requ=%s host (prod) new", request.c_str()));
        Put("Entering DBPerformRequest");
        Put(statement);
        if (m_writer.Below(400) == 0) {
            m_clock.Advance(m_writer);
        }
        Put("Exiting DBPerformRequest");
        for (std::uint32_t rows = m_writer.Below(4); rows > 0; --rows) {
            Put("Entering JDB_Fetch");
            Put(Format("ORACLE DBFetch conn=03F46130 requ=%s maxrows=100", request.c_str()));
            Put("Fetched the record");
        }
        Put(Format("Exiting JDB_SelectKeyed(Table = %s) (UserHandle 2BB4BE18) (hRequest %s) with Success",
                   table.data(), request.c_str()));
    }

    void Cache() {
        const std::string handle = Format("%08x", 0xe5762600U + m_writer.Below(40));
        const std::string cursor = Hex(m_writer);
        Put("Entering jdeCacheInit - Name:[7597" + std::to_string(m_writer.Below(30)) + "DataMapCDISTCache]");
        Put("    Found existing cache, total references:[2]");
        Confirm(handle, "INIT");
        Put("    Open Cursor Success                     hCursor:[" + cursor + "] hCache:[" + handle + "]");
        Confirm(handle, "OPEN");
        Put("Entering jdeCacheFetchPosition              hCursor:[" + cursor + "] hCache:[" + handle + "]");
        Confirm(handle, "FETCH");
        Put("Entering jdeCacheCloseCursor   hCursor:[" + cursor + "] hCache:[" + handle + "]");
        Confirm(handle, "CLOSE");
    }

    void Confirm(const std::string& handle, const char* what) {
        Put(Format("  hCache:[%s] Nm:[975976968DataMapCDISTCache] Recs:%u Curs:1 Hnds:1 Cchs:141 %s",
                   handle.c_str(), m_writer.Below(50), what));
    }

    void EventRules() {
        const std::string event =
            Format("Row Exit & Changed - Asynch\tForm: W%sA\t", m_pThread->application.data() + 1);
        Put("RT: >>>Beginning ER:\t" + event);
        Jdb();
        Put("RT: <<<Finished  ER:\t" + event);
    }

    void Error() {
        switch (m_writer.Below(3)) {
        case 0:
            Put("JDB9900401 - Failed to execute db request");
            break;
        case 1:
            Put("ERROR: item number is not in the branch plant record");
            break;
        default:
            Put("OCI0000179 - Error - ORA-00001: unique constraint (PRODDTA.F4211_PK) violated");
            break;
        }
    }

    void Jdb() {
        switch (m_writer.Below(5)) {
        case 0:
            Put("Entering JDB_OpenTable(Table = " + std::string(m_writer.Pick(kTables)) + ")");
            break;
        case 1:
            Put("Exiting JDB_OpenTable(Table = " + std::string(m_writer.Pick(kTables)) +
                ") (UserHandle 2BB4BE18) (hRequest 0D5695E0) with Success");
            break;
        case 2:
            Put("Entering JDB_InitUser with commit mode 0.");
            break;
        case 3:
            Put("No More Data found");
            break;
        default:
            Put("Exiting JDB_CloseTable (hRequest " + Hex(m_writer) + ") with Success  ");
            break;
        }
    }

    CWriter& m_writer;
    CClock m_clock;
    std::vector<DebugThread> m_threads;
    DebugThread* m_pThread = nullptr;
};

class CJASLog {
public:
    explicit CJASLog(CWriter& writer) : m_writer(writer) {}

    void Write() {
        while (!m_writer.IsDone()) {
            Step();
        }
    }

private:
    void Put(std::string_view level, std::string_view component, std::string_view text) {
        m_clock.Advance(m_writer);
        const std::string source = std::string("[").append(component).append("]");
        m_writer.Line(Format("%u %s 2016 %s [%-6s] %s- %-18s", m_clock.Day(), m_clock.Month().data(),
                             m_clock.Milliseconds().c_str(), level.data(),
                             m_user.empty() ? "" : std::string(m_user).append(" ").c_str(), source.c_str())
                          .append(text));
    }

    void Step() {
        m_user = m_writer.Chance(15) ? std::string_view{} : m_writer.Pick(kUsers);
        const std::uint32_t dice = m_writer.Below(100);
        if (dice < 35) {
            Prepared();
        } else if (dice < 50) {
            const std::string_view table = m_writer.Pick(kTables);
            Put("APP", "RUNTIME",
                std::string("Object Called: ").append(table).append(".").append(table).append("_CURRENCY"));
        } else if (dice < 75) {
            const std::string_view application = m_writer.Pick(kApplications);
            const std::string form =
                std::string(application).append("_W").append(application.substr(1)).append("A");
            switch (m_writer.Below(3)) {
            case 0:
                Put("APP", "RUNTIME", form + "_EZGUI004, Event Starts :Post Dialog is Initialized");
                break;
            case 1:
                Put("APP", "RUNTIME",
                    form + " assignment of FC Order Number at ER Line " +
                        std::to_string(m_writer.Below(400)));
                break;
            default:
                Put("APP", "RUNTIME", form + "_EZGUI004, Event Ends:Post Dialog is Initialized");
                break;
            }
        } else if (dice < 94) {
            Put("DEBUG", "JASBASE",
                "Session cache lookup for key " + Hex(m_writer) + " took 0 ms, 14 entries are live  ");
        } else if (dice < 98) {
            Put("WARN", "BASE", "Virtual client connection pool is at 80 percent of its capacity");
        } else {
            Put("SEVERE", "JDBJ", "Failed to execute query: the connection was closed by the server");
            m_writer.Line("com.example.jdbj.DataException: connection reset");
            for (std::uint32_t depth = 4 + m_writer.Below(10); depth > 0; --depth) {
                m_writer.Line("\tat com.example.jdbj.service.DataLayer.execute(DataLayer.java:" +
                              std::to_string(m_writer.Below(900)) + ")");
            }
        }
    }

    void Prepared() {
        const std::string_view table = m_writer.Pick(kTables);
        Put("DEBUG", "JDBJ",
            std::string("SELECT SDKCOO, SDDOCO, SDDCTO, SDLNID, SDMCU, SDAN8 FROM PRODDTA.")
                .append(table)
                .append(" WHERE ( SDKCOO = ? AND SDDOCO = ? AND SDDCTO = ? ) ORDER BY SDLNID"));
        Put("DEBUG", "JDBJ", "SQL statement parameter marker values are :");
        Put("DEBUG", "JDBJ", Format("Param1: %05u_Types.VARCHAR,", m_writer.Below(99)));
        Put("DEBUG", "JDBJ", Format("Param2: %u_Types.DECIMAL,", m_writer.Below(999'999)));
        Put("DEBUG", "JDBJ", "Param3: SO_Types.VARCHAR,");
    }

    CWriter& m_writer;
    CClock m_clock;
    std::string_view m_user;
};

} // namespace

void WriteDebugLog(std::ostream& out, std::uint64_t size, std::uint64_t seed) {
    CWriter writer(out, size, seed);
    CDebugLog(writer).Write();
}

void WriteJASLog(std::ostream& out, std::uint64_t size, std::uint64_t seed) {
    CWriter writer(out, size, seed);
    CJASLog(writer).Write();
}

} // namespace carvelot::bench
