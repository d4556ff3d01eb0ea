// What the store does at process start: it heals the main database, loads the record from it and brings it up to date,
// or makes it from the record.
#ifndef DBUTIL_START_H
#define DBUTIL_START_H

#include "device_db.h"

// The whole start, from the registry to the backup.  A database that another process holds is left as it is, and stays to
// be started with.  After a close request no database is opened or made.  0 when record and database agree.  Sets
// database_started in any case.
[[nodiscard]] int init_database();

// True when the start could not get at the database, so that the record does not hold what is stored.  Tries again
// now; the next call tells whether that went well.
[[nodiscard]] bool was_load_pending();

// Opens the database that a request closed and could not replace. Where that fails, and for a `is_new` one, which holds
// only a part of the tables, the next request starts with it.
void open_again(bool is_new) noexcept;

// How a database goes on by the version that is stored in it, loading the record or making the database from the record.
// 0 when that was done.
[[nodiscard]] int db_getdata_byversion(int version);

// What every loaded database is brought to: four columns, and an empty intelligent_colour_config.
void adapt_db(db_handle db);

#endif
