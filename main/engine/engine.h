// The mapping engine: moves tables between the shared record and the database, as the catalogue tells them.
//
//   save_table(*find_table("wdr_config_table"));     load_table(*find_table("wdr_config_table"));
//
// A caller holds g_db_mutexsem and has begun a transaction; nothing here begins or ends one.  A row that
// the database already holds is not written again.  Results are 0 or the table's failure code.
#ifndef DBSHELL_ENGINE_H
#define DBSHELL_ENGINE_H

#include <optional>
#include <vector>

#include "device_db.h"
#include "log.h"
#include "table.h"

struct sqlite3_stmt;

int load_table(const Table& table);
// Every key of the table; stops at the first that fails.
int save_table(const Table& table);
// One sensor or channel, counted from 0.
int save_table_single(const Table& table, int outer);

// Calls a get, set or _single function of the catalogue by its name; a _single function takes the index.
// Empty: there is none of that name.
std::optional<int> call_table_function(std::string_view name, int outer);

// ------------------------------------------------------------------------------------- for odd tables
//
// What the functions above are made of, for the few tables that are no row of the catalogue.

// Result codes of graded tables; the others return -1 for every failure.
enum Result : int {
    kDone = 0,
    kBadKey = -1,
    kQueryFailed = -2,
    kInsertFailed = -3,
    kWriteFailed = -4,
    kDeleteFailed = -5,
    kNoHandle = -6,
    kNoRecord = -7,
};
int result_of(const Table& table, Result result);

// Logs one of a table's messages under a function's name.  "%d" becomes the number, "%s" the text.
void log_table(std::string_view function, const char* message, int64_t number = 0,
               const std::string& text = {}, int level = kError);

// True when the record is attached and the database open; otherwise logs and tells why.
Result ready(std::string_view function);

// Runs a statement for one row whose fields lie at `row`; one that stores only when that changes
// anything.  0 or SQLite's code.
int execute(const Statement& statement, const std::byte* row, RowIndex index);

// Counts with a "select count(*)" statement.  0 or SQLite's code.
int count_rows(const Statement& statement, RowIndex index, int64_t& count);

// Steps 1 and 2 of an ensure-update: afterwards at least table.row_count() rows exist for the index's
// outer key.
Result ensure_rows(const Table& table, std::string_view function, RowIndex index);

// A statement's text with its values, as a log shows it; secrets are masked.
std::string rendered(const Statement& statement, const std::byte* row, RowIndex index);

// Where the fields of a row lie.
std::byte* row_at(const Table& table, const Statement& statement, RowIndex index);

// The rows that a select gives, one after another.
//   for (Rows rows(statement, index); rows.next();) use(rows.key("idx", 0));
class Rows {
  public:
    // Selects everything from a table.
    explicit Rows(const Table& table);
    // Runs a select statement of the catalogue.
    Rows(const Statement& statement, RowIndex index);
    ~Rows();
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;

    // False after the last row, and after a failure.
    bool next();
    // SQLite's code when the query failed; 0.
    int error() const { return error_; }

    // A column of the current row by its number; -1: there is no such column.
    int column(std::string_view name) const;
    bool is_null(int column) const;
    std::string_view text(int column) const;  // until next()
    int64_t number(int column) const;         // as atoll reads its text
    // A key column by its name, `missing` when it is missing or NULL; a key beyond 32 bits becomes the
    // nearest, which no row has.
    int64_t key(std::string_view name, int64_t missing) const;

    // Stores the columns that the statement names in the fields at `row`; what is missing or NULL is left
    // alone.
    void read(const Statement& statement, std::byte* row, RowIndex index);

  private:
    sqlite3_stmt* statement_ = nullptr;
    int error_ = 0;
    // The column numbers of each statement that has been read with, in the order of its parameters.
    std::vector<std::pair<const Statement*, std::vector<int>>> maps_;

    const std::vector<int>& map_of(const Statement& statement);
};

#endif
