#include "sqlite/LogDatabase.h"

#include "platform/AtomicFile.h"
#include "platform/SharedFile.h"
#include "sqlite/RowsModule.h"
#include "sqlite/Schema.h"

#include <cerrno>
#include <cstdio>
#include <future>
#include <optional>
#include <system_error>

namespace carvelot {

namespace {

struct DatabaseFailure {
    std::string what;
    int status = SQLITE_ERROR; // of the library
};

bool IsNoMemory(int status) { return (status & 0xFF) == SQLITE_NOMEM || status == SQLITE_IOERR_NOMEM; }

// A connection. What fails is thrown as DatabaseFailure.
class CConnection {
public:
    CConnection(const std::string& path, int flags) {
        // One thread at a time works with it, so that the library need not guard itself.
        const int status = sqlite3_open_v2(path.c_str(), &m_pDatabase, flags | SQLITE_OPEN_NOMUTEX, nullptr);
        if (status != SQLITE_OK) {
            const std::string what = sqlite3_errmsg(m_pDatabase);
            sqlite3_close(m_pDatabase);
            if (IsNoMemory(status)) {
                throw std::bad_alloc();
            }
            throw DatabaseFailure{what, status};
        }
        sqlite3_extended_result_codes(m_pDatabase, 1);
    }
    ~CConnection() { sqlite3_close(m_pDatabase); }
    CConnection(const CConnection&) = delete;
    CConnection& operator=(const CConnection&) = delete;

    sqlite3* Get() const { return m_pDatabase; }
    void Check(int status) const {
        if (IsNoMemory(status)) {
            throw std::bad_alloc();
        }
        if (status != SQLITE_OK && status != SQLITE_DONE && status != SQLITE_ROW) {
            throw DatabaseFailure{sqlite3_errmsg(m_pDatabase), status};
        }
    }
    void Run(const std::string& sql) const {
        Check(sqlite3_exec(m_pDatabase, sql.c_str(), nullptr, nullptr, nullptr));
    }

private:
    sqlite3* m_pDatabase = nullptr;
};

class CStatement {
public:
    CStatement(const CConnection& connection, const char* sql) : m_connection(connection) {
        connection.Check(sqlite3_prepare_v2(connection.Get(), sql, -1, &m_pStatement, nullptr));
    }
    ~CStatement() { sqlite3_finalize(m_pStatement); }
    CStatement(const CStatement&) = delete;
    CStatement& operator=(const CStatement&) = delete;

