// The whole configuration: every table of the registry loaded, stored, or made anew.
//
// What the device has not the capability for is passed over; the main application is asked first.
#ifndef DBUTIL_ALL_TABLES_H
#define DBUTIL_ALL_TABLES_H

// The load goes on after a failure.  0, or the result of the last get that failed.
[[nodiscard]] int get_alldata_from_db();

// Loads what that passes over, as far as it is there.
void load_passed_over_tables();

// The first failure rolls all back.  0 or -1.
[[nodiscard]] int set_alldata_to_db();

// All tables made anew, filled from the record and stamped with the current version, in one transaction:
// a power cut leaves the old database or the new one.  0 or -1.
[[nodiscard]] int rebuild_from_record();

// Makes the main database if its file is missing, fills it from the record and stamps the current version.
// 0 when it exists afterwards.
[[nodiscard]] int makesure_database_exist();

// True when the device lacks what a table is for, so that a store of everything passes it over.
[[nodiscard]] bool is_passed_over(int table);

#endif
