// The table registry: table numbers to their get and set functions.
#ifndef DBUTIL_REGISTRY_H
#define DBUTIL_REGISTRY_H

inline constexpr int kTableNumbers = 254;  // 0 is no table
inline constexpr int kLoadFlag = 4;
inline constexpr int kSaveFlag = 8;

struct TableEntry;

// Called with the registry's address, kLoadFlag or kSaveFlag, and the table number.  0, or a failure code.
using TableFunction = int (*)(const TableEntry* registry, int flag, int table);

struct TableEntry {
    int table_id;
    TableFunction get;  // null: the table is not loaded
    TableFunction set;  // null: the table is not stored as a whole
};

extern TableEntry tables_fun[kTableNumbers];

// Fills entries 1 to 253 from the catalogue.
void init_tables_fun();

// The entry of a table number, or null when it is outside the registry.
const TableEntry* registry_entry(int table);

#endif