    CStatement& Bind(const Cell& cell) {
        const int place = ++m_nBound;
        if (const auto* const number = std::get_if<std::int64_t>(&cell)) {
            m_connection.Check(sqlite3_bind_int64(m_pStatement, place, *number));
        } else if (const auto* const real = std::get_if<double>(&cell)) {
            m_connection.Check(sqlite3_bind_double(m_pStatement, place, *real));
        } else if (const auto* const text = std::get_if<std::string_view>(&cell)) {
            std::string scratch;
            const std::string_view valid = ValidText(*text, scratch);
            m_connection.Check(sqlite3_bind_text64(m_pStatement, place, valid.empty() ? "" : valid.data(),
                                                   valid.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
        }
        return *this;
    }
    // False when there is no further row.
    bool Step() {
        const int status = sqlite3_step(m_pStatement);
        m_connection.Check(status);
        return status == SQLITE_ROW;
    }
    std::int64_t Number(int column) const { return sqlite3_column_int64(m_pStatement, column); }

private:
    const CConnection& m_connection;
    sqlite3_stmt* m_pStatement = nullptr;
    int m_nBound = 0;
};

std::int64_t NumberOf(const CConnection& connection, const char* sql) {
    CStatement statement(connection, sql);
    return statement.Step() ? statement.Number(0) : 0;
}

// Bytes of a file, 0 of one that is not there. Throws for one that can't be read, of which nobody knows whose
// it is.
std::uint64_t SizeOfFile(const std::string& path) {
    int error = 0;
    const platform::SharedFile file = platform::SharedFile::OpenForReading(path, &error);
    if (!file && error != ENOENT) {
        throw DatabaseFailure{std::system_category().message(error)};
    }
    return file ? file.Size() : 0;
}

constexpr const char* kNotOurs = "This is no database of logs, and is left as it is.";
constexpr const char* kNewer = "This database was written by a newer version, and is left as it is.";
constexpr const char* kOlder =
    "This database was written by an older version, and is left as it is: write it anew, without --append.";
constexpr const char* kInUse = "Another program is writing to this database.";

// Whether there are logs in the file. Throws where it is none of ours, or none that can be added to.
bool HoldsLogs(const std::string& path, bool append) {
    if (SizeOfFile(path) == 0) {
        return false;
    }
    for (const char* const ending : {"-wal", "-journal"}) {
        if (SizeOfFile(path + ending) != 0) {
            throw DatabaseFailure{kInUse};
        }
    }
    std::int64_t application = 0;
    std::int64_t version = 0;
    try {
        const CConnection existing(path, SQLITE_OPEN_READONLY);
        application = NumberOf(existing, "PRAGMA application_id");
        version = NumberOf(existing, "PRAGMA user_version");
        // Reads the schema, which a damaged file has not.
        NumberOf(existing, "SELECT count(*) FROM sqlite_schema");
    } catch (const DatabaseFailure& failure) {
        // What can't be read just now may be ours.
        const int kind = failure.status & 0xFF;
        if (kind == SQLITE_NOTADB || kind == SQLITE_CORRUPT || kind == SQLITE_ERROR) {
            throw DatabaseFailure{kNotOurs};
        }
        if (kind == SQLITE_BUSY || kind == SQLITE_LOCKED) {
            throw DatabaseFailure{kInUse};
        }
        throw;
    }
    if (application != kApplicationId) {
        throw DatabaseFailure{kNotOurs};
    }
    if (version > kSchemaVersion) {
        throw DatabaseFailure{kNewer};
    }
    if (append && version < kSchemaVersion) {
        throw DatabaseFailure{kOlder};
    }
    return true;
}

void CopyAll(const std::string& from, const CConnection& to) {
    const CConnection source(from, SQLITE_OPEN_READONLY);
    sqlite3_backup* const backup = sqlite3_backup_init(to.Get(), "main", source.Get(), "main");
    if (backup == nullptr) {
        to.Check(sqlite3_errcode(to.Get()));
        return;
    }
    const int status = sqlite3_backup_step(backup, -1);
    sqlite3_backup_finish(backup);
    if (status == SQLITE_BUSY || status == SQLITE_LOCKED) {
        throw DatabaseFailure{kInUse};
    }
    to.Check(status);
}

} // namespace

struct CLogDatabase::State {
    platform::AtomicFile file;
    std::unique_ptr<CConnection> connection;
    std::unique_ptr<CRowsModules> modules;

    ~State() { Close(); }
    // The connection knows the modules.
    void Close() {
        connection.reset();
        modules.reset();
    }

    void Create(const std::string& path, bool append) {
        const bool holdsLogs = HoldsLogs(path, append);
        int error = 0;
        file = platform::AtomicFile::Create(path, &error);
        const std::string place = file.LeaveToOther();
        if (!file || place.empty()) {
            throw DatabaseFailure{error != 0 ? std::system_category().message(error)
                                             : "A database can't be written here."};
        }
        connection = std::make_unique<CConnection>(place, SQLITE_OPEN_READWRITE);
        // Until it takes the other's place nobody but us knows the file: there is nothing to roll back, and
        // it is brought to the disk once, at its end.
        connection->Run(
            "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA locking_mode = EXCLUSIVE;"
            "PRAGMA page_size = 32768; PRAGMA cache_size = -16000");
        if (append && holdsLogs) {
            CopyAll(path, *connection);
            connection->Run(kSchemaWithoutIndexes);
        } else {
            connection->Run("PRAGMA application_id = " + std::to_string(kApplicationId) +
                            "; PRAGMA user_version = " + std::to_string(kSchemaVersion));
            connection->Run(kSchemaTables);
            connection->Run(kSchemaViews);
        }
        modules = std::make_unique<CRowsModules>(connection->Get());
        connection->Run("BEGIN");
    }

