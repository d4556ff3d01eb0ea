// The table registry: table numbers to their get and set functions, and the load and store of everything.
#ifndef DBUTIL_REGISTRY_H
#define DBUTIL_REGISTRY_H

#include "main/dbshell/catalogue.h"

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

// Both ask the main application for the device's capabilities first and pass over what the device lacks.
// The load goes on after a failure.  0, or the result of the last get that failed.
int get_alldata_from_db();
// The first failure rolls all back.  0 or -1.
int set_alldata_to_db();
// What set_alldata_to_db does inside its transaction.  0, or -1 at the first failure.
int store_all_tables();

// Stores the encryption version with the table that holds it, inside the transaction that first needs it.
int save_encryption_version();

#endif
