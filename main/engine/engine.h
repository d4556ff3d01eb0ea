// The mapping engine: moves tables between the shared record and the database, as the catalogue tells them.
//
//   save_table(*find_table("wdr_config_table"));     load_table(*find_table("wdr_config_table"));
//
// A caller holds g_db_mutexsem and has begun a transaction; nothing here begins or ends one.  A row that the
// database already holds is not written again.  Results are 0 or the table's failure code.
#ifndef ENGINE_ENGINE_H
#define ENGINE_ENGINE_H

#include <optional>
#include <vector>

#include "status.h"
#include "table.h"

namespace dbshell {

// All its parts, also after one that failed; the first failure.
[[nodiscard]] int load_table(const Table& table);
// Every owner of the table; stops at the first that fails.
[[nodiscard]] int save_table(const Table& table);
// What lies at the first `given` indexes, counted from 0: of one sensor or channel, of one of its scenes.  The
// indexes that the table's _single function does not take are not looked at; those that it takes and is not given
// run through all that there are.
[[nodiscard]] int save_table_single(const Table& table, Index at, int given = 1);

// Tables that are stored one after another in one transaction.  While this lives, a schedule is left to the last of
// them that keeps it in the same row.
class StoredInOrder {
  public:
    explicit StoredInOrder(std::vector<const Table*> tables);
    ~StoredInOrder();
    StoredInOrder(const StoredInOrder&) = delete;
    StoredInOrder& operator=(const StoredInOrder&) = delete;

    // A later table than this one stores a schedule of this process type.
    static bool leaves_to_another(const Table& table, int process_type);

  private:
    const std::vector<const Table*> tables_;
};

// Calls a get, set or _single function of the catalogue by its name; a _single function takes the indexes.
// Empty: there is none of that name.
[[nodiscard]] std::optional<int> call_table_function(std::string_view name, Index at, int given = 1);

// ------------------------------------------------------------------------------------- one row
//
// What the functions above are made of, for the functions that take a row from elsewhere than the record.

// Stores the rows' values that lie at `base`, in the record's layout; the cause tells which step failed.
Status store_row(const Table& table, const Statement& statement, const std::byte* base, Index index,
                 Counts counts);

// Logs what failed in store_row().
void log_store_failure(const Table& table, const Statement& statement, std::string_view function,
                       Status status, const std::byte* base, Index index, Counts counts, int level);

// Reads the first row that the table's load statement gives into `base`.
Status load_row(const Table& table, std::string_view function, std::byte* base, Index index);

// True when the record is attached and the database open; otherwise logs and tells why.
Status ready(const Table& table, std::string_view function);

}  // namespace dbshell

#endif
