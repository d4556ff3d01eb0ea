// The store: the one connection to the configuration database, and the statements prepared on it.
//
//   set_db_handle(db_open(get_db_path()));
//   db_execsql(get_db_handle(), "...");
//
// Every call below takes place under g_db_mutexsem.
#ifndef DBUTIL_STORE_H
#define DBUTIL_STORE_H

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "device_db.h"

struct sqlite3_stmt;

// ------------------------------------------------------------------------------------- the handle

// "/devinfo/ipc_db" and its copy, below DEVICE_ROOT where that is set.
const char* get_db_path();
const char* get_db_backup_path();

// The process-wide handle, owned by the store.  Null when no database is open; that is said on standard
// output.
db_handle get_db_handle();

// Installs a handle; null leaves the old one.  A handle that it replaces is disconnected.
void set_db_handle(db_handle db);

// Gives the handle up without closing it: the caller owns it, and the process has none.  Null: there was none.
[[nodiscard]] db_handle release_db_handle();

// A database that is nobody else's.
struct CloseDatabase {
    void operator()(db_handle db) const;
};
using OwnDatabase = std::unique_ptr<sqlite3, CloseDatabase>;

// A database that is the process's for a while.
class ForAWhile {
  public:
    explicit ForAWhile(db_handle db) { set_db_handle(db); }
    ~ForAWhile();
    ForAWhile(const ForAWhile&) = delete;
    ForAWhile& operator=(const ForAWhile&) = delete;
};

// Opens a database file for this system.  Tries twice, half a second apart; null on failure.
[[nodiscard]] db_handle db_open(const char* path);

// Gives a connection its settings and reads them back: one file and its rollback journal, every commit synced, no
// waiting for locks.  0, also when that was done before, or SQLite's code: a locked file refuses them, and
// SQLite's own settings lose acknowledged saves to a power cut.  db_open tries it, so does every begin.
[[nodiscard]] int db_settle(db_handle db);

// Disconnects and clears the variable; the process-wide handle too when it is the same.
void db_close(db_handle* db);

// db_close, then deletes the file with its journal.  The result is that of remove().
[[nodiscard]] int db_close_and_remove(db_handle db, const char* path);

// Creates a database file with every table.  0, or -1.
[[nodiscard]] int db_create(const char* path);

// Runs the create list; every entry, also after a failure.  0 when all succeeded, -1 for a null handle.
[[nodiscard]] int creat_all_table(db_handle db);

// The count of "select count(*) ..."; 0, or -1 with the count untouched.
[[nodiscard]] int db_query_row_num(db_handle db, const char* sql, int* count);

// ------------------------------------------------------------------------------------- prepared statements

// What a prepared statement is found by: the constant that it was made from, and which of the statements made from
// that one it is.
struct StatementKey {
    const void* made_from;
    int which = 0;
    bool operator==(const StatementKey&) const = default;
};

// The one place where the system's statements are prepared.  They live as long as the connection; `sql` tells the
// text of one that is not there yet.  0, or SQLite's code, which is logged, with a null statement.
//
// For a statement that stores, `repaired` is its table: what an older database lacks of it is added then (repair.h).
[[nodiscard]] int db_prepare(StatementKey key, const std::function<std::string()>& sql,
                             sqlite3_stmt** statement, std::string_view repaired = {});

// sqlite3_step; `repaired` as above, for a statement that was prepared before its table changed.
[[nodiscard]] int db_step(sqlite3_stmt* statement, std::string_view repaired);

// Logs SQLite's last error on the handle, or the code that is given, and returns its code.
[[nodiscard]] int db_report_error(int code = 0);

// One of those was for want of memory, or of the storage, since this was last cleared, which a begin does: it may not
// come again, and what is lacking for it is not absent.
[[nodiscard]] bool db_failed_at_the_moment();
void db_clear_failure();

#endif
