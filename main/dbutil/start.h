// What the store does at process start: find, open and load the main database, or make it from the record.
#ifndef DBUTIL_START_H
#define DBUTIL_START_H

// Fills the registry, opens the main database and loads the record from it.  A database without a version
// is made anew from the record; one that cannot be read (locked, no permission) is left as it is.  0 when
// the record is loaded.
int init_database();

// Makes the main database if its file is missing, fills it from the record and stamps the current version.
// 0 when it exists afterwards.
int makesure_database_exist();

#endif
