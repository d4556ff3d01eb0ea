// The whole configuration: every table of the registry loaded, stored, or made anew.
//
// What the device has not the capability for is passed over; the main application is asked first.
#ifndef DBUTIL_ALL_TABLES_H
#define DBUTIL_ALL_TABLES_H

#include <bitset>

#include "registry.h"

inline constexpr int kNothingLoaded = -100;  // another process holds the database, or it cannot be read now

// The load goes on after a failure.  0, or the result of the last get that failed, or kNothingLoaded.
[[nodiscard]] int get_alldata_from_db();

// Loads what that passes over, as far as it is there.  False: another process holds the database.
[[nodiscard]] bool load_passed_over_tables();

// The first failure rolls all back.  0 or -1.
[[nodiscard]] int set_alldata_to_db();

using TableNumbers = std::bitset<kTableNumbers>;

// Stores the record into a new database, inside the caller's transaction.  `passed_over` becomes the tables that the
// device's capabilities keep from being stored, or kept from being loaded, and those whose load failed: what is stored in
// them is not in the record.
[[nodiscard]] bool store_new_database(TableNumbers& passed_over);

// Makes the main database if its file is missing, fills it from the record and stamps the current version.
// 0 when it exists afterwards.
[[nodiscard]] int makesure_database_exist();

// True when the device lacks what a table is for, so that a store of everything passes it over.
[[nodiscard]] bool is_passed_over(int table);

#endif
