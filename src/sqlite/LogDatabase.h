// Logs with all their tables in one database file, which other programs ask questions in SQL.
//
// The file is replaced as a whole, at the end, or stays as it was: whatever happens meanwhile, its readers
// see the old logs or the new ones.
#pragma once

#include "tables/TableSource.h"

#include <memory>
#include <string>

namespace carvelot {

class CLogDatabase {
public:
    CLogDatabase();
    ~CLogDatabase();
    CLogDatabase(const CLogDatabase&) = delete;
    CLogDatabase& operator=(const CLogDatabase&) = delete;

    // Each is false, with why in a sentence, when it can't be done; then nothing has changed, and nothing
    // will.
    //
    // A file that is there must be a database of ours, or empty. `append` keeps the logs that it holds.
    bool Create(const std::string& path, bool append, std::string& problem);
    // A log of the same host and path that is there already is replaced.
    bool Add(const CTableSource& source, std::string& problem);
    bool Commit(std::string& problem);

private:
    struct State;
    std::unique_ptr<State> m_pState;
};

} // namespace carvelot
