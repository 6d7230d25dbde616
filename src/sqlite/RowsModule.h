// The rows of a log as tables that a database reads them from: INSERT INTO log_record SELECT ... FROM
// rows_of_log_record costs half of what binding each value of each row to a statement does.
#pragma once

#include "sqlite/StoredLog.h"

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

namespace carvelot {

class CRowsModules {
public:
    // Makes a table rows_of_NAME for each stored table, of the log that is set. Refers to the database; the
    // connection must be closed before this goes.
    explicit CRowsModules(sqlite3* database);
    ~CRowsModules();
    CRowsModules(const CRowsModules&) = delete;
    CRowsModules& operator=(const CRowsModules&) = delete;

    void SetLog(const CStoredLog* log) { m_pLog = log; }
    // What puts the log's rows into a stored table. What the database knows by itself, the log's number and
    // the row's, it does not ask for.
    std::string InsertInto(const StoredTable& table) const;

    struct Rows;

private:
    const CStoredLog* m_pLog = nullptr;
    std::vector<std::unique_ptr<Rows>> m_listRows;
};

} // namespace carvelot
