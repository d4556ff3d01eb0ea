// All tables that the system knows, by domain.  Whatever knows about tables asks here: the registry of table
// numbers, the request kinds' lists of save functions, the command line's field access, the sweeping tests.
#ifndef DBSHELL_CATALOGUE_H
#define DBSHELL_CATALOGUE_H

#include "schedule_forms.h"
#include "table.h"

namespace dbshell {

// One domain file of main/dbshell/catalogue/ each: its groups of entries.
using Domain = std::span<const std::span<const Table>>;
extern const Domain kDeviceTables;
extern const Domain kImageTables;
extern const Domain kNetworkTables;
extern const Domain kScheduleTables;
extern const Domain kEventTables;
extern const Domain kPtzTables;
extern const Domain kDomeTables;
extern const Domain kAnalyticsTables;
extern const Domain kSceneTables;
extern const Domain kTrafficTables;
extern const Domain kPlatformTables;

// True when some of its columns are stored encrypted, under the word of encryption_word_table().
bool has_encrypted_columns(const Table& table);

// Every table, domain by domain.
std::span<const Table* const> all_tables();

// By SQL table name; the first of several entries of one table.  Null: no such table.
const Table* find_table(std::string_view name);

// By number in the registry; the first of several entries of one table.  Null: no table has this number.
const Table* table_by_number(int number);

// The entry behind this one that has the same get function, or the same set function: it moves the rows of both, one
// entry after another.  Null: there is none.
const Table* next_loaded_part(const Table& table);
const Table* next_saved_part(const Table& table);

// The table that holds the version word of the field encryption.
const Table& encryption_word_table();

// What a function name of the catalogue does.
struct NamedFunction {
    enum class Role : uint8_t { none, get, set, single };
    const Table* table = nullptr;
    Role role = Role::none;
};

// By function name ("db_save_wdr_config_single").  Role::none: nothing in the catalogue has this name.
NamedFunction find_function(std::string_view name);

// Where the schedules of all features lie in the record.
std::span<const ScheduleHome> schedule_homes();

// A table of the create list that no function loads or stores, and why.
struct UnusedTable {
    std::string_view name, reason;
};
std::span<const UnusedTable> unused_tables();

}  // namespace dbshell

#endif
