#include "sqlite/RowsModule.h"

#include <algorithm>
#include <new>

namespace carvelot {

// What a table reads its rows from.
struct CRowsModules::Rows {
    struct Column {
        Cell (*stored)(const CStoredLog& log, std::uint32_t row, std::string& scratch);
        Cell (*ofTable)(const CTableSource& source, std::uint32_t row, std::string& scratch);
    };

    const CStoredLog* const& log;
    const StoredTable& table;
    const Table* sameRows;
    std::vector<Column> columns; // but those that are the row's number
    std::string declaration;

    std::uint32_t Count() const {
        return table.rows != nullptr ? table.rows(*log) : sameRows->rows(log->Source());
    }
    Cell At(std::size_t column, std::uint32_t row, std::string& scratch) const {
        const Column& which = columns[column];
        return which.stored != nullptr ? which.stored(*log, row, scratch)
                                       : which.ofTable(log->Source(), row, scratch);
    }
};

namespace {

struct RowsTable : sqlite3_vtab {
    const CRowsModules::Rows* rows;
};

struct RowsCursor : sqlite3_vtab_cursor {
    const CRowsModules::Rows* rows = nullptr;
    std::uint32_t row = 0;
    std::uint32_t count = 0;
    std::string scratch;
    std::string valid;
};

// Nothing may be thrown through the library.
template <class Work> int Guarded(Work work) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return SQLITE_NOMEM;
    }
}

int Connect(sqlite3* database, void* aux, int /*count*/, const char* const* /*arguments*/,
            sqlite3_vtab** table, char** /*error*/) {
    return Guarded([&] {
        const auto* const rows = static_cast<const CRowsModules::Rows*>(aux);
        const int status = sqlite3_declare_vtab(database, rows->declaration.c_str());
        if (status == SQLITE_OK) {
            auto made = std::make_unique<RowsTable>();
            made->rows = rows;
            *table = made.release();
        }
        return status;
    });
}

int Disconnect(sqlite3_vtab* table) {
    delete static_cast<RowsTable*>(table);
    return SQLITE_OK;
}

int BestIndex(sqlite3_vtab* /*table*/, sqlite3_index_info* /*info*/) { return SQLITE_OK; }

int Open(sqlite3_vtab* table, sqlite3_vtab_cursor** cursor) {
    return Guarded([&] {
        auto made = std::make_unique<RowsCursor>();
        made->rows = static_cast<RowsTable*>(table)->rows;
        *cursor = made.release();
        return SQLITE_OK;
    });
}

int Close(sqlite3_vtab_cursor* cursor) {
    delete static_cast<RowsCursor*>(cursor);
    return SQLITE_OK;
}

int Begin(sqlite3_vtab_cursor* cursor, int /*number*/, const char* /*text*/, int /*count*/,
          sqlite3_value** /*values*/) {
    return Guarded([&] {
        auto& at = *static_cast<RowsCursor*>(cursor);
        at.row = 0;
        at.count = at.rows->Count();
        return SQLITE_OK;
    });
}

int Next(sqlite3_vtab_cursor* cursor) {
    ++static_cast<RowsCursor*>(cursor)->row;
    return SQLITE_OK;
}

int IsAtEnd(sqlite3_vtab_cursor* cursor) {
    const auto& at = *static_cast<RowsCursor*>(cursor);
    return at.row >= at.count ? 1 : 0;
}

int GiveCell(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int column) {
    return Guarded([&] {
        auto& at = *static_cast<RowsCursor*>(cursor);
        const Cell cell = at.rows->At(static_cast<std::size_t>(column), at.row, at.scratch);
        if (const auto* const number = std::get_if<std::int64_t>(&cell)) {
            sqlite3_result_int64(context, *number);
        } else if (const auto* const real = std::get_if<double>(&cell)) {
            sqlite3_result_double(context, *real);
        } else if (const auto* const text = std::get_if<std::string_view>(&cell)) {
            const std::string_view valid = ValidText(*text, at.valid);
            // Texts of the log stay where they are; those in the strings are gone with the next cell.
            const bool isMade =
                !valid.empty() && (valid.data() == at.scratch.data() || valid.data() == at.valid.data());
            sqlite3_result_text64(context, valid.empty() ? "" : valid.data(), valid.size(),
                                  isMade ? SQLITE_TRANSIENT : SQLITE_STATIC, SQLITE_UTF8);
        } else {
            sqlite3_result_null(context);
        }
        return SQLITE_OK;
    });
}

int GiveNumber(sqlite3_vtab_cursor* cursor, sqlite3_int64* number) {
    *number = static_cast<RowsCursor*>(cursor)->row;
    return SQLITE_OK;
}

// A table that is there without being made, and takes no writing.
const sqlite3_module kModule = [] {
    sqlite3_module module{};
    module.xConnect = Connect;
    module.xBestIndex = BestIndex;
    module.xDisconnect = Disconnect;
    module.xOpen = Open;
    module.xClose = Close;
    module.xFilter = Begin;
    module.xNext = Next;
    module.xEof = IsAtEnd;
    module.xColumn = GiveCell;
    module.xRowid = GiveNumber;
    return module;
}();

} // namespace

CRowsModules::CRowsModules(sqlite3* database) {
    for (const StoredTable& table : StoredTables()) {
        auto rows =
            std::make_unique<Rows>(Rows{m_pLog, table, FindTable(table.rowsOf), {}, "CREATE TABLE rows ("});
        for (const StoredColumn& column : table.columns) {
            if (column.isRow) {
                continue;
            }
            rows->declaration.append(rows->columns.empty() ? "" : ", ").append(column.name);
            Rows::Column& made = rows->columns.emplace_back(Rows::Column{column.cell, nullptr});
            if (column.cell == nullptr) {
                const std::string_view name = column.sameAs.empty() ? column.name : column.sameAs;
                const auto& all = rows->sameRows->columns;
                made.ofTable = std::find_if(all.begin(), all.end(), [name](const TableColumn& one) {
                                   return one.name == name;
                               })->cell;
            }
        }
        rows->declaration.append(")");
        const std::string name = std::string("rows_of_").append(table.name);
        if (sqlite3_create_module_v2(database, name.c_str(), &kModule, rows.get(), nullptr) != SQLITE_OK) {
            throw std::bad_alloc();
        }
        m_listRows.push_back(std::move(rows));
    }
}

CRowsModules::~CRowsModules() = default;

std::string CRowsModules::InsertInto(const StoredTable& table) const {
    // REPLACE spares the look whether a row is there already, which none is.
    std::string sql =
        std::string("REPLACE INTO ").append(table.name).append(" SELECT ") + std::to_string(m_pLog->Id());
    for (const StoredColumn& column : table.columns) {
        sql.append(", ").append(column.isRow ? "rowid" : column.name);
    }
    return sql.append(" FROM rows_of_").append(table.name);
}

} // namespace carvelot
