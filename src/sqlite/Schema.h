// The database that logs are kept in: its tables, indexes and views.
//
// Readers ask the views: records, frames, ... have the columns of the tables of that name (tables/Tables.h).
// What the views are made from is stored without repeating itself, below names that begin with log_.
#pragma once

namespace carvelot {

// "Carv": marks a file as a database of ours.
inline constexpr int kApplicationId = 0x43617276;
// Rises whenever a reader of the views would see other columns, or a writer other tables.
inline constexpr int kSchemaVersion = 2;

extern const char* const kSchemaTables;
extern const char* const kSchemaViews;
// Made behind the rows, and dropped ahead of more of them.
extern const char* const kSchemaIndexes;
extern const char* const kSchemaWithoutIndexes;

} // namespace carvelot
