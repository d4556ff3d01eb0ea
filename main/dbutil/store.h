// The store: the one connection to the configuration database, and its files.
//
//   set_db_handle(db_open(get_db_path()));
//   db_execsql(get_db_handle(), "...");
//
// Every call below takes place under g_db_mutexsem.
#ifndef DBUTIL_STORE_H
#define DBUTIL_STORE_H

#include <string>

#include "device_db.h"

struct sqlite3_stmt;

inline constexpr int kCurrentMajor = 1180;
// Packed: the major number above a minor byte of 0.
inline constexpr int kCurrentVersion = kCurrentMajor << 8;

// ------------------------------------------------------------------------------------- the handle

// "/devinfo/ipc_db" and its copy, below DEVICE_ROOT where that is set.
const char* get_db_path();
const char* get_db_backup_path();

// The process-wide handle, owned by the store.  Null when no database is open; that is said on standard
// output.
db_handle get_db_handle();

// Installs a handle; null leaves the old one.  A handle that it replaces is disconnected.
void set_db_handle(db_handle db);

// Opens a database file for this system: one file and its rollback journal, every commit synced, no
// waiting for locks. Tries twice, half a second apart; null on failure.
db_handle db_open(const char* path);

// Disconnects and clears the variable; the process-wide handle too when it is the same.
void db_close(db_handle* db);

// db_close, then deletes the file with its journal.  The result is that of remove().
int db_close_and_remove(db_handle db, const char* path);

// Creates a database file with every table.  0, or -1.
int db_create(const char* path);

// Runs the create list; every entry, also after a failure.  0 when all succeeded, -1 for a null handle.
int creat_all_table(db_handle db);

// The count of "select count(*) ..."; 0, or -1 with the count untouched.
int db_query_row_num(db_handle db, const char* sql, int* count);

// ------------------------------------------------------------------------------------- prepared statements

// Prepared statements live as long as the connection and are found by the address of what they were made
// from. The one place where a statement of the catalogue is prepared.  Null on failure, which is logged.
sqlite3_stmt* db_prepared(const void* made_from);
sqlite3_stmt* db_prepare(const void* made_from, const std::string& sql);

// Logs SQLite's last error on the handle and returns its code.
int db_report_error();

// ------------------------------------------------------------------------------------- files

int check_file_exist(const char* path);      // 0 when readable and writable; -1 with errno
int check_file_not_empty(const char* path);  // 0 when it holds at least one byte; -1
// 1 when both have the same size and the same sums of 16-bit words in every 1024-byte block; 0 otherwise.
int check_file_equal(const char* path1, const char* path2);

#endif