    // The number that the log gets, under which nothing stands any more.
    std::int64_t MakeRoom(const CTableSource& source) const {
        CStatement known(*connection, "SELECT id FROM logs WHERE host = ? AND path = ?");
        known.Bind(std::string_view(source.Options().host)).Bind(std::string_view(source.Log()));
        if (!known.Step()) {
            return NumberOf(*connection, "SELECT coalesce(max(id), 0) + 1 FROM logs");
        }
        const std::int64_t id = known.Number(0);
        for (const StoredTable& table : StoredTables()) {
            connection->Run(std::string("DELETE FROM ").append(table.name).append(" WHERE log = ") +
                            std::to_string(id));
        }
        connection->Run("DELETE FROM logs WHERE id = " + std::to_string(id));
        return id;
    }

    void AddLine(const CTableSource& source, const CStoredLog& stored) const {
        const CCarvelotDoc& session = source.Session();
        const std::optional<std::int64_t> day = source.FirstDay();
        const std::optional<RecordIndex> first = source.Explored().clock.FirstRecord();
        const std::string dayText = day ? source.DayText(*day) : std::string();
        const auto whole = [](std::uint64_t number) { return Cell(static_cast<std::int64_t>(number)); };
        char hash[17];
        std::snprintf(hash, sizeof hash, "%016llx", static_cast<unsigned long long>(stored.Hash()));
        CStatement line(*connection, "INSERT INTO logs VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
        line.Bind(stored.Id())
            .Bind(std::string_view(source.Log()))
            .Bind(std::string_view(source.Options().host))
            .Bind(std::string_view(session.m_nLogFormat == LOG_FORMAT_JAS ? "jas" : "debug"))
            .Bind(whole(session.m_nBytes))
            .Bind(std::string_view(hash))
            .Bind(whole(session.m_nLines))
            .Bind(whole(source.Records().Size()))
            .Bind(whole(session.Refused().Count()))
            .Bind(day ? Cell(std::string_view(dayText)) : Cell())
            .Bind(first ? whole(source.Records().Time(*first)) : Cell())
            .Bind(source.Explored().clock.Length())
            .Bind(SecondsCell(source.Explored().settings.m_fThreshold))
            .Bind(Cell(std::int64_t{source.Options().shapesOnly ? 1 : 0}));
        line.Step();
    }

    void Add(const CTableSource& source) const {
        // What is counted over all frames is counted beside the writing of the records.
        std::future<void> counted = std::async([&source] {
            source.SelfTimes();
            source.Findings();
        });
        CStoredLog stored(source, MakeRoom(source));
        modules->SetLog(&stored);
        const std::span<const StoredTable> tables = StoredTables();
        for (std::size_t i = 0; i < tables.size(); ++i) {
            if (i == kFirstOfProfile) {
                counted.get();
                stored.TakeProfile();
            }
            connection->Run(modules->InsertInto(tables[i]));
        }
        AddLine(source, stored);
        modules->SetLog(nullptr);
    }

    void Commit() {
        connection->Run(kSchemaIndexes);
        connection->Run("COMMIT");
        Close();
        int error = 0;
        if (!file.Commit(&error)) {
            throw DatabaseFailure{std::system_category().message(error)};
        }
    }

    template <class Work> static bool Try(std::string& problem, Work work) {
        try {
            work();
            return true;
        } catch (const DatabaseFailure& failure) {
            problem = failure.what;
            return false;
        }
    }
};

CLogDatabase::CLogDatabase() : m_pState(std::make_unique<State>()) {}
CLogDatabase::~CLogDatabase() = default;

bool CLogDatabase::Create(const std::string& path, bool append, std::string& problem) {
    return State::Try(problem, [&] { m_pState->Create(path, append); });
}

bool CLogDatabase::Add(const CTableSource& source, std::string& problem) {
    return State::Try(problem, [&] { m_pState->Add(source); });
}

bool CLogDatabase::Commit(std::string& problem) {
    return State::Try(problem, [&] { m_pState->Commit(); });
}

} // namespace carvelot
