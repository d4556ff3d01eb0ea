// What the store does at process start: find, open and load the main database, or make it from the record.
#ifndef DBUTIL_START_H
#define DBUTIL_START_H

// Fills the registry, opens the main database and loads the record from it.  A database without a version
// is made anew from the record; one that is damaged is kept aside first.  One that cannot be read
// (locked, no permission) is left as it is, and stays to be loaded.  After a close request no database is opened or
// made.  0 when the record is loaded.  Sets database_started in any case.
[[nodiscard]] int init_database();

// True when the database could not be read since start-up, so that the record does not hold what is
// stored.  Tries to load it now; the next call tells whether that went well.
[[nodiscard]] bool was_load_pending();

#endif
