// Changes of a database's schema, one statement each.
//
//   if (add_column(db, "ntp_config_info", "satellite_interval", "int") != 0) ...
//
// Each may run again on a database that has its change already, but for delete_table.
#ifndef DBUTIL_ALTER_H
#define DBUTIL_ALTER_H

#include "device_db.h"

// 1 when the table has the column; 0 otherwise, also for a null argument.
[[nodiscard]] int check_column_exist(db_handle db, const char* table, const char* column);

// 0 when the column exists afterwards; -1.
[[nodiscard]] int add_column(db_handle db, const char* table, const char* column, const char* type);

// Run one CREATE or DROP statement.  0 or -1.
[[nodiscard]] int add_table(db_handle db, const char* sql);
[[nodiscard]] int delete_table(db_handle db, const char* sql);

#endif
