// The device's database library: a thin layer over SQLite.
//
//   db_handle db = db_connect(0, path, 0, 0);
//   db_cursor cursor;
//   if (db_query_open_v2(db, "select * from ipaddr_list;", &cursor) == 0)
//       for (int row = 0; row < db_query_rec_count_v2(&cursor); ++row)
//           puts(db_query_fields_v2(&cursor, "ipaddr", row));
//
// A handle and what was opened on it may pass from thread to thread, but only one thread may use them at a
// time. No operation waits for a lock that another connection holds. "A result code" below is SQLite's: 0 is
// success, 5 busy, 21 a null or empty argument.
#ifndef PLATFORM_DEVICE_DB_H
#define PLATFORM_DEVICE_DB_H

struct sqlite3;
using db_handle = sqlite3*;

// ---- connection

// The database in the file at `path`, created empty when it does not exist; null on failure. The other
// arguments mean nothing here. The caller owns the handle until db_disconnect.
db_handle db_connect(int, const char* path, int, int);

// Releases the connection; a null handle is ignored. Statements still open on it stay valid until closed.
void db_disconnect(db_handle db);

// Runs every statement of `sql`, up to the first that fails. Returns a result code.
int db_execsql(db_handle db, const char* sql);

// ---- query whose rows are held as text

struct db_rows;

// A query's result. It lives where the caller puts it, also zeroed, and releases its rows when it goes.
struct db_cursor {
    db_rows* rows = nullptr;  // null: no result is held

    db_cursor() = default;
    ~db_cursor();
    db_cursor(const db_cursor&) = delete;
    db_cursor& operator=(const db_cursor&) = delete;
};

// Runs `sql`, one statement, and holds its result in `cursor` in place of an earlier one. Returns a result
// code; on failure the cursor holds nothing.
int db_query_open_v2(db_handle db, const char* sql, db_cursor* cursor);

// The number of rows; 0 when the cursor is null or holds nothing.
int db_query_rec_count_v2(const db_cursor* cursor);

// The text of a column in a row (from 0). Null when there is no such column or row, or the value is NULL.
// Column names are compared without regard to case. Valid until the cursor is closed or opened again.
const char* db_query_fields_v2(const db_cursor* cursor, const char* column, int row);

// The number that a query such as "select count(*) from db_version;" has counted: the first value of the
// first row. -1 when there is none, or it is no number from 0 to INT_MAX.
int db_query_table_rows(const db_cursor* cursor);

// Releases the result. Harmless for a null cursor, after a failed open and when repeated.
void db_query_close_v2(db_cursor* cursor);

// ---- probe

struct db_query;

// A query when `sql`, one statement, can be prepared and run; null otherwise. The caller closes it.
db_query* db_query_open(db_handle db, const char* sql);
// Returns a result code.
int db_query_close(db_query* query);

// ---- integrity

// SQLite's integrity check of an open database: 0 when it passes, negative when the database is damaged or
// `db` is null, a positive result code when it could not be examined now (busy, out of memory).
int check_active_db_integrity(db_handle db);

constexpr int kCannotBeRead = -2;

// The same of the database file at `path`, opened for reading. Negative also when there is no such file or it is no
// database; kCannotBeRead when reading fails, which tells nothing about what is in it. The file is never created. An
// empty file is an empty database. An interrupted transaction that a crash left behind is rolled back first, as any
// opening of the file would.
int check_inactive_db_integrity(const char* path);

#endif
