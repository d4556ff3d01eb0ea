// Self-repair: a statement that stores runs again after the table or the column that an older database lacks has been
// added from the create list.
//
//   if (db_execsql_adapt(db, "update db_version set old_version = 1;") != 0) ...
//
// Statements that are prepared repair by the same routine (store.h).
#ifndef DBUTIL_REPAIR_H
#define DBUTIL_REPAIR_H

#include <string_view>

#include "device_db.h"

// Runs an SQL text.  0, or SQLite's code of the last execution; 1 without an execution after 21 that failed with no
// success or repair between them; -1 for a null argument.
[[nodiscard]] int db_execsql_adapt(db_handle db, const char* sql);

// Adds the column or the table whose lack is the handle's last error, if it belongs to `table`.  True when something
// was added, so that the statement may succeed now.
[[nodiscard]] bool db_repair(db_handle db, std::string_view table);

// Adds a column of the create list with its type from there.  Rows that are there already belong to the first
// channel.  0 when the column exists afterwards; -1.
[[nodiscard]] int add_created_column(db_handle db, std::string_view table, std::string_view column);

// ------------------------------------------------------------------------------------- what it reads

// The table that a text stores to: "replace into", "insert into" or "update" begin it.  Empty: none.
std::string_view parse_tablename_from_sql(std::string_view sql);

// What SQLite's message says is missing.
struct MissingPart {
    enum Kind { column, table, other } kind;
    std::string_view name;  // a part of the message
};
MissingPart parse_errmsg(std::string_view message);

#endif
