// All tables that the system knows, by domain.  Whatever knows about tables asks here: the registry of table
// numbers, the request kinds' lists of save functions, the command line's field access, the sweeping tests.
#ifndef DBSHELL_CATALOGUE_H
#define DBSHELL_CATALOGUE_H

#include "table.h"

// One domain file of main/dbshell/catalogue/ each.
extern const std::span<const Table> kDeviceTables;
extern const std::span<const Table> kImageTables;
extern const std::span<const Table> kNetworkTables;
extern const std::span<const Table> kEventTables;
extern const std::span<const Table> kPtzTables;
extern const std::span<const Table> kAnalyticsTables;
extern const std::span<const Table> kPlatformTables;
extern const std::span<const Table> kScheduleTables;
extern const std::span<const Table> kStorageCardTables;

// The table that holds the encryption version word.
inline constexpr int kEncryptionVersionTable = 187;

// Every table, domain by domain.
std::span<const Table* const> all_tables();

// By SQL table name; the first of several entries of one table.  Null: no such table.
const Table* find_table(std::string_view name);

// By number in the registry.  Null: no table has this number.
const Table* table_by_number(int number);

// What a function name of the catalogue does.
struct NamedFunction {
    enum class Role : uint8_t { none, get, set, single };
    const Table* table = nullptr;
    Role role = Role::none;
};

// By function name ("db_save_wdr_config_single").  Role::none: nothing in the catalogue has this name.
NamedFunction find_function(std::string_view name);

#endif
