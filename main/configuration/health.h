// The health of a database file, and its repair in place.
//
//   int code = 0;
//   if (db_isok(get_db_path(), &code) != 0)
//       ...;   // code tells what is wrong; so do a debug message and the operation log
#ifndef CONFIGURATION_HEALTH_H
#define CONFIGURATION_HEALTH_H

enum HealthCode : int {
    kFileMissing = -1,  // or not to be read and written
    kFileEmpty = -2,
    kUnrepairable = -3,  // the integrity check fails, also after a dump and reload
    kKeyRowsMissing = -5,
};

// 0 when the file is healthy, or cannot be examined now because another process holds it; -1 with the code.  A file that
// fails the integrity check is dumped to "ex1.dump.gz" in the working directory and reloaded: the reloaded one takes its
// place when the dump is whole and every table has arrived, otherwise it stays as it is.
[[nodiscard]] int db_isok(const char* path, int* code);

// How long a file that cannot be read, or not be opened, is looked at again before that counts as damage: so many seconds
// in all, once a second.  None until this is called: a request has no time for it.
void set_patience(int seconds);

// The same without repair, and without a word in a log.
[[nodiscard]] bool is_healthy(const char* path);

// It is there, or may be, and cannot be opened now: nobody knows whether it is healthy.
[[nodiscard]] bool is_out_of_reach(const char* path);

#endif
