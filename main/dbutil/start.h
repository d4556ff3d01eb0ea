// What the store does at process start: find, open and load the main database, or make it from the record.
#ifndef DBUTIL_START_H
#define DBUTIL_START_H

// Fills the registry, opens the main database and loads the record from it.  A database without a version
// is made anew from the record; one that cannot be read (locked, no permission) is left as it is.  0 when
// the record is loaded.
int init_database();

#endif
